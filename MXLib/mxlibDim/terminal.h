#pragma once
/// \file
/// Whether a person reads what the program says on standard error.

/// True when standard error is a terminal. Notes that only a person needs hang on it, so that runs
/// whose errors go to a file or a pipe keep their bytes.
bool SpeaksToPerson();

/// A line on standard error, for a person alone.
void TellPerson(const char* line);

/// Answers in the place of the terminal, for tests; null means the real thing.
extern bool (*personHook)();
