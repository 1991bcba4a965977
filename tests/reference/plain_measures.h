#pragma once
/// \file
/// Rao's index, degrees of belonging and Beals smoothing straight from their definitions, every
/// pair visited, nothing left out.

#include "mxlibDim/dim.h"

double PlainRao(int n, const double* p, ConstMatrix<float> m, bool dissimilarity, bool squareRoot);

/// s is a full matrix.
void PlainFuzzyBelonging(int n, int K, ConstMatrix<float> s, const int* partition, Matrix<float> u,
                         bool dissimilarity);

void PlainConditionalProb(int c, int n, ConstMatrix<double> w, Matrix<double> m, int option,
                          bool unitSum);
void PlainBealsWithoutTarget(int c, int n, ConstMatrix<double> a, ConstMatrix<double> d,
                             Matrix<double> z, int option, bool odds);
