#include "mxlibRes/turned_side.h"

#include <gsl/gsl_linalg.h>

#include <algorithm>
#include <cmath>

namespace {

bool IsFinite(int n, int p, ConstMatrix<double> x) {
    for (int i = 0; i < n; i++)
        if (!std::all_of(x[i], x[i] + p, [](double value) { return std::isfinite(value); }))
            return false;
    return true;
}

}  // namespace

CongruenceSide<double> TurnWideSide(CongruenceSide<double> side) {
    const int n = side.n;
    const int p = side.p;
    if (side.measure != kProcrustes || side.hasMissing || n < 2 || p / 2 < n) return side;
    if (!IsFinite(n, p, side.x)) return side;
    ScopedVector<double> cells(static_cast<std::ptrdiff_t>(p) *
                               n);  // x', p x n: its R holds the rest
    gsl_matrix_view transposed = gsl_matrix_view_array(cells, p, n);
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) gsl_matrix_set(&transposed.matrix, j, i, side.x[i][j]);
    ScopedVector<double> reflections(n);
    gsl_vector_view tau = gsl_vector_view_array(reflections, n);
    gsl_linalg_QR_decomp(&transposed.matrix, &tau.vector);
    CongruenceSide<double> narrow = MakeCongruenceSide<double>(kProcrustes, n, n - 1);
    for (int i = 0; i < n; i++)
        for (int k = 0; k < n - 1; k++)
            narrow.x[i][k] = k <= i ? gsl_matrix_get(&transposed.matrix, k, i) : 0.0;
    return narrow;
}
