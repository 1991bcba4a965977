#pragma once
/// \file
/// The built program as a user runs it: keystrokes in, screen and files out, with a time limit.

#include <signal.h>

#include <string>

#include "support/temp_folder.h"

struct ProgramRun {
    std::string out;
    std::string err;
    int status = -1;        ///< exit status; -1 when it did not exit by itself
    bool timedOut = false;  ///< it was stopped at the time limit
    int signal = 0;         ///< signal that ended it, other than the time limit's
    double cpuSeconds = 0;  ///< processor time that it took
};

/// Runs the program in `folder` with `answers` on its standard input. The time limit stops it in an
/// orderly way first, so that buffered output is lost as it would be for a user.
ProgramRun RunProgram(const TempFolder& folder, const std::string& answers, double seconds = 60,
                      int stopSignal = SIGTERM);

/// The text with what changes from run to run masked: time stamps, elapsed times, the progress
/// line and the backspaces that take it off the screen.
std::string Masked(const std::string& text);
