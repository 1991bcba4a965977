#pragma once
/// \file
/// std::from_chars and std::to_chars of real numbers, which older libraries have for integers
/// alone.

#include <charconv>

/// As std::from_chars(first, last, value).
std::from_chars_result ReadReal(const char* first, const char* last, double& value);
std::from_chars_result ReadReal(const char* first, const char* last, float& value);

/// As std::to_chars(first, first + 32, value): the shortest text that is read back as the same.
char* WriteReal(char* first, double value);

/// The text of "%.17g", of which 32 places are enough; the end of it.
char* WriteRealInFull(char* first, double value);
