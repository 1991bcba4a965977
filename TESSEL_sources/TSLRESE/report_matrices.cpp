#include "TSLRESE/scaling_up_report.h"
#include "mxlibOut/mxlibOut.h"
#include "mxlibRes/totals.h"

namespace {

template <class T>
void PrintAligned(FILE* report, int rows, int cols, ConstMatrix<T> matrix) {
    PrintMatrix(report, rows, cols, matrix, sDigits, 0);
    std::fprintf(report, "\n");
}

template <class T>
void PrintLowerHalf(FILE* report, int n, Matrix<T> matrix) {
    TransposeSqMatrix(n, matrix, matrix);
    PrintLowerHalfMatrixTab(report, n, matrix, sDigits);
    TransposeSqMatrix(n, matrix, matrix);
    std::fprintf(report, "\n");
}

void PrintPhylogeneticResemblance(FILE* report) {
    if (phylogenyMatrixType == kPhylogenySimilarities)
        std::fprintf(report,
                     "\nSimilarity matrix, in the range 0-1, between %d OTUs based on their "
                     "phylogeny:\n",
                     tcst);
    if (phylogenyMatrixType == kPhylogenyDistances)
        std::fprintf(report,
                     "\nDissimilarity matrix, in the range 0-1, between %d OTUs based on their "
                     "phylogeny:\n",
                     tcst);
    if (phylogenyMatrixType == kPhylogenyVariables) {
        std::fprintf(report, "\nPhylogeny matrix with %d OTUs by %d phylogenetic variables: \n",
                     tcst, nClados);
        PrintTable(report, tcst, nClados, phylogenyData);
        std::fprintf(report,
                     "\nSimilarity matrix (Gower index) between %d OTUs, based on %d phylogenetic "
                     "variables:\n",
                     tcst, nClados);
    }
    PrintPhylogenyRese(report);
}

void PrintTaxa(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\nPartition vector of %d OTUs in %d taxa:\n", tcst, nTaxa);
    PrintVectorTab(report, tcst, partition_OTUs_Phyl, nullptr);
    if (printDetail) {
        std::fprintf(report,
                     "\nFuzzy belonging of %d OTUs (rows) in %d taxa (columns) according to their "
                     "phylogeny:\n",
                     tcst, nTaxa);
        PrintTable(report, tcst, nTaxa, m.Q);
    }
    std::fprintf(report,
                 "\nPooled performance matrix P (%d communities x %d taxa) after fuzzy-weighting "
                 "by the specified phylogeny:\n",
                 ncsm, nTaxa);
    PrintTable(report, ncsm, nTaxa, m.P);
    if (opt_ro != kMantel) return;
    std::fprintf(report,
                 "\nResemblance matrix (DP) between communities based on matrix P, the "
                 "composition of OTUs weighted by their phylogeny:\n");
    PrintResemblance(report, ncsm, m.DP);
}

/// The types that are species, by position: the first label goes with the first species.
void PrintSpeciesOfTypes(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report,
                 "\nThe types are species (# labels are used later in these results to identify "
                 "the species) :\n");
    std::fprintf(report, "#\tSpecies\n");
    for (int g = 0; g < m.nTypes; g++)
        std::fprintf(report, "%d\t%s\n", m.typeLabels[g], g < nSpp ? spp[g] : "");
}

void PrintBelonging(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report,
                 "\nFuzzy degrees of belonging (matrix U) of %d OTUs (rows) in %d types "
                 "(columns):\n",
                 tcst, m.nTypes);
    PrintTable(report, tcst, m.nTypes, m.U);
    std::fprintf(report,
                 "\nCrisp degrees of belonging (matrix C) of %d OTUs (rows) in %d types "
                 "(columns):\n",
                 tcst, m.nTypes);
    PrintTable(report, tcst, m.nTypes, m.C);
}

void PrintAveragesOfTypes(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\nLabels of %d specified types:\n", m.nTypes);
    PrintVectorTab(report, m.nTypes, m.typeLabels, nullptr);
    std::fprintf(report, "\nNumber of OTUs in each type:\n");
    PrintVectorTab(report, m.nTypes, m.typeSizes, nullptr);
    std::fprintf(report, "\nAverage trait matrix (%d types x %d traits):\n", m.nTypes, nch);
    PrintTable(report, m.nTypes, nch, m.typeTraits);
}

void PrintPooledCommunities(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report,
                 "Pooled performance community matrix (%d communities x %d crisp types) without "
                 "fuzzy-weighting by the selected traits.\n",
                 ncsm, m.nTypes);
    PrintTable(report, ncsm, m.nTypes, m.XCrisp);
    if (fuzzy == kFuzzyTypes) {
        std::fprintf(report,
                     "Pooled performance matrix X (%d communities x %d types) after "
                     "fuzzy-weighting by the selected traits.\n",
                     ncsm, m.nTypes);
        PrintTraitLine(report);
        PrintTable(report, ncsm, m.nTypes, m.X);
    } else {
        std::fprintf(report, "\nPooled performance matrix X (%d communities x %d crisp types):\n",
                     ncsm, m.nTypes);
        PrintTable(report, ncsm, m.nTypes, m.XCrisp);
    }
}

}  // namespace

