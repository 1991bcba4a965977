// The command rank: the subsets of traits that maximise a criterion.

#include <CLI/CLI.hpp>
#include <charconv>
#include <cinttypes>
#include <climits>
#include <cmath>

#include "TSLCHORD/criteria.h"
#include "TSLCHORD/subset_counts.h"
#include "TSLCLI/analysis_options.h"
#include "TSLCLI/commands.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/progress.h"
#include "TSLCLI/rank_checkpoint.h"
#include "TSLCLI/ranking_tables.h"
#include "TSLCLI/result_folder.h"
#include "TSLCLI/session.h"
#include "TSLCLI/settings_file.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/analysis_settings.h"
#include "TSLRESE/analysis_statistics.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "mxlibDim/platform.h"
#include "mxlibPar/side_by_side.h"

namespace {

struct RankOptions {
    RunOptions run;
    AnalysisOptions analysis;
    std::string criterion;
    std::string sizes = "all";
    bool lines = false;
    int test = 0;
    bool dryRun = false;
    std::string checkpoint;  ///< empty: the session's own
};

std::vector<std::string> Statistics() {
    std::vector<std::string> statistics;
    for (const RankingCriterion& criterion : kRankingCriteria)
        statistics.emplace_back(criterion.statistic);
    return statistics;
}

/// A criterion with E that the dialogue lets pass on data without E is refused too: it would say
/// nothing.
void RequireItsData(const RankingCriterion& criterion) {
    const std::string statistic = criterion.statistic;
    const Lack lack = WhatIsLacking(criterion);
    if (lack == Lack::kPhylogeny)
        FailUsage("--criterion " + statistic + ": the session has no phylogeny");
    if (lack != Lack::kNothing || (nenv == 0 && statistic.find('E') != std::string::npos))
        FailUsage("--criterion " + statistic + ": the session has no ecological variables E");
}

/// The products compare resemblances whatever the measure; under another one the dialogue leaves
/// the resemblance to the analysis before.
void RequireItsMeasure(const RankOptions& options) {
    if (options.criterion.find('x') != std::string::npos && options.analysis.congruence != "mantel")
        FailUsage("--criterion " + options.criterion +
                  " compares resemblances: give --congruence mantel");
}

/// What a criterion does that its letters, or those of analyse, do not tell.
void WarnOfCriterion(const std::string& statistic) {
    const auto has = [&](char letter) { return statistic.find(letter) != std::string::npos; };
    const bool isWithoutR = statistic == "XE.TR" && opt_ro == kMantel;
    if (((has('R') && !isWithoutR) || has('S')) && nGrPoly[0] < tcst)
        Warn("--criterion " + statistic + ": " + (has('R') ? "the Rao entropy R" : "S") +
             " is taken over the first " + std::to_string(nGrPoly[0]) +
             " OTUs only, as many as there are types: use --types each");
    if (!has('Y') && !has('Z')) return;
    std::string turned = statistic;
    for (char& letter : turned) letter = letter == 'Y' ? 'Z' : letter == 'Z' ? 'Y' : letter;
    for (const AnalysisStatistic& known : kAnalysisStatistics)
        if (turned == known.name)
            Warn("--criterion " + statistic + " is what analyse calls " + turned + ": " +
                 std::string(MeaningOf(known)));
}

void TakeCriterion(const std::string& statistic) {
    for (const RankingCriterion& criterion : kRankingCriteria)
        if (statistic == criterion.statistic) opt_struct = criterion.option;
    RequireItsData(CriterionOf(opt_struct));
    includePhylogeny = ComparesWithPhylogeny(opt_struct) ? 1 : 0;
}

/// "all", a size, or smallest-largest.
void TakeSizes(const std::string& sizes) {
    const int traits = CountTraitsInUse();
    nMinTraitsChRank = 1;
    nMaxTraitsChRank = traits;
    if (sizes != "all") {
        const char* const end = sizes.data() + sizes.size();
        auto read = std::from_chars(sizes.data(), end, nMinTraitsChRank);
        nMaxTraitsChRank = nMinTraitsChRank;
        if (read.ec == std::errc() && read.ptr != end && *read.ptr == '-')
            read = std::from_chars(read.ptr + 1, end, nMaxTraitsChRank);
        if (read.ec != std::errc() || read.ptr != end || nMinTraitsChRank < 1 ||
            nMaxTraitsChRank < nMinTraitsChRank || nMaxTraitsChRank > traits)
            FailUsage("--sizes " + sizes + ": takes all, a number of traits or two as in 1-" +
                      std::to_string(traits) + ", with 1 to " + std::to_string(traits) + " traits");
    }
    const double subsets = CountSubsetsOfSizes(nch, nMinTraitsChRank, nMaxTraitsChRank);
    if (CountSubsetsOfSizes64(nch, nMinTraitsChRank, nMaxTraitsChRank) < INT64_MAX) return;
    char count[64];
    std::snprintf(count, sizeof count, std::isfinite(subsets) ? "%.15g" : "more than 1e308",
                  subsets);
    FailUsage("--sizes " + sizes + ": these are " + count +
              " trait subsets, more than can be searched: take fewer sizes");
}

void SettleFiles(bool force) {
    NameRankingFile();
    RefuseToOverwrite(whichChorder, force);
    if (saveStruct == 'y') RefuseToOverwrite(whichStructures, force);
}

/// What makes the results what they are.
std::uint64_t DigestOf(const CLI::App& command, const FullNames& names) {
    Digest digest;
    digest.Add(TESSEL_VERSION);
    digest.Add(sessionName);
    digest.Add(SettingsOf(command));
    digest.Add(ReadWhole(std::string(volumeName) + whichFormda));
    for (const auto* of : {&names.otus, &names.traits})
        for (const std::string& name : *of) digest.Add(name);
    digest.Add(weight, nch);
    digest.Add(partition_OTUs, tcst);
    if (optRestrictPermutNullModel == 1) digest.Add(nestingMembershipOTUs, tcst);
    return digest.value();
}

std::string DurationText(double seconds) {
    constexpr struct {
        double seconds;
        const char* name;
    } kUnits[] = {{31557600, "years"}, {86400, "days"}, {3600, "hours"}, {60, "minutes"}};
    char text[64];
    for (const auto& unit : kUnits) {
        if (seconds < 2 * unit.seconds) continue;
        std::snprintf(text, sizeof text, "%.3g %s", seconds / unit.seconds, unit.name);
        return text;
    }
    std::snprintf(text, sizeof text, "%.2g seconds", seconds);
    return text;
}

void TellEstimate(const RankOptions& options) {
    SearchEstimate estimate = {};
    saveStruct = printRankIntermedResults = 'n';
    RunEngine([&] {
        RunRanking({.estimate = [&](const SearchEstimate& found) { estimate = found; }});
        EndRanking();
    });
    char line[160];
    std::snprintf(line, sizeof line, "%" PRId64 " subsets of %d to %d traits", estimate.subsets,
                  nMinTraitsChRank, nMaxTraitsChRank);
    Tell(line);
    std::snprintf(line, sizeof line, "Time: about %s on %d %s, by %" PRId64 " subsets rated now",
                  DurationText(estimate.seconds * (options.test + 1.0)).c_str(), Threads(),
                  Threads() == 1 ? "core" : "cores", estimate.sampled);
    Tell(line + (options.test > 0 ? ", with " + std::to_string(options.test) + " permutations"
                                  : std::string()));
    std::snprintf(line, sizeof line, "Memory: about %.0f MB", PeakMemory() / 1e6);
    Tell(line);
}

void TellResults(const RankingResults& results, const std::vector<double>& probabilities,
                 const FullNames& names) {
    for (const auto& subset : results.best) {
        char line[80];
        std::snprintf(line, sizeof line, "%3d traits  %-12.6g ", subset.size, subset.value);
        std::string text = line;
        if (!probabilities.empty()) {
            std::snprintf(line, sizeof line, "P = %-10.6g ",
                          probabilities[static_cast<std::size_t>(subset.size - nMinTraitsChRank)]);
            text += line;
        }
        for (const int trait : subset.members)
            text += (trait == subset.members[0] ? "" : ", ") + names.traits[trait];
        Tell(text);
    }
    if (results.best.empty()) Warn("no subset of traits could be rated on these data");
    if (probabilities.empty()) {
        Tell(
            "A test of the winning subset on the same data is not valid, since it was chosen by "
            "them: 'rank --test 999' tests the whole search");
    } else {
        char line[80];
        std::snprintf(line, sizeof line, "Best of all sizes: P = %.6g", probabilities.back());
        Tell(line);
    }
}

void Rank(CLI::App& command, const RankOptions& options) {
    const FileLock lock = OpenCommandSession(options.run.session);
    const FullNames names = ReadNames(sessionName);
    TakeCriterion(options.criterion);
    RequireItsMeasure(options);
    ApplyAnalysisOptions(options.analysis, AnalysisKind::kRanking, names);
    SettleRanking();
    TakeSizes(options.sizes);
    if (options.dryRun) return TellEstimate(options);
    printRankIntermedResults = options.lines ? 'y' : 'n';
    const std::string own = std::string(sessionName) + "Rank_" + options.criterion;
    RankCheckpoint checkpoint(options.checkpoint.empty() ? own + ".checkpoint" : options.checkpoint,
                              DigestOf(command, names), options.lines || saveStruct == 'y');
    // What an interrupted run has written is its own.
    const bool force = options.run.force || checkpoint.GoesOn();
    SettleFiles(force);
    ResultFolder folder(options.run.tables, own, force, kRankingTables);
    WarnOfCriterion(options.criterion);
    SettleSeed(command);
    Tell(SettingsOf(command));

    RankingResults results;
    std::vector<double> probabilities;
    const double subsets = CountSubsetsOfSizes(nch, nMinTraitsChRank, nMaxTraitsChRank);
    RunEngine([&] {
        const Progress progress(subsets * (options.test + 1.0));
        SearchRun run{.receive = [&](const SubsetSearch& search, const SearchOutcome& outcome) {
            results = ResultsOf(search, outcome);
        }};
        checkpoint.Follow(&run);
        RunRanking(run);
        if (folder.IsWanted()) WriteSubsets(results, names, &folder);
        if (options.test > 0)
            probabilities = TestRanking(results, options.test, names, &folder, &checkpoint);
        EndRanking();
    });
    folder.Finish(command);
    checkpoint.Remove();
    TellResults(results, probabilities, names);
    Tell("Report: " + std::string(whichChorder));
    if (folder.IsWanted()) Tell("Tables: " + folder.path());
}

}  // namespace

