#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "TSLIFFMT/raw_tables.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/dim.h"

namespace {

enum CommunityFormat : int { kCommunitiesAsRows = 1, kCommunitiesAsColumns = 2, kVector = 3 };

constexpr char kLabelHeading[] = "Labels for communities: \n   1  given by default ";
constexpr char kFormats[] =
    "Format of matrix (W) with OTUs performances: \n"
    "   1  Communities as rows \n"
    "   2  Communities as columns\n"
    "   3  Community data is a vector of OTUs performances in each community\n"
    "Type option no.: ";

void ReadCommunitiesAsRows(RawFile& file) {
    const LongStep step("Reading the communities");
    for (int c = 0; c < ncsm; c++)
        for (int i = 0; i < tcst; i++) cadat[i][c] = ReadFloat(file);
}

void ReadCommunitiesAsColumns(RawFile& file) {
    const LongStep step("Reading the communities");
    for (int i = 0; i < tcst; i++)
        for (int c = 0; c < ncsm; c++) cadat[i][c] = ReadFloat(file);
}

void AskForOTUsOfCommunities() {
    std::fputs("Number of OTUs in each community:\nCommunities:       \t", out);
    for (int c = 0; c < ncsm; c++) std::fprintf(out, "%d\t", c + 1);
    std::fputc('\n', out);
    ReadLongInput(ncsm, ncst, "number of OTUs", nullptr);
}

/// Each community's OTUs follow those of the community before it. Numbers beyond the last OTU are
/// read and dropped, so that labels are found behind them; a negative number of OTUs is none.
void ReadVector(RawFile& file) {
    int otu = 0;
    for (int c = 0; c < ncsm; c++)
        for (int k = 0; k < ncst[c] && (otu < tcst || file.stream != nullptr); k++) {
            const float quantity = ReadFloat(file);
            if (otu < tcst) cadat[otu++][c] = quantity;
        }
}

}  // namespace

void AllocateCommunities() {
    RequireRoomForTable(tcst, ncsm, sizeof(float));
    RequireRoomForTable(ncsm, kLabelLength + 1, sizeof(char));
    ncst = dim1Dint(ncsm);
    reLabel = dim2Dchar(ncsm, kLabelLength + 1);
}

void EnterCommunities(RawFile& file) {
    std::fprintf(out, "%s\n", lineL);
    ncsm = AskForCount("Enter number of communities:    ");
    AllocateCommunities();
    const LabelSource source = AskLabelSource(kLabelHeading, file);
    const int format = ReadOption(kFormats, "1 2 3");
    cadat = dim2Dfloat(tcst, ncsm);
    switch (format) {
        case kCommunitiesAsRows:
            ReadCommunitiesAsRows(file);
            break;
        case kCommunitiesAsColumns:
            ReadCommunitiesAsColumns(file);
            break;
        default:
            AskForOTUsOfCommunities();
            ReadVector(file);
    }
    SetLabels(source, ncsm, reLabel, file);
    FinishRawFile(file);
}
