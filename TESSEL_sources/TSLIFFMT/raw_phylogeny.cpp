#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFMT/raw_tables.h"
#include "iflibG/iflibG.h"

namespace {

enum PhylogenyFormat : int { kFullDistances = 1, kFullSimilarities = 2, kHalfSimilarities = 3 };

constexpr const char* kFormats[] = {
    "   1  a full matrix of phylogenetic distances of %d OTUs by %d OTUs (e.g. as given by "
    "PHYLOCOM)\n",
    "   2  a full matrix of phylogenetic similarities of %d OTUs by %d OTUs in the 0-1 range\n",
    "   3  a half, lower-diagonal matrix of phylogenetic similarities of %d OTUs by %d OTUs in the "
    "0-1 range\n"};

constexpr char kNormalised[] =
    "\nPhylogenetic distances were normalized to values in the range [0,1] by Dnorm = D/Dmax\n";

int AskForFormat() {
    std::fprintf(out, "%s\nFormat of phylogenetic resemblance matrix:\n", lineL);
    for (const char* format : kFormats) std::fprintf(out, format, tcst, tcst);
    return ReadOption("Type option no.: ", "1 2 3");
}

/// Reads the matrix by rows and returns how many of its numbers the file holds.
long long ReadFullMatrix(RawFile& file) {
    const LongStep step("Reading the phylogeny");
    long long numbers = 0;
    for (int i = 0; i < tcst; i++)
        for (int j = 0; j < tcst; j++) {
            phylogenyRese[i][j] = ReadDouble(file);
            if (file.stream != nullptr) numbers++;
        }
    return numbers;
}

void ReadHalfMatrix(RawFile& file) {
    const LongStep step("Reading the phylogeny");
    for (int i = 0; i < tcst; i++)
        for (int j = 0; j <= i; j++) phylogenyRese[j][i] = phylogenyRese[i][j] = ReadDouble(file);
}

}  // namespace

bool NormaliseDistances(long long numbers) {
    double largest = 1.0;
    for (int i = 0; i < tcst; i++)
        for (int j = i; j < tcst; j++)
            if (phylogenyRese[i][j] > largest) largest = phylogenyRese[i][j];
    if (largest == 1.0) return false;
    for (int i = 0; i < tcst; i++)
        for (int j = 0; j < tcst && numbers > 0; j++, numbers--) phylogenyRese[i][j] /= largest;
    return true;
}

void EnterPhylogeny(RawFile& file) {
    hasPhylogeny = 1;
    RequireRoomForTable(tcst, tcst, sizeof(double));
    RenewPhylogeny();
    switch (AskForFormat()) {
        case kFullDistances:
            phylogenyMatrixType = kPhylogenyDistances;
            if (NormaliseDistances(ReadFullMatrix(file))) std::fputs(kNormalised, out);
            break;
        case kFullSimilarities:
            phylogenyMatrixType = kPhylogenySimilarities;
            ReadFullMatrix(file);
            break;
        default:
            ReadHalfMatrix(file);
    }
    FinishRawFile(file);
}
