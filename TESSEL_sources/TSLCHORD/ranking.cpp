#include "TSLCHORD/ranking.h"

#include <cstdio>

#include "TSLGLOB/shell.h"

void IFChOrderSearch() {
    std::fprintf(out, "The ranking of trait subsets is not available in this version.\n");
}
