#pragma once
/// \file
/// Rao's quadratic entropy (Rao 1982, Theoretical Population Biology 21, 24-43) of one community:
/// the sum over ordered pairs of OTUs of (p_i / t)(p_j / t) d_ij, pairs with a missing value passed
/// over. 0 for n < 1 or a total t not above 0.

#include "mxlibDim/dim.h"

/// d is m with `dissimilarity`, else 1 - m; its square root with `squareRoot`. Only the upper half
/// of m needs to be filled: it is copied to the lower half of the caller's matrix. With a float
/// matrix 1 - m is taken in float; a null float matrix gives the sum over i other than j of the
/// products alone.
double RaoIndex(int n, const double* p, Matrix<double> m, bool dissimilarity, bool squareRoot);
double RaoIndex(int n, const double* p, Matrix<float> m, bool dissimilarity, bool squareRoot);

/// The total takes all cells, missing ones included; d is sqrt(1 - m), or m with `dissimilarity`.
double RaoIndex(int n, const double* p, Matrix<float> m, bool dissimilarity);

/// The index of each of c communities, the rows of w: result[i] is RaoIndex of w[i] with the same
/// arguments, the matrix being mirrored and looked over once for all.
/// `otus` and `proportions` are scratch of n places.
void RaoIndexRows(int c, int n, ConstMatrix<double> w, Matrix<double> m, bool dissimilarity,
                  bool squareRoot, int* otus, double* proportions, double* result);
void RaoIndexRows(int c, int n, ConstMatrix<double> w, Matrix<float> m, bool dissimilarity,
                  bool squareRoot, int* otus, double* proportions, double* result);
void RaoIndexRows(int c, int n, ConstMatrix<double> w, Matrix<float> m, bool dissimilarity,
                  int* otus, double* proportions, double* result);