CommandAction AddRank(CLI::App& command) {
    const auto options = std::make_shared<RankOptions>();
    AddRunOptions(command, "Rank_CRITERION", &options->run);
    TakesOneOf(command.add_option("--criterion", options->criterion, "The statistic to maximise"),
               Statistics())
        ->required();
    command.add_option("--sizes", options->sizes, "Traits in a subset: all, a number, or 1-6")
        ->type_name("SIZES")
        ->capture_default_str();
    AddYesNo(command, "--lines", &options->lines, "Print a line for every subset");
    command
        .add_option("--test", options->test,
                    "Repeat the search in so many permutations of the OTUs' traits and give the "
                    "probability of the best value of each size and of all; 0: no test")
        ->check(CLI::Range(0, INT_MAX - 1).description(""))
        ->type_name("NUMBER")
        ->capture_default_str();
    command
        .add_option("--checkpoint", options->checkpoint,
                    "Where an interrupted run leaves what the same command goes on from, written "
                    "every minute; SESSIONRank_CRITERION.checkpoint if not given")
        ->type_name("FILE")
        ->configurable(false);
    command
        .add_flag("--dry-run", options->dryRun,
                  "Tell the number of subsets, and the time and the memory that they will take")
        ->configurable(false);
    AddAnalysisOptions(command, AnalysisKind::kRanking, &options->analysis);
    return [&command, options] { Rank(command, *options); };
}
