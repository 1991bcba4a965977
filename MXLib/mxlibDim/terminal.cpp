#include "mxlibDim/terminal.h"

#include <cstdio>

#include "mxlibDim/platform.h"
#include "mxlibDim/standard_streams.h"

bool (*personHook)() = nullptr;

bool SpeaksToPerson() {
    return personHook != nullptr ? personHook() : IsTerminal(stderr);
}

void TellPerson(const char* line) {
    if (SpeaksToPerson()) std::fprintf(ErrorStream(), "%s\n", line);
}
