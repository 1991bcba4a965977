#pragma once
/// \file
/// Classic numerical routines of the published literature (Press et al., Numerical Recipes in C,
/// 2nd edition, 1992), on 1-based arrays unless told otherwise.

#include "mxlibDim/dim.h"

/// Gauss-Jordan elimination with full pivoting (section 2.1) of a[1..n][1..n] with m right-hand
/// sides b[1..n][1..m]. On return a holds the inverse and b the solutions. Among equal pivots the
/// last one found stands. A singular matrix writes "gaussj: Singular Matrix-1" (a second pivot in a
/// column) or "gaussj: Singular Matrix-2" (a zero pivot) on standard error, and the elimination
/// carries on to infinities. `room` are 3 (n + 1) places for callers that solve many times.
void gaussj(Matrix<double> a, int n, Matrix<double> b, int m);
void gaussj(Matrix<double> a, int n, Matrix<double> b, int m, int* room);

/// Cholesky factorisation (section 2.9) of a positive definite a[0..n-1][0..n-1]: the lower
/// triangle below the diagonal receives L, diag[] its diagonal; the upper triangle keeps the input.
/// Returns 1, or 0 with "\ncholdc failed" on standard output when a diagonal sum is not above 0.
int choldc(Matrix<float> a, int n, float* diag);
int choldc(Matrix<double> a, int n, double* diag);

/// Sorts arr[1..n] ascending and moves brr[1..n] along (section 8.2): quicksort with the median of
/// arr[l], arr[l+1], arr[ir] as pivot, straight insertion below 8 elements. The order of tied
/// values is that of the routine.
void sort2(unsigned long n, float* arr, float* brr);
void sort2(unsigned long n, double* arr, double* brr);

/// Replaces the sorted w[1..n] by ranks, ties sharing the mean of theirs (section 14.6); *s
/// receives the sum over tie groups of f^3 - f.
void crank(unsigned long n, float* w, float* s);
void crank(unsigned long n, double* w, double* s);

/// Prints a failure of these routines on standard error and ends the program.
[[noreturn]] void nrerror(const char* text);

/// Move an n x p matrix into arrays that count from 1 (one row and column larger), and back.
void Convertn_n1(int n, int p, ConstMatrix<double> a, Matrix<double> b);
void Convertn1_n(int n, int p, ConstMatrix<double> a, Matrix<double> b);
