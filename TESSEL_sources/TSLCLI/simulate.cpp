// The command simulate: assembly of communities in a world of named tables, and how often the tests
// reject their null hypotheses on it.

#include <CLI/CLI.hpp>
#include <climits>
#include <memory>
#include <optional>
#include <string>

#include "TSLCLI/analysis_options.h"
#include "TSLCLI/commands.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/names.h"
#include "TSLCLI/progress.h"
#include "TSLCLI/result_folder.h"
#include "TSLCLI/session.h"
#include "TSLCLI/settings_file.h"
#include "TSLCLI/simulation_checkpoint.h"
#include "TSLCLI/simulation_tables.h"
#include "TSLCLI/world_tables.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/simulation.h"
#include "TSLIF/simulation/answers.h"
#include "TSLIF/simulation/data_set_scratch.h"
#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/files.h"
#include "mxlibDim/text.h"

namespace {

struct SimulateOptions {
    std::string world;  ///< settings file
    WorldTables tables;
    int individuals = 30;
    double threshold = 0.9;
    double dispersal = 0.3;
    double density = 0.3;
    int steps = 300;
    bool evaluates = true;
    int dataSets = 100;
    double alpha = 0.05;
    bool savesSteps = false;
    bool streams = false;
    std::string part = kWholeRun;
    AnalysisOptions analysis;
    std::string folder = "yes";
    bool force = false;
    std::string checkpoint = "Simulated.checkpoint";
};

/// What contradicts an evaluation, or its lack.
void RequireConsistent(const CLI::App& command, const SimulateOptions& o) {
    if (o.evaluates && o.savesSteps)
        FailUsage("--save-steps yes: only a single data set has them, without --evaluate");
    if (!o.evaluates && o.dataSets != 1 && command.get_option("--data-sets")->count() > 0)
        FailUsage("--data-sets " + std::to_string(o.dataSets) +
                  ": without --evaluate one is simulated: give --data-sets 1");
    if (o.part == kWholeRun) return;
    const std::string part = "--part " + o.part + ": ";
    const int dataSets = o.evaluates ? o.dataSets : 1;
    if (PartOf(o.part).parts > dataSets)
        FailUsage(part + "there are fewer data sets than parts: give a larger --data-sets or " +
                  "fewer parts");
    if (!o.streams) FailUsage(part + "only data sets of --streams yes can be parted");
    if (o.analysis.seed == "clock")
        FailUsage(part + "the parts belong together by their seed: give all the same --seed");
}

void TakeRules(const SimulateOptions& o, SimulationAnswers* answers) {
    answers->maxIndividuals = o.individuals;
    answers->threshold = o.threshold;
    answers->dispersalWeight = o.dispersal;
    answers->densityWeight = o.density;
    answers->maxIterations = o.steps;
    answers->evaluates = o.evaluates;
    answers->nDataSets = o.evaluates ? o.dataSets : 1;
    answers->alpha = o.alpha;
    answers->savesSteps = o.savesSteps;
    answers->streams = o.streams;
    const SimulationPart part = PartOf(o.part);
    answers->part = part.part;
    answers->parts = part.parts;
}

/// The settings of the analysis for the world in the place of a data set.
void TakeAnalysis(const SimulateOptions& o, const WorldNames& names) {
    const std::vector<std::string> labels = LabelsFor(names.traits);
    for (int k = 0; k < nch; k++) CopyText(chLabel[k], kLabelLength, labels[k].c_str());
    FullNames full;
    full.otus = names.otus;
    full.traits = names.traits;
    optmain = 'H';
    ApplyAnalysisOptions(o.analysis, AnalysisKind::kSimulation, full);
}

void TellFiles(const SimulationAnswers& answers, const ResultFolder& folder) {
    std::string files;
    for (const char* file : FilesOfRun(answers))
        files += (files.empty() ? "" : ", ") + std::string(file);
    Tell("Files: " + files);
    if (folder.IsWanted()) Tell("Tables: " + folder.path());
}

/// What makes the results what they are.
std::uint64_t DigestOf(const CLI::App& command, const SimulateOptions& o) {
    Digest digest;
    digest.Add(TESSEL_VERSION);
    digest.Add(SettingsOf(command));
    const WorldTables& t = o.tables;
    for (const std::string& file : {t.traits, t.traitCorrelations, t.environment,
                                    t.environmentCorrelations, t.responses, t.effects})
        if (file != kNoTable) digest.Add(ReadWhole(file));
    if (optRestrictPermutNullModel == 1) digest.Add(nestingMembershipOTUs, tcst);
    return digest.value();
}

/// Runs the simulation; the rejections of an evaluation, by statistic.
std::vector<int> RunWorld(SimulationAnswers* answers, SimulationStatistics* statistics,
                          SimulationCheckpoint* checkpoint) {
    std::vector<int> rejections(kRatedStatistics);
    SimulationRun run;
    checkpoint->Follow(*answers, &run, [&](int dataSet, std::span<const double> values) {
        if (statistics != nullptr) statistics->Add(dataSet, values);
    });
    run.between = [&, between = run.between](const SimulationPlace& place) {
        between(place);
        rejections.assign(place.rejections.begin(), place.rejections.end());
    };
    if (run.from != nullptr)
        rejections.assign(run.from->rejections.begin(), run.from->rejections.end());
    const double tests = answers->evaluates ? niter - 1.0 : 0.0;
    bool done = false;
    const EngineTalk talk = RunEngine([&] {
        const Progress progress(DataSetsOfRun(*answers) * (answers->maxIterations + tests));
        checkpoint->Begin();
        done = RunSimulation(answers, run);
    });
    if (!done) FailRun(talk.screen + " Give --responses that are not all 0");
    return rejections;
}

void Simulate(CLI::App& command, const SimulateOptions& o) {
    if (!o.world.empty()) TakeSettings(command, o.world);
    RequireConsistent(command, o);
    SimulationAnswers answers;
    TakeRules(o, &answers);
    const WorldNames names = TakeWorldTables(o.tables, &answers);
    const DataSetScratch scratch(answers.nTraits, answers.nOTUs);
    TakeAnalysis(o, names);
    SimulationCheckpoint checkpoint(o.checkpoint, DigestOf(command, o), answers.evaluates,
                                    printDetail);
    // What an interrupted run has written is its own.
    const bool force = o.force || checkpoint.GoesOn();
    for (const char* file : FilesOfRun(answers)) RefuseToOverwrite(file, force);
    ResultFolder folder(o.folder, kSimulatedTables, force, kSimulationTables);
    SettleSeed(command);
    Tell(SettingsOf(command));

    std::optional<SimulationStatistics> statistics;
    if (o.evaluates && folder.IsWanted()) statistics.emplace(folder.Table("statistics.csv"));
    const std::vector<int> rejections =
        RunWorld(&answers, statistics ? &*statistics : nullptr, &checkpoint);
    if (statistics) statistics->Finish();
    if (o.evaluates)
        TellRates(rejections, DataSetsOfRun(answers), answers.alpha,
                  folder.IsWanted() ? folder.Table("rates.csv") : "");
    folder.Finish(command);
    checkpoint.Remove();
    TellFiles(answers, folder);
}

void AddWorldTables(CLI::App& command, WorldTables* t) {
    const auto addFile = [&](const char* name, std::string* file, const char* help) {
        command.add_option(name, *file, help)->type_name("FILE")->capture_default_str();
    };
    const auto addSize = [&](const char* name, int* size, const char* help) {
        command.add_option(name, *size, help)
            ->type_name("NUMBER")
            ->check(CLI::Range(0, INT_MAX).description(""))
            ->capture_default_str();
    };
    const auto addDistribution = [&](const char* name, std::string* distribution) {
        TakesOneOf(command.add_option(name, *distribution,
                                      "What the report calls the draws, which are normal"),
                   {"normal", "uniform"})
            ->capture_default_str();
    };
    addFile("--traits", &t->traits, "OTUs in rows, traits in columns");
    addFile("--trait-correlations", &t->traitCorrelations,
            "Instead: traits by traits, to draw the traits of each data set from");
    addDistribution("--trait-distribution", &t->traitDistribution);
    addFile("--environment", &t->environment, "Sites in rows, factors in columns");
    addFile("--environment-correlations", &t->environmentCorrelations,
            "Instead: factors by factors, to draw the factors of each data set from");
    addDistribution("--environment-distribution", &t->environmentDistribution);
    addSize("--otus", &t->otus, "Number of OTUs; 0: as the table of traits has");
    addSize("--sites", &t->sites, "Number of sites; 0: as the table of the environment has");
    addSize("--factors", &t->factors, "Number of factors; 0: as their table has");
    AddYesNo(command, "--interactions", &t->interactions,
             "Products of each factor with the last one are predictors too, as in water:light");
    addFile("--responses", &t->responses,
            "Traits in rows, predictors in columns: what each adds to the expected trait");
    addFile("--effects", &t->effects,
            "Factors in rows, traits in columns: what changes of traits do to factors");
}

void AddRules(CLI::App& command, SimulateOptions* o) {
    const auto addCount = [&](const char* name, int* count, const char* help) {
        command.add_option(name, *count, help)
            ->type_name("NUMBER")
            ->check(CLI::Range(1, INT_MAX).description(""))
            ->capture_default_str();
    };
    const auto addShare = [&](const char* name, double* share, const char* help) {
        command.add_option(name, *share, help)
            ->type_name("0 to 1")
            ->check(CLI::Range(0.0, 1.0).description(""))
            ->capture_default_str();
    };
    addCount("--individuals", &o->individuals, "Most individuals per site, on average");
    addShare("--threshold", &o->threshold,
             "Share of these, or of the steps, from which changes of OTUs are recorded");
    addShare("--dispersal", &o->dispersal, "Weight of local dispersal");
    addShare("--density", &o->density, "Weight of density dependence");
    addCount("--steps", &o->steps, "Most steps of the assembly");
    AddYesNo(command, "--evaluate", &o->evaluates,
             "Test every data set and give the rates of rejection; no: one data set, not tested");
    addCount("--data-sets", &o->dataSets, "Number of data sets");
    addShare("--alpha", &o->alpha, "Largest P that rejects");
    command
        .add_option("--predictors-in-use", o->tables.predictorsInUse,
                    "Predictors that the tests use, parted by commas; all if not given")
        ->type_name("NAMES")
        ->allow_extra_args(false);
    AddYesNo(command, "--save-steps", &o->savesSteps, "Write the files of every step");
    AddYesNo(command, "--streams", &o->streams,
             "A generator of its own for each data set: the Mersenne twister whose init_by_array "
             "has the key (seed, number of the data set)");
    command
        .add_option("--part", o->part,
                    "Of K parts, under --streams yes, only part I: the data sets I, I + K, I + 2K "
                    "and so on; 'TESSEL join' adds up the tables")
        ->type_name("I/K")
        ->check([](const std::string& text) {
            return PartOf(text).parts > 0 ? std::string()
                                          : "takes I/K with I from 1 to K, as in 3/20, not " + text;
        })
        ->capture_default_str();
}

}  // namespace

CommandAction AddSimulate(CLI::App& command) {
    const auto o = std::make_shared<SimulateOptions>();
    command
        .add_option(
            "world", o->world,
            "Settings file with the world, as --config takes it; its tables are sought from "
            "the working folder")
        ->type_name("FILE")
        ->check([](const std::string& file) {
            return IsThere(file) ? std::string() : "File does not exist: " + file;
        })
        ->configurable(false);
    AddWorldTables(command, &o->tables);
    AddRules(command, o.get());
    AddAnalysisOptions(command, AnalysisKind::kSimulation, &o->analysis);
    command
        .add_option("--tables", o->folder,
                    std::string("Folder for the results as CSV; yes: ") + kSimulatedTables)
        ->type_name("yes|no|FOLDER")
        ->capture_default_str();
    command
        .add_option("--checkpoint", o->checkpoint,
                    "Where an interrupted evaluation leaves what the same command goes on from, "
                    "written every minute")
        ->type_name("FILE")
        ->capture_default_str()
        ->configurable(false);
    command.add_flag("--force", o->force, "Replace the files of an earlier run")
        ->configurable(false);
    return [&command, o] { Simulate(command, *o); };
}
