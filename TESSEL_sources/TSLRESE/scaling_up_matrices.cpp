#include "TSLRESE/scaling_up_matrices.h"

#include "TSLIFFMT/checks.h"
#include "TSLRESE/gower_partial.h"
#include "TSLRESE/sites.h"
#include "iflibG/iflibG.h"
#include "mxlib/belonging.h"
#include "mxlib/ordination.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/products.h"
#include "mxlibRes/rao.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

// Numbers of the ordination's resemblances: a similarity in 0 to 1, a distance.
enum OrdinationRese : int { kOrdinateDistance = 3, kOrdinateSimilarity = 5 };

bool InUse(int trait) {
    return weight[trait] > 0.0F;
}

void OrdinatePhylogeny(ScalingUpMatrices& m) {
    const LongStep step("Principal coordinates of the phylogeny");
    ScopedMatrix<float> rese(tcst, tcst);
    for (int i = 0; i < tcst; i++)
        for (int j = 0; j < tcst; j++) rese[i][j] = static_cast<float>(phylogenyRese[i][j]);
    ScopedMatrix<float> axes(tcst, tcst);
    ScopedMatrix<float> scores(tcst, tcst);
    ScopedVector<float> eigenvalues(tcst);
    bool sane = true;
    OrdinationLib(tcst, tcst, nullptr, rese, axes, scores, &m.nPhylAxes, eigenvalues, &sane,
                  kPrincipalCoordinates,
                  PhylogenyIsDissimilarity() ? kOrdinateDistance : kOrdinateSimilarity, 1);
    TransposeMatrix(m.nPhylAxes, tcst, scores, m.phylScores);
}

}  // namespace

int CountTraitsInUse() {
    int count = 0;
    for (int k = 0; k < nch; k++)
        if (InUse(k)) count++;
    return count;
}

bool ReadsCoordinates() {
    return includePhylogeny != 0 && (opt_ro != kMantel || printDetail);
}

bool PhylogenyIsDissimilarity() {
    return phylogenyMatrixType != kPhylogenySimilarities;
}

void CompareSites(ScalingUpMatrices& m) {
    const LongStep step("Distances between sites");
    TakeSites<float>(m.E);
    CompareSites<float>(m.E, EucliDistMV, m.DE);
}

void CopyDataSet(ScalingUpMatrices& m) {
    for (int i = 0; i < ncsm; i++)
        for (int j = 0; j < tcst; j++) m.W[i][j] = m.WUnit[i][j] = cadat[j][i];
    RangeStates(nch, tcst, csm_Float, chtype, chrange);
    for (int i = 0; i < ncsm; i++)
        for (int j = 0; j < nenv; j++) m.EDouble[i][j] = m.E[i][j];
}

void AdjustToUnitTotals(ScalingUpMatrices& m) {
    UnitSumRowsAdjMV(ncsm, tcst, m.WUnit, m.WUnit);
    if (optUnitTotalAdjust2) UnitSumRowsAdjMV(ncsm, tcst, m.W, m.W);
}

void SmoothCompositions(ScalingUpMatrices& m) {
    const LongStep step("Beals smoothing");
    BealsSmoothing(ncsm, tcst, m.W, m.W, m.Z, BealsIncludeOpt, 1, false);
    BealsSmoothing(ncsm, tcst, m.W, m.W, m.Y, BealsIncludeOpt, 2, true);
    if (opt_ro != kMantel) return;
    NominalReseNonHier(ncsm, tcst, m.Z, m.DZ, rese_opt);
    NominalReseNonHier(ncsm, tcst, m.Y, m.DY, rese_opt);
}

void MeasureGiniSimpson(ScalingUpMatrices& m) {
    const LongStep step("Gini-Simpson diversity");
    for (int i = 0; i < tcst; i++) m.Sb[i][i] = 1.0F;
    ScopedVector<int> otus(tcst);
    ScopedVector<double> proportions(tcst);
    RaoIndexRows(ncsm, tcst, m.W, m.Sb, false, otus, proportions, m.D);
}

