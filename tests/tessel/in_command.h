#pragma once
/// \file
/// Commands of the command line in this process, in a folder of the test's own.

#include "TSLCLI/command_line.h"
#include "TSLCLI/failure.h"
#include "tessel/in_process.h"

struct CommandRun : ConsoleRun {
    int status = -1;
};

/// Runs "TESSEL" with the words of `command` as arguments.
inline CommandRun RunCommand(const std::string& command) {
    std::vector<std::string> words = {"TESSEL"};
    std::istringstream stream(command);
    for (std::string word; stream >> word;) words.push_back(word);
    std::vector<const char*> arguments;
    for (const std::string& word : words) arguments.push_back(word.c_str());
    CommandRun run;
    quiet = false;
    static_cast<ConsoleRun&>(run) = WithConsole(
        "", [&](FILE*) { run.status = RunCommandLine(int(arguments.size()), arguments.data()); });
    return run;
}
