#pragma once
/// \file
/// The settings of an analysis as options of the command line, in words of the field: what
/// SettingsHierarchy, SettingsChRank and the preferences ask, for analyse, rank and simulate alike.

#include <string>
#include <vector>

#include "TSLCLI/names.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

/// Which command an option belongs to.
enum class AnalysisKind { kAnalysis, kRanking, kSimulation };

/// The options as given, or their defaults.
struct AnalysisOptions {
    std::string types = "each";  ///< each, species, or a file: a number per OTU, or CSV by names
    bool crisp = false;
    int iterations = 1000;
    std::string within = "none";  ///< or a file of nesting groups, in the forms of types
    std::string seed = "clock";
    std::string congruence = "mantel";
    std::string resemblance = "euclidean";
    std::vector<std::string> traits;       ///< empty: all
    bool weightByGroups = false;           ///< of the session's groups of traits
    std::vector<std::string> traitGroups;  ///< trait=group; in the place of the session's
    bool standardise = true;               ///< W at unit totals
    bool details = false;
    int threads = 0;  ///< 0: all that the process may use

    // Preferences; their defaults are those of InitGlobals
    int digits;
    bool twoTailed;
    bool rootTraits;
    bool rootPhylogeny;
    bool bealsTarget;
    bool doubleAbsence;
    double predictorLimit;
    bool saveRandom;
    bool saveStructures;

    AnalysisOptions();  ///< takes the preferences' defaults from the globals
};

/// The group of options that say nothing of the results: they are read from settings files, but not
/// written to them.
inline constexpr const char* kMachineOptions = "Machine";

/// Adds the options of the kind of command to `command`, with their help.
void AddAnalysisOptions(CLI::App& command, AnalysisKind kind, AnalysisOptions* options);

/// Fills TSLGLOB/settings.h for the data set in memory, by the steps of TSLIF/analysis_settings.h;
/// of a ranking, opt_struct is set. `names` are those of the data set. Fails for what does not fit
/// the data set, naming the option. Gives the words for the types 1, 2, ..., if they came as words.
std::vector<std::string> ApplyAnalysisOptions(const AnalysisOptions& options, AnalysisKind kind,
                                              const FullNames& names);

/// Lets the option take one of these words, which its help names.
CLI::Option* TakesOneOf(CLI::Option* option, const std::vector<std::string>& words);

/// An option whose value is yes or no.
void AddYesNo(CLI::App& command, const std::string& name, bool* value, const std::string& help);
