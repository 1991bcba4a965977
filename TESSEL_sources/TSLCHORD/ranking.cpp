#include "TSLCHORD/ranking.h"

#include <cstdio>

#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/analysis_settings.h"
#include "TSLIF/settings_dialogue.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/reading.h"

void IFChOrderSearch() {
    SettingsChRank();
    RunRanking();
    EndRanking();
    ClearLine();
    std::fprintf(out, "\n\nResults on file %s%s\n", volumeName, whichChorder);
    Wait();
}
