#pragma once
/// \file
/// The settings file of the command line: a table per command, a key per option.

#include <memory>
#include <string>
#include <vector>

namespace CLI {
class App;
}

/// Gives `app` the option --config, whose file sets what the command line leaves open. Unknown
/// tables and keys are wrong usage.
void AddSettingsFile(CLI::App& app);

/// Takes from the file, in the same form, what the command line leaves open of the options of one
/// command.
void TakeSettings(CLI::App& command, const std::string& file);

/// Every option of the command as it stands, given or not, in the form that --config reads; those
/// of an App that are not configurable are left out.
std::string SettingsOf(const CLI::App& command);

/// Puts the seed in force (rseed) in the place of the option --seed, so that its setting repeats
/// the run.
void SettleSeed(CLI::App& command);

/// The arguments of main as they are, but that the settings of --config come from rank 0.
std::vector<std::string> ArgumentsOfRank(int argc, const char* const* argv);
