#include "TSLIFFMT/derive.h"

#include <cstdio>

#include "TSLGLOB/shell.h"

bool PickSomeFormda() {
    std::fprintf(out, "Deriving a modified data set is not available in this version.\n");
    return false;
}
