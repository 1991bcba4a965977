#pragma once
/// \file
/// Rao's index, degrees of belonging and Beals smoothing straight from their definitions, every
/// pair visited, nothing left out.

#include <cmath>

#include "mxlibDim/dim.h"

/// m is a full matrix.
template <class M>
double PlainRao(int n, const double* p, ConstMatrix<M> m, bool dissimilarity, bool squareRoot) {
    double t = 0, sum = 0;
    for (int i = 0; i < n; i++)
        if (p[i] != -999) t += p[i];
    for (int i = 0; i < n && t > 0; i++)
        for (int j = 0; j < n; j++) {
            if (m[i][j] == -999 || p[i] == -999 || p[j] == -999) continue;
            const double d = double(dissimilarity ? m[i][j] : 1 - m[i][j]);
            sum += (p[i] / t) * (p[j] / t) * (squareRoot ? std::sqrt(d) : d);
        }
    return sum;
}

/// s is a full matrix.
void PlainFuzzyBelonging(int n, int K, ConstMatrix<float> s, const int* partition, Matrix<float> u,
                         bool dissimilarity);
void PlainFuzzyBelonging(int n, int K, ConstMatrix<double> s, const int* partition,
                         Matrix<double> u, bool dissimilarity);

void PlainConditionalProb(int c, int n, ConstMatrix<double> w, Matrix<double> m, int option,
                          bool unitSum);
void PlainBealsWithoutTarget(int c, int n, ConstMatrix<double> a, ConstMatrix<double> d,
                             Matrix<double> z, int option, bool odds);
