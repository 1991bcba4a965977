#pragma once
/// \file
/// The three standard descriptors, and the streams of the console.

#include <cstdio>

/// Opens those that were closed when the process began on the null device. To be called before any
/// file is opened: a file that got the number of one would take in what is written to the screen.
/// `writingFails`: what is written to one that was closed fails; else it is dropped.
void OpenClosedStandardStreams(bool writingFails);

/// Streams that take the place of standard output and standard error for what the library and the
/// dialogue say; null means the real thing. (Some systems do not let stdout itself be assigned.)
struct ConsoleStreams {
    FILE* screen = nullptr;
    FILE* errors = nullptr;
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
