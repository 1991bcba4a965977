#pragma once
/// \file
/// Steps of a least-squares regression by the normal equations. X: n x p factors, Y: n x m
/// responses, B: p x m coefficients.

#include "mxlibDim/dim.h"

/// Means of the columns of a, as running sums of value / n; every value is a number.
void MeansByShares(int n, int p, ConstMatrix<float> a, double* means);
void MeansByShares(int n, int p, ConstMatrix<double> a, double* means);

/// B = the solution of S B = T, T standing in B. S (p x p) stays. `system` (p + 1 square) and
/// `solution` (p + 1 by m + 1) and `room` (3 (p + 1)) are scratch; system receives the inverse,
/// counted from 1.
void SolveNormalEquations(int p, int m, ConstMatrix<double> S, Matrix<double> B,
                          Matrix<double> system, Matrix<double> solution, int* room);

/// b0[r] = mean of response r less the coefficients' products with the means of the factors.
void Intercepts(int p, int m, ConstMatrix<double> B, const double* meansX, const double* meansY,
                double* b0);
