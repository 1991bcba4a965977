#include "TSLIF/analysis_settings.h"

#include <algorithm>
#include <cstdio>

#include "TSLCHORD/criteria.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/track.h"
#include "TSLRESE/scaling_up.h"
#include "iflibG/iflibG.h"
#include "mxlib/belonging.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

namespace {

constexpr int kAllCombinations = 2;
constexpr int kEuclideanOption = 6;

void Release(int*& memberships) {
    free1D(memberships);
    memberships = nullptr;
}

}  // namespace

void StartFunctionalAnalysis() {
    MakeSessionFileName(whichPrinda, sessionName, prindaExt);
    MakeSessionFileName(whichHier, sessionName, hierExt);
    hasHier = 1;
    hasCstRese = hasCstClus = hasNRese = hasPRese = hasScores = hasReClus = hasAOCScor = 0;
    hasProbN = hasProbRo = hasRo = 0;
    hasComplexity = hasVelocity = hasRoVelComplex = hasRoVelComplexPROB = 0;
    nCstGroups = 0;
    whichLevelGrCST = 1;
    // A phylogeny of an earlier session takes no part.
    includePhylogeny = 0;
}

void ScaleByTypes() {
    optWeightedNullModel = false;
    part = 1;
    traitBasedOpt = 1;
    poolCSTopt = 2;
    clusMethPoolCSTs = 0;
}

void ScaleByTraitAverages() {
    optWeightedNullModel = false;
    part = 1;
    traitBasedOpt = 2;
    poolCSTopt = 0;
}

void TakeSpeciesAsTypes() {
    for (int t = 0; t < tcst; t++)
        for (int s = 0; s < nSpp; s++)
            if (cstSppMap[t][s] == '1') partition_OTUs[t] = s + 1;
}

void SettleTypes() {
    CountGroupsNew(tcst, partition_OTUs, &nGrPoly[0], nullptr);
    reseCSTopt = 1;
}

void SettleFuzziness(bool fuzzyTypes) {
    fuzzy = fuzzyTypes ? kFuzzyTypes : kCrisp;
    if (fuzzyTypes) fuzziness = 1.0F;
}

void SettleNesting(bool withinGroups) {
    optRestrictPermutNullModel = withinGroups ? 1 : 0;
    if (!withinGroups) return;
    Release(nestingMembershipOTUs);
    nestingMembershipOTUs = dim1Dint(tcst);
}

bool TakesResemblance(bool isRanking) {
    return opt_ro == kMantel && !(isRanking && (opt_struct == kRankTE || opt_struct == kRankRE));
}

void SettleTraits(const int* included) {
    std::copy(included, included + nch, weight);
}

void WeightByTraitGroups(const int* included) {
    ScopedVector<int> labels(nch);
    int groups = 0;
    CountGroupsSelect(nch, traitGroups, included, &groups, labels);
    for (int g = 0; g < groups; g++) {
        int size = 0;
        for (int k = 0; k < nch; k++)
            if (included[k] == 1 && traitGroups[k] == labels[g]) size++;
        for (int k = 0; k < nch; k++)
            if (traitGroups[k] == labels[g]) weight[k] /= static_cast<float>(size);
    }
}

void SettlePhylogeny() {
    if (hasPhylogeny != 0) includePhylogeny = 1;
    if (includePhylogeny == 0) return;
    Release(partition_OTUs_Phyl);
    partition_OTUs_Phyl = dim1Dint(tcst);
    std::copy(partition_OTUs, partition_OTUs + tcst, partition_OTUs_Phyl);
    CountGroupsNew(tcst, partition_OTUs_Phyl, &nTaxa, nullptr);
    fuzzyPhyl = 1;
}

void SettleOrder() {
    isHierarchical = 0;
    for (int k = 0; k < nch; k++) nchor[k] = k + 1;
    for (int k = 1; k < nch; k++) nGrPoly[k] = 2;
    optCoVariable = false;
}

void SettleRanking() {
    rankingAlgorithm = kAllCombinations;
    if (opt_struct == kRankTE || opt_struct == kRankRE) rese_opt = kEuclideanOption;
    if (traitBasedOpt != 1) whichObj = 'r';
    optUnitTotalAdjust1 = true;
    CountGroupsNew(tcst, partition_OTUs, &nMinCSTGroupsChRank, nullptr);
    nMaxCSTGroupsChRank = opt_struct == kRankTE ? tcst : nMinCSTGroupsChRank;
}

void RunFunctionalAnalysis(const AnalysisReceiver& receiver) {
    cohe = 0;
    reseTypeOrd = reseTypeClus = reseTypeEv = reseTypeRnd = reseTypeERank = 1;
    reseCstOpt = 0;
    PFTs_ScalingUp(receiver);
    std::copy(nGrPoly, nGrPoly + nch, rcst);
    Release(nestingMembershipOTUs);
    Release(partition_OTUs_Phyl);
    dirtyOrig = 1;
    WriteTrack(1);
}

void NameRankingFile() {
    std::snprintf(whichChorder, sizeof whichChorder, "%s%s", sessionName,
                  CriterionOf(opt_struct).suffix);
}

void RunRanking(const SearchRun& run) {
    NameRankingFile();
    const LongStep step("Tables of the search");
    CriterionOf(opt_struct).search(run);
}

void EndRanking() {
    Release(partition_OTUs_Phyl);
    dirtyOrig = 1;
}
