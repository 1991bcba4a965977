#include "TSLIF/simulation.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <optional>
#include <string>

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

/// One data set: communities, files, test. Its lines of the report go to `report`, null where none
/// are wanted.
void SimulateDataSet(World& world, RunFiles& files, Evaluation* evaluation, FILE* report) {
    const SimulationAnswers& a = world.answers;
    if (a.streams) StartStream(world);
    RenewTraits(world);
    if (files.traits && a.traits.fromCorrelations) FinishTraitData(*files.traits, world);
    RenewSites(world);
    AssembleCommunities(world, files.steps ? &*files.steps : nullptr);
    if (files.steps) FinishStepFiles(*files.steps);
    if (report != nullptr) PrintDataSet(report, world);
    if (LeavesRawFiles(a)) WriteRawFiles(world);
    if (world.dataSet == a.part) WriteOTUNumbers(world);  // the same for all
    if (evaluation == nullptr) return;
    EvaluateDataSet(world, evaluation);
    if (report != nullptr) PrintTest(report, world, *evaluation);
}

/// Behind `dataSets` of the run, whose numbers of calls and rejections these are.
void TellPlace(const SimulationRun& run, int dataSets, long long chiSquareCalls,
               const Evaluation& evaluation) {
    if (run.between)
        run.between({dataSets,
                     chiSquareCalls,
                     {evaluation.rejections.begin(), evaluation.rejections.end()},
                     GeneratorState()});
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
        world.dataSet = DataSetOfRun(a, done);
        SimulateDataSet(world, files, evaluation, report);
        files.report->Flush();
        if (evaluation == nullptr) continue;
        CountRejections(world, evaluation);
        if (run.evaluated) run.evaluated(world.dataSet, *evaluation);
        TellPlace(run, done + 1, world.chiSquareCalls, *evaluation);
    }
}

/// What a data set comes to, as ranks send it: its values, the calls of the chi-square distribution
/// and its lines of the report.
std::string BytesOfDataSet(World& world, RunFiles& files, Evaluation* evaluation, bool reports) {
    KeptOutput report;
    world.chiSquareCalls = 0;
    SimulateDataSet(world, files, evaluation, reports ? static_cast<FILE*>(report) : nullptr);
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
        for (std::int64_t k = 0; k < stretch.count; k++) {
            world.dataSet = DataSetOfRun(a, before + static_cast<int>(stretch.first + k));
            bytes += BytesOfDataSet(world, files, evaluation, reports);
        }
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
            CountRejections(world, evaluation);
            if (run.evaluated) run.evaluated(DataSetOfRun(a, done), *evaluation);
            TellPlace(run, ++done, chiSquareCalls, *evaluation);
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
    if (answers->evaluates) evaluation.emplace(world);
    const bool reports = !answers->evaluates || printDetail;
    if (run.from != nullptr) TakePlace(*run.from, &world, &*evaluation);
    time0 = std::clock();
    // The files that a run of few data sets leaves are written as they come.
    const bool isHandedOut =
        Ranks() > 1 && answers->streams && evaluation && !LeavesRawFiles(*answers);
    const auto simulate = isHandedOut ? HandOutDataSets : SimulateInTurn;
    simulate(world, files, evaluation ? &*evaluation : nullptr, reports,
             run.from != nullptr ? run.from->dataSets : 0, run);
    if (evaluation) {
        const double seconds = ProcessorSeconds();
        ToRates(world, &*evaluation);
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
