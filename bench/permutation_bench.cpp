// One permutation of the test, by the plain version and by the library, in one run.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <string>

#include "example_data.h"
#include "mxlib/perm_test.h"
#include "mxlib/random_lists.h"
#include "reference/perm_test_data.h"
#include "reference/plain_perm_test.h"
#include "silence.h"

namespace {

using Record = PermTest_FunctionalPhyl_Correl_Input;
using Test = bool (*)(Record*);

/// Of processor time: other processes do not count.
double Seconds(Test test, Record* record, int permutations) {
    record->nIterations = permutations + 1;
    const std::clock_t start = std::clock();
    test(record);
    return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

/// Time of a test with permutations less that of one without, over their number.
void OnePermutation(benchmark::State& state, Test test, std::unique_ptr<PermTestData> data,
                    int permutations) {
    const Silence silence;
    InitRndNumberGenerator(1);
    for (auto _ : state) {
        const double without = Seconds(test, &data->record, 0);
        const double with = Seconds(test, &data->record, permutations);
        state.SetIterationTime((with - without) / permutations);
    }
}

std::unique_ptr<PermTestData> MakeData(const std::string& set, bool phylogeny, int opt_ro) {
    if (set != "synthetic") return ExamplePermTestData(TESSEL_EXAMPLES, set, phylogeny, opt_ro);
    return RandomPermTestData({200, 300, 12, 5, 8, phylogeny ? 8 : 0, 0.15}, 20111, opt_ro);
}

void Register(const std::string& set, int opt_ro, bool phylogeny) {
    constexpr const char* kMeasures[] = {"", "Mantel", "Procrustes", "RV"};
    const std::string name =
        "permutation/" + set + "/" + kMeasures[opt_ro] + (phylogeny ? "/phylogeny/" : "/traits/");
    const bool slow = opt_ro != 1;
    const int permutations = slow ? 200 : 1000;
    const auto run = [=](Test test, int count) {
        return [=](benchmark::State& state) {
            OnePermutation(state, test, MakeData(set, phylogeny, opt_ro), count);
        };
    };
    benchmark::RegisterBenchmark((name + "plain").c_str(), run(PlainPermTest, slow ? 1 : 4))
        ->UseManualTime()
        ->Iterations(set == "synthetic" ? 1 : 3)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark((name + "fast").c_str(),
                                 run(PermTest_FunctionalPhyl_Correl, permutations))
        ->UseManualTime()
        ->Iterations(3)
        ->Unit(benchmark::kMicrosecond);
}

const bool registered = [] {
    for (const char* set : {"aravo", "synthetic"})
        for (const int opt_ro : {1, 2, 3})
            for (const bool phylogeny : {false, true}) Register(set, opt_ro, phylogeny);
    return true;
}();

}  // namespace

BENCHMARK_MAIN();
