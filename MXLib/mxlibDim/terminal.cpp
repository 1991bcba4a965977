#include "mxlibDim/terminal.h"

#include <unistd.h>

bool (*personHook)() = nullptr;

bool SpeaksToPerson() {
    return personHook != nullptr ? personHook() : isatty(STDERR_FILENO) == 1;
}
