#include "mxlib/perm_test.h"

#include <memory>

#include "iflibG/iflibG.h"
#include "mxlib/perm_test/composition.h"
#include "mxlib/perm_test/entropy.h"
#include "mxlib/perm_test/intermediate_results.h"
#include "mxlib/perm_test/mantel.h"
#include "mxlib/perm_test/residuals.h"
#include "mxlib/perm_test/signal.h"
#include "mxlib/perm_test/statistics.h"
#include "mxlib/random_lists.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/totals.h"

namespace {

enum class Order { kObserved, kPermuted };

/// Everything that the test holds from its start to its end.
struct Test {
    TestRecord* in;
    ScopedVector<int> list;
    NestedGroups nesting;  ///< under the null model within groups
    Arrangement now;
    Composition composition;
    Entropies entropies;
    std::unique_ptr<MantelPairs> mantel;    ///< under the matrix correlation
    std::unique_ptr<MatrixPairs> matrices;  ///< under Procrustes and RV
    std::unique_ptr<PhylogeneticSignal> signal;
    Statistics observed;
    Statistics random;
    std::array<double, kReported> frequency;
};

bool WithinGroups(const TestRecord& in) {
    return in.optRestrictPermutNullModel == 1;
}

Test MakeTest(TestRecord* in) {
    Test test{in,
              ScopedVector<int>(in->nOTUs),
              MakeNestedGroups(WithinGroups(*in) ? in->nOTUs : 0, in->nestingMembershipOTUs),
              MakeArrangement(*in),
              MakeComposition(*in),
              MakeEntropies(*in),
              nullptr,
              nullptr,
              nullptr,
              {},
              {},
              {}};
    for (int k = 0; k < in->nOTUs; k++) test.list[k] = k + 1;
    if (in->opt_ro == kMantel)
        test.mantel.reset(new MantelPairs(MakeMantelPairs(*in)));
    else
        test.matrices.reset(new MatrixPairs(MakeMatrixPairs(*in, in->saveRndData)));
    if (in->includePhylogeny)
        test.signal.reset(new PhylogeneticSignal(MakePhylogeneticSignal(*in)));
    test.frequency.fill(1.0);
    return test;
}

bool Runs(const TestRecord& in, Block block) {
    return in.includePhylogeny || (block != kBlockP && block != kBlockF);
}

/// The matrix of the block in the present order: products all with T, entropies both with R.
void MakeMatrices(Order order, Block block, Test* test) {
    const TestRecord& in = *test->in;
    if (block == kBlockT) ScaleUp(in, test->list, &test->composition, &test->now);
    if (block != kBlockR) return;
    if (order == Order::kObserved)
        ObservedEntropies(in, &test->entropies, &test->now);
    else
        PermutedEntropies(in, test->list, &test->entropies, &test->now);
}

void ComputeBlock(Order order, Block block, Test* test, Statistics* s) {
    MakeMatrices(order, block, test);
    if (test->mantel)
        MantelBlock(*test->in, test->now, block, test->mantel.get(), s);
    else
        MatrixBlock(*test->in, test->now, block, test->matrices.get(), s);
}

Stage StageOf(const Test& test, int iteration) {
    return {test.in,  &test.now, test.list, &test.observed, &test.random, test.frequency.data(),
            iteration};
}

void HandBack(const Test& test) {
    const TestRecord& in = *test.in;
    CopyMatrix(in.nCommunities, in.nTraits, test.now.T, in.outT);
    if (in.returnMatrices) CopyMatrix(in.nCommunities, in.nTypes, test.now.X, in.outX);
    if (in.includePhylogeny) CopyMatrix(in.nCommunities, in.nTaxa, test.now.P, in.outP);
}

/// Under Procrustes and RV the observed r(XZ.T) is that of Y; the permuted ones are their own.
void ObservedStage(Test* test) {
    Statistics* observed = &test->observed;
    if (test->signal) (*observed)[kBF] = test->signal->observed;
    if (test->matrices) StartArrangement(test->matrices.get());
    for (const Block block : {kBlockT, kBlockX, kBlockP, kBlockR, kBlockF})
        if (Runs(*test->in, block)) ComputeBlock(Order::kObserved, block, test, observed);
    if (test->matrices) (*observed)[kXZ_T] = (*observed)[kXY_T];
    HandBack(*test);
    if (test->in->saveRndData)
        for (const Block block : {kBlockT, kBlockX, kBlockR})
            PrintObservedBlock(StageOf(*test, 0), block);
}

void HandStatistics(const Statistics& s, TestRecord* in) {
    for (int k = 0; k < kReported; k++) in->*kReportedStatistics[k].observed = s[k];
}

/// The sign of a permuted signal is turned here like that of the observed one, not for its
/// comparison with it.
void ShowArrangement(Order order, const Statistics& s, TestRecord* in) {
    HandStatistics(s, in);
    if (order == Order::kPermuted && SignalIsTurned(*in)) in->roBF = -in->roBF;
    in->eachArrangement(*in);
}

void NextOrder(Test* test) {
    const TestRecord& in = *test->in;
    if (WithinGroups(in))
        RndListNested(test->nesting, test->list);
    else if (in.optRestrictPermutNullModel == 0)
        RndListSpecified(in.nOTUs, test->list);
}

void CompareBlock(Block block, Test* test) {
    for (int k = 0; k < kReported; k++) {
        const ReportedStatistic& statistic = kReportedStatistics[k];
        if (statistic.block != block) continue;
        if (IsLargerThanOrEqual(test->random[k], test->observed[k], 1,
                                statistic.alwaysTwoTailed || test->in->twoTailedTestMantel))
            test->frequency[k] += 1.0;
    }
}

void Permutation(int iteration, Test* test) {
    const TestRecord& in = *test->in;
    NextOrder(test);
    if (test->matrices) StartArrangement(test->matrices.get());
    for (const Block block : {kBlockT, kBlockX, kBlockP, kBlockR, kBlockF}) {
        if (!Runs(in, block)) continue;
        ComputeBlock(Order::kPermuted, block, test, &test->random);
        if (block == kBlockF)
            test->random[kBF] = PermutedSignal(in, test->list, test->signal.get());
        CompareBlock(block, test);
        if (in.saveRndData) PrintPermutedBlock(StageOf(*test, iteration), block);
    }
}

void PreparePermutations(Test* test) {
    const LongStep step("Preparing the permutations");
    FillDifferences(*test->in, &test->entropies);
    if (test->signal) PreparePermutedSignal(*test->in, test->signal.get());
}

void PermutedStage(Test* test) {
    const TestRecord& in = *test->in;
    if (in.nIterations < 2) return;
    PreparePermutations(test);
    ProgressPace pace;
    for (int i = 1; i < in.nIterations; i++) {
        if (pace.IsDue()) {
            char text[64];
            snprintf(text, sizeof(text), "Permutation test: %d of %d", i, in.nIterations);
            HandleEventInfoWhere2(text);
        }
        Permutation(i, test);
        if (in.eachArrangement) ShowArrangement(Order::kPermuted, test->random, test->in);
    }
}

}  // namespace

bool PermTest_FunctionalPhyl_Correl(PermTest_FunctionalPhyl_Correl_Input* input) {
    const LongStep step("Observed statistics");
    Test test = MakeTest(input);
    ObservedStage(&test);
    if (input->eachArrangement) ShowArrangement(Order::kObserved, test.observed, input);
    PermutedStage(&test);
    HandStatistics(test.observed, input);
    for (int k = 0; k < kReported; k++)
        input->*kReportedStatistics[k].probability = test.frequency[k] / input->nIterations;
    return true;
}
