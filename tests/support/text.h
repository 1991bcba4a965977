#pragma once
/// \file
/// Texts in tests: what they hold, how often, and what differs.

#include <gtest/gtest.h>

#include <string>

inline bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

inline int Count(const std::string& text, const std::string& part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        found++;
    return found;
}

inline std::string Repeated(const std::string& text, std::size_t times) {
    std::string repeated;
    while (times-- > 0) repeated += text;
    return repeated;
}

/// The text with the first `what` replaced; a `what` that is not there is a failure.
inline std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

inline std::string WithoutBells(std::string text) {
    std::erase(text, '\a');
    return text;
}
