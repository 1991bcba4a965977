#pragma once
/// \file
/// Congruence between two matrices of the same n objects.

#include "mxlibDim/dim.h"

/// The measures by their numbers: between resemblance matrices (1), between data matrices (2, 3).
enum CongruenceMeasure : int { kMantel = 1, kProcrustes = 2, kRV = 3 };

/// Pearson correlation over the cells above the diagonal present in both (Mantel 1967). 0 for n < 2
/// and where either side does not vary.
double MatrixCorr(int n, ConstMatrix<double> a, ConstMatrix<double> b);
double MatrixCorr(int n, ConstMatrix<float> a, ConstMatrix<double> b);

/// Congruence of two distances a and b, the rule for two communities: 1 - |a - b| / max(a, b).
/// NaN for two zeros.
double SmallSampleCongruence(double a, double b);

/// First-order partial correlation r(XY.Z); 0 where rXZ or rYZ is 1 within 1e-9 (float: 1e-6).
float PartialCorrelation(float rXY, float rXZ, float rYZ);
double PartialCorrelation(double rXY, double rXZ, double rYZ);

/// Symmetric Procrustes coefficient, the trace of W (Gower 1971; Peres-Neto and Jackson 2001) of
/// a (n x p1) and b (n x p2), which are left unchanged. Missing values add nothing to means, scales
/// and products. 0 when the decomposition fails; NaN for a matrix without variation.
float ProcrustesCoeff(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b);
double ProcrustesCoeff(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b);

/// RV coefficient (Escoufier 1973, Biometrics 29, 751-760). Missing values add nothing to means and
/// products. NaN for a matrix without variation.
double RVcoeff(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b);
double RVcoeff(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b);

/// Sum of a[i][j] b[i][j] over all cells of two square matrices; every value is a number.
double vecProd(int n, ConstMatrix<float> a, ConstMatrix<float> b);
double vecProd(int n, ConstMatrix<double> a, ConstMatrix<double> b);

/// For each object the mean of d2 to its nearest neighbours in d1, ties all taken. Both matrices
/// are completed from their upper halves; every value is a number, and a single object has NaN.
/// Always true.
bool BetaDivergence(int n, Matrix<double> d1, Matrix<double> d2, double* means);
