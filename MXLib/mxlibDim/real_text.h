#pragma once
/// \file
/// std::from_chars and std::to_chars of real numbers, which older libraries have for integers
/// alone.

#include <charconv>
#include <string_view>
#include <type_traits>

/// As std::from_chars(first, last, value).
std::from_chars_result ReadReal(const char* first, const char* last, double& value);
std::from_chars_result ReadReal(const char* first, const char* last, float& value);

/// Whether the whole text is a number of the type, which it then takes.
template <class T>
bool ReadWholeNumber(std::string_view text, T* number) {
    const char* const end = text.data() + text.size();
    std::from_chars_result read = {};
    if constexpr (std::is_integral_v<T>)
        read = std::from_chars(text.data(), end, *number);
    else
        read = ReadReal(text.data(), end, *number);
    return read.ec == std::errc() && read.ptr == end;
}

/// As std::to_chars(first, first + 32, value): the shortest text that is read back as the same.
char* WriteReal(char* first, double value);

/// The text of "%.17g", of which 32 places are enough; the end of it.
char* WriteRealInFull(char* first, double value);
