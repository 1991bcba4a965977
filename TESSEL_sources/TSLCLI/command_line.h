#pragma once
/// \file
/// The command line: everything that TESSEL does when it is given arguments.

/// Runs the command that the arguments name; the exit status of the process (failure.h).
int RunCommandLine(int argc, const char* const* argv);
