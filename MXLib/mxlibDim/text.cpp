#include "mxlibDim/text.h"

#include <algorithm>
#include <cctype>
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

void StrToUpper(char* s) {
    for (; *s != '\0'; s++) *s = static_cast<char>(UpperCase(*s));
}
