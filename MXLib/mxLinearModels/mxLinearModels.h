#pragma once
/// \file
/// Least squares by the normal equations. Missing values add nothing to products and sums of
/// squares, but are numbers in the means behind the intercepts, in predictions and in residuals:
/// callers give complete data.

#include <cstdio>

#include "mxlibDim/dim.h"

/// Regression of m responses Y (n x m) on p factors X (n x p), with intercept. Receives B (p x m)
/// coefficients, b0 (m) intercepts, Yhat (n x m) predictions, r2 (m) coefficients of determination
/// and, unless null, ss (m) total sums of squares. Collinear factors give non-finite results, a
/// response without variation an r2 of NaN. The report switches are accepted and print nothing.
/// Returns 1.
int regression(int n, int m, int p, ConstMatrix<double> Y, ConstMatrix<double> X, Matrix<double> B,
               double* b0, Matrix<double> Yhat, double* r2, double* ss, bool print, FILE* stream,
               int language, bool detail);
int regression(int n, int m, int p, ConstMatrix<float> Y, ConstMatrix<float> X, Matrix<double> B,
               double* b0, Matrix<double> Yhat, double* r2, double* ss, bool print, FILE* stream,
               int language, bool detail);

/// R above the diagonal = residuals of the entries of b above the diagonal on those of a, both
/// rounded to float. The rest of R is not written; with n < 2 nothing is.
void ResidualsMatrixRegression(int n, ConstMatrix<double> a, ConstMatrix<double> b,
                               Matrix<double> R);

/// R = residuals of Y (n x m) on the columns of X (n x p) with sel equal to 1 (all when null).
void Regression_ResidualsSelect(int n, int m, int p, ConstMatrix<double> Y, ConstMatrix<double> X,
                                Matrix<double> R, const int* sel);

/// R = residuals of Y on the principal components of the selected columns of X, from covariances
/// (opt 1) or correlations (opt 2), at most (n - 2) / overfit of them.
void PCA_Regression_ResidualsSelect(int n, int m, int p, ConstMatrix<double> Y,
                                    ConstMatrix<double> X, Matrix<double> R, const int* sel,
                                    int opt, double overfit);
