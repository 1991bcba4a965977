#include "TSLCLI/ordination_table.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "TSLCLI/csv_writer.h"
#include "TSLGLOB/dataset.h"
#include "mxlib/eigen.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/missing.h"

namespace {

constexpr int kAxes = 2;
constexpr int kLargest = 1000;

using Column = std::vector<double>;

double Dot(const Column& a, const Column& b) {
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); i++) sum += a[i] * b[i];
    return sum;
}

/// Centred; with `toUnit` at unit length. Empty where nothing varies or a value is missing.
Column Centred(Column x, bool toUnit) {
    double mean = 0.0;
    for (const double value : x) {
        if (IsMissing(value) || !std::isfinite(value)) return {};
        mean += value / static_cast<double>(x.size());
    }
    double largest = 0.0;
    for (double& value : x) {
        largest = std::max(largest, std::fabs(value));
        value -= mean;
    }
    const double length = std::sqrt(Dot(x, x));
    constexpr double kRounding = 1e-12;
    if (length <= kRounding * largest) return {};
    if (toUnit)
        for (double& value : x) value /= length;
    return x;
}

std::vector<Column> VaryingColumns(const OrdinatedTable& table, bool toUnit) {
    std::vector<Column> columns;
    for (std::size_t j = 0; j < table.columns->size(); j++) {
        Column x(table.communities->size());
        for (std::size_t i = 0; i < x.size(); i++) x[i] = table.values[i][j];
        columns.push_back(Centred(x, toUnit));
    }
    return columns;
}

struct Components {
    std::vector<Column> scores;  ///< axis by axis
    std::vector<double> shares;
};

/// By the products of the communities or of the columns, whichever are fewer.
Components FindComponents(std::vector<Column> columns, std::size_t communities) {
    std::erase_if(columns, [](const Column& c) { return c.empty(); });
    const bool byColumns = columns.size() <= communities;
    const int m = static_cast<int>(byColumns ? columns.size() : communities);
    ScopedMatrix<double> products(m, m);
    ScopedMatrix<double> vectors(m, m);
    ScopedVector<double> values(m);
    for (int i = 0; i < m; i++)
        for (int j = 0; j < m; j++) {
            if (byColumns)
                products[i][j] = Dot(columns[i], columns[j]);
            else
                for (const Column& c : columns) products[i][j] += c[i] * c[j];
        }
    EigenHouseholderQL_GSL_D(m, products, vectors, values);
    double total = 0.0;
    for (int k = 0; k < m; k++) total += std::max(values[k], 0.0);
    Components found;
    for (int k = 0; k < kAxes; k++) {
        Column axis(communities);
        for (std::size_t i = 0; i < communities; i++)
            if (byColumns)
                for (int j = 0; j < m; j++) axis[i] += columns[j][i] * vectors[k][j];
            else
                axis[i] = vectors[k][i] * std::sqrt(std::max(values[k], 0.0));
        double strongest = 0.0;
        for (const Column& c : columns)
            if (std::fabs(Dot(c, axis)) > std::fabs(strongest)) strongest = Dot(c, axis);
        if (strongest < 0.0)
            for (double& score : axis) score = -score;
        found.scores.push_back(axis);
        found.shares.push_back(std::max(values[k], 0.0) / total);
    }
    return found;
}

void PutRow(const char* kind, const std::string& name, const double (&values)[kAxes],
            CsvWriter* out) {
    out->Text(kind);
    out->Text(name);
    for (const double value : values) out->Real(value);
    out->EndRow();
}

void PutCorrelations(const char* kind, const std::string& name, const Column& unit,
                     const Components& found, CsvWriter* out) {
    double values[kAxes];
    for (int k = 0; k < kAxes; k++) {
        const Column axis = Centred(found.scores[k], true);
        const bool known = !unit.empty() && !axis.empty();
        values[k] = known ? Dot(unit, axis) : kMissing;
    }
    PutRow(kind, name, values, out);
}

}  // namespace

bool CanOrdinate(const OrdinatedTable& table) {
    const std::size_t fewer = std::min(table.columns->size(), table.communities->size());
    const std::vector<Column> columns = VaryingColumns(table, false);
    const auto varying =
        std::count_if(columns.begin(), columns.end(), [](const Column& c) { return !c.empty(); });
    return fewer >= kAxes && fewer <= kLargest && varying >= kAxes;
}

void WriteOrdination(const std::string& path, const OrdinatedTable& table, const Names& variables) {
    const Components found =
        FindComponents(VaryingColumns(table, table.standardises), table.communities->size());
    CsvWriter out(path, {"kind", "name", "axis1", "axis2"});
    PutRow("share", "", {found.shares[0], found.shares[1]}, &out);
    for (std::size_t i = 0; i < table.communities->size(); i++)
        PutRow("community", (*table.communities)[i], {found.scores[0][i], found.scores[1][i]},
               &out);
    const std::vector<Column> unit = VaryingColumns(table, true);
    for (std::size_t j = 0; j < unit.size(); j++)
        PutCorrelations(table.kind, (*table.columns)[j], unit[j], found, &out);
    for (std::size_t v = 0; v < variables.size(); v++) {
        if (envVarType[v] == kNominalVariable) continue;  // codes of words have no correlation
        Column x(table.communities->size());
        for (std::size_t i = 0; i < x.size(); i++) x[i] = static_cast<double>(env[i][v]);
        PutCorrelations("environment", variables[v], Centred(x, true), found, &out);
    }
    out.Finish();
}
