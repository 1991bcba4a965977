#pragma once
/// \file
/// Totals, extremes and elementary matrix routines. n rows, p columns. Routines with the suffix MV
/// pass over missing values (missing.h); the others take every value as a number unless told
/// otherwise. A result of the same shape may be the source itself.

#include "mxlibDim/dim.h"

/// Mean and sample standard deviation of x; squares in single, sums in double precision.
void MeanStDev(int n, const float* x, double* mean, double* sd);

/// Sum of squared deviations from the mean of the present values; NaN when there is none.
double SumOfSquaresDev(int n, const double* x);

/// Largest and smallest element; the far end of the float range for n < 1.
float maxVector(int n, const float* x);
float minVector(int n, const float* x);

/// Largest element, but not below 0.
double MatrixMax(int n, int p, ConstMatrix<double> a);

/// Sums of rows, of columns, of all, over present values; 0 where there is none. Accumulated in the
/// element type.
void RowTotalsMV(int n, int p, ConstMatrix<float> a, float* totals);
void RowTotalsMV(int n, int p, ConstMatrix<double> a, double* totals);
void ColTotalsMV(int n, int p, ConstMatrix<float> a, float* totals);
void ColTotalsMV(int n, int p, ConstMatrix<double> a, double* totals);
double MatrixTotalMV(int n, int p, ConstMatrix<double> a);

/// b (p x n) = transposed a (n x p).
void TransposeMatrix(int n, int p, ConstMatrix<float> a, Matrix<float> b);
void TransposeMatrix(int n, int p, ConstMatrix<double> a, Matrix<double> b);

/// In-place transposition of a square matrix, given twice.
void TransposeSqMatrix(int n, Matrix<float> a, Matrix<float> b);
void TransposeSqMatrix(int n, Matrix<double> a, Matrix<double> b);

void CopyMatrix(int n, int p, ConstMatrix<double> a, Matrix<double> b);

/// b = s a; a missing value stays missing. Returns 0.
int ScalarMatrixProd(int n, int p, float s, ConstMatrix<float> a, Matrix<float> b);
int ScalarMatrixProd(int n, int p, double s, ConstMatrix<double> a, Matrix<double> b);

/// c = a + sign b. Returns 1, c untouched, when the sizes differ, else 0.
int MatrixSum(int n, int p, int n2, int p2, ConstMatrix<double> a, ConstMatrix<double> b,
              Matrix<double> c, int sign);

/// Copies the triangle above the diagonal to below it.
void UpperToLowerMatrix(int n, Matrix<float> a);
void UpperToLowerMatrix(int n, Matrix<double> a);
