#pragma once
/// \file
/// Random tables with a given correlation structure.

#include "mxlibDim/dim.h"

/// Deviates of CorrToData_New; any other number draws standard normal ones.
enum Deviate : int {
    kUniformDeviate = 1,  ///< -0.5 to 0.5
    kNormalDeviate = 2,
    kLognormalDeviate = 5,
    kExponentialDeviate = 7,
    kCubedExponentialDeviate = 8
};

/// out (n x p) = independent deviates from `r` (random_lists.h), drawn row by row, times the upper
/// Cholesky factor of the correlation matrix R (p x p), so that the columns of out have the
/// covariance R. Nothing is scaled. An R that is not positive definite ends the program with status
/// 1 behind choldc's message. Returns 1.
int CorrToData_New(int n, int p, ConstMatrix<float> R, Matrix<float> out, int dist);
int CorrToData_New(int n, int p, ConstMatrix<double> R, Matrix<double> out, int dist);
