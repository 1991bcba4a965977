#pragma once
/// \file
/// Commands of the command line in this process, in a folder of the test's own.

#include <cstdlib>
#include <map>
#include <sstream>

#include "TSLCLI/command_line.h"
#include "TSLCLI/failure.h"
#include "support/run_program.h"
#include "tessel/in_process.h"

struct CommandRun : ConsoleRun {
    int status = -1;
};

/// Runs "TESSEL" with these arguments.
inline CommandRun RunCommand(const Texts& words) {
    std::vector<const char*> arguments = {"TESSEL"};
    for (const std::string& word : words) arguments.push_back(word.c_str());
    CommandRun run;
    quiet = false;
    static_cast<ConsoleRun&>(run) = WithConsole(
        "", [&](FILE*) { run.status = RunCommandLine(int(arguments.size()), arguments.data()); });
    return run;
}

/// Runs "TESSEL" with the words of `command` as arguments.
inline CommandRun RunCommand(const std::string& command) {
    std::istringstream stream(command);
    Texts words;
    for (std::string word; stream >> word;) words.push_back(word);
    return RunCommand(words);
}

/// The lines but those of the time.
inline std::string WithoutTimes(const std::string& text) {
    std::istringstream lines(text);
    std::string kept;
    for (std::string line; std::getline(lines, line);)
        if (line.rfind("Elapsed time", 0) != 0 && (line.size() != 24 || line[19] != ' '))
            kept += line + "\n";
    return kept;
}

/// The cells of a CSV table without quoted line ends, by rows, the header first.
inline std::vector<Texts> CellsOf(const std::string& table) {
    std::vector<Texts> rows;
    std::istringstream lines(table);
    for (std::string line; std::getline(lines, line);) {
        rows.emplace_back(1);
        bool quoted = false;
        for (const char c : line) {
            if (c == '"')
                quoted = !quoted;
            else if (c == ',' && !quoted)
                rows.back().emplace_back();
            else
                rows.back().back() += c;
        }
    }
    return rows;
}

inline double NumberOf(const std::string& cell) {
    return std::strtod(cell.c_str(), nullptr);
}

/// The files of the working directory by their names, times masked, and the folder empty.
inline std::map<std::string, std::string> TakeFiles() {
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator("."))
        if (entry.is_regular_file())
            files[entry.path().lexically_normal()] = WithoutTimes(ReadWholeFile(entry.path()));
    for (const auto& entry : std::filesystem::directory_iterator("."))
        std::filesystem::remove_all(entry.path());
    return files;
}
