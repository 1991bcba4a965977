#pragma once
/// \file
/// Steps that every ordination on eigenvectors takes.

#include <cmath>

#include "mxlibDim/dim.h"
#include "mxlibRes/missing.h"

/// Smallest share of the positive eigenvalues, in per cent, that an axis must exceed to be kept.
template <class T>
inline constexpr double kAxisThreshold = 1e-6;
template <>
inline constexpr double kAxisThreshold<float> = 0.0001;

/// Number of eigenvalues (descending) above the threshold. The per cent product is in T, the sum
/// and the division in double.
template <class T>
int CountAxes(int n, const T* eval) {
    double total = 0.0;
    for (int k = 0; k < n; k++)
        if (eval[k] > 0) total += static_cast<double>(eval[k]);
    int nAxes = 0;
    for (int k = 0; k < n; k++)
        if (static_cast<double>(eval[k] * T(100)) / total > kAxisThreshold<T>) nAxes++;
    return nAxes;
}

template <class T>
double SquaredLength(int n, const T* x) {
    double sum = 0.0;
    for (int i = 0; i < n; i++) sum += static_cast<double>(x[i]) * static_cast<double>(x[i]);
    return sum;
}

/// The first nAxes rows of evec, of n elements, to unit length.
template <class T>
void UnitLengthRows(int nAxes, int n, Matrix<T> evec) {
    for (int k = 0; k < nAxes; k++) {
        const double length = std::sqrt(SquaredLength(n, evec[k]));
        for (int i = 0; i < n; i++)
            evec[k][i] = static_cast<T>(static_cast<double>(evec[k][i]) / length);
    }
}

/// scores[k][j] = sum over i of x[i][j] evec[k][i], x (n x p) present.
template <class T>
void ComponentScores(int nAxes, int n, int p, ConstMatrix<T> x, ConstMatrix<T> evec,
                     Matrix<T> scores) {
    const bool missing = HasMissing(n, p, x);
    for (int k = 0; k < nAxes; k++) {
        T* score = scores[k];
        for (int j = 0; j < p; j++) score[j] = 0;
        for (int i = 0; i < n; i++) {
            const T weight = evec[k][i];
            const T* value = x[i];
            for (int j = 0; j < p; j++)
                if (!missing || !IsMissing(value[j])) score[j] += value[j] * weight;
        }
    }
}
