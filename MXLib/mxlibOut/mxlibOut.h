#pragma once
/// \file
/// Printing of matrices and vectors into reports. Numbers print with "%.*g" and `digits`
/// significant digits, NaN without a sign, each followed by a tab. Single and double precision
/// print alike.

#include <cstdio>

#include "mxlibDim/dim.h"

/// Print width in characters after which a row of PrintMatrix breaks; a preference of the user.
extern int maxColsPrint;

/// No double has more significant digits. The user may ask for up to two thousand million, which
/// printf would take its time to look for.
constexpr int kMostDigits = 767;

/// One line per row, each value with "%.*g\t".
void PrintMatrixTab(FILE* stream, int rows, int cols, ConstMatrix<float> matrix, int digits);
void PrintMatrixTab(FILE* stream, int rows, int cols, ConstMatrix<double> matrix, int digits);

/// The largest length of any element printed with "%.*g"; 0 for no rows.
int GetWidthMax(int rows, int cols, ConstMatrix<float> matrix, int digits);
int GetWidthMax(int rows, int cols, ConstMatrix<double> matrix, int digits);

/// Aligned table: all columns as wide as `width`, or as the widest element when it is 0. A row
/// continues on a new line behind a blank first column where it exceeds maxColsPrint. Returns the
/// width used.
int PrintMatrix(FILE* stream, int rows, int cols, ConstMatrix<float> matrix, int digits, int width);
int PrintMatrix(FILE* stream, int rows, int cols, ConstMatrix<double> matrix, int digits,
                int width);
int PrintMatrixFloat(FILE* stream, int rows, int cols, ConstMatrix<float> matrix, int digits,
                     int width);
int PrintMatrixFloat(FILE* stream, int rows, int cols, ConstMatrix<double> matrix, int digits,
                     int width);

/// Row i (from 0) holds the elements 0 to i of matrix row i, the diagonal included.
void PrintLowerHalfMatrixTab(FILE* stream, int n, ConstMatrix<float> matrix, int digits);
void PrintLowerHalfMatrixTab(FILE* stream, int n, ConstMatrix<double> matrix, int digits);

/// Each value with a tab, then a newline. With `order` (counted from 1, may be null) element i is
/// values[order[i] - 1].
void PrintVectorTab(FILE* stream, int n, const int* values, const int* order);
void PrintVectorTab(FILE* stream, int n, const float* values, int digits, const int* order);
void PrintVectorTab(FILE* stream, int n, const double* values, int digits, const int* order);
