#pragma once
/// \file
/// Products between the columns of two tall matrices, without transposing either.

#include "mxlibDim/dim.h"

/// c (p1 x p2), c[i][j] = sum over k of a[k][i] b[k][j], a (n x p1) and b (n x p2): the product of
/// a' and b, cell by cell the same sums as MatrixProd makes of them. With `missing` pairs with a
/// missing factor are passed over, otherwise every value is a number.
void ColumnProducts(int n, int p1, ConstMatrix<float> a, int p2, ConstMatrix<float> b,
                    Matrix<float> c, bool missing);
void ColumnProducts(int n, int p1, ConstMatrix<double> a, int p2, ConstMatrix<double> b,
                    Matrix<double> c, bool missing);
