#include "mxlibDim/real_text.h"

#include <version>

#ifndef __cpp_lib_to_chars
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#endif

namespace {

constexpr int kRoom = 32;
constexpr int kDigits = 17;

}  // namespace

#ifdef __cpp_lib_to_chars

std::from_chars_result ReadReal(const char* first, const char* last, double& value) {
    return std::from_chars(first, last, value);
}

std::from_chars_result ReadReal(const char* first, const char* last, float& value) {
    return std::from_chars(first, last, value);
}

char* WriteReal(char* first, double value) {
    return std::to_chars(first, first + kRoom, value).ptr;
}

// In a fraction of the time of printf.
char* WriteRealInFull(char* first, double value) {
    return std::to_chars(first, first + kRoom, value, std::chars_format::general, kDigits).ptr;
}

#else

namespace {

/// `convert` is strtod or strtof, which read a little more than from_chars does: white space, a
/// plus sign and hexadecimal digits.
template <class T>
std::from_chars_result Read(const char* first, const char* last, T& value,
                            T (*convert)(const char*, char**)) {
    const std::string text(first, last);
    const std::string bare = text.substr(text.starts_with('-') ? 1 : 0);
    const bool isNumber =
        !bare.empty() && std::string(" \t\r\n\v\f+-").find(bare[0]) == std::string::npos;
    if (!isNumber) return {first, std::errc::invalid_argument};
    if (bare.starts_with("0x") || bare.starts_with("0X")) {
        value = 0;
        return {first + (text.size() - bare.size()) + 1, std::errc()};
    }
    char* end = nullptr;
    const T number = convert(text.c_str(), &end);
    const auto length = end - text.c_str();
    if (length == 0) return {first, std::errc::invalid_argument};
    // Only digits other than 0 before the exponent make a 0 too small.
    const std::string read = text.substr(0, static_cast<std::size_t>(length));
    const bool isTooLarge = std::isinf(number) && read.find_first_of("nN") == std::string::npos;
    const bool isTooSmall =
        number == 0 &&
        read.substr(0, read.find_first_of("eE")).find_first_of("123456789") != std::string::npos;
    if (isTooLarge || isTooSmall) return {first + length, std::errc::result_out_of_range};
    value = number;
    return {first + length, std::errc()};
}

}  // namespace

std::from_chars_result ReadReal(const char* first, const char* last, double& value) {
    return Read<double>(first, last, value, std::strtod);
}

std::from_chars_result ReadReal(const char* first, const char* last, float& value) {
    return Read<float>(first, last, value, std::strtof);
}

char* WriteReal(char* first, double value) {
    int length = 0;
    for (int digits = 1; digits <= kDigits; digits++) {
        length = std::snprintf(first, kRoom, "%.*g", digits, value);
        if (std::strtod(first, nullptr) == value) break;
    }
    return first + length;
}

char* WriteRealInFull(char* first, double value) {
    return first + std::snprintf(first, kRoom, "%.*g", kDigits, value);
}

#endif
