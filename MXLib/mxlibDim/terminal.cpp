#include "mxlibDim/terminal.h"

#include <unistd.h>

#include <cstdio>

#include "mxlibDim/standard_streams.h"

bool (*personHook)() = nullptr;

bool SpeaksToPerson() {
    return personHook != nullptr ? personHook() : isatty(STDERR_FILENO) == 1;
}

void TellPerson(const char* line) {
    if (SpeaksToPerson()) std::fprintf(ErrorStream(), "%s\n", line);
}
