#include "mxlibRes/sparse_rows.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/subset_kernels.h"

namespace {

template <class T>
bool HasWeight(T w) {
    return w != 0 && !IsMissing(w);
}

template <class T>
int CountCells(int m, const T* w) {
    int count = 0;
    for (int k = 0; k < m; k++) count += HasWeight(w[k]);
    return count;
}

template <class T>
bool IsFinite(T x) {
    return std::fabs(x) <= std::numeric_limits<T>::max();
}

/// Whether u is finite; fills the table, a missing value adding nothing as a 0 does.
template <class T>
bool FillTable(ConstMatrix<float> u, SparseRows<T>* rows) {
    int odd = 0;
    for (int k = 0; k < rows->m; k++) {
        T* to = rows->table.get() + static_cast<std::ptrdiff_t>(k) * rows->width;
        for (int g = 0; g < rows->K; g++) {
            const float x = u[k][g];
            odd |= static_cast<int>(!IsFinite(x));
            to[g] = IsMissing(x) ? T(0) : static_cast<T>(x);
        }
    }
    return odd == 0;
}

template <class T>
bool AllFinite(int n, int m, ConstMatrix<T> w) {
    for (int i = 0; i < n; i++)
        for (int k = 0; k < m; k++)
            if (!IsFinite(w[i][k])) return false;
    return true;
}

/// The slices, rows of the most cells first; returns how many cells they take.
std::ptrdiff_t MakeSlices(int n, const int* cells, int slices, int* row, std::ptrdiff_t* start) {
    for (int i = 0; i < slices * kSliceRows; i++) row[i] = i;
    // No stable_sort: it allocates, and Clang 19 objects to how the library of GCC 12 does so.
    std::sort(row, row + n,
              [cells](int a, int b) { return cells[a] != cells[b] ? cells[a] > cells[b] : a < b; });
    for (int i = 0; i < slices; i++)
        start[i + 1] = start[i] + static_cast<std::ptrdiff_t>(
                                      cells[row[static_cast<std::ptrdiff_t>(i) * kSliceRows]]) *
                                      kSliceRows;
    return start[slices];
}

template <class T>
void FillSlices(SparseRows<T>* rows) {
    for (int i = 0; i < rows->slices * kSliceRows; i++) {
        if (rows->row[i] >= rows->n) continue;
        const T* w = rows->w[rows->row[i]];
        std::ptrdiff_t e = rows->start[i / kSliceRows] + i % kSliceRows;
        for (int k = 0; k < rows->m; k++) {
            if (!HasWeight(w[k])) continue;
            rows->at[e] = k;
            rows->weights[e] = w[k];
            e += kSliceRows;
        }
    }
}

}  // namespace

template <class T>
SparseRows<T> MakeSparseRows(int n, int m, int K, ConstMatrix<T> w) {
    constexpr int kMultiple = 8;  // of sparseRows
    const int width = (K + kMultiple - 1) / kMultiple * kMultiple;
    const int slices = (n + kSliceRows - 1) / kSliceRows;
    const int rowsOfSlices = slices * kSliceRows;
    ScopedVector<int> cells(n), row(rowsOfSlices);
    ScopedVector<std::ptrdiff_t> start(slices + 1);
    for (int i = 0; i < n; i++) cells[i] = CountCells(m, w[i]);
    const std::ptrdiff_t count = MakeSlices(n, cells, slices, row, start);
    SparseRows<T> rows{n,
                       m,
                       K,
                       w,
                       AllFinite(n, m, w),
                       slices,
                       std::move(row),
                       std::move(start),
                       ScopedVector<int>(count),
                       ScopedVector<T>(count),
                       width,
                       ScopedVector<T>(static_cast<std::ptrdiff_t>(m) * width),
                       ScopedVector<T>(static_cast<std::ptrdiff_t>(rowsOfSlices) * width),
                       ScopedVector<T*>(n)};
    for (int i = 0; i < n; i++)
        rows.x[i] = rows.places.get() + static_cast<std::ptrdiff_t>(i) * width;
    FillSlices(&rows);
    return rows;
}

template <class T>
T* const* SparseProduct(ConstMatrix<float> u, SparseRows<T>* rows, T* const* columns) {
    if (FillTable(u, rows) && rows->isFinite)
        KernelsOf<T>(SubsetKernelsOfProcessor())
            .sparseRows(rows->slices, rows->start, rows->at, rows->weights, rows->row, rows->table,
                        rows->width, rows->places);
    else
        MatrixProdMV(rows->n, rows->m, rows->m, rows->K, rows->w, u, rows->x);
    if (columns != nullptr)
        for (int i = 0; i < rows->n; i++)
            for (int g = 0; g < rows->K; g++) columns[g][i] = rows->x[i][g];
    return rows->x;
}

template SparseRows<float> MakeSparseRows<float>(int, int, int, ConstMatrix<float>);
template SparseRows<double> MakeSparseRows<double>(int, int, int, ConstMatrix<double>);
template float* const* SparseProduct<float>(ConstMatrix<float>, SparseRows<float>*, float* const*);
template double* const* SparseProduct<double>(ConstMatrix<float>, SparseRows<double>*,
                                              double* const*);
