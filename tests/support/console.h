#pragma once
/// \file
/// The console in process: typed answers in, what the program wrote out.

#include <cstdio>
#include <functional>
#include <string>

/// What a routine wrote, and how it ended.
struct ConsoleRun {
    std::string out;      ///< standard output
    std::string err;      ///< standard error
    int raised = 0;       ///< code of the error that it raised, or 0
    int exitStatus = -1;  ///< status with which it ended the program, or -1
    bool rests = false;   ///< it came to rest for ever (a wait for input that cannot come)
};

/// Runs `body` with `answers` as the standard input and collects what it writes. `body` gets the
/// stream that stands for the standard input (stdin is set to it as well); a routine of the program
/// reads the global `in`, which the body has to set.
ConsoleRun WithConsole(const std::string& answers, const std::function<void(FILE*)>& body);
