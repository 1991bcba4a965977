#include "TSLIF/simulation.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <string>
#include <utility>

#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/simulation/data_set_scratch.h"
#include "TSLIF/simulation/dynamics.h"
#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/preparation.h"
#include "TSLIF/simulation/report.h"
#include "iflibG/iflibG.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/platform.h"
#include "mxlibPar/ranks.h"
#include "mxlibPar/side_by_side.h"

namespace {

double ProcessorSeconds() {
    return difftime_Clock(static_cast<double>(std::clock() - time0) / CLOCKS_PER_SEC);
}

/// The files that are open for longer than a block. Those of the steps belong to a run of a single
/// data set.
struct RunFiles {
    std::optional<ResultsFile> traits;
    std::optional<StepFiles> steps;
    std::optional<ResultsFile> report;
};

/// Standardises what came from files and writes the heads of all files.
void StartFiles(World& world, RunFiles& files) {
    const SimulationAnswers& a = world.answers;
    if (a.savesSteps) PrintTraitsAsRead(files.traits.emplace(kTraitDataFile), world);
    PrepareTraits(world);
    if (a.savesSteps) {
        if (!a.traits.fromCorrelations) FinishTraitData(*files.traits, world);
        PrintStepHeadings(files.steps.emplace(), world);
    }
    PrintSpecification(files.report.emplace(kReportFile), world);
    PrepareEnvironment(world);
}

/// The communities of data set k of the run, and their files.
void AssembleDataSet(int k, World& world, RunFiles& files, FILE* report) {
    const SimulationAnswers& a = world.answers;
    world.dataSet = DataSetOfRun(a, k);
    if (a.streams) StartStream(world);
    RenewTraits(world);
    if (files.traits && a.traits.fromCorrelations) FinishTraitData(*files.traits, world);
    RenewSites(world);
    AssembleCommunities(world, files.steps ? &*files.steps : nullptr);
    if (files.steps) FinishStepFiles(*files.steps);
    if (report != nullptr) PrintDataSet(report, world);
    if (LeavesRawFiles(a)) WriteRawFiles(world);
    if (world.dataSet == a.part) WriteOTUNumbers(world);  // the same for all
}

/// One data set: communities, files, test. Its lines of the report go to `report`, null where none
/// are wanted.
void SimulateDataSet(int k, World& world, RunFiles& files, Evaluation* evaluation, FILE* report) {
    AssembleDataSet(k, world, files, report);
    if (evaluation == nullptr) return;
    TakeDataSet(world, evaluation);
    EvaluateDataSet(evaluation);
    if (report != nullptr) PrintTest(report, world, *evaluation);
}

/// Where the run stands once `dataSets` of it are evaluated, but for the rejections.
SimulationPlace PlaceBehind(int dataSets, long long chiSquareCalls) {
    return {dataSets, chiSquareCalls, {}, GeneratorState()};
}

/// Counts the rejections of a data set, and tells its values and the place behind it.
void TakeEvaluated(const SimulationRun& run, int dataSet, SimulationPlace place,
                   Evaluation* evaluation) {
    CountRejections(evaluation);
    if (run.evaluated) run.evaluated(dataSet, *evaluation);
    place.rejections.assign(evaluation->rejections.begin(), evaluation->rejections.end());
    if (run.between) run.between(place);
}

void TakePlace(const SimulationPlace& place, World* world, Evaluation* evaluation) {
    world->chiSquareCalls = place.chiSquareCalls;
    std::copy(place.rejections.begin(), place.rejections.end(), evaluation->rejections.begin());
    SetGeneratorState(place.generator);
    WriteOTUNumbers(*world);
}

/// The data sets of the run from number `done` on, one after the other.
void SimulateInTurn(World& world, RunFiles& files, Evaluation* evaluation, bool reports, int done,
                    const SimulationRun& run) {
    const SimulationAnswers& a = world.answers;
    FILE* const report = reports ? static_cast<FILE*>(*files.report) : nullptr;
    for (const int all = DataSetsOfRun(a); done < all; done++) {
        SimulateDataSet(done, world, files, evaluation, report);
        files.report->Flush();
        if (evaluation != nullptr)
            TakeEvaluated(run, world.dataSet, PlaceBehind(done + 1, world.chiSquareCalls),
                          evaluation);
    }
}

/// Draws the orders of the test ahead: what is drawn for the next data set comes behind them.
ScopedMatrix<int> DrawnOrders(Evaluation* evaluation) {
    PermTest_FunctionalPhyl_Correl_Input& test = evaluation->test;
    ScopedMatrix<int> orders(std::max(test.nIterations - 1, 0), test.nOTUs);
    DrawPermutations(test, orders);
    test.orders = orders;
    return orders;
}

bool HasRoomForOrders(const SimulationAnswers& a) {
    constexpr double kMostNumbers = 1 << 24;
    return static_cast<double>(niter) * a.nOTUs <= kMostNumbers;
}

/// The data sets from number `done` on, without lines of the report: each is tested, on one thread,
/// while the next one assembles. Returns the number where it leaves them: behind the first one
/// where tests take so long that they had better have all threads.
int SimulateBeside(World& world, RunFiles& files, Evaluation* evaluation, int done,
                   const SimulationRun& run) {
    using Clock = std::chrono::steady_clock;
    std::chrono::duration<double> ofAssembly{};
    std::chrono::duration<double> ofTest{};
    const auto assemble = [&](int k) {
        const auto start = Clock::now();
        AssembleDataSet(k, world, files, nullptr);
        ofAssembly = Clock::now() - start;
    };
    const auto test = [&] {
        const auto start = Clock::now();
        EvaluateDataSet(evaluation);
        ofTest = Clock::now() - start;
    };
    const int all = DataSetsOfRun(world.answers);
    const int first = done;
    for (assemble(done); done < all;) {
        TakeDataSet(world, evaluation);
        const ScopedMatrix<int> orders = DrawnOrders(evaluation);
        const int dataSet = world.dataSet;
        SimulationPlace place = PlaceBehind(done + 1, world.chiSquareCalls);
        const bool hasNext = done > first && done + 1 < all;
        RunSideBySide(hasNext ? 2 : 1, 2, [&](int k, int) {
            if (k == 0)
                test();
            else
                assemble(done + 1);
        });
        TakeEvaluated(run, dataSet, std::move(place), evaluation);
        if (++done == all || hasNext) continue;
        if (ofTest * (1.0 - 1.0 / Threads()) > ofAssembly) break;
        assemble(done);
    }
    return done;
}

/// What a data set comes to, as ranks send it: its values, the calls of the chi-square distribution
/// and its lines of the report.
std::string BytesOfDataSet(int k, World& world, RunFiles& files, Evaluation* evaluation,
                           bool reports) {
    KeptOutput report;
    world.chiSquareCalls = 0;
    SimulateDataSet(k, world, files, evaluation, reports ? static_cast<FILE*>(report) : nullptr);
    const std::string text = report.Take();
    const std::size_t size = text.size();
    std::string bytes;
    const auto put = [&](const void* from, std::size_t n) {
        bytes.append(static_cast<const char*>(from), n);
    };
    put(EvaluatedValues(*evaluation).data(), kRatedValues * sizeof(double));
    put(&world.chiSquareCalls, sizeof world.chiSquareCalls);
    put(&size, sizeof size);
    return bytes + text;
}

/// The same of a run with streams, handed out to the ranks.
void HandOutDataSets(World& world, RunFiles& files, Evaluation* evaluation, bool reports, int done,
                     const SimulationRun& run) {
    const SimulationAnswers& a = world.answers;
    SettleDensityWeight(&world.answers);
    WriteOTUNumbers(world);
    long long chiSquareCalls = world.chiSquareCalls;
    const int before = done;
    const auto work = [&](const WorkStretch& stretch) {
        std::string bytes;
        for (std::int64_t k = 0; k < stretch.count; k++)
            bytes += BytesOfDataSet(before + static_cast<int>(stretch.first + k), world, files,
                                    evaluation, reports);
        return bytes;
    };
    const auto take = [&](const WorkStretch& stretch, const std::string& bytes) {
        const char* next = bytes.data();
        const auto get = [&](void* to, std::size_t n) {
            std::memcpy(to, next, n);
            next += n;
        };
        for (std::int64_t k = 0; k < stretch.count; k++) {
            double values[kRatedValues];
            long long calls = 0;
            std::size_t size = 0;
            get(values, sizeof values);
            get(&calls, sizeof calls);
            get(&size, sizeof size);
            std::fwrite(next, 1, size, *files.report);
            next += size;
            chiSquareCalls += calls;
            TakeValues(values, evaluation);
            TakeEvaluated(run, DataSetOfRun(a, done), PlaceBehind(done + 1, chiSquareCalls),
                          evaluation);
            done++;
        }
        files.report->Flush();
    };
    HandOut(DataSetsOfRun(a) - before, work, take);
    world.chiSquareCalls = chiSquareCalls;
}

}  // namespace