void ComparePhylogeneticVariables() {
    if (phylogenyMatrixType == kPhylogenyVariables)
        GowerMVOpt(tcst, nClados, phylogenyVarType, phylogenyData, phylogenyRese, nullptr, nullptr,
                   0);
}

void ScalePhylogenyUp(ScalingUpMatrices& m) {
    const LongStep step("Composition by phylogeny");
    ComparePhylogeneticVariables();
    if (ReadsCoordinates()) OrdinatePhylogeny(m);
    FuzzyBelonging(tcst, nTaxa, phylogenyRese, partition_OTUs_Phyl, m.Q,
                   PhylogenyIsDissimilarity());
    MatrixProdMV(ncsm, tcst, tcst, nTaxa, m.W, m.Q, m.P);
    ScopedVector<int> otus(tcst);
    ScopedVector<double> proportions(tcst);
    RaoIndexRows(ncsm, tcst, m.W, phylogenyRese, PhylogenyIsDissimilarity(), sqrtDissimOpt_RaoPhyl,
                 otus, proportions, m.RaoPhyl);
    NominalReseNonHier(ncsm, nTaxa, m.P, m.DP, rese_opt);
}

void SelectTraits(ScalingUpMatrices& m) {
    for (int k = 0; k < nch; k++) {
        m.include[k] = InUse(k) ? 1 : 0;
        for (int i = 0; i < tcst; i++) m.B[i][k] = weight[k] == 0.0F ? 0.0F : csm_Float[i][k];
    }
}

void AverageTraits(ScalingUpMatrices& m) {
    const LongStep step("Community averages of traits");
    MatrixProdSelectMV_Adjust(ncsm, tcst, tcst, nch, m.WUnit, m.B, m.T, m.include);
}

void NormaliseTraits(ScalingUpMatrices& m) {
    NormalizeCols(ncsm, nch, m.T, m.T);
    EucliDistMV(ncsm, nch, m.T, m.DT);
}

void CompareOTUs(ScalingUpMatrices& m) {
    const LongStep step("Similarities of OTUs");
    gower_similarityWeighted(nch, csm_Float, tcst, m.Sb, chtype, chrange, weight);
}

void PoolIntoTypes(ScalingUpMatrices& m) {
    const LongStep step("Composition by types");
    const int K = m.nTypes;
    int count = 0;
    CountGroupsNew(tcst, partition_OTUs, &count, m.typeLabels);
    CrispBelonging(tcst, K, partition_OTUs, m.C);
    FuzzyBelonging(tcst, K, m.Sb, partition_OTUs, m.U, false);
    MatrixProdMV(ncsm, tcst, tcst, K, m.W, m.U, m.X);
    MatrixProdMV(ncsm, tcst, tcst, K, m.W, m.C, m.XCrisp);
    for (int i = 0; i < tcst; i++)
        for (int g = 0; g < K; g++)
            if (m.C[i][g] == 1.0) m.typeSizes[g]++;
}

void MeasureRedundancy(ScalingUpMatrices& m) {
    const LongStep step("Rao entropy and redundancy");
    ScopedVector<int> otus(tcst);
    ScopedVector<double> proportions(tcst);
    RaoIndexRows(ncsm, tcst, m.W, m.Sb, false, sqrtDissimOpt_RaoTraits, otus, proportions,
                 m.RaoTraits);
    for (int i = 0; i < ncsm; i++) {
        m.redundancyTraits[i] = m.D[i] - m.RaoTraits[i];
        if (includePhylogeny != 0) m.redundancyPhyl[i] = m.D[i] - m.RaoPhyl[i];
    }
}

void AverageTraitsOfTypes(ScalingUpMatrices& m) {
    const int K = m.nTypes;
    ScopedMatrix<double> members(K, tcst);
    TransposeMatrix(tcst, K, m.C, members);
    MatrixProdMV(K, tcst, tcst, nch, members, csm_Float, m.typeTraits);
    for (int g = 0; g < K; g++)
        for (int k = 0; k < nch; k++) m.typeTraits[g][k] /= static_cast<float>(m.typeSizes[g]);
}
