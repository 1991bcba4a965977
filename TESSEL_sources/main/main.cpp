#include "TSLCLI/command_line.h"
#include "TSLIF/menus.h"
#include "mxlibDim/standard_streams.h"

int main(int argc, char** argv) {
    OpenClosedStandardStreams();
    if (argc > 1) return RunCommandLine(argc, argv);
    mainInit();
}
