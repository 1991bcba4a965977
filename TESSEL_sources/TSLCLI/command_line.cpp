#include "TSLCLI/command_line.h"

#include <gsl/gsl_errno.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <iostream>
#include <new>
#include <thread>
#include <vector>

#include "TSLCLI/commands.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/name_matching.h"
#include "TSLCLI/progress.h"
#include "TSLCLI/settings_file.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/shell.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/platform.h"
#include "mxlibPar/ranks.h"

namespace {

struct Command {
    const char* name;
    const char* summary;
    CommandAction (*add)(CLI::App& command);
    bool takesRanks = false;  ///< computes on all ranks; the others run on rank 0
};

constexpr Command kCommands[] = {
    {"import", "Make a session from tables as spreadsheets and R write them", AddImport},
    {"check", "Tell what a session holds, and what looks wrong in it", AddCheck},
    {"analyse", "Functional analysis of a session", AddAnalyse, true},
    {"rank", "Search for the subsets of traits that maximise a criterion", AddRank, true},
    {"simulate", "Simulate communities and rate the tests on them", AddSimulate, true},
    {"join", "Add up the tables of a simulation's parts", AddJoin},
    {"derive", "Make a session out of parts of another one", AddDerive},
    {"merge", "Merge two sessions into one", AddMerge},
    {"dialogue", "Run the dialogue on prepared answers", AddDialogue},
    {"describe", "Tell all commands and options, as JSON", AddDescribe},
};

struct AddedCommand {
    CLI::App* app;
    CommandAction run;
    bool takesRanks;
};

std::vector<AddedCommand> AddCommands(CLI::App& app) {
    std::vector<AddedCommand> added;
    for (const Command& command : kCommands) {
        CLI::App* const sub = app.add_subcommand(command.name, command.summary);
        sub->fallthrough();
        sub->add_flag("--quiet", quiet, "Print nothing but warnings and failures")
            ->configurable(false);
        sub->add_option_function<std::string>("--messages", CopyMessagesTo,
                                              "Also write warnings and failures to this file")
            ->type_name("FILE")
            ->configurable(false);
        sub->add_flag("--progress-lines", progressInLines,
                      "Tell the progress on standard error as lines: progress SHARE SECONDS-LEFT")
            ->configurable(false);
        added.push_back({sub, command.add(*sub), command.takesRanks});
    }
    return added;
}

void RunParsed(const std::vector<AddedCommand>& commands) {
    for (const AddedCommand& command : commands) {
        if (!command.app->parsed()) continue;
        if (command.takesRanks)
            command.run();
        else if (IsFirstRank())
            RunAlone(command.run);
    }
    RequireDelivery();
}

/// What to say where no command is named.
std::string WhatIsNoCommand(const std::vector<std::string>& words) {
    Names commands;
    std::string list;
    for (const Command& command : kCommands) {
        if (command.add == AddDescribe) continue;  // not for persons
        commands.emplace_back(command.name);
        list += (list.empty() ? "" : ", ") + commands.back();
    }
    return (words.empty() || words[0].starts_with('-')
                ? "no command is given"
                : Quoted(words[0]) + " is no command" + NearestTo(words[0], commands)) +
           ": give one of " + list + ", or see --help";
}

/// All ranks meet the same wrong usage, and rank 0 tells it. Of other failures one ends all ranks;
/// what rank 0 meets too it tells first.
int Fail(int status, const std::string& message) {
    std::fflush(stdout);
    if (!IsFirstRank()) {
        if (status == kWrongUsage) return status;
        std::this_thread::sleep_for(std::chrono::seconds(2));
    }
    TellMessage(IsFirstRank() ? message : "rank " + std::to_string(Rank()) + ": " + message);
    if (Ranks() > 1 && status != kWrongUsage) EndRanks(status);
    return status;
}

void Silence() {
    quiet = true;
    if (std::freopen(kNullDevice, "w", stdout) == nullptr)
        FailRun(std::string(kNullDevice) + " cannot be opened");
}

}  // namespace

int RunCommandLine(int argc, const char* const* argv) {
    gsl_set_error_handler_off();
    InitGlobals();
    InitIFLibG();
    try {
        if (!IsFirstRank()) Silence();
        CLI::App app{"TESSEL: character-based community analysis for ecologists", "TESSEL"};
        app.set_version_flag("--version", TESSEL_VERSION);
        app.require_subcommand(1);
        AddSettingsFile(app);
        const std::vector<AddedCommand> commands = AddCommands(app);
        try {
            std::vector<std::string> arguments = ArgumentsOfRank(argc, argv);
            std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
            arguments.pop_back();                              // the program
            app.parse(arguments);
        } catch (const CLI::Success& asked) {
            app.exit(asked);
            std::cout.flush();
            RequireDelivery();
            return kDone;
        } catch (const CLI::ExtrasError&) {
            return Fail(kWrongUsage, Quoted(app.remaining(true).front()) +
                                         " is neither an option nor expected here: see --help");
        } catch (const CLI::RequiredError& missing) {
            return Fail(kWrongUsage, app.get_subcommands().empty()
                                         ? WhatIsNoCommand(app.remaining())
                                         : missing.what() + std::string(": see --help"));
        }
        RunParsed(commands);
        return kDone;
    } catch (const CLI::ParseError& error) {
        return Fail(kWrongUsage, error.what());
    } catch (const CommandFailure& failure) {
        return Fail(failure.status, failure.what());
    } catch (const RaisedError& error) {
        return Fail(kRunFailed, TextOfRaised(error));
    } catch (const std::bad_alloc&) {
        return Fail(kRunFailed, TextOfRaised({kOutOfMemory, {}}));
    }
}
