#pragma once
/// \file
/// A ranking as the session holds it, for searches in process.

#include <cstdio>
#include <set>

#include "TSLCHORD/criteria.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "mxlibDim/dim.h"
#include "reference/plain_ranking.h"

template <class T>
void FillTable(const RankingCase::Rows& rows, T** to) {
    for (std::size_t i = 0; i < rows.size(); i++)
        for (std::size_t j = 0; j < rows[i].size(); j++) to[i][j] = T(rows[i][j]);
}

inline int CountLabels(const std::vector<int>& labels) {
    return int(std::set<int>(labels.begin(), labels.end()).size());
}

/// The data set and the settings of the case in the globals, for all sizes of subsets. Traits are
/// named a, b, c ... FreeGlobals2 and a free1D of the taxa release what it allocates.
inline void OpenRanking(const RankingCase& in) {
    FreeGlobals2();
    nch = int(in.B[0].size());
    tcst = int(in.B.size());
    ncsm = int(in.W.size());
    nenv = int(in.E[0].size());
    chLabel = dim2Dchar(nch, kLabelLength + 1);
    chtype = dim1Dint(nch);
    chrange = dim1Dfloat(nch);
    weight = dim1Dfloat(nch);
    for (int k = 0; k < nch; k++) {
        chLabel[k][0] = char('a' + k);
        chtype[k] = in.traitTypes[k];
        weight[k] = in.weights[k];
    }
    csm_Float = dim2Dfloat(tcst, nch);
    cadat = dim2Dfloat(tcst, ncsm);
    env = dim2Dfloat(ncsm, nenv);
    envVarType = dim1Dint(nenv);
    FillTable(in.B, csm_Float);
    FillTable(in.E, env);
    for (int i = 0; i < ncsm; i++)
        for (int k = 0; k < tcst; k++) cadat[k][i] = float(in.W[i][k]);
    temEnvQual = 0;
    for (int j = 0; j < nenv; j++) {
        envVarType[j] = in.variableTypes[j];
        if (envVarType[j] == 2) temEnvQual = 1;
    }
    optEnvVarType = in.kindOfE;
    partition_OTUs = dim1Dint(tcst);
    std::copy(in.types.begin(), in.types.end(), partition_OTUs);
    free1D(partition_OTUs_Phyl);
    partition_OTUs_Phyl = dim1Dint(tcst);
    std::copy(in.taxa.begin(), in.taxa.end(), partition_OTUs_Phyl);
    nTaxa = CountLabels(in.taxa);
    RenewPhylogeny();
    FillTable(in.F, phylogenyRese);
    hasPhylogeny = includePhylogeny = fuzzyPhyl = in.F.empty() ? 0 : 1;
    phylogenyMatrixType = in.similarF ? 1 : 3;

    opt_struct = in.criterion;
    opt_ro = in.measure;
    rese_opt = in.resemblance;
    fuzzy = in.fuzzy ? kFuzzyTypes : kCrisp;
    optUnitTotalAdjust1 = true;
    optUnitTotalAdjust2 = in.unitTotals;
    countDoubleAbsence = in.doubleAbsences;
    sqrtDissimOpt_RaoTraits = in.squareRoots;
    BealsIncludeOpt = in.target;
    overfitFactorPCARegr = in.overfit;
    traitBasedOpt = in.criterion == 10 ? 2 : 1;
    poolCSTopt = in.criterion == 10 ? 0 : 2;
    clusMethPoolCSTs = 0;
    reseCSTopt = 1;
    rankingAlgorithm = 2;
    nKeepTrack = 100;
    nMinCSTGroupsChRank = nMaxCSTGroupsChRank = CountLabels(in.types);
    nMinTraitsChRank = 1;
    nMaxTraitsChRank = nch;
    printRankIntermedResults = saveStruct = 'n';
    std::snprintf(whichChorder, sizeof whichChorder, "Ranking.txt");
}
