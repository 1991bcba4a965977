#include "TSLIF2/preferences.h"

#include <cstdio>

#include "TSLGLOB/shell.h"

void ReadPreferences() {}

void SetPreferences() {
    std::fprintf(out, "Setting preferences is not available in this version.\n");
}
