#include "TSLIF/simulation.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <optional>

#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/simulation/data_set_scratch.h"
#include "TSLIF/simulation/dynamics.h"
#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/preparation.h"
#include "TSLIF/simulation/report.h"
#include "iflibG/iflibG.h"
#include "mxlib/random_lists.h"

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

/// One data set: communities, files, test.
void SimulateDataSet(World& world, RunFiles& files, Evaluation* evaluation, bool reports) {
    const SimulationAnswers& a = world.answers;
    RenewTraits(world);
    if (files.traits && a.traits.fromCorrelations) FinishTraitData(*files.traits, world);
    RenewSites(world);
    AssembleCommunities(world, files.steps ? &*files.steps : nullptr);
    if (files.steps) FinishStepFiles(*files.steps);
    if (reports) PrintDataSet(*files.report, world);
    if (LeavesRawFiles(a)) WriteRawFiles(world);
    if (world.dataSet == 1) WriteOTUNumbers(world);  // the same for all
    if (evaluation != nullptr) {
        EvaluateDataSet(world, evaluation);
        if (reports) PrintTest(*files.report, world, *evaluation);
    }
    files.report->Flush();
}

SimulationPlace PlaceOf(const World& world, const Evaluation& evaluation) {
    return {world.dataSet,
            world.chiSquareCalls,
            {evaluation.rejections.begin(), evaluation.rejections.end()},
            GeneratorState()};
}

void TakePlace(const SimulationPlace& place, World* world, Evaluation* evaluation) {
    world->dataSet = place.dataSets;
    world->chiSquareCalls = place.chiSquareCalls;
    std::copy(place.rejections.begin(), place.rejections.end(), evaluation->rejections.begin());
    SetGeneratorState(place.generator);
    WriteOTUNumbers(*world);
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
    while (world.dataSet < answers->nDataSets) {
        world.dataSet++;
        SimulateDataSet(world, files, evaluation ? &*evaluation : nullptr, reports);
        if (evaluation && run.evaluated) run.evaluated(world.dataSet, *evaluation);
        if (evaluation && run.between) run.between(PlaceOf(world, *evaluation));
    }
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
