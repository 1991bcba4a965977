#pragma once
/// \file
/// The console's progress line, the clock, the time stamp.

#include <cstdio>
#include <ctime>

/// State of the progress line, owned by this unit.
extern int is40CharLine;       ///< 1 when the text of the progress line stands on the console
extern int is80CharLine;       ///< 1 when its second half of 40 columns does
extern std::clock_t t1;        ///< processor clock at start
extern std::clock_t t2;        ///< processor clock at the last update of the line
extern std::time_t timeStart;  ///< wall clock at start

/// Clears the flags and takes both clocks.
void InitIFLibG();

/// Takes the progress line off the console: 40 backspaces for each flag that is set, cleared on the
/// way. The characters stay until what follows overwrites them.
void ClearLine();

/// Writes n backspaces to standard output; nothing for n below 1.
void ClearLineLength(int n);

/// The point where routines announce themselves. Does nothing.
void HandleEventInfoWhere(const char* text);

/// Called at every report of progress, however short the time since the last; null for nothing. A
/// harness bounds the work of a run by it and may leave by an exception.
extern void (*progressHook)();

/// Rewrites the progress line with `text` in 40 columns and 40 blanks, unless fewer than 5 clock
/// ticks have passed since the last time.
void HandleEventInfoWhere2(const char* text);

/// The current local date and time as ctime gives them, with its newline.
void TimeStamp(FILE* stream);

/// `x` itself: seconds of wall clock need no conversion.
double difftime_Clock(double x);
