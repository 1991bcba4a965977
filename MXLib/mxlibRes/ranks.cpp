#include "mxlibRes/ranks.h"

#include <cmath>

#include "mxlibDim/scoped.h"
#include "mxlibRes/missing.h"
#include "nrutilMX/nrutilMX.h"

namespace {

/// Ascending order of key(source[k]).
void Order(int n, const double* source, double* result, double (*key)(double)) {
    const ScopedVector<double> values(n + 1);
    const ScopedVector<double> indices(n + 1);
    for (int k = 1; k <= n; k++) {
        values[k] = key(source[k - 1]);
        indices[k] = k;
    }
    sort2(static_cast<unsigned long>(n), values, indices);
    for (int k = 0; k < n; k++) result[k] = indices[k + 1];
}

template <class T>
void Midranks(int n, const T* source, T* result) {
    const ScopedVector<T> values(n + 1);
    const ScopedVector<T> indices(n + 1);
    int missing = 0;
    for (int k = 1; k <= n; k++) {
        values[k] = source[k - 1];
        indices[k] = static_cast<T>(k);
        missing += IsMissing(source[k - 1]);
    }
    const auto count = static_cast<unsigned long>(n);
    T ties;
    sort2(count, values, indices);
    crank(count, values, &ties);
    sort2(count, indices, values);
    for (int k = 0; k < n; k++)
        result[k] = IsMissing(source[k]) ? T{kMissing} : values[k + 1] - static_cast<T>(missing);
}

}  // namespace

void RankVector(int n, const double* source, double* result) {
    Order(n, source, result, [](double x) { return x; });
}

void RankVectorAbs(int n, const double* source, double* result) {
    Order(n, source, result, [](double x) { return std::fabs(x); });
}

void RankVectorAdjMV(int n, const float* source, float* result) {
    if (n > 0) Midranks(n, source, result);
}
void RankVectorAdjMV(int n, const double* source, double* result) {
    if (n > 0) Midranks(n, source, result);
}
