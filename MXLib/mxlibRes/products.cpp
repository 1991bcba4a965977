#include "mxlibRes/products.h"

#include <cmath>
#include <limits>
#include <type_traits>

#include "mxlibRes/missing.h"

// The products run row by row of B, so that the inner loop goes along rows; each cell of C still
// takes its terms in the order of k, which fixes its digits.

namespace {

/// The cell after one more term: product and sum in the wider of the factors' types, rounded to the
/// type of the result at every step.
template <class A, class B, class C>
C Plus(C cell, A a, B b) {
    using Wide = std::common_type_t<A, B>;
    return static_cast<C>(static_cast<Wide>(cell) + static_cast<Wide>(a) * static_cast<Wide>(b));
}

/// Whether columns from..to of B hold finite, present numbers only.
template <class B>
bool IsPlain(int p, ConstMatrix<B> b, int from, int to) {
    for (int k = 0; k < p; k++) {
        int odd = 0;
        for (int j = from; j < to; j++)
            odd |= static_cast<int>(IsMissing(b[k][j])) |
                   static_cast<int>(!(std::fabs(b[k][j]) <= std::numeric_limits<B>::max()));
        if (odd != 0) return false;
    }
    return true;
}

/// Adds to columns from..to of a row of C the products of a row of A with a plain B. Terms with a
/// zero factor of A are passed over: on finite numbers they change no digit, except that a sum
/// rounded to a narrower type can be a negative zero, which a term of zero would make positive.
template <class A, class B, class C>
void AddPlainRow(int p, const A* a, ConstMatrix<B> b, C* c, int from, int to) {
    constexpr bool kSkipZeros = std::is_same_v<std::common_type_t<A, B>, C>;
    constexpr int kBatch = 4;  // terms per pass over the row of C
    int batch[kBatch] = {};
    int collected = 0;
    for (int k = 0; k < p; k++) {
        if (IsMissing(a[k]) || (kSkipZeros && a[k] == 0)) continue;
        batch[collected++] = k;
        if (collected < kBatch) continue;
        const auto [k0, k1, k2, k3] = batch;
        const A a0 = a[k0], a1 = a[k1], a2 = a[k2], a3 = a[k3];
        const B *b0 = b[k0], *b1 = b[k1], *b2 = b[k2], *b3 = b[k3];
        for (int j = from; j < to; j++)
            c[j] = Plus(Plus(Plus(Plus(c[j], a0, b0[j]), a1, b1[j]), a2, b2[j]), a3, b3[j]);
        collected = 0;
    }
    for (int t = 0; t < collected; t++) {
        const A factor = a[batch[t]];
        const B* row = b[batch[t]];
        for (int j = from; j < to; j++) c[j] = Plus(c[j], factor, row[j]);
    }
}

/// The same with a test of every factor of B.
template <class A, class B, class C>
void AddTestedRow(int p, const A* a, ConstMatrix<B> b, C* c, int from, int to) {
    for (int k = 0; k < p; k++) {
        if (IsMissing(a[k])) continue;
        for (int j = from; j < to; j++)
            if (!IsMissing(b[k][j])) c[j] = Plus(c[j], a[k], b[k][j]);
    }
}

/// Columns from..to of C, which stand at 0.
template <class A, class B, class C>
void ProductOfColumns(int n, int p, ConstMatrix<A> a, ConstMatrix<B> b, Matrix<C> c, int from,
                      int to) {
    const bool plain = IsPlain(p, b, from, to);
    for (int i = 0; i < n; i++) {
        if (plain)
            AddPlainRow(p, a[i], b, c[i], from, to);
        else
            AddTestedRow(p, a[i], b, c[i], from, to);
    }
}

template <class C>
void SetZero(int n, int q, Matrix<C> c) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < q; j++) c[i][j] = 0;
}

template <class A, class B, class C>
int Product(int n, int p, int p2, int q, ConstMatrix<A> a, ConstMatrix<B> b, Matrix<C> c) {
    if (p != p2) return 1;
    SetZero(n, q, c);
    ProductOfColumns(n, p, a, b, c, 0, q);
    return 0;
}

template <class A, class B, class C>
int ProductOfSelected(int n, int p, int p2, int q, ConstMatrix<A> a, ConstMatrix<B> b, Matrix<C> c,
                      const int* sel) {
    if (p != p2) return 1;
    SetZero(n, q, c);
    for (int from = 0; from < q; from++) {
        int to = from;
        while (to < q && sel[to] == 1) to++;
        if (to > from) ProductOfColumns(n, p, a, b, c, from, to);
        from = to;
    }
    return 0;
}

template <class A, class B, class C>
int AdjustedProductOfSelected(int n, int p, int p2, int q, ConstMatrix<A> a, ConstMatrix<B> b,
                              Matrix<C> c, const int* sel) {
    if (ProductOfSelected(n, p, p2, q, a, b, c, sel) != 0) return 1;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < q; j++) {
            if (sel[j] != 1) continue;
            C weights = 0;
            for (int k = 0; k < p; k++)
                if (!IsMissing(a[i][k]) && !IsMissing(b[k][j])) weights += static_cast<C>(b[k][j]);
            c[i][j] /= weights;
        }
    return 0;
}

/// Cells that skipped a pair and sum to 0 become missing.
template <class A, class B, class C>
void MarkSkippedZeros(int n, int p, int q, ConstMatrix<A> a, ConstMatrix<B> b, Matrix<C> c) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < q; j++) {
            if (c[i][j] != 0) continue;
            for (int k = 0; k < p; k++)
                if (IsMissing(a[i][k]) || IsMissing(b[k][j])) {
                    c[i][j] = C{kMissing};
                    break;
                }
        }
}

}  // namespace

int MatrixProd(int n, int p, int p2, int q, ConstMatrix<float> a, ConstMatrix<float> b,
               Matrix<float> c) {
    return Product(n, p, p2, q, a, b, c);
}
int MatrixProd(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<double> b,
               Matrix<double> c) {
    return Product(n, p, p2, q, a, b, c);
}
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<float> a, ConstMatrix<float> b,
                 Matrix<float> c) {
    return Product(n, p, p2, q, a, b, c);
}
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<double> b,
                 Matrix<double> c) {
    return Product(n, p, p2, q, a, b, c);
}
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<float> b,
                 Matrix<double> c) {
    return Product(n, p, p2, q, a, b, c);
}
int MatrixProdMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<float> b,
                 Matrix<float> c) {
    if (Product(n, p, p2, q, a, b, c) != 0) return 1;
    MarkSkippedZeros(n, p, q, a, b, c);
    return 0;
}

int MatrixProdSelectMV(int n, int p, int p2, int q, ConstMatrix<float> a, ConstMatrix<float> b,
                       Matrix<float> c, const int* sel) {
    return ProductOfSelected(n, p, p2, q, a, b, c, sel);
}
int MatrixProdSelectMV(int n, int p, int p2, int q, ConstMatrix<double> a, ConstMatrix<float> b,
                       Matrix<double> c, const int* sel) {
    return ProductOfSelected(n, p, p2, q, a, b, c, sel);
}
int MatrixProdSelectMV_Adjust(int n, int p, int p2, int q, ConstMatrix<float> a,
                              ConstMatrix<float> b, Matrix<float> c, const int* sel) {
    return AdjustedProductOfSelected(n, p, p2, q, a, b, c, sel);
}
int MatrixProdSelectMV_Adjust(int n, int p, int p2, int q, ConstMatrix<double> a,
                              ConstMatrix<float> b, Matrix<double> c, const int* sel) {
    return AdjustedProductOfSelected(n, p, p2, q, a, b, c, sel);
}
