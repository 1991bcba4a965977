#include <cstdio>
#include <cstring>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/data_fields.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/formda_versions.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/scoped.h"
#include "mxlibDim/text.h"
#include "mxlibDim/with_stream.h"

// Each count is read and bounded before the first table that it sizes is allocated, and all tables
// are null when the reading begins: at every point an error leaves tables that FreeGlobals2 can
// release with the counts as they stand.

namespace {

constexpr int kSpeciesFileLength = kTypedFileNameLength;
constexpr long long kFieldBytes = 2;  // a character and the separator

bool Equal(const char* a, const char* b) {
    return std::strcmp(a, b) == 0;
}

void ReadTraits(const DataFile& file) {
    freadlineck(file.stream, kTitleLength, dataName, file.name);
    nch = ReadCount(file, 1, 4 * kFieldBytes);  // label, type, range, number of states
    chLabel = dim2Dchar(nch, kLabelLength + 1);
    ReadLabels(file, chLabel, nch, kLabelLength);
    chtype = dim1Dint(nch);
    ReadInts(file, chtype, nch);
    chrange = dim1Dfloat(nch);
    ReadFloats(file, chrange, nch);
    onsta = dim1Dint(nch);
    ReadInts(file, onsta, nch);
}

void ReadCommunities(const DataFile& file) {
    ncsm = ReadCount(file, 1, 2 * kFieldBytes);  // label, number of OTUs
    reLabel = dim2Dchar(ncsm, kLabelLength + 1);
    ReadLabels(file, reLabel, ncsm, kLabelLength);
}

void AllocateWorkingArrays() {
    nchor = dim1Dint(nch);
    weight = dim1Dfloat(nch);
    rcst = dim1Dint(nch);
    nGrPoly = dim1Dint(nch);
    partLabel = dim2Dchar(kPartitions, kPartitionLabelLength + 1);
    nGroupsP = dim1Dint(kPartitions);
    partCstLabel = dim2Dchar(kPartitions, kPartitionLabelLength + 1);
    nGroupsCstP = dim1Dint(kPartitions);
    whichLevelGrCstP = dim1Dint(kPartitions);
    RenewPartitions(ncsm, tcst);
}

void ReadTable(const DataFile& file, float** table, int rows, int cols) {
    for (int i = 0; i < rows; i++) ReadFloats(file, table[i], cols);
}

/// Matrices B and W. Returns whether the file goes on to tell groups of traits at its end.
bool ReadQuantities(const DataFile& file) {
    cadat = dim2Dfloat(tcst, ncsm);
    csm_Float = dim2Dfloat(tcst, nch);
    const int length = 10 * nch + 20;
    const ScopedVector<char> word(length + 1);
    freadckWord(file.stream, word, length, file.name);
    const bool isNewest = Equal(word, kFormdaVersion);
    if (isNewest || Equal(word, kFormdaVersion2008)) {
        ReadTable(file, csm_Float, tcst, nch);
        ReadTable(file, cadat, tcst, ncsm);
        return isNewest;
    }
    // The oldest form has no version: the word is already the first OTU's row of B.
    for (int i = 0; i < tcst; i++) {
        if (i > 0) freadckWord(file.stream, word, length, file.name);
        DecodeStates(word, nch, csm_Float[i]);
        ReadFloats(file, cadat[i], ncsm);
    }
    return false;
}

void ReadEnvLabels(const DataFile& file) {
    char word[kLabelLength + 1];
    freadckWord(file.stream, word, kLabelLength, file.name);
    if (Equal(word, kEnvVersion)) {
        optEnvVarType = ReadInt(file);
        ReadInts(file, envVarType, nenv);
        ReadWords(file, envLabel, nenv, kLabelLength);
        return;
    }
    // An old file goes straight to the labels: all variables are quantitative.
    optEnvVarType = 2;
    for (int j = 0; j < nenv; j++) envVarType[j] = 3;
    CopyText(envLabel[0], kLabelLength, word);
    ReadWords(file, envLabel + 1, nenv - 1, kLabelLength);
}

void ReadEnvironment(const DataFile& file) {
    temEnvQuant = temEnvQual = temEnvBin = 0;
    nenv = ReadCount(file, 0, kFieldBytes * (1 + static_cast<long long>(ncsm)));
    if (nenv == 0) return;
    envVarType = dim1Dint(nenv);
    envLabel = dim2Dchar(nenv, kLabelLength + 1);
    env = dim2Dfloat(ncsm, nenv);
    ReadEnvLabels(file);
    ReadRestOfLine(file, envName, sizeof(envName) - 1);
    for (int j = 0; j < nenv; j++)
        for (int k = 0; k < ncsm; k++) ReadFloats(file, &env[k][j], 1);
    for (int j = 0; j < nenv; j++) {
        if (envVarType[j] == 3) temEnvQuant = 1;
        if (envVarType[j] == 2) temEnvQual = 1;
        if (envVarType[j] == 1) temEnvBin = 1;
    }
}

void ReadMap(const DataFile& file, char** map, int rows, int cols) {
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++)
            map[i][j] = static_cast<char>(ScanChar(file.stream, "0 1", file.name));
}

