#include "TSLCLI/command_line.h"
#include "TSLIF/menus.h"

int main(int argc, char** argv) {
    if (argc > 1) return RunCommandLine(argc, argv);
    mainInit();
}
