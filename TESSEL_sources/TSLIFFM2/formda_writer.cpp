#include <cstdarg>
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

/// A field whose failure ends the writing at once; that of the others comes to light at the end.
__attribute__((format(printf, 2, 3))) void Put(FILE* stream, const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int written = std::vfprintf(stream, format, arguments);
    va_end(arguments);
    if (written < 0) RaiseError(kFailedOutput);
}

void EndLine(FILE* stream) {
    std::fputc('\n', stream);
}

void PutWords(FILE* stream, const char* const* words, int n) {
    for (int i = 0; i < n; i++) Put(stream, "%s\t", words[i]);
    Put(stream, "\n");
}

void PutZeros(FILE* stream, int n) {
    for (int i = 0; i < n; i++) Put(stream, "0\t");
    Put(stream, "\n");
}

void PutMap(FILE* stream, const char* const* map, int rows, int cols) {
    for (int i = 0; i < rows; i++) {
        for (int j = 0; j < cols; j++) Put(stream, "%c", map[i][j] == '1' ? '1' : '0');
        Put(stream, "\n");
    }
}

/// Everything before the matrices. Ranges, numbers of OTUs and cover codes are always zeros.
void WriteHead(FILE* stream, int nOTUs, const char* title) {
    Put(stream, "%s \n", title);
    Put(stream, "%d \n", nch);
    PutWords(stream, chLabel, nch);
    for (int i = 0; i < nch; i++) Put(stream, "%2d\t", chtype[i]);
    Put(stream, "\n");
    PutZeros(stream, nch);
    for (int i = 0; i < nch; i++) Put(stream, "%2d\t", onsta[i]);
    Put(stream, "\n");
    Put(stream, "%d \n", ncsm);
    PutWords(stream, reLabel, ncsm);
    Put(stream, "%d \n", nOTUs);
    PutZeros(stream, ncsm);
    PutZeros(stream, kCaCodes);
    Put(stream, "\n%s \n", kFormdaVersion);
}

void WriteQuantities(FILE* stream, int nOTUs, const float* const* B, const float* const* W) {
    PrintMatrixTab(stream, nOTUs, nch, B, kDigits);
    EndLine(stream);
    PrintMatrixTab(stream, nOTUs, ncsm, W, kDigits);
    EndLine(stream);
}

void WriteEnvironment(FILE* stream) {
    Put(stream, "%d \n", nenv);
    if (nenv <= 0) return;
    Put(stream, "%s \n%d \n", kEnvVersion, optEnvVarType);
    for (int j = 0; j < nenv; j++) Put(stream, "%d\t", envVarType[j]);
    Put(stream, "\n");
    PutWords(stream, envLabel, nenv);
    Put(stream, "%s \n", envName);
    for (int j = 0; j < nenv; j++) {
        for (int k = 0; k < ncsm; k++) Put(stream, "%6g\t", Printable(env[k][j]));
        Put(stream, "\n");
    }
}

void WriteSpecies(FILE* stream, int nOTUs) {
    Put(stream, "%d \n", nSpp);
    if (nSpp <= 0) return;
    Put(stream, "%s \n", whichSpp);
    for (int i = 0; i < nSpp; i++) Put(stream, "%-s\n", spp[i]);
    PutMap(stream, sppRelMap, nSpp, ncsm);
    PutMap(stream, cstSppMap, nOTUs, nSpp);
}

/// The matrix in memory may come from an earlier session with fewer OTUs: zeros stand for the rest.
void WritePhylogenyMatrix(FILE* stream, int nOTUs) {
    const int known = phylogenyRese != nullptr ? phylogenyOTUs : 0;
    for (int i = 0; i < nOTUs; i++) {
        for (int j = 0; j < nOTUs; j++)
            Put(stream, "%g\t", i < known && j < known ? Printable(phylogenyRese[i][j]) : 0.0);
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
    Put(stream, "%d\n", hasPhylogeny);
    if (hasPhylogeny != 0) Put(stream, "%d\n", phylogenyMatrixType);
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
    for (int i = 0; i < nch; i++) Put(stream, "%d\t", traitGroups[i]);
    EndLine(stream);
}

}  // namespace

void WriteFormda(int nOTUs, const char* name, const char* title, const float* const* B,
                 const float* const* W) {
    FileReplacement file(name, volumeName);
    if (file == nullptr) RaiseError(kFailedOutput);
    WriteHead(file, nOTUs, title);
    WriteQuantities(file, nOTUs, B, W);
    WriteEnvironment(file);
    WriteSpecies(file, nOTUs);
    Put(file, "%s %d\n", kWindowMarker, SMWSize);
    WritePhylogeny(file, nOTUs);
    WriteTraitGroups(file);
    TimeStamp(file);
    if (!file.Commit()) RaiseError(kFailedOutput);
}
