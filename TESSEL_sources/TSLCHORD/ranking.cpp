#include "TSLCHORD/ranking.h"

#include <cstdio>

#include "TSLCHORD/criteria.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/settings_dialogue.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/reading.h"

void IFChOrderSearch() {
    SettingsChRank();
    const RankingCriterion& criterion = CriterionOf(opt_struct);
    std::snprintf(whichChorder, sizeof whichChorder, "%s%s", sessionName, criterion.suffix);
    criterion.search();
    free1D(partition_OTUs_Phyl);
    partition_OTUs_Phyl = nullptr;
    dirtyOrig = 1;
    ClearLine();
    std::fprintf(out, "\n\nResults on file %s%s\n", volumeName, whichChorder);
    Wait();
}
