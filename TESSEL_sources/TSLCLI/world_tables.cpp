#include "TSLCLI/world_tables.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <new>
#include <numeric>

#include "TSLCLI/delimited_table.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/named_items.h"
#include "TSLCLI/number_cells.h"
#include "TSLCLI/wording.h"
#include "TSLIF/simulation/answers.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/real_text.h"
#include "mxlibDim/scoped.h"
#include "mxlibDim/text.h"
#include "nrutilMX/nrutilMX.h"

namespace {

using Numbers = std::vector<std::vector<double>>;

bool IsGiven(const std::string& file) {
    return file != kNoTable;
}

std::vector<int> AllPlaces(std::size_t n) {
    std::vector<int> places(n);
    std::iota(places.begin(), places.end(), 0);
    return places;
}

Numbers NumbersAt(const DelimitedTable& table, const std::vector<int>& rows,
                  const std::vector<int>& columns) {
    Numbers numbers(rows.size(), std::vector<double>(columns.size()));
    ForEachNumber<double>(table, rows, columns, "a simulation has no missing values",
                          [&](int i, int j, double number) -> const char* {
                              numbers[i][j] = number;
                              return nullptr;
                          });
    return numbers;
}

DelimitedTable ReadNamedTable(const std::string& file) {
    DelimitedTable table = ReadDelimitedTable(file);
    RequireDistinct({file, &table.rowNames}, "row");
    RequireDistinct({file, &table.columnNames}, "column");
    return table;
}

void RequireSameNames(const NameList& names, const NameList& known, const std::string& what) {
    MatchNames({known, names}, what, false, "correct the names");
}

/// The numbers of a table under known names of its rows and columns, in the order of these.
Numbers ReadMatched(const std::string& file, const NameList& rows, const char* whatRows,
                    const NameList& columns, const char* whatColumns) {
    const DelimitedTable table = ReadNamedTable(file);
    const bool isTurned = CountAmong(table.rowNames, *rows.names) == 0 &&
                          CountAmong(table.rowNames, *columns.names) > 0;
    if (isTurned)
        FailRun(file + ": the table is turned: put the " + whatRows + " in rows, the " +
                whatColumns + " in columns");
    RequireSameNames({file, &table.rowNames}, rows, whatRows);
    RequireSameNames({file, &table.columnNames}, columns, whatColumns);
    return NumbersAt(table, PlacesAmong(*rows.names, table.rowNames),
                     PlacesAmong(*columns.names, table.columnNames));
}

/// The simulation reads its tables number by number, in full.
void PutInto(RawFile& file, const std::string& name, const Numbers& rows) {
    CopyText(file.name, kTypedFileNameLength, name.c_str());
    std::string text;
    for (const std::vector<double>& row : rows)
        for (const double number : row) {
            char digits[32];
            text.append(digits, WriteReal(digits, number));
            text.push_back(' ');
        }
    file.stream = OpenText(text);
    if (file.stream == nullptr) throw std::bad_alloc();
}

Numbers Turned(const Numbers& rows) {
    Numbers turned(rows.empty() ? 0 : rows[0].size());
    for (const std::vector<double>& row : rows)
        for (std::size_t j = 0; j < row.size(); j++) turned[j].push_back(row[j]);
    return turned;
}

/// Scores of a variable without variation would be 0/0.
void RequireVariation(const DelimitedTable& table, const Numbers& columns) {
    for (std::size_t k = 0; k < columns.size(); k++)
        if (std::all_of(columns[k].begin(), columns[k].end(),
                        [&](double number) { return number == columns[k][0]; }))
            FailRun(table.file + ": the column " + Quoted(table.columnNames[k]) +
                    " has one value only: leave it out");
}

/// Whether the factor that the simulation takes of the correlations, in its precision, is there.
template <class T>
bool HasFactor(const Numbers& correlations) {
    const int n = static_cast<int>(correlations.size());
    const ScopedMatrix<T> a(n, n);
    const ScopedVector<T> diagonal(n);
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) a[i][j] = static_cast<T>(correlations[i][j]);
    bool found = false;
    RunEngine([&] { found = choldc(a.get(), n, diagonal) != 0; });
    return found;
}

