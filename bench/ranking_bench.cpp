// One subset of a trait ranking, by the plain version and by the search, in one run. The set-up of
// the searches is not counted, nor is that of the plain version.

#include <benchmark/benchmark.h>

#include <ctime>
#include <map>
#include <string>

#include "TSLGLOB/shell.h"
#include "example_data.h"
#include "reference/perm_test_data.h"
#include "reference/ranking_session.h"
#include "silence.h"

namespace {

template <class T>
RankingCase::Rows RowsOf(T** table, int rows, int cols) {
    RankingCase::Rows copy;
    for (int i = 0; i < rows; i++) copy.emplace_back(table[i], table[i] + cols);
    return copy;
}

/// aravo, or 200 communities of 300 OTUs with 12 traits, 5 variables and 8 types.
const RankingCase& TablesOf(const std::string& set) {
    static std::map<std::string, RankingCase> made;
    RankingCase& in = made[set];
    if (!in.B.empty()) return in;
    const auto data = set == "synthetic"
                          ? RandomPermTestData({200, 300, 12, 5, 8, 8, 0.15}, 20111, 1)
                          : ExamplePermTestData(TESSEL_EXAMPLES, set, true, 1);
    const PermTest_FunctionalPhyl_Correl_Input& record = data->record;
    in.B = RowsOf(record.B, record.nOTUs, record.nTraits);
    in.W = RowsOf(record.W, record.nCommunities, record.nOTUs);
    in.E = RowsOf(record.E, record.nCommunities, record.nEnv);
    in.F = RowsOf(record.Sf, record.nOTUs, record.nOTUs);
    in.traitTypes = data->traitTypes;
    in.weights = data->traitWeights;
    in.variableTypes.assign(record.nEnv, 3);
    in.types = data->typeLabels;
    in.taxa = data->taxonLabels;
    in.kindOfE = 1;
    in.unitTotals = true;
    return in;
}

/// Of processor time: other processes do not count.
template <class Body>
double Microseconds(const Body& body) {
    const std::clock_t start = std::clock();
    body();
    return 1e6 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double OfSearch(int smallest) {
    nMinTraitsChRank = smallest;
    return Microseconds([] { CriterionOf(opt_struct).search({}); });
}

/// Time of all subsets less that of the one with all traits, over their number.
void Search(benchmark::State& state, const RankingCase& in) {
    const Silence silence;
    out = stdout;
    OpenRanking(in);
    std::snprintf(whichChorder, sizeof whichChorder, "/dev/null");
    const int others = (1 << nch) - 2;
    for (auto _ : state) state.SetIterationTime((OfSearch(1) - OfSearch(nch)) / others * 1e-6);
}

/// Subsets spread evenly over all.
void Plain(benchmark::State& state, const RankingCase& in) {
    const auto rate = PlainRanking(in);
    const int traits = static_cast<int>(in.weights.size());
    const int stride = traits > 8 ? 101 : 1;
    int rated = 0;
    double sum = 0.0;
    double time = 0.0;
    for (auto _ : state) {
        for (int subset = 1; subset < 1 << traits; subset += stride, rated++) {
            std::vector<int> selected(traits);
            for (int k = 0; k < traits; k++) selected[k] = subset >> k & 1;
            time += Microseconds([&] { sum += rate(selected); });
        }
        state.SetIterationTime(time / rated * 1e-6);
    }
    benchmark::DoNotOptimize(sum);
}

void Register(const std::string& set, int criterion, int measure) {
    constexpr const char* kMeasures[] = {"", "Mantel", "Procrustes", "RV"};
    const std::string name =
        "subset/" + set + "/" + std::to_string(criterion) + "/" + kMeasures[measure] + "/";
    const auto run = [=](void (*rating)(benchmark::State&, const RankingCase&)) {
        return [=](benchmark::State& state) {
            RankingCase in = TablesOf(set);
            in.criterion = criterion;
            in.measure = measure;
            rating(state, in);
        };
    };
    const auto add = [&](const char* version, void (*rating)(benchmark::State&, const RankingCase&),
                         int iterations) {
        benchmark::RegisterBenchmark((name + version).c_str(), run(rating))
            ->UseManualTime()
            ->Iterations(iterations)
            ->Unit(benchmark::kMicrosecond);
    };
    add("plain", Plain, 1);
    add("search", Search, set == "synthetic" ? 1 : 5);
}

const bool registered = [] {
    for (const char* set : {"aravo", "synthetic"})
        for (const int criterion : {1, 9, 10, 16, 11})
            for (const int measure : {1, 2, 3}) Register(set, criterion, measure);
    return true;
}();

}  // namespace
