#pragma once
/// \file
/// Small routines on zero-terminated text, and on what stands in it.

#include <cmath>
#include <cstddef>

/// Copies at most `length` characters of `source` into `destination` (room for length + 1) and
/// terminates it: longer text is cut.
void CopyText(char* destination, std::size_t length, const char* source);

/// Comparison that ignores case: strcmp of upper-case copies.
int StrCmp(const char* a, const char* b);

/// How many numbers a word holds that holds nothing else, commas and semicolons between them; 0 for
/// any other word, "nan" and "inf" among them.
int CountNumbers(const char* word);

/// Turns `s` to upper case in place.
void StrToUpper(char* s);

/// x for printing: NaN is printed as nan, never as -nan, since its sign is whatever the processor
/// makes of it. Every number that can be NaN goes through here on its way to a file or the screen.
inline double Printable(double x) {
    return std::isnan(x) ? std::fabs(x) : x;
}
