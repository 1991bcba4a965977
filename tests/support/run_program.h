#pragma once
/// \file
/// The built program as a user runs it: keystrokes in, screen and files out, with a time limit.

#include <string>

#include "support/temp_folder.h"

struct ProgramRun {
    std::string out;
    std::string err;
    int status = -1;        ///< exit status, 128 and the signal that ended it, kStopped
    double cpuSeconds = 0;  ///< processor time that it took
};

constexpr int kStopped = 124;  ///< status at the time limit

/// Runs the program in `folder` with `answers` on its standard input. The time limit stops it by
/// TERM, so that buffered output is lost as it would be for a user, or by `signal`.
ProgramRun RunProgram(const TempFolder& folder, const std::string& answers, double seconds = 60,
                      const std::string& signal = "TERM");

/// The text with what changes from run to run masked: time stamps, elapsed times, the progress
/// line and the backspaces that take it off the screen.
std::string Masked(const std::string& text);
