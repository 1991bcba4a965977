#pragma once
/// \file
/// Matrix products over present pairs. All take (n, p, p2, q, A, B, C) with A n x p, B p2 x q,
/// C n x q, and return 1, C untouched, when p differs from p2, else 0. C starts at 0 and takes
/// A[i][k] B[k][j] over k in increasing order, passing over pairs with a missing factor: a row of A
/// that is all missing gives 0, unless told otherwise.

#include "mxlibDim/dim.h"

/// Accumulates in the element type. Has no MV in its name but skips missing pairs all the same.
int MatrixProd(int n, int p, int p2, int q, ConstMatrix<float> a, ConstMatrix<float> b,
               Matrix<float> c);
int MatrixProd(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<double> b,
               Matrix<double> c);

/// The same computation; with A double and B float, product and sum are in double.
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<float> a, ConstMatrix<float> b,
                 Matrix<float> c);
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<double> b,
                 Matrix<double> c);
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<float> b,
                 Matrix<double> c);

/// With a float result each step is rounded to float, and a cell that skipped a pair and sums to
/// exactly 0 becomes missing.
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<float> b,
                 Matrix<float> c);

/// Only the columns j of B with sel[j] equal to 1; the other columns of C are 0.
int MatrixProdSelectMV(int n, int p, int p2, int q, ConstMatrix<float> a, ConstMatrix<float> b,
                       Matrix<float> c, const int* sel);
int MatrixProdSelectMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<float> b,
                       Matrix<double> c, const int* sel);

/// As MatrixProdSelectMV, each cell then divided by the sum of the B[k][j] that took part; 0/0 with
/// no weight present.
int MatrixProdSelectMV_Adjust(int n, int p, int p2, int q, ConstMatrix<float> a,
                              ConstMatrix<float> b, Matrix<float> c, const int* sel);
int MatrixProdSelectMV_Adjust(int n, int p, int p2, int q, ConstMatrix<double> a,
                              ConstMatrix<float> b, Matrix<double> c, const int* sel);