void RequireCorrelations(const std::string& file, const Names& names, const Numbers& r) {
    const auto fail = [&](std::size_t i, std::size_t j, const char* what) {
        FailRun(file + ", row " + Quoted(names[i]) + ", column " + Quoted(names[j]) + ": " + what);
    };
    for (std::size_t i = 0; i < names.size(); i++)
        for (std::size_t j = 0; j < names.size(); j++) {
            if (i == j && r[i][j] != 1) fail(i, j, "the correlation with itself is 1");
            if (std::abs(r[i][j]) > 1) fail(i, j, "a correlation lies from -1 to 1");
            if (r[i][j] != r[j][i])
                fail(i, j, "the correlation differs from that of the pair turned");
        }
}

/// Settles a size that comes from a table and may have been given too.
void SettleSize(const char* option, int given, const std::string& file, std::size_t size, int* n) {
    *n = static_cast<int>(size);
    if (given != 0 && given != *n)
        FailUsage(std::string(option) + " " + std::to_string(given) + ": " + file + " has " +
                  std::to_string(*n));
}

void RequireOneSource(const char* values, const std::string& valuesFile, const char* correlations,
                      const std::string& correlationsFile) {
    if (IsGiven(valuesFile) == IsGiven(correlationsFile))
        FailUsage(std::string("give either ") + values + " or " + correlations +
                  ": the values, or the correlations to draw them from");
}

/// What both sources of a table have in common: its correlations, read and told about.
template <class T>
Names TakeCorrelations(const std::string& file, const std::string& distribution,
                       const std::string& what, TableSource* source) {
    const DelimitedTable table = ReadNamedTable(file);
    const NameList columns = {file + " (columns)", &table.columnNames};
    RequireSameNames({file + " (rows)", &table.rowNames}, columns, what);
    const Numbers r = NumbersAt(table, PlacesAmong(table.columnNames, table.rowNames),
                                AllPlaces(table.columnNames.size()));
    RequireCorrelations(file, table.columnNames, r);
    if (!HasFactor<T>(r))
        FailRun(file + ": no data have such correlations: the matrix is not positive definite");
    source->fromCorrelations = true;
    source->distribution = static_cast<unsigned char>(distribution[0]);
    if (distribution != "normal")
        Warn("the " + what + " are drawn with normal deviates all the same; only the report says " +
             distribution);
    PutInto(source->file, file, r);
    return table.columnNames;
}

void RequireSizeOf(const char* option, int given) {
    if (given == 0) FailUsage(std::string(option) + ": give their number, which no table tells");
}

void TakeTraits(const WorldTables& t, SimulationAnswers* a, WorldNames* names) {
    RequireOneSource("--traits", t.traits, "--trait-correlations", t.traitCorrelations);
    if (IsGiven(t.traits)) {
        const DelimitedTable table = ReadNamedTable(t.traits);
        const Numbers B =
            NumbersAt(table, AllPlaces(table.rowNames.size()), AllPlaces(table.columnNames.size()));
        RequireVariation(table, Turned(B));
        SettleSize("--otus", t.otus, t.traits, table.rowNames.size(), &a->nOTUs);
        PutInto(a->traits.file, t.traits, B);
        names->otus = table.rowNames;
        names->traits = table.columnNames;
    } else {
        names->traits =
            TakeCorrelations<float>(t.traitCorrelations, t.traitDistribution, "traits", &a->traits);
        RequireSizeOf("--otus", t.otus);
        constexpr int kBytesOfName = 64;
        RequireRoomForTable(t.otus, kBytesOfName, 1);
        a->nOTUs = t.otus;
        for (int i = 1; i <= a->nOTUs; i++) names->otus.push_back("OTU" + std::to_string(i));
    }
    a->nTraits = static_cast<int>(names->traits.size());
}

