#pragma once
/// \file
/// Gower's general similarity (Gower 1971, Biometrics 27, 857-871) between the n rows of a matrix
/// of p variables of types 1 binary, 2 nominal, 3 interval or ratio, 4 ordinal. Variables missing
/// in either row do not count for the pair; a pair without a comparable variable leaves its cell as
/// it was. Both halves are written, the diagonal is 1.

#include "mxlibDim/dim.h"

/// Ordinal columns are replaced by their ranks in `data` itself, and stay so. Ranges of types 3 and
/// 4 are always computed from the data (`ranges` is ignored; the running maximum starts at the
/// smallest positive double). `weights` may be null: all 1. Matching absences of a binary variable
/// count when `countDoubleAbsences` is not 0.
void GowerMVOpt(int n, int p, const int* types, Matrix<float> data, Matrix<double> similarity,
                const float* ranges, const float* weights, int countDoubleAbsences);
void GowerMVOpt(int n, int p, const int* types, Matrix<double> data, Matrix<double> similarity,
                const float* ranges, const float* weights, int countDoubleAbsences);

/// The same with types 1, 2 and 3 only, a supplied range array honoured (null: computed in float),
/// and matching absences never counted.
void GowerMV(int n, int p, const int* types, ConstMatrix<float> data, Matrix<float> similarity,
             const float* ranges, const float* weights);

/// Range of a variable from its present values, as GowerMVOpt computes it.
float VariableRange(int n, const double* values);