bool RunSimulation(SimulationAnswers* answers, const SimulationRun& run) {
    InitRndNumberGenerator(rseed);
    World world(answers);
    if (!ReadWorld(world)) return false;
    if (world.nTraitsFlagged == 0) {
        std::fprintf(out, "\nNo trait responds to the ecosystem: all response parameters are 0.\n");
        return false;
    }
    RunFiles files;
    StartFiles(world, files);
    std::optional<Evaluation> evaluation;
    if (answers->evaluates) evaluation.emplace(*answers);
    const bool reports = !answers->evaluates || printDetail;
    if (run.from != nullptr) TakePlace(*run.from, &world, &*evaluation);
    time0 = std::clock();
    // The files that a run of few data sets leaves are written as they come.
    const bool isHandedOut =
        Ranks() > 1 && answers->streams && evaluation && !LeavesRawFiles(*answers);
    int done = run.from != nullptr ? run.from->dataSets : 0;
    if (evaluation && !reports && !LeavesRawFiles(*answers) && HasRoomForOrders(*answers) &&
        Ranks() == 1 && WorkersFor(2) == 2 && done < DataSetsOfRun(*answers))
        done = SimulateBeside(world, files, &*evaluation, done, run);
    const auto simulate = isHandedOut ? HandOutDataSets : SimulateInTurn;
    simulate(world, files, evaluation ? &*evaluation : nullptr, reports, done, run);
    if (evaluation) {
        const double seconds = ProcessorSeconds();
        ToRates(&*evaluation);
        PrintFinalRates(*files.report, world, *evaluation, seconds, reports);
    }
    files.report->Finish();
    return true;
}

void IFAssemblyRulesSimulation_EnvFeedback_TypeI_II_Error() {
    SimulationAnswers answers;
    AskWorld(&answers);
    const DataSetScratch scratch(answers.nTraits, answers.nOTUs);
    AskRun(&answers);
    RunSimulation(&answers);
}
