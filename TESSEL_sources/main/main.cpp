#include "TSLCLI/command_line.h"
#include "TSLIF/menus.h"
#include "mxlibDim/platform.h"
#include "mxlibPar/ranks.h"

int main(int argc, char** argv) {
    PrepareProcess();
    JoinRanks(&argc, &argv);
    const bool isCommand = argc > 1;
    OpenClosedStandardStreams(isCommand);
    if (isCommand) return RunCommandLine(argc, argv);
    mainInit();
}
