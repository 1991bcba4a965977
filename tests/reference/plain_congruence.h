#pragma once
/// \file
/// Congruence coefficients exactly as they are defined, step by step and at full size: what the
/// library's shorter routes must agree with, and what the benchmarks time them against.

#include "mxlibDim/dim.h"

/// Procrustes with the cross-product in a zero-filled square matrix of the wider width.
float PlainProcrustes(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b);
double PlainProcrustes(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b);

/// RV through the two n x n matrices of products among objects.
double PlainRV(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b);
double PlainRV(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b);

/// R = residuals of Y (n x m) on the principal components of the p columns of X, from correlations
/// (opt 2) or covariances (opt 1).
void PlainComponentResiduals(int n, int m, int p, ConstMatrix<double> Y, ConstMatrix<double> X,
                             Matrix<double> R, int opt, double overfit);
