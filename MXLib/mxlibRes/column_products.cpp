#include "mxlibRes/column_products.h"

#include <type_traits>

#include "mxlibRes/kernels.h"
#include "mxlibRes/missing.h"

namespace {

/// R x C cells of the product at once: their sums stay in registers while the rows go by.
template <int R, int C, class T>
void Tile(int n, ConstMatrix<T> a, int i, ConstMatrix<T> b, int j, Matrix<T> c) {
    T sum[R][C] = {};
    for (int k = 0; k < n; k++) {
        const T* x = a[k] + i;
        const T* y = b[k] + j;
        for (int s = 0; s < R; s++)
            for (int t = 0; t < C; t++) sum[s][t] += x[s] * y[t];
    }
    for (int s = 0; s < R; s++)
        for (int t = 0; t < C; t++) c[i + s][j + t] = sum[s][t];
}

template <int R, class T>
void RowOfTiles(int n, ConstMatrix<T> a, int i, int p2, ConstMatrix<T> b, Matrix<T> c) {
    int j = 0;
    for (; j + 4 <= p2; j += 4) Tile<R, 4>(n, a, i, b, j, c);
    for (; j < p2; j++) Tile<R, 1>(n, a, i, b, j, c);
}

template <class T>
T PresentProduct(int n, ConstMatrix<T> a, int i, ConstMatrix<T> b, int j) {
    T sum = 0;
    for (int k = 0; k < n; k++)
        if (!IsMissing(a[k][i]) && !IsMissing(b[k][j])) sum += a[k][i] * b[k][j];
    return sum;
}

template <class T>
void Products(int n, int p1, ConstMatrix<T> a, int p2, ConstMatrix<T> b, Matrix<T> c,
              bool missing) {
    if (missing) {
        for (int i = 0; i < p1; i++)
            for (int j = 0; j < p2; j++) c[i][j] = PresentProduct(n, a, i, b, j);
        return;
    }
    if constexpr (std::is_same_v<T, double>) {
        const Kernels& kernels = KernelsOfProcessor();
        if (p1 >= p2)
            kernels.columnProducts(n, p1, a, p2, b, c);
        else
            kernels.columnProductsTurned(n, p2, b, p1, a, c);
        return;
    }
    int i = 0;
    for (; i + 4 <= p1; i += 4) RowOfTiles<4>(n, a, i, p2, b, c);
    for (; i < p1; i++) RowOfTiles<1>(n, a, i, p2, b, c);
}

}  // namespace

void ColumnProducts(int n, int p1, ConstMatrix<float> a, int p2, ConstMatrix<float> b,
                    Matrix<float> c, bool missing) {
    Products(n, p1, a, p2, b, c, missing);
}
void ColumnProducts(int n, int p1, ConstMatrix<double> a, int p2, ConstMatrix<double> b,
                    Matrix<double> c, bool missing) {
    Products(n, p1, a, p2, b, c, missing);
}
