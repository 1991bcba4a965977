// Simulated data sets per second, with the dynamics written out plainly and as the program has
// them, in one run: 30 sites, 60 OTUs, 3 traits, 2 factors, 500 iterations; alone, and with the
// permutation test (100 permutations) on each data set.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <ctime>
#include <memory>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/simulation/dynamics.h"
#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/preparation.h"
#include "mxlib/random_lists.h"
#include "reference/plain_simulation.h"
#include "silence.h"

namespace {

using Assemble = void (*)(World& world);

void Plain(World& world) {
    PlainAssembleCommunities(world, [](StepPoint, auto, auto) {});
}

void Cheap(World& world) {
    AssembleCommunities(world, nullptr);
}

/// Traits filtered by both factors, with feedback, drawn from correlations.
std::unique_ptr<World> MakeWorld(SimulationAnswers* a) {
    a->nSites = 30;
    a->nOTUs = 60;
    a->nTraits = 3;
    a->nFactors = a->nPredictors = 2;
    a->maxIndividuals = 20;
    a->threshold = a->dispersalWeight = a->densityWeight = 0.5;
    a->maxIterations = 500;
    a->traits.fromCorrelations = a->environment.fromCorrelations = true;
    a->predictorsInUse = {1, 1};
    a->alpha = 0.05;
    auto world = std::make_unique<World>(a);
    for (int i = 0; i < 3; i++) world->traitCorrelations[i][i] = 1;
    for (int i = 0; i < 2; i++) world->factorCorrelations[i][i] = 1;
    const double responses[3][2] = {{0.8, 0}, {0, 0.5}, {0.3, 0}};
    for (int t = 0; t < 3; t++) std::copy(responses[t], responses[t] + 2, world->responses[t]);
    world->effects[0][0] = 0.2;
    world->effects[1][1] = 0.1;
    std::fill(world->traitFlags.get(), world->traitFlags + 3, 1);
    world->nTraitsFlagged = 3;
    return world;
}

/// Settings of the functional analysis, and what it reads of a data set.
void SetAnalysis() {
    opt_ro = kMantel;
    rese_opt = 6;
    niter = 101;
    fuzzy = kFuzzyTypes;
    optRestrictPermutNullModel = 0;
    static float weights[] = {1, 1, 1};
    static int types[3] = {};
    weight = weights;
    chtype = types;
}

void DataSets(benchmark::State& state, Assemble assemble, bool evaluates) {
    const Silence silence;
    SetAnalysis();
    SimulationAnswers answers;
    const std::unique_ptr<World> world = MakeWorld(&answers);
    Evaluation evaluation(answers);
    InitRndNumberGenerator(1);
    for (auto _ : state) {
        const std::clock_t start = std::clock();
        RenewTraits(*world);
        RenewSites(*world);
        assemble(*world);
        if (evaluates) {
            TakeDataSet(*world, &evaluation);
            EvaluateDataSet(&evaluation);
        }
        state.SetIterationTime(static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    weight = nullptr;
    chtype = nullptr;
    state.SetItemsProcessed(state.iterations());
}

BENCHMARK_CAPTURE(DataSets, alone_plain, Plain, false)->UseManualTime()->Iterations(20);
BENCHMARK_CAPTURE(DataSets, alone_cheap, Cheap, false)->UseManualTime()->Iterations(200);
BENCHMARK_CAPTURE(DataSets, tested_plain, Plain, true)->UseManualTime()->Iterations(20);
BENCHMARK_CAPTURE(DataSets, tested_cheap, Cheap, true)->UseManualTime()->Iterations(100);

}  // namespace
