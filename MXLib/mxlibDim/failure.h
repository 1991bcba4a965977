#pragma once
/// \file
/// Errors that end a session, and the two ways in which the process can come to rest.

#include <string>

/// The codes that a routine may raise. The session's catch point gives each its message, its wait
/// and its exit status.
enum ErrorCode : int {
    kOutOfMemory = 1,    ///< an allocation failed
    kEndOfFile = 2,      ///< a stream ended, or held a word that does not convert
    kFailedOutput = 3,   ///< an output call failed
    kFailedOpening = 4,  ///< a file could not be opened
    kBackToMainMenu = 5  ///< the session is given up without a message
};

/// What RaiseError throws: caught at the catch points of the program and nowhere else.
struct RaisedError {
    int code;
    std::string reason;  ///< the system's, for a person; may be empty
};

/// Leaves everything up to the nearest catch point with `code`; all scope guards on the way release
/// what they hold.
[[noreturn]] void RaiseError(int code, std::string reason = {});

/// Ends the process with `status` by std::exit. A test or a fuzz target may put another ending in
/// its place (see ProcessEndings).
[[noreturn]] void EndProgram(int status);

/// Rests without end: sleeps, reads nothing, writes nothing. It stands wherever the dialogue waits
/// for input that can no longer come. Only the end of the process leaves it.
[[noreturn]] void RestForever();

/// The endings that EndProgram and RestForever call, for harnesses that must survive them and for
/// runs without a user: a replacement has to leave by an exception. Null means the real thing.
struct ProcessEndings {
    void (*end)(int status) = nullptr;
    void (*rest)() = nullptr;
    /// Called first when a question finds the standard input at its end; null goes on as told with
    /// each reader (reading.h).
    void (*inputEnds)() = nullptr;
};
extern ProcessEndings processEndings;
