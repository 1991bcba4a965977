#include "TSLIFFM2/merge.h"

#include <cstdio>

#include "TSLGLOB/shell.h"

int MergeFormda(const char*) {
    std::fprintf(out, "Merging the data of two sessions is not available in this version.\n");
    return 0;
}
