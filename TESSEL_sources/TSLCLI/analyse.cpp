// The command analyse: the functional analysis of a session.

#include <CLI/CLI.hpp>
#include <cmath>

#include "TSLCLI/analysis_options.h"
#include "TSLCLI/analysis_tables.h"
#include "TSLCLI/commands.h"
#include "TSLCLI/engine.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/progress.h"
#include "TSLCLI/result_folder.h"
#include "TSLCLI/session.h"
#include "TSLCLI/settings_file.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/analysis_settings.h"
#include "TSLRESE/analysis_statistics.h"
#include "TSLRESE/memory.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "mxlibDim/file_path.h"
#include "mxlibDim/text.h"

namespace fs = std::filesystem;

namespace {

struct AnalyseOptions {
    RunOptions run;
    AnalysisOptions analysis;
    bool append = false;
};

/// The mode of the report, as the dialogue settles it; and the file of permuted tables, which the
/// analysis empties.
void SettleFiles(const AnalyseOptions& options) {
    std::error_code ignored;
    const bool isAppended = options.append && fs::exists(PathOf(whichPrinda), ignored);
    if (!isAppended) RefuseToOverwrite(whichPrinda, options.run.force);
    prindaMode[0] = isAppended ? 'a' : 'w';
    MakeSessionFileName(whichRndData, sessionName, rndDataExt);
    if (fs::exists(PathOf(whichRndData), ignored) &&
        fs::file_size(PathOf(whichRndData), ignored) > 0)
        RefuseToOverwrite(whichRndData, options.run.force);
}

/// What the settings do to the statistics that a reader would not expect.
void WarnOfSettings() {
    if (nenv == 0) Warn("the session has no ecological variables: statistics with E say nothing");
    if (!ComparesCompositions())
        Warn(
            "under this resemblance the test does not compare communities by types: statistics "
            "with X or P say nothing");
    const bool turnsSignal =
        opt_ro == kMantel && includePhylogeny != 0 && PhylogenyIsDissimilarity();
    if (turnsSignal && !twoTailedTestMantel)
        Warn(
            "the one-tailed P of r(BF) takes permuted values of the opposite sign, as the report "
            "does; null.csv has all with one sign");
}

/// Of a large analysis, before it starts.
void TellMemory() {
    constexpr double kGigabyte = 1e9;
    const double gigabytes = MemoryOfAnalysis(SizesOfAnalysis()) / kGigabyte;
    if (gigabytes < 0.1) return;
    char line[80];
    std::snprintf(line, sizeof line, "Memory: about %.1f GB", gigabytes);
    Tell(line);
}

void TellResults(const PermTest_FunctionalPhyl_Correl_Input& test) {
    for (const AnalysisStatistic& statistic : kAnalysisStatistics) {
        if (statistic.needsPhylogeny && includePhylogeny == 0) continue;
        char line[80];
        std::snprintf(line, sizeof line, "%-6s %-12.6g P = %-10.6g ", statistic.name,
                      Printable(test.*statistic.value), Printable(test.*statistic.probability));
        Tell(line + std::string(MeaningOf(statistic)));
        if (std::isnan(test.*statistic.value))
            Warn(std::string(statistic.name) +
                 " cannot be computed on these data: its P says nothing");
    }
}

void Analyse(CLI::App& command, const AnalyseOptions& options) {
    const FileLock lock = OpenCommandSession(options.run.session);
    const FullNames names = ReadNames(sessionName);
    StartFunctionalAnalysis();
    const std::vector<std::string> typeWords =
        ApplyAnalysisOptions(options.analysis, AnalysisKind::kAnalysis, names);
    SettleFiles(options);
    ResultFolder folder(options.run.tables, std::string(sessionName) + "Tables", options.run.force,
                        kAnalysisTables);
    WarnOfSettings();
    SettleSeed(command);
    Tell(SettingsOf(command));
    TellMemory();

    AnalysisTables tables(names, typeWords, &folder);
    AnalysisReceiver receiver = tables.Receiver();
    PermTest_FunctionalPhyl_Correl_Input results;
    receiver.tested = [&results, write = receiver.tested](const auto& test) {
        results = test;
        if (write) write(test);
    };
    RunEngine([&] {
        const Progress progress(niter - 1);
        RunFunctionalAnalysis(receiver);
    });
    folder.Finish(command);
    TellResults(results);
    Tell("Report: " + std::string(whichPrinda));
    if (folder.IsWanted()) Tell("Tables: " + folder.path());
}

}  // namespace

CommandAction AddAnalyse(CLI::App& command) {
    const auto options = std::make_shared<AnalyseOptions>();
    AddRunOptions(command, "Tables", &options->run);
    command.add_flag("--append", options->append, "Put the report behind an earlier one")
        ->configurable(false);
    AddAnalysisOptions(command, AnalysisKind::kAnalysis, &options->analysis);
    return [&command, options] { Analyse(command, *options); };
}
