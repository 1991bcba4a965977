#include "TSLCLI/phylogeny_file.h"

#include <algorithm>
#include <cmath>
#include <unordered_set>

#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/number_cells.h"
#include "TSLCLI/wording.h"

namespace {

constexpr double kRounding = 1e-5;  // of six digits, with room

/// Whether the first character of the file that is no blank begins a tree, a comment or NEXUS.
bool BeginsAsTree(const std::string& path) {
    constexpr std::string_view kPassedOver = " \t\r\n\xEF\xBB\xBF";
    InputFile file(path);
    std::string next = file.Read(1);
    while (!next.empty() && kPassedOver.find(next[0]) != std::string_view::npos)
        next = file.Read(1);
    return next == "(" || next == "[" || next == "#";
}

void MatchUnderscores(const Names& otus, const std::vector<bool>& isQuoted, Names* tips) {
    const std::unordered_set<std::string> known(otus.begin(), otus.end());
    for (std::size_t i = 0; i < tips->size(); i++) {
        std::string& tip = (*tips)[i];
        if (isQuoted[i] || known.contains(tip)) continue;
        std::string blank = tip;
        std::replace(blank.begin(), blank.end(), '_', ' ');
        if (known.contains(blank)) tip = blank;
    }
}

void CheckMatrixNames(const DelimitedTable& matrix) {
    RequireDistinct({matrix.file, &matrix.columnNames}, "column");
    const std::vector<int> places = PlacesAmong(matrix.rowNames, matrix.columnNames);
    const auto lone = std::find(places.begin(), places.end(), -1);
    if (lone != places.end()) {
        const std::string& name = matrix.rowNames[lone - places.begin()];
        FailRun(matrix.file + ": the row " + Quoted(name) + " has no column of its name" +
                NearestTo(name, matrix.columnNames) +
                ": a phylogeny has the same names over its rows and its columns");
    }
    if (matrix.columnNames.size() != matrix.rowNames.size())
        FailRun(matrix.file + ": " + std::to_string(matrix.rowNames.size()) + " rows and " +
                std::to_string(matrix.columnNames.size()) +
                " columns: a phylogeny is a square matrix");
}

void RequireSymmetry(const DelimitedTable& matrix, const Names& otus, const double* const* F) {
    const int n = static_cast<int>(otus.size());
    for (int i = 0; i < n; i++)
        for (int j = 0; j < i; j++) {
            const double larger = std::max(std::abs(F[i][j]), std::abs(F[j][i]));
            if (std::abs(F[i][j] - F[j][i]) > kRounding * larger)
                FailRun(matrix.file + ": the matrix is not symmetric: row " + Quoted(otus[i]) +
                        ", column " + Quoted(otus[j]) + " has " + NumberText(F[i][j]) +
                        ", and row " + Quoted(otus[j]) + ", column " + Quoted(otus[i]) + " has " +
                        NumberText(F[j][i]));
        }
}

void FillFromMatrix(const DelimitedTable& matrix, const Names& otus, bool areSimilarities,
                    double* const* F) {
    const auto fault = [&](int i, int j, double x) -> const char* {
        if (areSimilarities)
            return x < 0 || x > 1 ? "is no similarity from 0 to 1: leave out "
                                    "--phylogeny-similarities where the matrix holds distances"
                                  : nullptr;
        if (x < 0) return "is a negative distance";
        if (i == j && x != 0)
            return "is the distance of an OTU to itself, which must be 0: give "
                   "--phylogeny-similarities where the matrix holds similarities";
        return nullptr;
    };
    const NumberForm form = ForEachNumber<double>(
        matrix, PlacesAmong(otus, matrix.rowNames), PlacesAmong(otus, matrix.columnNames),
        "a phylogeny has no missing values", [&](int i, int j, double x) {
            F[i][j] = x;
            return fault(i, j, x);
        });
    TellIfLong(form, matrix);
    RequireSymmetry(matrix, otus, F);
}

void FillFromTree(const PhylogenyFile& phylogeny, const Names& otus, double* const* F) {
    PathLengths(*phylogeny.tree, PlacesAmong(phylogeny.names, otus), F);
}

}  // namespace

PhylogenyFile ReadPhylogenyFile(const std::string& path, const Names& otus) {
    PhylogenyFile phylogeny;
    if (BeginsAsTree(path)) {
        phylogeny.tree = ParseNewick(ReadWhole(path), path);
        phylogeny.names = phylogeny.tree->tipNames;
        MatchUnderscores(otus, phylogeny.tree->isQuoted, &phylogeny.names);
        RequireDistinct({path, &phylogeny.names}, "tip");
        return phylogeny;
    }
    phylogeny.matrix = ReadDelimitedTable(path);
    phylogeny.names = phylogeny.matrix->rowNames;
    RequireDistinct({path, &phylogeny.names}, "row");
    CheckMatrixNames(*phylogeny.matrix);
    return phylogeny;
}

void FillPhylogeny(const PhylogenyFile& phylogeny, const Names& otus, bool areSimilarities,
                   double* const* F) {
    if (phylogeny.tree)
        FillFromTree(phylogeny, otus, F);
    else
        FillFromMatrix(*phylogeny.matrix, otus, areSimilarities, F);
}
