#include <climits>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"

void InitGlobals() {
    in = stdin;
    out = ScreenStream();
    biplotCorrThreshold = 0.6F;
    isHierarchicalPref = 0;
    scatterHSize = scatterVSize = 0.0F;
    profileHSize = profileVSize = 0.0F;
    treeHSize = treeVSize = 0.0F;
    profilePointSize = scatterPointSize = 0;
    profileType = 1;
    drawProfPtsOpt = 'n';
    rndTestOpt = 0;
    SMWSize = 1;
    sDigits = 6;
    maxColsPrint = INT_MAX;
    maxComponents = 6;
    saveStruct = saveRndData = showMemory = 'n';
    countDoubleAbsence = 1;
    sqrtDissimOpt_RaoTraits = true;
    sqrtDissimOpt_RaoPhyl = false;
    nGroups = nPart = nCstGroups = nPartCst = 0;
    whichLevelGrCST = 1;
    nProcessors = 0;
}

void FreeGlobals1() {
    CopyText(whichPrinda, kFileNameLength, "NULL");
    hasHier = hasCstRese = hasCstClus = hasNRese = hasPRese = hasProbN = hasRo = hasProbRo = 0;
    hasEnvRese = hasScores = hasReClus = hasAOCScor = hasEnvScores = hasEnvRank = 0;
    hasComplexity = hasVelocity = hasRoVelComplex = hasRoVelComplexPROB = 0;
    nPart = nGroups = nPartCst = nCstGroups = 0;
    whichLevelGrCST = 1;
}

namespace {

template <class T>
void Release(T*& block) {
    free1D(block);
    block = nullptr;
}

template <class T>
void Release(T**& table, int rows) {
    free2D(table, rows);
    table = nullptr;
}

template <class T>
void Release(T***& tables, int d1, int d2) {
    free3D(tables, d1, d2);
    tables = nullptr;
}

}  // namespace

void FreeGlobals2() {
    Release(chLabel, nch);
    Release(reLabel, ncsm);
    Release(grLabelP, kPartitions, ncsm);
    Release(grCstLabelP, kPartitions, tcst);
    Release(nchor);
    Release(weight);
    Release(chtype);
    Release(traitGroups);
    Release(chrange);
    Release(onsta);
    Release(ncst);
    Release(rcst);
    Release(nGrPoly);
    Release(cadat, tcst);
    Release(csm_Float, tcst);
    Release(env, ncsm);
    Release(envLabel, nenv);
    Release(envVarType);
    Release(relSelect);
    Release(nGroupsP);
    Release(groupRelP, kPartitions);
    Release(partLabel, kPartitions);
    Release(nGroupsCstP);
    Release(whichLevelGrCstP);
    Release(groupCstP, kPartitions);
    Release(partCstLabel, kPartitions);
    Release(partition_OTUs);
    // Checks can leave no species; the tables are there all the same.
    Release(spp, nSpp);
    Release(sppRelMap, nSpp);
    Release(cstSppMap, tcst);
    groupCst = nullptr;
    grCstLabel = nullptr;
    grLabel = nullptr;
    groupRel = nullptr;
}

void RenewPhylogeny() {
    Release(phylogenyRese, phylogenyOTUs);
    Release(phylogenyData, phylogenyOTUs);
    Release(phylogenyVarType);
    phylogenyOTUs = tcst;
    phylogenyRese = dim2Double(tcst, tcst);
}

void RenewPartitions(int communities, int otus) {
    Release(groupRelP, kPartitions);
    groupRelP = dim2Dint(kPartitions, communities);
    Release(grLabelP, kPartitions, ncsm);
    grLabelP = dim3Dchar(kPartitions, communities, kGroupLabelLength + 1);
    Release(relSelect);
    relSelect = dim1Dint(communities);
    Release(groupCstP, kPartitions);
    groupCstP = dim2Dint(kPartitions, otus);
    Release(grCstLabelP, kPartitions, tcst);
    grCstLabelP = dim3Dchar(kPartitions, otus, kGroupLabelLength + 1);
    Release(partition_OTUs);
    partition_OTUs = dim1Dint(otus);
    Release(cstTrack, cstTrackRows);
    cstTrackRows = nch;
    cstTrack = dim2Dint(nch, otus);
    groupCst = groupCstP[0];
    grCstLabel = grCstLabelP[0];
    grLabel = nullptr;
    groupRel = nullptr;
}
