#include <cstdio>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/formda_versions.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/replacement.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"

namespace {

constexpr int kDigits = 6;

void EndLine(FILE* stream) {
    std::fputc('\n', stream);
}

void PutWords(FILE* stream, const char* const* words, int n) {
    for (int i = 0; i < n; i++) std::fprintf(stream, "%s\t", words[i]);
    std::fprintf(stream, "\n");
}

void PutZeros(FILE* stream, int n) {
    for (int i = 0; i < n; i++) std::fprintf(stream, "0\t");
    std::fprintf(stream, "\n");
}

void PutMap(FILE* stream, const char* const* map, int rows, int cols) {
    for (int i = 0; i < rows; i++) {
        for (int j = 0; j < cols; j++) std::fprintf(stream, "%c", map[i][j] == '1' ? '1' : '0');
        std::fprintf(stream, "\n");
    }
}

/// Everything before the matrices. Ranges, numbers of OTUs and cover codes are always zeros.
void WriteHead(FILE* stream, int nOTUs, const char* title) {
    std::fprintf(stream, "%s \n", title);
    std::fprintf(stream, "%d \n", nch);
    PutWords(stream, chLabel, nch);
    for (int i = 0; i < nch; i++) std::fprintf(stream, "%2d\t", chtype[i]);
    std::fprintf(stream, "\n");
    PutZeros(stream, nch);
    for (int i = 0; i < nch; i++) std::fprintf(stream, "%2d\t", onsta[i]);
    std::fprintf(stream, "\n");
    std::fprintf(stream, "%d \n", ncsm);
    PutWords(stream, reLabel, ncsm);
    std::fprintf(stream, "%d \n", nOTUs);
    PutZeros(stream, ncsm);
    PutZeros(stream, kCaCodes);
    std::fprintf(stream, "\n%s \n", kFormdaVersion);
}

void WriteQuantities(FILE* stream, int nOTUs, const float* const* B, const float* const* W) {
    PrintMatrixTab(stream, nOTUs, nch, B, kDigits);
    EndLine(stream);
    PrintMatrixTab(stream, nOTUs, ncsm, W, kDigits);
    EndLine(stream);
}

void WriteEnvironment(FILE* stream) {
    std::fprintf(stream, "%d \n", nenv);
    if (nenv <= 0) return;
    std::fprintf(stream, "%s \n%d \n", kEnvVersion, optEnvVarType);
    for (int j = 0; j < nenv; j++) std::fprintf(stream, "%d\t", envVarType[j]);
    std::fprintf(stream, "\n");
    PutWords(stream, envLabel, nenv);
    std::fprintf(stream, "%s \n", envName);
    for (int j = 0; j < nenv; j++) {
        for (int k = 0; k < ncsm; k++) std::fprintf(stream, "%6g\t", Printable(env[k][j]));
        std::fprintf(stream, "\n");
    }
}

void WriteSpecies(FILE* stream, int nOTUs) {
    std::fprintf(stream, "%d \n", nSpp);
    if (nSpp <= 0) return;
    std::fprintf(stream, "%s \n", whichSpp);
    for (int i = 0; i < nSpp; i++) std::fprintf(stream, "%-s\n", spp[i]);
    PutMap(stream, sppRelMap, nSpp, ncsm);
    PutMap(stream, cstSppMap, nOTUs, nSpp);
}

/// The matrix in memory may come from an earlier session with fewer OTUs: zeros stand for the rest.
void WritePhylogenyMatrix(FILE* stream, int nOTUs) {
    const int known = phylogenyRese != nullptr ? phylogenyOTUs : 0;
    for (int i = 0; i < nOTUs; i++) {
        for (int j = 0; j < nOTUs; j++)
            std::fprintf(stream, "%g\t",
                         i < known && j < known ? Printable(phylogenyRese[i][j]) : 0.0);
        EndLine(stream);
    }
}

void WritePhylogenyData(FILE* stream, int nOTUs) {
    const int known = phylogenyData != nullptr ? phylogenyOTUs : 0;
    std::fprintf(stream, "%d\n", nClados);
    for (int j = 0; j < nClados; j++)
        std::fprintf(stream, "%d\t", phylogenyVarType != nullptr ? phylogenyVarType[j] : 0);
    EndLine(stream);
    for (int i = 0; i < nOTUs; i++) {
        for (int j = 0; j < nClados; j++)
            std::fprintf(stream, "%g\t", i < known ? Printable(phylogenyData[i][j]) : 0.0);
        EndLine(stream);
    }
}

void WritePhylogeny(FILE* stream, int nOTUs) {
    std::fprintf(stream, "%d\n", hasPhylogeny);
    if (hasPhylogeny != 0) std::fprintf(stream, "%d\n", phylogenyMatrixType);
    if (hasPhylogeny == 0) return;
    switch (phylogenyMatrixType) {
        case kPhylogenySimilarities:
        case kPhylogenyDistances:
            WritePhylogenyMatrix(stream, nOTUs);
            break;
        case kPhylogenyData:
            WritePhylogenyData(stream, nOTUs);
            break;
        default:
            break;
    }
}

void WriteTraitGroups(FILE* stream) {
    std::fprintf(stream, "%d\n", hasTraitGroups);
    if (hasTraitGroups == 0) return;
    for (int i = 0; i < nch; i++) std::fprintf(stream, "%d\t", traitGroups[i]);
    EndLine(stream);
}

}  // namespace

void WriteFormda(int nOTUs, const char* name, const char* title, const float* const* B,
                 const float* const* W) {
    FileReplacement file(name, volumeName);
    if (file == nullptr) RaiseError(kFailedOutput);
    const LongStep step("Writing the data");
    WriteHead(file, nOTUs, title);
    WriteQuantities(file, nOTUs, B, W);
    WriteEnvironment(file);
    WriteSpecies(file, nOTUs);
    std::fprintf(file, "%s %d\n", kWindowMarker, SMWSize);
    WritePhylogeny(file, nOTUs);
    WriteTraitGroups(file);
    TimeStamp(file);
    file.Finish();
}
