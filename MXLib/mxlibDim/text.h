#pragma once
/// \file
/// Small routines on zero-terminated text.

#include <cstddef>

/// Copies at most `length` characters of `source` into `destination` (room for length + 1) and
/// terminates it: longer text is cut.
void CopyText(char* destination, std::size_t length, const char* source);

/// Comparison that ignores case: strcmp of upper-case copies.
int StrCmp(const char* a, const char* b);

/// Turns `s` to upper case in place.
void StrToUpper(char* s);
