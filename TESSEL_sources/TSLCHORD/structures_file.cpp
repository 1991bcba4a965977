#include "TSLCHORD/structures_file.h"

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "TSLRESE/scaling_up_report.h"
#include "mxLinearModels/mxLinearModels.h"
#include "mxlib/belonging.h"
#include "mxlibDim/scoped.h"
#include "mxlibOut/mxlibOut.h"
#include "mxlibRes/products.h"
#include "mxlibRes/totals.h"

namespace {

/// Crisp belonging, sizes and average traits of the types.
void DescribeTypes(FILE* stream, int K) {
    ScopedMatrix<float> C(tcst, K);
    CrispBelonging(tcst, K, partition_OTUs, C);
    std::fprintf(stream,
                 "\nDegrees of belonging (crisp) of %d populations (rows) in %d types (columns):\n",
                 tcst, K);
    PrintTable(stream, tcst, K, C);
    std::fprintf(stream, "\nGroup sizes:\n");
    PrintSizesOfTypes(stream, K);
    std::fprintf(stream, "\n");
    ScopedMatrix<float> members(K, tcst);
    ScopedMatrix<float> averages(K, nch);
    TransposeMatrix(tcst, K, C, members);
    MatrixProdMV(K, tcst, tcst, nch, members, csm_Float, averages);
    for (int g = 0; g < K; g++) {
        float size = 0.0F;
        for (int i = 0; i < tcst; i++) size += members[g][i];
        for (int k = 0; k < nch; k++) averages[g][k] /= size;
    }
    std::fprintf(stream, "\nAverage trait matrix (%d types x %d traits):\n", K, nch);
    PrintTable(stream, K, nch, averages);
}

}  // namespace

const StructureTexts kGroupTexts = {
    "\nSimilarity matrix between %d populations, based on %d traits (Gower index modified to count "
    "double absences in binary traits):\n",
    "\nDegrees of belonging of %d populations (rows) in %d groups (columns):\n",
    "\nPartition vector of %d populations in %d groups:\n",
    "\nPooled performance matrix (%d relevés x %d population groups):\n",
    "Resemblance matrix between relevés:\n",
    false};

const StructureTexts kTypeTexts = {
    "\nSimilarity matrix between %d populations, based on %d traits:\n",
    "\nDegrees of belonging of %d populations (rows) in %d types (columns):\n",
    "\nPartition vector of %d populations in %d specified groups (types):\n",
    "\nPooled performance matrix X (%d communities x %d types):\n",
    "Resemblance matrix between communities based on composition of types (matrix X):\n",
    true};

ResultsFile OpenStructures(const char* name) {
    return saveStruct == 'y' ? ResultsFile(name, volumeName) : ResultsFile();
}

void PrintSiteResemblance(FILE* stream, Matrix<double> DE) {
    std::fprintf(stream,
                 "Resemblance matrix between %d relevés based on %d environmental variables:\n",
                 ncsm, nenv);
    PrintResemblance(stream, ncsm, DE);
}

void PrintTraitsOfOTUs(FILE* stream, ConstMatrix<float> B) {
    std::fprintf(stream, "\nTrait matrix with %d populations by %d traits: \n", tcst, nch);
    PrintTable(stream, tcst, nch, B);
}

template <class Real>
void PrintPhylogenyOfSearch(FILE* stream, ConstMatrix<Real> Q, ConstMatrix<Real> P,
                            Matrix<double> DP) {
    if (phylogenyMatrixType == kPhylogenyVariables) {
        std::fprintf(stream, "\nPhylogeny matrix with %d OTUs by %d phylogenetic variables: \n",
                     tcst, nClados);
        PrintTable(stream, tcst, nClados, phylogenyData);
        std::fprintf(stream,
                     "\nSimilarity matrix (Gower index) between %d OTUs, based on %d phylogenetic "
                     "variables:\n",
                     tcst, nClados);
    } else if (phylogenyMatrixType == kPhylogenySimilarities) {
        std::fprintf(stream, "\nSimilarity matrix between %d OTUs:\n", tcst);
    } else {
        std::fprintf(stream, "\nDissimilarity matrix between %d OTUs:\n", tcst);
    }
    PrintPhylogenyRese(stream);
    std::fprintf(stream, "\nPartition vector of %d OTUs in %d taxa:\n", tcst, nTaxa);
    PrintVectorTab(stream, tcst, partition_OTUs_Phyl, nullptr);
    std::fprintf(stream,
                 "\nFuzzy belonging of %d OTUs (rows) in %d taxa (columns) according to their "
                 "phylogeny:\n",
                 tcst, nTaxa);
    PrintTable(stream, tcst, nTaxa, Q);
    std::fprintf(stream,
                 "\nPooled performance matrix P (%d communities x %d taxa) after fuzzy-weighting "
                 "by the specified phylogeny:\n",
                 ncsm, nTaxa);
    PrintTable(stream, ncsm, nTaxa, P);
    PrintResemblanceMatrix(stream,
                           "\nResemblance matrix (DP) between communities based on matrix P, the "
                           "composition of OTUs weighted by their phylogeny:\n",
                           DP);
}

