#pragma once
/// \file
/// How a command fails and how it warns. A failure ends the command at the one catch point of the
/// command line (command_line.cpp), which prints it as one line on standard error.

#include <stdexcept>
#include <string>
#include <string_view>

#include "mxlibDim/failure.h"

/// Exit status of the command line.
enum CommandStatus : int {
    kDone = 0,
    kRunFailed = 1,
    kWrongUsage = 2,
    kInterrupted = 130,  ///< by SIGINT
    kTerminated = 143,   ///< by SIGTERM
};

struct CommandFailure : std::runtime_error {
    CommandFailure(CommandStatus s, const std::string& message)
        : std::runtime_error(message), status(s) {}
    CommandStatus status;
};

/// The run cannot be done: what is wrong, where, and what to do about it, as one line.
[[noreturn]] void FailRun(const std::string& message);

/// The options contradict one another or what they are applied to.
[[noreturn]] void FailUsage(const std::string& message);

/// The text as messages quote it: runs of blanks and line ends as single blanks, other control
/// characters dropped.
std::string OneLine(std::string_view text);

/// What to say of an error that the engine raised, with the system's reason.
std::string TextOfRaised(const RaisedError& error);

/// Writes the lines of TellMessage to a file too: whoever shows the terminal its progress cannot
/// read standard error.
void CopyMessagesTo(const std::string& path);

/// Fails where a line of standard output, or of the file of messages, did not get there.
void RequireDelivery();

/// One line on standard error, behind "TESSEL: ".
void TellMessage(const std::string& message);

/// One line on standard error, behind "TESSEL: warning: "; the command goes on. --quiet does not
/// silence it.
void Warn(const std::string& message);

/// One line on standard output, unless --quiet.
void Tell(const std::string& line);

extern bool quiet;  ///< --quiet: nothing but results, warnings and failures
