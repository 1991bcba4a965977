#pragma once
/// \file
/// Singular values without their vectors, for callers that need their sum many times.

#include "mxlibDim/dim.h"

/// s[0..n-1] = the singular values of a (m x n, m >= n), in no order; a is destroyed and `room` has
/// 3 n places. Householder bidiagonalisation and implicit QR iteration (Golub and Reinsch 1970,
/// Numerische Mathematik 14, 403-420). False when an iteration does not converge; NaN for elements
/// that are not finite.
bool SingularValuesAlone(int m, int n, Matrix<double> a, double* s, double* room);
