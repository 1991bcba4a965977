#pragma once
/// \file
/// The report of the functional analysis: each routine prints one block. The order of the blocks
/// is that of PFTs_ScalingUp.

#include <cstdio>

#include "TSLRESE/scaling_up_matrices.h"
#include "mxlib/perm_test.h"

// Tables, with the digits of the session's reports
void PrintTable(FILE* report, int rows, int cols, ConstMatrix<float> matrix);
void PrintTable(FILE* report, int rows, int cols, ConstMatrix<double> matrix);
/// The upper half of the n x n matrix as a lower half. The matrix is the same afterwards.
void PrintResemblance(FILE* report, int n, Matrix<float> matrix);
void PrintResemblance(FILE* report, int n, Matrix<double> matrix);
/// phylogenyRese in full, its upper half copied to the lower one.
void PrintPhylogenyRese(FILE* report);
/// Labels of the traits in use, each at least `width` wide and followed by a tab.
void PrintTraitsInUse(FILE* report, int width);
/// The same in columns of three.
void PrintTraitsInColumns(FILE* report);
bool AnyTraitLeftOut();
/// "Traits:", these labels and the end of the line.
void PrintTraitLine(FILE* report);

/// Session, data and settings.
void PrintHead(FILE* report, const ScalingUpMatrices& m);

// Matrices
void PrintCommunities(FILE* report, const ScalingUpMatrices& m);
void PrintAdjustedCommunities(FILE* report, const ScalingUpMatrices& m);
void PrintPhylogeny(FILE* report, const ScalingUpMatrices& m);
void PrintTraitMatrix(FILE* report);
void PrintSites(FILE* report, const ScalingUpMatrices& m);
void PrintAveragedTraits(FILE* report, const ScalingUpMatrices& m);
void PrintNormalisedTraits(FILE* report, const ScalingUpMatrices& m);
void PrintOTUSimilarities(FILE* report, const ScalingUpMatrices& m);
void PrintTypes(FILE* report, const ScalingUpMatrices& m);

/// Statistics with their probabilities, and how the test was done.
void PrintStatistics(FILE* report, const ScalingUpMatrices& m,
                     const PermTest_FunctionalPhyl_Correl_Input& test);
void PrintTestClosing(FILE* report);

void PrintDiversity(FILE* report, const ScalingUpMatrices& m);
