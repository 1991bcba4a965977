#include "mxlibDim/text.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

void CopyText(char* destination, std::size_t length, const char* source) {
    const std::size_t kept = std::min(length, std::strlen(source));
    std::memmove(destination, source, kept);
    destination[kept] = '\0';
}

static int UpperCase(char c) {
    return std::toupper(static_cast<unsigned char>(c));
}

int StrCmp(const char* a, const char* b) {
    while (*a != '\0' && UpperCase(*a) == UpperCase(*b)) {
        a++;
        b++;
    }
    return UpperCase(*a) - UpperCase(*b);
}

int CountNumbers(const char* word) {
    if (std::strspn(word, "+-.,;0123456789eE") != std::strlen(word)) return 0;
    int count = 0;
    for (;; count++) {
        word += std::strspn(word, ",;");
        if (*word == '\0') return count;
        char* end = nullptr;
        std::strtod(word, &end);
        if (end == word || (*end != '\0' && std::strchr(",;", *end) == nullptr)) return 0;
        word = end;
    }
}

void StrToUpper(char* s) {
    for (; *s != '\0'; s++) *s = static_cast<char>(UpperCase(*s));
}
