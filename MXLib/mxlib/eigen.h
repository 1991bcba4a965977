#pragma once
/// \file
/// Eigenanalysis and singular values through the GNU Scientific Library. Each returns 1 for a sane
/// spectrum and 0 when a value is below -0.001 of the sum of all (the values stand either way).
/// Every value is a number, and one that is not finite makes all results NaN.

#include "mxlibDim/dim.h"

/// Eigenvalues e[k] of the symmetric n x n matrix a, descending, with the eigenvectors as rows of
/// v; signs as the library gives them. a is unchanged. 1 for n < 1.
int EigenHouseholderQL_GSL(int n, ConstMatrix<float> a, Matrix<float> v, float* e);
int EigenHouseholderQL_GSL_D(int n, ConstMatrix<double> a, Matrix<double> v, double* e);

/// a (n x p, n >= p) = u diag(s) v'. Returns 0, nothing copied out, when the library refuses.
int SingValueDecomp(int n, int p, ConstMatrix<float> a, Matrix<float> u, float* s, Matrix<float> v);
int SingValueDecomp(int n, int p, ConstMatrix<double> a, Matrix<double> u, double* s,
                    Matrix<double> v);
