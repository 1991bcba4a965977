#pragma once
/// \file
/// The streams of the console.

#include <cstdio>
#include <functional>

/// Streams that take the place of standard output and standard error for what the library and the
/// dialogue say; null means the real thing. (Some systems do not let stdout itself be assigned.)
struct ConsoleStreams {
    FILE* screen = nullptr;
    FILE* errors = nullptr;
    std::function<void()> screenFlushed;  ///< told by FlushScreen; may be empty
};
extern ConsoleStreams consoleStreams;

/// Where questions, bells and the progress line go.
inline FILE* ScreenStream() {
    return consoleStreams.screen != nullptr ? consoleStreams.screen : stdout;
}

/// Where complaints go.
inline FILE* ErrorStream() {
    return consoleStreams.errors != nullptr ? consoleStreams.errors : stderr;
}

/// Makes what was written to the screen visible.
void FlushScreen();
