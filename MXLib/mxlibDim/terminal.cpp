#include "mxlibDim/terminal.h"

#include <unistd.h>

#include <cstdio>

bool (*personHook)() = nullptr;

bool SpeaksToPerson() {
    return personHook != nullptr ? personHook() : isatty(STDERR_FILENO) == 1;
}

void TellPerson(const char* line) {
    if (SpeaksToPerson()) std::fprintf(stderr, "%s\n", line);
}
