#pragma once
/// \file
/// Centring, scaling to unit length, Z scores, proportions and ranges. n rows, p columns; m is the
/// number of present values of the row or column at hand. Center..., Normalize... and ZStandard...
/// take (n, p, source, result); routines with Adj in the name take (n, p, result, source). Source
/// and result may be one matrix. A missing value stays missing in the result unless told; a row or
/// column with no usable scale keeps its values unscaled.

#include "mxlibDim/dim.h"

void CenterRowsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);
void CenterRowsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result);

/// (x - mean) / sqrt(m - 1): a cross-product of the result is a covariance.
void CenterRowsCovMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);
void CenterRowsCovMV(int n, int p, ConstMatrix<double> source, Matrix<double> result);

/// The mixed form rounds each difference to float.
void CenterColsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);
void CenterColsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result);
void CenterColsMV(int n, int p, ConstMatrix<float> source, Matrix<double> result);

/// To unit length. NormalizeCols tests for no missing value.
void NormalizeRowsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);
void NormalizeRowsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result);
void NormalizeCols(int n, int p, ConstMatrix<float> source, Matrix<float> result);
void NormalizeCols(int n, int p, ConstMatrix<double> source, Matrix<double> result);
void NormalizeColsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);

/// Z scores, the divisor of the variance being the full number of columns (rows).
void ZStandardizationRowsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);
void ZStandardizationRowsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result);
void ZStandardizationColsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result);

/// With given means and standard deviations, one pair per row; a missing source value leaves the
/// result element untouched.
void ZStandardizationRowsMV(int n, int p, const double* mean, const double* sd,
                            ConstMatrix<float> source, Matrix<float> result);
void ZStandardizationRowsMV(int n, int p, const double* mean, const double* sd,
                            ConstMatrix<double> source, Matrix<double> result);

/// Columns centred and scaled to unit length, so that a cross-product is a correlation. A missing
/// source value leaves the result element untouched. The double form rounds each result through
/// float.
void CorrAdj(int n, int p, Matrix<float> result, ConstMatrix<float> source);
void CorrAdj(int n, int p, Matrix<double> result, ConstMatrix<double> source);

/// Rows to unit sum; a row that sums to exactly 0 stays.
void UnitSumRowsAdjMV(int n, int p, Matrix<float> result, ConstMatrix<float> source);
void UnitSumRowsAdjMV(int n, int p, Matrix<double> result, ConstMatrix<double> source);

/// Columns to the range 0 to 1; a constant column becomes 0.
void RangeColsAdjMV(int n, int p, Matrix<float> result, ConstMatrix<float> source);

/// One scale for the whole matrix, in place: the sum over rows (columns) of sum of squares / (count
/// - 1) becomes 1. A matrix of zeros becomes NaN.
void GowerStandardizationRows(int n, int p, Matrix<float> a);
void GowerStandardizationRows(int n, int p, Matrix<double> a);
void GowerStandardizationCols(int n, int p, Matrix<float> a);
void GowerStandardizationCols(int n, int p, Matrix<double> a);
