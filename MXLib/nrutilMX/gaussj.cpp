#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "mxlibDim/scoped.h"
#include "mxlibDim/standard_streams.h"
#include "nrutilMX/nrutilMX.h"

namespace {

struct Cell {
    int row;
    int col;
};

/// The largest element of the rows and columns that have had no pivot, the last one among equals;
/// `before` when nothing compares, as with NaN. `pivots` counts the pivots of each column.
Cell FindPivot(ConstMatrix<double> a, int n, const int* pivots, Cell before) {
    Cell found = before;
    double largest = 0;
    for (int j = 1; j <= n; j++) {
        if (pivots[j] == 1) continue;
        for (int k = 1; k <= n; k++) {
            if (pivots[k] == 0) {
                if (std::fabs(a[j][k]) >= largest) {
                    largest = std::fabs(a[j][k]);
                    found = {j, k};
                }
            } else if (pivots[k] > 1) {
                std::fputs("gaussj: Singular Matrix-1", ErrorStream());
            }
        }
    }
    return found;
}

void SwapRows(Matrix<double> x, int cols, int i, int j) {
    for (int k = 1; k <= cols; k++) std::swap(x[i][k], x[j][k]);
}

void ScaleRow(Matrix<double> x, int cols, int i, double factor) {
    for (int k = 1; k <= cols; k++) x[i][k] *= factor;
}

/// Row i less `factor` times row j.
void SubtractRow(Matrix<double> x, int cols, int i, int j, double factor) {
    for (int k = 1; k <= cols; k++) x[i][k] -= x[j][k] * factor;
}

}  // namespace

void gaussj(Matrix<double> a, int n, Matrix<double> b, int m) {
    const ScopedVector<int> room(3L * (n + 1));
    gaussj(a, n, b, m, room);
}

void gaussj(Matrix<double> a, int n, Matrix<double> b, int m, int* room) {
    int* pivots = room;
    int* takenRow = pivots + n + 1;
    int* takenCol = takenRow + n + 1;
    std::fill(pivots, pivots + n + 1, 0);
    Cell pivot = {1, 1};
    for (int i = 1; i <= n; i++) {
        pivot = FindPivot(a, n, pivots, pivot);
        const auto [row, col] = pivot;
        pivots[col]++;
        takenRow[i] = row;
        takenCol[i] = col;
        if (row != col) {
            SwapRows(a, n, row, col);
            SwapRows(b, m, row, col);
        }
        if (a[col][col] == 0.0) std::fputs("gaussj: Singular Matrix-2", ErrorStream());
        const double inverse = 1.0 / a[col][col];
        a[col][col] = 1.0;
        ScaleRow(a, n, col, inverse);
        ScaleRow(b, m, col, inverse);
        for (int j = 1; j <= n; j++) {
            if (j == col) continue;
            const double factor = a[j][col];
            a[j][col] = 0.0;
            SubtractRow(a, n, j, col, factor);
            SubtractRow(b, m, j, col, factor);
        }
    }
    for (int i = n; i >= 1; i--)
        if (takenRow[i] != takenCol[i])
            for (int k = 1; k <= n; k++) std::swap(a[k][takenRow[i]], a[k][takenCol[i]]);
}