void ReadSpecies(const DataFile& file) {
    nSpp = ReadCount(file, 0, kFieldBytes + ncsm + static_cast<long long>(tcst));
    if (nSpp == 0) return;
    spp = dim2Dchar(nSpp, kSpeciesLength + 1);
    sppRelMap = dim2Dchar(nSpp, ncsm);
    cstSppMap = dim2Dchar(tcst, nSpp);
    freadlineck(file.stream, kSpeciesFileLength, whichSpp, file.name);
    for (int i = 0; i < nSpp; i++) freadlineckTEMP(file.stream, kSpeciesLength, spp[i], file.name);
    ReadMap(file, sppRelMap, nSpp, ncsm);
    ReadMap(file, cstSppMap, tcst, nSpp);
}

/// In an old file the word is the first one of the time stamp.
void ReadWindow(const DataFile& file) {
    char word[kLabelLength + 1];
    freadckWord(file.stream, word, kLabelLength, file.name);
    SMWSize = Equal(word, kWindowMarker) ? ReadInt(file) : 1;
}

void ReadPhylogenyData(const DataFile& file) {
    nClados = ReadCount(file, 0, kFieldBytes * (1 + static_cast<long long>(tcst)));
    phylogenyVarType = dim1Dint(nClados);
    ReadInts(file, phylogenyVarType, nClados);
    phylogenyData = dim2Dfloat(tcst, nClados);
    ReadTable(file, phylogenyData, tcst, nClados);
}

void ReadPhylogeny(const DataFile& file) {
    // A matrix of zeros that no line of the file backs takes 2 gigabytes at this size; a count
    // beyond it is taken for damage.
    constexpr int kMostOTUsWithoutMatrix = 16384;
    hasPhylogeny = 0;
    long long flag = 0;
    if (std::fscanf(file.stream, "%lld", &flag) == 1) hasPhylogeny = flag != 0;
    if (std::ferror(file.stream) != 0) FailAtEnd(file.stream, file.name);
    if (hasPhylogeny == 0) return;
    phylogenyMatrixType = ReadInt(file);
    const bool isInFile =
        phylogenyMatrixType == kPhylogenySimilarities || phylogenyMatrixType == kPhylogenyDistances;
    if (isInFile)
        RequireRoom(file, tcst, kFieldBytes * tcst);
    else if (tcst > kMostOTUsWithoutMatrix)
        FailAtEnd(file.stream, file.name);
    RenewPhylogeny();
    if (isInFile)
        for (int i = 0; i < tcst; i++)
            for (int j = 0; j < tcst; j++)
                freadck(file.stream, "%lf", &phylogenyRese[i][j], file.name);
    if (phylogenyMatrixType == kPhylogenyData) ReadPhylogenyData(file);
}

void ReadTraitGroups(const DataFile& file, bool isTold) {
    traitGroups = dim1Dint(nch);
    hasTraitGroups = isTold ? ReadInt(file) : 0;
    if (hasTraitGroups != 0) ReadInts(file, traitGroups, nch);
}

void ReadFormda(const DataFile& file) {
    ReadTraits(file);
    ReadCommunities(file);
    tcst = ReadCount(file, 1, kFieldBytes * (static_cast<long long>(nch) + ncsm));
    AllocateWorkingArrays();
    ncst = dim1Dint(ncsm);
    ReadInts(file, ncst, ncsm);
    ReadFloats(file, ca_code, kCaCodes);
    const bool tellsTraitGroups = ReadQuantities(file);
    ReadEnvironment(file);
    ReadSpecies(file);
    ReadWindow(file);
    ReadPhylogeny(file);
    ReadTraitGroups(file, tellsTraitGroups);
}

}  // namespace

void OpenFormda(int /*mode*/) {
    FILE* const stream = fopenck(whichFormda, volumeName, "r");
    if (stream == nullptr) RaiseError(kFailedOpening);
    FreeGlobals2();
    const LongStep step("Reading the data");
    WithStream(stream, [stream] { ReadFormda({stream, whichFormda}); });
    dirtyOrig = 0;
}
