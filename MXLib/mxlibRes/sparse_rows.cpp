#include "mxlibRes/sparse_rows.h"

#include <cmath>
#include <limits>

#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/subset_kernels.h"

namespace {

template <class T>
int CountCells(int n, int m, ConstMatrix<T> w) {
    int count = 0;
    for (int i = 0; i < n; i++)
        for (int k = 0; k < m; k++) count += w[i][k] != 0 && !IsMissing(w[i][k]);
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
        T* to = rows->table.get() + static_cast<long>(k) * rows->width;
        for (int g = 0; g < rows->K; g++) {
            const float x = u[k][g];
            odd |= static_cast<int>(!IsFinite(x));
            to[g] = IsMissing(x) ? T(0) : static_cast<T>(x);
        }
    }
    return odd == 0;
}

}  // namespace

template <class T>
SparseRows<T> MakeSparseRows(int n, int m, int K, ConstMatrix<T> w) {
    constexpr int kMultiple = 8;  // of sparseRows
    const int width = (K + kMultiple - 1) / kMultiple * kMultiple;
    const int count = CountCells(n, m, w);
    SparseRows<T> rows{n,
                       m,
                       K,
                       w,
                       true,
                       ScopedVector<int>(n + 1),
                       ScopedVector<int>(count),
                       ScopedVector<T>(count),
                       width,
                       ScopedVector<T>(m * width),
                       ScopedVector<T>(n * width),
                       ScopedVector<T*>(n)};
    int e = 0;
    for (int i = 0; i < n; i++) {
        rows.x[i] = rows.places.get() + static_cast<long>(i) * width;
        for (int k = 0; k < m; k++) {
            rows.isFinite = rows.isFinite && IsFinite(w[i][k]);
            if (w[i][k] == 0 || IsMissing(w[i][k])) continue;
            rows.at[e] = k;
            rows.weights[e++] = w[i][k];
        }
        rows.start[i + 1] = e;
    }
    return rows;
}

template <class T>
T* const* SparseProduct(ConstMatrix<float> u, SparseRows<T>* rows, T* const* columns) {
    if (FillTable(u, rows) && rows->isFinite)
        KernelsOf<T>(SubsetKernelsOfProcessor())
            .sparseRows(rows->n, rows->start, rows->at, rows->weights, rows->table, rows->width,
                        rows->places);
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