/// The simulation has the sites in columns.
void TakeEnvironment(const WorldTables& t, SimulationAnswers* a, WorldNames* names) {
    RequireOneSource("--environment", t.environment, "--environment-correlations",
                     t.environmentCorrelations);
    if (IsGiven(t.environment)) {
        const DelimitedTable table = ReadNamedTable(t.environment);
        const Numbers E = Turned(NumbersAt(table, AllPlaces(table.rowNames.size()),
                                           AllPlaces(table.columnNames.size())));
        RequireVariation(table, E);
        SettleSize("--sites", t.sites, t.environment, table.rowNames.size(), &a->nSites);
        PutInto(a->environment.file, t.environment, E);
        names->factors = table.columnNames;
    } else {
        names->factors = TakeCorrelations<double>(
            t.environmentCorrelations, t.environmentDistribution, "factors", &a->environment);
        RequireSizeOf("--sites", t.sites);
        a->nSites = t.sites;
    }
    const std::string& file = IsGiven(t.environment) ? t.environment : t.environmentCorrelations;
    SettleSize("--factors", t.factors, file, names->factors.size(), &a->nFactors);
}

/// The interactions that the simulation computes are those with the last factor.
void NamePredictors(const SimulationAnswers& a, WorldNames* names) {
    names->predictors = names->factors;
    if (!HasInteractionRows(a)) return;
    for (int f = 0; f < a.nFactors - 1; f++)
        names->predictors.push_back(names->factors[f] + ":" + names->factors.back());
}

/// The predictors that the simulation counts beyond those have no values: they are not in use
/// unless all are.
void TakePredictorsInUse(const Names& wanted, const Names& predictors, SimulationAnswers* a) {
    a->predictorsInUse.assign(a->nPredictors, wanted.empty() ? 1 : 0);
    for (const int place :
         PlacesOfOption("--predictors-in-use", "predictor", wanted, predictors, nullptr))
        a->predictorsInUse[place] = 1;
}

void TakeResponses(const WorldTables& t, const NameList& traits, const NameList& predictors,
                   SimulationAnswers* a) {
    if (!IsGiven(t.responses)) FailUsage("--responses: give the table of traits by predictors");
    Numbers responses = ReadMatched(t.responses, traits, "traits", predictors, "predictors");
    for (std::vector<double>& row : responses) row.resize(a->nPredictors);
    PutInto(a->responses, t.responses, responses);
}

void TakeEffects(const WorldTables& t, const NameList& factors, const NameList& traits,
                 SimulationAnswers* a) {
    Numbers effects(a->nFactors, std::vector<double>(a->nTraits));
    if (IsGiven(t.effects)) effects = ReadMatched(t.effects, factors, "factors", traits, "traits");
    PutInto(a->effects, t.effects, effects);
}

}  // namespace

WorldNames TakeWorldTables(const WorldTables& t, SimulationAnswers* answers) {
    WorldNames names;
    TakeTraits(t, answers, &names);
    TakeEnvironment(t, answers, &names);
    answers->interactions = t.interactions;
    answers->nPredictors = CountPredictors(*answers);
    NamePredictors(*answers, &names);
    const NameList traits = {IsGiven(t.traits) ? t.traits : t.traitCorrelations, &names.traits};
    const std::string& environment =
        IsGiven(t.environment) ? t.environment : t.environmentCorrelations;
    const NameList factors = {environment, &names.factors};
    const NameList predictors = {environment + (t.interactions ? " (with its interactions)" : ""),
                                 &names.predictors};
    TakeResponses(t, traits, predictors, answers);
    TakeEffects(t, factors, traits, answers);
    TakePredictorsInUse(t.predictorsInUse, names.predictors, answers);
    return names;
}