template <class Real>
void PrintAverages(FILE* stream, const TraitSubset& subset, ConstMatrix<Real> averages) {
    std::fprintf(stream, "\n");
    PrintMembers(stream, subset);
    ScopedMatrix<Real> T(ncsm, nch);
    for (int i = 0; i < ncsm; i++)
        for (int k = 0; k < nch; k++)
            if (subset.selected[k] == 1) T[i][k] = averages[i][k];
    std::fprintf(stream,
                 "\nMatrix with trait averages at community level (%d communities x %d traits):\n",
                 ncsm, nch);
    PrintTable(stream, ncsm, nch, T);
}

template <class Real>
void PrintNormalised(FILE* stream, ConstMatrix<Real> T) {
    std::fprintf(stream,
                 "\nMatrix with normalized traits at community level (%d communities x %d traits "
                 "adjusted to unit length):\n",
                 ncsm, nch);
    PrintTable(stream, ncsm, nch, T);
}

void PrintSimilarity(const StructuresFile& file, const TraitSubset& subset, Matrix<float> S) {
    std::fprintf(file.stream, file.texts->similarity, tcst, subset.size);
    PrintMembers(file.stream, subset);
    PrintResemblance(file.stream, tcst, S);
}

template <class Real>
void PrintTypesOfSubset(const StructuresFile& file, int K, ConstMatrix<float> U,
                        ConstMatrix<Real> X) {
    std::fprintf(file.stream, file.texts->partition, tcst, K);
    PrintVectorTab(file.stream, tcst, partition_OTUs, nullptr);
    std::fprintf(file.stream, file.texts->belonging, tcst, K);
    PrintTable(file.stream, tcst, K, U);
    if (file.texts->describesTypes) DescribeTypes(file.stream, K);
    std::fprintf(file.stream, file.texts->composition, ncsm, K);
    PrintTable(file.stream, ncsm, K, X);
}

void PrintResemblanceMatrix(FILE* stream, const char* heading, Matrix<double> D) {
    std::fputs(heading, stream);
    PrintResemblance(stream, ncsm, D);
}

void PrintSizesOfTypes(FILE* stream, int K) {
    ScopedVector<int> labels(tcst);
    int count = 0;
    CountGroupsNew(tcst, partition_OTUs, &count, labels);
    for (int g = 0; g < K; g++) {
        int size = 0;
        for (int i = 0; i < tcst; i++) size += partition_OTUs[i] == labels[g];
        std::fprintf(stream, "%d\t", size);
    }
}

void PrintMembers(FILE* stream, const TraitSubset& subset) {
    std::fprintf(stream, "Traits:\t");
    for (int j = 0; j < subset.size; j++)
        std::fprintf(stream, "%s\t", chLabel[subset.members[j] - 1]);
    std::fprintf(stream, "\n");
}

void PrintResiduals(FILE* stream, const char* heading, ConstMatrix<double> DT, Matrix<double> D) {
    ResidualsMatrixRegression(ncsm, DT, D, D);
    UpperToLowerMatrix(ncsm, D);
    PrintResemblanceMatrix(stream, heading, D);
}

template void PrintPhylogenyOfSearch<float>(FILE*, ConstMatrix<float>, ConstMatrix<float>,
                                            Matrix<double>);
template void PrintPhylogenyOfSearch<double>(FILE*, ConstMatrix<double>, ConstMatrix<double>,
                                             Matrix<double>);
template void PrintAverages<float>(FILE*, const TraitSubset&, ConstMatrix<float>);
template void PrintAverages<double>(FILE*, const TraitSubset&, ConstMatrix<double>);
template void PrintNormalised<float>(FILE*, ConstMatrix<float>);
template void PrintNormalised<double>(FILE*, ConstMatrix<double>);
template void PrintTypesOfSubset<float>(const StructuresFile&, int, ConstMatrix<float>,
                                        ConstMatrix<float>);
template void PrintTypesOfSubset<double>(const StructuresFile&, int, ConstMatrix<float>,
                                         ConstMatrix<double>);
