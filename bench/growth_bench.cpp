// How a permutation grows with OTUs and communities, and what more threads bring: seconds of the
// clock, so that other processes count.

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <chrono>
#include <string>
#include <vector>

#include "mxlib/random_lists.h"
#include "mxlibPar/side_by_side.h"
#include "reference/perm_test_data.h"
#include "silence.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Time of a test with permutations less that of one without, over their number.
void OnePermutation(benchmark::State& state, const PermTestSizes& sizes, int opt_ro,
                    int permutations, int threads) {
    const Silence silence;
    const auto data = RandomPermTestData(sizes, 20111, opt_ro);
    InitRndNumberGenerator(1);
    SetThreads(threads);
    for (auto _ : state) {
        double seconds[2];
        for (const int with : {0, 1}) {
            data->record.nIterations = 1 + with * permutations;
            const auto start = Clock::now();
            PermTest_FunctionalPhyl_Correl(&data->record);
            seconds[with] = std::chrono::duration<double>(Clock::now() - start).count();
        }
        state.SetIterationTime((seconds[1] - seconds[0]) / permutations);
    }
    SetThreads(0);
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    state.counters["peak MB so far"] = static_cast<double>(used.ru_maxrss) / 1024.0;
}

void Growth(benchmark::State& state, int opt_ro, bool ofOTUs) {
    const int size = static_cast<int>(state.range(0));
    PermTestSizes sizes = {100, 100, 8, 4, 8, 0, 0.15};
    (ofOTUs ? sizes.OTUs : sizes.communities) = size;
    OnePermutation(state, sizes, opt_ro, 24, 1);
    state.SetComplexityN(size);
}

const bool registered = [] {
    for (const int opt_ro : {1, 2, 3}) {
        const std::string measure = std::vector{"", "Mantel", "Procrustes", "RV"}[opt_ro];
        benchmark::RegisterBenchmark(("growth/OTUs/" + measure).c_str(),
                                     [=](auto& state) { Growth(state, opt_ro, true); })
            ->ArgsProduct({{100, 200, 500, 1000, 2000}})
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMicrosecond)
            ->Complexity();
        benchmark::RegisterBenchmark(("growth/communities/" + measure).c_str(),
                                     [=](auto& state) { Growth(state, opt_ro, false); })
            ->ArgsProduct({{50, 100, 200, 500, 1000}})
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMicrosecond)
            ->Complexity();
        benchmark::RegisterBenchmark(("threads/synthetic/" + measure).c_str(),
                                     [=](auto& state) {
                                         OnePermutation(state, {200, 300, 12, 5, 8, 0, 0.15},
                                                        opt_ro, opt_ro == 1 ? 1000 : 200,
                                                        static_cast<int>(state.range(0)));
                                     })
            ->ArgsProduct({{1, 2}})
            ->UseManualTime()
            ->Iterations(3)
            ->Unit(benchmark::kMicrosecond);
    }
    return true;
}();

}  // namespace