void PrintTable(FILE* report, int rows, int cols, ConstMatrix<float> matrix) {
    PrintAligned(report, rows, cols, matrix);
}

void PrintTable(FILE* report, int rows, int cols, ConstMatrix<double> matrix) {
    PrintAligned(report, rows, cols, matrix);
}

void PrintResemblance(FILE* report, int n, Matrix<float> matrix) {
    PrintLowerHalf<float>(report, n, matrix);
}

void PrintResemblance(FILE* report, int n, Matrix<double> matrix) {
    PrintLowerHalf<double>(report, n, matrix);
}

void PrintPhylogenyRese(FILE* report) {
    UpperToLowerMatrix(tcst, phylogenyRese);
    PrintMatrixTab(report, tcst, tcst, phylogenyRese, sDigits);
    std::fprintf(report, "\n");
}

void PrintTraitsInUse(FILE* report, int width) {
    for (int k = 0; k < nch; k++)
        if (weight[k] > 0.0F) std::fprintf(report, "%-*s\t", width, chLabel[k]);
}

bool AnyTraitLeftOut() {
    for (int k = 0; k < nch; k++)
        if (weight[k] == 0.0F) return true;
    return false;
}

void PrintTraitsInColumns(FILE* report) {
    for (int k = 0; k < nch; k++)
        if (weight[k] > 0.0F) std::fprintf(report, "%-3s", chLabel[k]);
}

void PrintTraitLine(FILE* report) {
    std::fprintf(report, "Traits:\t");
    PrintTraitsInUse(report, 0);
    std::fprintf(report, "\n");
}

void PrintCommunities(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\nCommunity matrix W with %d communities by %d OTUs: \n", ncsm, tcst);
    PrintTable(report, ncsm, tcst, m.W);
}

void PrintAdjustedCommunities(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report,
                 "\nCommunity matrix W with %d communities by %d OTUs adjusted to unit sum within "
                 "each community: \n",
                 ncsm, tcst);
    PrintTable(report, ncsm, tcst, m.WUnit);
}

void PrintPhylogeny(FILE* report, const ScalingUpMatrices& m) {
    if (printDetail) {
        std::fprintf(report,
                     "\nPCoA scores based on the phylogenetic resemblance matrix with %d OTUs by "
                     "%d ordination dimensions: \n",
                     tcst, m.nPhylAxes);
        PrintTable(report, tcst, m.nPhylAxes, m.phylScores);
    }
    if (phylogenyMatrixType == kPhylogenyVariables) {
        std::fprintf(report,
                     "\nVariable types in the phylogeny matrix with %d OTUs by %d phylogenetic "
                     "variables: \n",
                     tcst, nClados);
        PrintVectorTab(report, nClados, phylogenyVarType, nullptr);
    }
    if (printDetail) PrintPhylogeneticResemblance(report);
    PrintTaxa(report, m);
}

void PrintTraitMatrix(FILE* report) {
    std::fprintf(report, "\nTrait matrix B with %d OTUs by %d traits: \n", tcst, nch);
    PrintTable(report, tcst, nch, csm_Float);
}

void PrintSites(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\nEcological variables (factors or effects):\t");
    for (int j = 0; j < nenv; j++) std::fprintf(report, "%s\t", envLabel[j]);
    std::fprintf(report, "\n");
    std::fprintf(report, "\nMatrix E with ecological variables (%d communities x %d variables):\n",
                 ncsm, nenv);
    // A data set without E has no table env: the working copy stands for its empty rows.
    PrintTable(report, ncsm, nenv, nenv > 0 ? env : m.E.get());
    if (opt_ro != kMantel) return;
    std::fprintf(report,
                 "Resemblance matrix (DE) between community sites based on ecological "
                 "variables:\n");
    PrintResemblance(report, ncsm, m.DE);
}

void PrintAveragedTraits(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\n");
    PrintTraitLine(report);
    std::fprintf(report,
                 "\nMatrix T with trait averages at community level (%d communities x %d "
                 "traits):\n",
                 ncsm, nch);
    PrintTable(report, ncsm, nch, m.T);
}

void PrintNormalisedTraits(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report,
                 "\nMatrix T with normalized traits at community level (%d communities x %d "
                 "traits adjusted to unit length):\n",
                 ncsm, nch);
    PrintTable(report, ncsm, nch, m.T);
    if (opt_ro != kMantel) return;
    std::fprintf(report, "Resemblance matrix (DT) between communities based on selected traits:\n");
    PrintResemblance(report, ncsm, m.DT);
}

void PrintOTUSimilarities(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\n");
    PrintTraitLine(report);
    if (!printDetail) return;
    std::fprintf(report, "\nSimilarity matrix between %d OTUs, based on %d traits:\n", tcst,
                 m.nTraitsInUse);
    PrintResemblance(report, tcst, m.Sb);
}

void PrintTypes(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\nPartition vector of %d OTUs in %d specified types:\n", tcst, m.nTypes);
    PrintVectorTab(report, tcst, partition_OTUs, nullptr);
    if (OTUsTypesAreSpecies) PrintSpeciesOfTypes(report, m);
    if (printDetail) PrintBelonging(report, m);
    PrintAveragesOfTypes(report, m);
    PrintPooledCommunities(report, m);
}
