#include "mxlib/perm_test.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <numeric>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "iflibG/iflibG.h"
#include "mxlib/perm_test/composition.h"
#include "mxlib/perm_test/entropy.h"
#include "mxlib/perm_test/intermediate_results.h"
#include "mxlib/perm_test/mantel.h"
#include "mxlib/perm_test/residuals.h"
#include "mxlib/perm_test/signal.h"
#include "mxlib/perm_test/statistics.h"
#include "mxlib/random_lists.h"
#include "mxlibPar/ranks.h"
#include "mxlibPar/side_by_side.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/totals.h"

namespace {

enum class Order { kObserved, kPermuted };

bool WithinGroups(const TestRecord& in) {
    return in.optRestrictPermutNullModel == 1;
}

/// What evaluates one order of the OTUs at a time. What is the same in every order is shared by all
/// workers.
struct Worker {
    Arrangement now;
    Composition composition;
    Entropies entropies;
    std::unique_ptr<MantelPairs> mantel;    ///< under the matrix correlation
    std::unique_ptr<MatrixPairs> matrices;  ///< under Procrustes and RV
    std::unique_ptr<PhylogeneticSignal> signal;
    Orders orders;  ///< at hand
};

/// The orders as they are drawn: each goes on from the one before.
struct Draws {
    NestedGroups nesting;    ///< under the null model within groups
    ScopedVector<int> list;  ///< the last order, at first that of the data
};

/// Everything that the test holds from its start to its end.
struct Test {
    TestRecord* in;
    std::vector<Worker> workers;  ///< the first one makes the observed arrangement
    Draws draws;
    Statistics observed;
    std::array<double, kReported> frequency;
};

/// One more worker, with what the first one has made for all; null: the first one.
Worker MakeWorker(const TestRecord& in, const Worker* first) {
    Worker worker{MakeArrangement(in),
                  MakeComposition(in, first != nullptr ? &first->composition : nullptr),
                  MakeEntropies(in, first != nullptr ? &first->entropies : nullptr),
                  nullptr,
                  nullptr,
                  nullptr,
                  MakeOrders(in.nOTUs)};
    if (in.opt_ro == kMantel)
        worker.mantel.reset(
            new MantelPairs(MakeMantelPairs(in, first != nullptr ? first->mantel.get() : nullptr)));
    else
        worker.matrices.reset(new MatrixPairs(MakeMatrixPairs(
            in, in.saveRndData, first != nullptr ? first->matrices.get() : nullptr)));
    if (in.includePhylogeny)
        worker.signal.reset(new PhylogeneticSignal(
            first != nullptr ? ShareSignal(in, *first->signal) : MakePhylogeneticSignal(in)));
    return worker;
}

Draws MakeDraws(const TestRecord& in) {
    Draws draws{MakeNestedGroups(WithinGroups(in) ? in.nOTUs : 0, in.nestingMembershipOTUs),
                ScopedVector<int>(in.nOTUs)};
    std::iota(draws.list.get(), draws.list + in.nOTUs, 1);
    return draws;
}

Test MakeTest(TestRecord* in) {
    Test test{in, {}, MakeDraws(*in), {}, {}};
    test.workers.push_back(MakeWorker(*in, nullptr));
    test.frequency.fill(1.0);
    return test;
}

bool Runs(const TestRecord& in, Block block) {
    return in.includePhylogeny || (block != kBlockP && block != kBlockF);
}

/// The products in the order of `list`, all with T.
void ScaleUpWithT(const TestRecord& in, Block block, const int* list, Worker* worker) {
    if (block == kBlockT) ScaleUp(in, list, &worker->composition, &worker->now);
}

void CompareMatrices(const TestRecord& in, Block block, Worker* worker, Statistics* s) {
    if (worker->mantel)
        MantelBlock(in, worker->now, block, worker->mantel.get(), s);
    else
        MatrixBlock(in, worker->now, block, worker->matrices.get(), s);
}

void HandBack(const Test& test) {
    const TestRecord& in = *test.in;
    const Arrangement& now = test.workers[0].now;
    CopyMatrix(in.nCommunities, in.nTraits, now.T, in.outT);
    if (in.returnMatrices) CopyMatrix(in.nCommunities, in.nTypes, now.X, in.outX);
    if (in.includePhylogeny) CopyMatrix(in.nCommunities, in.nTaxa, now.P, in.outP);
}

/// Under Procrustes and RV the observed r(XZ.T) is that of Y; the permuted ones are their own.
void ObservedStage(Test* test) {
    const TestRecord& in = *test->in;
    Worker* worker = test->workers.data();
    Statistics* observed = &test->observed;
    if (worker->signal) (*observed)[kBF] = worker->signal->observed;
    if (worker->matrices) StartArrangement(worker->matrices.get());
    for (const Block block : {kBlockT, kBlockX, kBlockP, kBlockR, kBlockF}) {
        if (!Runs(in, block)) continue;
        ScaleUpWithT(in, block, test->draws.list, worker);
        if (block == kBlockR) ObservedEntropies(in, &worker->entropies, &worker->now);
        CompareMatrices(in, block, worker, observed);
    }
    if (worker->matrices) (*observed)[kXZ_T] = (*observed)[kXY_T];
    HandBack(*test);
    if (in.saveRndData)
        for (const Block block : {kBlockT, kBlockX, kBlockR})
            PrintObservedBlock({&in, &worker->now, test->draws.list, observed, nullptr, nullptr, 0},
                               block);
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

void CompareBlock(Block block, const Statistics& random, Test* test) {
    for (int k = 0; k < kReported; k++) {
        const ReportedStatistic& statistic = kReportedStatistics[k];
        if (statistic.block != block) continue;
        if (IsLargerThanOrEqual(random[k], test->observed[k], 1,
                                statistic.alwaysTwoTailed || test->in->twoTailedTestMantel))
            test->frequency[k] += 1.0;
    }
}

/// Permutations that are drawn one after the other, evaluated side by side and then counted in the
/// order of their draws.
struct Permutations {
    int together;                    ///< orders that a worker takes at a time
    int most;                        ///< orders that are drawn at a time
    int first;                       ///< number of the first one drawn
    int count;                       ///< drawn
    ScopedMatrix<int> lists;         ///< by order
    std::vector<Statistics> random;  ///< by order
    std::atomic<int> evaluated;      ///< of the whole test
    int told;
    ProgressPace pace;
};

void DrawOrder(const TestRecord& in, Draws* draws) {
    if (WithinGroups(in))
        RndListNested(draws->nesting, draws->list);
    else if (in.optRestrictPermutNullModel == 0)
        RndListSpecified(in.nOTUs, draws->list);
}

/// Draws the next orders, at most up to number `end`.
void DrawOrders(int end, Test* test, Permutations* p) {
    p->first += p->count;
    p->count = std::min(p->most, end - p->first);
    const TestRecord& in = *test->in;
    for (int k = 0; k < p->count; k++) {
        const int* order = test->draws.list;
        if (in.orders != nullptr)
            order = in.orders[p->first + k - 1];
        else
            DrawOrder(in, &test->draws);
        std::copy_n(order, in.nOTUs, p->lists[k]);
    }
}

/// Draws orders that are not evaluated here, up to number `end`.
void PassOver(int end, Test* test, Permutations* p) {
    for (p->first += std::exchange(p->count, 0); p->first < end; p->first++)
        if (test->in->orders == nullptr) DrawOrder(*test->in, &test->draws);
}

void TellProgress(int permutation, int nIterations, Permutations* p) {
    const int steps = permutation - p->told;
    p->told = permutation;
    if (steps < 1 || !p->pace.IsDue(steps)) return;
    char text[64];
    snprintf(text, sizeof(text), "Permutation test: %d of %d", permutation, nIterations);
    HandleEventInfoWhere2(text, steps);
}

/// Where the intermediate results are printed there is one worker, and each block is counted before
/// it is shown.
void Evaluate(int order, int iteration, Worker* worker, Test* test, Statistics* random) {
    const TestRecord& in = *test->in;
    const Orders& orders = worker->orders;
    const int* list = orders.lists[order];
    if (worker->matrices) StartArrangement(worker->matrices.get());
    for (const Block block : {kBlockT, kBlockX, kBlockP, kBlockR, kBlockF}) {
        if (!Runs(in, block)) continue;
        ScaleUpWithT(in, block, list, worker);
        if (block == kBlockR)
            PermutedEntropies(in, orders, order, &worker->entropies, &worker->now);
        CompareMatrices(in, block, worker, random);
        if (block == kBlockF)
            (*random)[kBF] = PermutedSignal(in, orders, order, worker->signal.get());
        if (!in.saveRndData) continue;
        CompareBlock(block, *random, test);
        PrintPermutedBlock(
            {&in, &worker->now, list, &test->observed, random, test->frequency.data(), iteration},
            block);
    }
}

void EvaluateGroup(int group, Worker* worker, Test* test, Permutations* p) {
    const int before = group * p->together;
    const int count = std::min(p->together, p->count - before);
    if (worker == test->workers.data())
        TellProgress(p->evaluated + count, test->in->nIterations, p);
    TakeOrders(count, p->lists + before, &worker->orders);
    EntropiesAhead(*test->in, worker->orders, &worker->entropies);
    if (worker->signal) SignalsAhead(worker->orders, worker->signal.get());
    for (int k = 0; k < count; k++)
        Evaluate(k, p->first + before + k, worker, test, &p->random[before + k]);
    p->evaluated += count;
}

void TakeResults(std::span<const Statistics> results, Test* test) {
    for (const Statistics& random : results) {
        if (!test->in->saveRndData)
            for (const Block block : {kBlockT, kBlockX, kBlockP, kBlockR, kBlockF})
                if (Runs(*test->in, block)) CompareBlock(block, random, test);
        if (test->in->eachArrangement) ShowArrangement(Order::kPermuted, random, test->in);
    }
}

/// A test of a millisecond or less is not worth waking others for.
bool IsSmallWork(const TestRecord& in) {
    constexpr double kSmall = 1e5;
    const double communities = in.nCommunities;
    return in.nIterations * (communities * communities + in.nOTUs) < kSmall;
}

void MakeWorkers(Test* test) {
    const TestRecord& in = *test->in;
    const int groups = (in.nIterations - 2) / OrdersTogether(in.nOTUs) + 1;
    const int workers = in.saveRndData || IsSmallWork(in) ? 1 : WorkersFor(groups);
    for (int k = 1; k < workers; k++) test->workers.push_back(MakeWorker(in, test->workers.data()));
}

void PreparePermutations(Test* test) {
    const LongStep step("Preparing the permutations");
    Worker* first = test->workers.data();
    FillDifferences(*test->in, &first->entropies);
    if (first->signal) PreparePermutedSignal(*test->in, first->signal.get());
    MakeWorkers(test);
}

/// As many orders are drawn at a time as leave no worker idle for long at their end.
int OrdersDrawn(const TestRecord& in, int together, int workers) {
    constexpr int kMostNumbers = 1 << 20;
    constexpr int kMostOrders = 4096;
    constexpr int kRounds = 32;
    if (workers == 1) return together;
    const int most = std::clamp(kMostNumbers / in.nOTUs, kRounds * together * workers,
                                std::max(kMostOrders, kRounds * together * workers));
    return std::min(most, in.nIterations - 1);
}

/// Draws and evaluates the next orders, at most up to number `end`.
void EvaluateNext(int end, Test* test, Permutations* p) {
    DrawOrders(end, test, p);
    const int groups = (p->count - 1) / p->together + 1;
    RunSideBySide(groups, static_cast<int>(test->workers.size()), [&](int group, int worker) {
        EvaluateGroup(group, &test->workers[worker], test, p);
    });
}

/// Each rank draws all orders, which costs little, and evaluates those of its stretches.
void EvaluateOnRanks(Test* test, Permutations* p) {
    const int end = test->in->nIterations;
    HandOut(
        end - 1,
        [&](const WorkStretch& stretch) {
            const int first = static_cast<int>(stretch.first) + 1;
            const int last = first + static_cast<int>(stretch.count);
            PassOver(first, test, p);
            std::string results;
            while (p->first + p->count < last) {
                EvaluateNext(last, test, p);
                results.append(reinterpret_cast<const char*>(p->random.data()),
                               p->count * sizeof(Statistics));
            }
            return results;
        },
        [&](const WorkStretch& stretch, const std::string& bytes) {
            std::vector<Statistics> results(bytes.size() / sizeof(Statistics));
            std::memcpy(results.data(), bytes.data(), bytes.size());
            TakeResults(results, test);
            TellProgress(static_cast<int>(stretch.first + stretch.count), end, p);
        });
    PassOver(end, test, p);  // what draws next goes on from here on every rank
}

void PermutedStage(Test* test) {
    const TestRecord& in = *test->in;
    if (in.nIterations < 2) return;
    PreparePermutations(test);
    const int workers = static_cast<int>(test->workers.size());
    const int together = OrdersTogether(in.nOTUs);
    const int most = OrdersDrawn(in, together, workers);
    Permutations p{
        together, most, 1, 0, ScopedMatrix<int>(most, in.nOTUs), std::vector<Statistics>(most),
        0,        0,    {}};
    if (Ranks() > 1 && !in.saveRndData && !IsSmallWork(in)) {
        EvaluateOnRanks(test, &p);
        return;
    }
    while (p.first + p.count < in.nIterations) {
        EvaluateNext(in.nIterations, test, &p);
        TellProgress(p.evaluated, in.nIterations, &p);
        TakeResults({p.random.data(), static_cast<size_t>(p.count)}, test);
    }
}

}  // namespace

void DrawPermutations(const PermTest_FunctionalPhyl_Correl_Input& in, int** orders) {
    Draws draws = MakeDraws(in);
    for (int k = 0; k < in.nIterations - 1; k++) {
        DrawOrder(in, &draws);
        std::copy_n(draws.list.get(), in.nOTUs, orders[k]);
    }
}

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
