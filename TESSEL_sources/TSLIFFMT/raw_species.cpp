#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "TSLIFFMT/checks.h"
#include "TSLIFFMT/raw_tables.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/text.h"

namespace {

constexpr char kOptions[] =
    "Species labels are: \n"
    "   1  the first 4 characters preceding each species name\n"
    "   2  to be created by the program\n"
    "Type option no.: ";

}  // namespace

void AllocateSpecies() {
    RequireRoomForTable(tcst, kSpeciesLength + 1, sizeof(char));
    RequireRoomForTable(tcst, ncsm, sizeof(char));
    RequireRoomForTable(tcst, tcst, sizeof(char));
    nSpp = tcst;
    spp = dim2Dchar(nSpp, kSpeciesLength + 1);
    sppRelMap = dim2Dchar(nSpp, ncsm);
    cstSppMap = dim2Dchar(tcst, tcst);
}

void SettleSpecies(int option) {
    CheckSpecies(option);
    ReleaseRowsLeftBehind(tcst, tcst);
    SpeciesReleveMap();
}

void EnterSpecies(RawFile& file) {
    CopyText(whichSpp, sizeof(whichSpp) - 1, file.name);
    std::fprintf(out, "%s\n", lineL);
    const int option = ReadOption(kOptions, "1 2");
    AllocateSpecies();
    for (int i = 0; i < nSpp; i++) ReadNameStrictly(file, spp[i]);
    CloseRawFile(file);
    SettleSpecies(option);
}
