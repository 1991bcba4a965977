#include "TSLIFFM2/merge.h"

#include <cstdio>
#include <string>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/formda.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFM2/joined_tables.h"
#include "TSLIFFMT/checks.h"
#include "TSLIFFMT/dialogue_data.h"
#include "TSLIFFMT/selection.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/text.h"
#include "mxlibDim/with_stream.h"

namespace {

constexpr char kNoResemblances[] =
    "\nThe phylogeny holds no resemblances of the second session's OTUs: they are recorded as "
    "missing (-999).\n";

void AddToTitle(const char* secondFormda) {
    CopyText(dataName, kTitleLength, (std::string(dataName) + " " + secondFormda).c_str());
}

/// False, after the message, for sessions that do not match.
bool ReadSecondFile(const DataFile& file, JoinedTables& joined) {
    AddToTitle(file.name);
    const char* difference = nullptr;
    WithStream(file.stream, [&] { difference = JoinFile(file, joined); });
    if (difference != nullptr) std::fputs(difference, out);
    return difference == nullptr;
}

/// Puts a joined table, if there is one, in the place of one of that many rows.
template <class T>
void Install(T**& table, int rows, std::optional<ScopedMatrix<T>>& joined) {
    if (!joined) return;
    free2D(table, rows);
    table = joined->release();
}

void InstallPhylogeny(JoinedTables& joined) {
    Install(phylogenyRese, phylogenyOTUs, joined.phylogeny);
    Install(phylogenyData, phylogenyOTUs, joined.clades);
    phylogenyOTUs = joined.otus;
}

void InstallTables(JoinedTables& joined) {
    RenewPartitions(joined.communities, joined.otus);
    Install(reLabel, ncsm, joined.reLabel);
    Install(csm_Float, tcst, joined.csm_Float);
    Install(cadat, tcst, joined.cadat);
    Install(env, ncsm, joined.env);
    Install(spp, nSpp, joined.spp);
    Install(sppRelMap, nSpp, joined.sppRelMap);
    Install(cstSppMap, tcst, joined.cstSppMap);
    free1D(ncst);
    ncst = joined.ncst->release();
    if (hasPhylogeny != 0) InstallPhylogeny(joined);
    ncsm = joined.communities;
    tcst = joined.otus;
    if (joined.species > 0) nSpp = joined.species;
}

void MergeSpecies() {
    const int species = nSpp;
    CheckSpeciesMerge();
    CheckCSTsSameSpecies();
    ReleaseRowsLeftBehind(tcst, species);
}

void TellAboutPhylogeny() {
    const bool isInFile = phylogenyMatrixType == kPhylogenySimilarities ||
                          phylogenyMatrixType == kPhylogenyData ||
                          phylogenyMatrixType == kPhylogenyDistances;
    if (hasPhylogeny != 0 && isInFile) std::fputs(kNoResemblances, out);
}

void WriteMergedDataSet() {
    MakeSessionFileName(whichFormda, sessionName, formdaExt);
    WriteFormda(tcst, whichFormda, dataName, csm_Float, cadat);
}

}  // namespace

int MergeFormda(const char* secondFormda) {
    FILE* const stream = fopenck(secondFormda, volumeName, "r");
    if (stream == nullptr) RaiseError(kFailedOpening);
    Selection left;
    return MergeOpenFormda({stream, secondFormda}, &left);
}

int MergeOpenFormda(const DataFile& second, Selection* otus) {
    JoinedTables joined;
    if (!ReadSecondFile(second, joined)) return 0;
    if (hasPhylogeny != 0) JoinPhylogeny(joined);
    dirtyOrig = 0;
    InstallTables(joined);
    if (nSpp > 0) MergeSpecies();
    *otus = CleanDataSet();
    if (tcst == 0) {
        std::fputs(kNothingLeft, out);
        return 0;
    }
    TellAboutPhylogeny();
    WriteMergedDataSet();
    return 1;
}
