#include "mxlibRes/beals.h"

#include <cmath>

#include "mxlibDim/scoped.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

enum ConditionalOption : int { kJointOccurrences = 0, kPerformanceWhereOther = 1, kProducts = 2 };

template <class T>
bool AllFinite(int n, const T* x) {
    for (int i = 0; i < n; i++)
        if (!std::isfinite(x[i])) return false;
    return true;
}

/// Lists the OTUs of one community that satisfy `wanted`; returns their number.
template <class Wanted>
int ListOTUs(int n, const double* w, int* list, Wanted wanted) {
    int count = 0;
    for (int i = 0; i < n; i++)
        if (!IsMissing(w[i]) && wanted(w[i])) list[count++] = i;
    return count;
}

// Each of the following adds the terms of one community to m. OTUs whose terms are exactly 0 are
// left out; communities being the outer loop, each cell sums over them in their order.

void AddProducts(int n, const double* w, Matrix<double> m, int* list) {
    const bool finite = AllFinite(n, w);  // 0 times anything else is no number
    const int count = ListOTUs(n, w, list, [finite](double x) { return x != 0 || !finite; });
    for (int a = 0; a < count; a++)
        for (int b = a; b < count; b++) m[list[a]][list[b]] += w[list[a]] * w[list[b]];
}

void AddJointOccurrences(int n, const double* w, Matrix<double> m, int* list) {
    const int count = ListOTUs(n, w, list, [](double x) { return x > 0; });
    for (int a = 0; a < count; a++)
        for (int b = a; b < count; b++) m[list[a]][list[b]] += 1;
}

void AddPerformances(int n, const double* w, Matrix<double> m, int* list) {
    const int count = ListOTUs(n, w, list, [](double x) { return x > 0; });
    for (int i = 0; i < n; i++) {
        if (IsMissing(w[i]) || w[i] == 0) continue;
        for (int b = 0; b < count; b++) m[i][list[b]] += w[i];
    }
}

void DivideByDiagonal(int n, Matrix<double> m) {
    for (int i = 0; i < n; i++) {
        const double own = m[i][i];
        if (own > 0)
            for (int j = 0; j < n; j++) m[i][j] /= own;
        m[i][i] = 1;
    }
}

/// m to what the smoothing without the target multiplies by: diagonal 0, m / (1 - m) for odds.
void ToMultipliers(int n, Matrix<double> m, bool odds) {
    for (int k = 0; k < n; k++) {
        m[k][k] = 0;
        if (!odds) continue;
        for (int j = 0; j < n; j++) m[k][j] = m[k][j] / (1 - m[k][j]);
    }
}

/// One community, its performances at unit sum, smoothed without the target. An OTU k of
/// performance 0 adds exactly nothing unless its multipliers are not all finite.
void SmoothWithoutTarget(int n, const double* a, ConstMatrix<double> multipliers,
                         const bool* finiteRow, double* rest, double* z) {
    const bool finite = AllFinite(n, a);
    for (int j = 0; j < n; j++) {
        rest[j] = 1 - a[j];
        z[j] = 0;
    }
    for (int k = 0; k < n; k++) {
        if (a[k] == 0 && finite && finiteRow[k]) continue;
        for (int j = 0; j < n; j++) z[j] += a[k] / rest[j] * multipliers[k][j];
    }
    for (int j = 0; j < n; j++)
        if (rest[j] == 0) z[j] = 0;
}

}  // namespace

void ConditionalProb(int c, int n, ConstMatrix<double> w, Matrix<double> m, int option,
                     bool unitSum) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) m[i][j] = 0;
    ScopedVector<int> list(n);
    for (int s = 0; s < c; s++) {
        if (option == kProducts) AddProducts(n, w[s], m, list);
        if (option == kPerformanceWhereOther) AddPerformances(n, w[s], m, list);
        if (option == kJointOccurrences) AddJointOccurrences(n, w[s], m, list);
    }
    if (option != kPerformanceWhereOther) UpperToLowerMatrix(n, m);
    if (option != kProducts) DivideByDiagonal(n, m);
    if (option == kProducts || unitSum) UnitSumRowsAdjMV(n, n, m, m);
}

void BealsSmoothing(int c, int n, ConstMatrix<double> a, ConstMatrix<double> d, Matrix<double> z,
                    bool includeTarget, int option, bool odds) {
    ScopedMatrix<double> m(n, n);
    ConditionalProb(c, n, d, m, option, odds);
    ScopedMatrix<double> unit(c, n);
    UnitSumRowsAdjMV(c, n, unit, a);
    if (includeTarget) {
        MatrixProdMV(c, n, n, n, unit, m, z);
        return;
    }
    ToMultipliers(n, m, odds);
    ScopedVector<bool> finiteRow(n);
    for (int k = 0; k < n; k++) finiteRow[k] = AllFinite(n, m[k]);
    ScopedVector<double> rest(n);
    for (int s = 0; s < c; s++) SmoothWithoutTarget(n, unit[s], m, finiteRow, rest, z[s]);
}
