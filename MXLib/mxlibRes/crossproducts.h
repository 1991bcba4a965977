#pragma once
/// \file
/// Cross-products, covariances and correlations between the n rows of a matrix, p values each.
/// Results are half results: only cells j >= i are written (UpperToLowerMatrix completes them).
/// Zero denominators are not guarded unless told; they give NaN.

#include "mxlibDim/dim.h"

/// Sums of products, each product in float; no missing test.
void CrossProduct(int n, int p, ConstMatrix<float> a, Matrix<double> c);

/// Sums of products over the positions present in both rows.
void CrossProductMV(int n, int p, ConstMatrix<double> a, Matrix<double> c);
double CrossProduct2VecMV(int p, const double* x, const double* y);

/// Covariances with divisor m - 1. With a missing value anywhere each pair uses its own complete
/// positions (m of them); m = 0 gives 0, m = 1 NaN.
void CovarianceMV(int n, int p, ConstMatrix<double> a, Matrix<double> c);
double Covariance2VecMV(int p, const double* x, const double* y);

/// Pearson correlations. On complete data a constant row correlates 0 with everything, itself
/// included; with a missing value anywhere it gives NaN.
void CorrelationMV(int n, int p, ConstMatrix<double> a, Matrix<double> c);
double Correlation2VecMV(int p, const double* x, const double* y);

/// Turns a symmetric cross-product or covariance matrix into correlations, kept within -1 to 1;
/// 0 where a diagonal element is not above 0, and 1 on the diagonal.
void Correlation(int n, ConstMatrix<double> c, Matrix<double> correlations);
