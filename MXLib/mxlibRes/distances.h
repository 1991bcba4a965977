#pragma once
/// \file
/// Distances between the n rows of a matrix of p columns. The upper half and the diagonal (0) are
/// written. With float input each difference is taken in float (and squared in float by
/// EucliDistMV); sums are double. Rows that share no comparable column have distance 0.

#include "mxlibDim/dim.h"

/// Euclidean distance over all columns; every value is a number.
void EucliDist(int n, int p, ConstMatrix<float> a, Matrix<double> d);
void EucliDist(int n, int p, ConstMatrix<double> a, Matrix<double> d);

/// Euclidean distance over the columns present in both rows.
void EucliDistMV(int n, int p, ConstMatrix<float> a, Matrix<double> d);
void EucliDistMV(int n, int p, ConstMatrix<double> a, Matrix<double> d);

/// The same over columns with a non-zero mask, summed in float.
void EucliDistMVSelect(int n, int p, ConstMatrix<float> a, Matrix<float> d, const int* mask);

/// Sum of absolute differences over the columns present in both rows.
void AbsValFunctionMV(int n, int p, ConstMatrix<float> a, Matrix<double> d);
void AbsValFunctionMV(int n, int p, ConstMatrix<double> a, Matrix<double> d);

/// Chord distance (Orloci, 1967); with a missing value anywhere all cells hold squared chord
/// distances over the shared columns, on the diagonal too, and a row of zeros there gives NaN.
void ChordDistMV(int n, int p, ConstMatrix<double> a, Matrix<double> d);
double ChordDistSq2VecMV(int p, const double* a, const double* b);

/// Half the sum of absolute (or squared) differences of two profiles at unit sum; 0 when either sum
/// is not above 0. Every value is a number.
double SumAbsDeviations(int n, const double* a, const double* b, bool squared);

/// Resemblances between communities by their numbers.
enum CommunityResemblance : int {
    kEuclidean = 6,
    kRelativeEuclidean = 7,
    kAbsolute = 8,
    kRelativeAbsolute = 9,
    kChord = 10
};

/// Resemblance between rows by the number of the session's option: 6, 7 Euclidean, 8, 9 absolute,
/// 10 chord distance (of rows at unit length); any other leaves the result as it is.
void NominalReseNonHier(int n, int p, ConstMatrix<float> a, Matrix<double> d, int option);
void NominalReseNonHier(int n, int p, ConstMatrix<double> a, Matrix<double> d, int option);
