#include "mxlibRes/congruence_kernels.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <type_traits>

#include "mxlib/singular_values.h"
#include "mxlibRes/column_products.h"
#include "mxlibRes/kernels.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/standardisation.h"

namespace {

template <class T>
T ProductOfPresent(int p, const T* x, const T* y) {
    T sum = 0;
    for (int k = 0; k < p; k++)
        if (!IsMissing(x[k]) && !IsMissing(y[k])) sum += x[k] * y[k];
    return sum;
}

/// Row i of x x' from the diagonal on, in single precision four objects at a time.
template <class T>
void RowOfObjects(const CongruenceSide<T>& side, int i, T* row) {
    const T* x = side.x[i];
    const int p = side.p;
    int j = i;
    if constexpr (std::is_same_v<T, double>) {
        const Kernels& kernels = KernelsOfProcessor();
        for (; !side.hasMissing && j < side.n; j++) row[j] = kernels.dot(p, x, side.x[j]);
    }
    for (; !side.hasMissing && j + 4 <= side.n; j += 4) {
        const T* y[4] = {side.x[j], side.x[j + 1], side.x[j + 2], side.x[j + 3]};
        T sum[4] = {};
        for (int k = 0; k < p; k++)
            for (int t = 0; t < 4; t++) sum[t] += x[k] * y[t][k];
        for (int t = 0; t < 4; t++) row[j + t] = sum[t];
    }
    for (; j < side.n; j++) {
        if (side.hasMissing) {
            row[j] = ProductOfPresent(p, x, side.x[j]);
            continue;
        }
        row[j] = 0;
        for (int k = 0; k < p; k++) row[j] += x[k] * side.x[j][k];
    }
}

/// Row i of x x' from the diagonal on: the row that the side keeps, or one made in `room`.
template <class T>
const T* ObjectsRow(const CongruenceSide<T>& side, int i, T* room) {
    if (side.byObjects) return side.objects[i];
    RowOfObjects(side, i, room);
    return room;
}

/// Sum of products of the elements of the two matrices x x', whole, from their upper halves.
template <class T>
double VecProdByObjects(const CongruenceSide<T>& a, const CongruenceSide<T>& b, Matrix<T> rows) {
    double diagonal = 0.0;
    double above = 0.0;
    for (int i = 0; i < a.n; i++) {
        const T* x = ObjectsRow(a, i, rows[0]);
        const T* y = ObjectsRow(b, i, rows[1]);
        diagonal += static_cast<double>(x[i]) * static_cast<double>(y[i]);
        for (int j = i + 1; j < a.n; j++)
            above += static_cast<double>(x[j]) * static_cast<double>(y[j]);
    }
    return diagonal + 2.0 * above;
}

/// The same sum through variables: trace(A A' B B') is the sum of squares of A'B.
template <class T>
double VecProdByVariables(const CongruenceSide<T>& a, const CongruenceSide<T>& b,
                          Matrix<T> product) {
    ColumnProducts(a.n, a.p, a.x, b.p, b.x, product, false);
    double sum = 0.0;
    for (int i = 0; i < a.p; i++)
        for (int j = 0; j < b.p; j++)
            sum += static_cast<double>(product[i][j]) * static_cast<double>(product[i][j]);
    return sum;
}

/// The same sum with the objects of one side and the variables of the other: trace(A' G A).
double VecProdOfMixed(const CongruenceSide<double>& objects, const CongruenceSide<double>& other,
                      Matrix<double> product) {
    ColumnProducts(other.n, other.n, objects.objects, other.p, other.x, product, false);
    const Kernels& kernels = KernelsOfProcessor();
    double sum = 0.0;
    for (int i = 0; i < other.n; i++) sum += kernels.dot(other.p, product[i], other.x[i]);
    return sum;
}

template <class T>
double VecProd(const CongruenceSide<T>& a, const CongruenceSide<T>& b, Matrix<T> product,
               Matrix<T> rows) {
    if constexpr (std::is_same_v<T, double>)
        if (a.byObjects != b.byObjects && !a.hasMissing && !b.hasMissing)
            return a.byObjects ? VecProdOfMixed(a, b, product) : VecProdOfMixed(b, a, product);
    if (a.byObjects || b.byObjects || a.hasMissing || b.hasMissing)
        return VecProdByObjects(a, b, rows);
    return a.p > b.p ? VecProdByVariables(a, b, product) : VecProdByVariables(b, a, product);
}

/// Sum of the singular values of the cross-product of the two sides. Its zero-filled square form
/// has the same values and as many zeros more.
template <class T>
double ProcrustesOfSides(const CongruenceSide<T>& a, const CongruenceSide<T>& b,
                         CongruenceScratch<T>* scratch) {
    const bool aIsWider = a.p > b.p;
    const CongruenceSide<T>& wide = aIsWider ? a : b;
    const CongruenceSide<T>& narrow = aIsWider ? b : a;
    if (narrow.p < 1) return 0.0;
    const Matrix<T> product = scratch->product;
    ColumnProducts(a.n, wide.p, wide.x, narrow.p, narrow.x, product, a.hasMissing || b.hasMissing);
    const T scale = static_cast<T>(1.0 / (a.n - 1));
    for (int i = 0; i < wide.p; i++)
        for (int j = 0; j < narrow.p; j++) {
            const T cell = product[i][j];
            scratch->core[i][j] = static_cast<double>(IsMissing(cell) ? cell : cell * scale);
        }
    if (!SingularValuesAlone(wide.p, narrow.p, scratch->core, scratch->singular, scratch->room))
        return 0.0;
    double* values = scratch->singular;
    std::sort(values, values + narrow.p, std::greater<>());  // their order fixes a float sum
    T sum = 0;
    for (int k = 0; k < narrow.p; k++) sum += static_cast<T>(values[k]);
    return static_cast<double>(sum);
}

}  // namespace

template <class T>
CongruenceSide<T> MakeCongruenceSide(int measure, int n, int p) {
    // In single precision the products among objects are what the coefficient is defined on.
    const bool byObjects = measure == kRV && (p >= n || std::is_same_v<T, float>);
    const int variables = measure == kRV && !byObjects ? p : 0;
    return {measure,
            n,
            p,
            false,
            ScopedMatrix<T>(n, p),
            byObjects,
            ScopedMatrix<T>(byObjects ? n : 0, n),
            ScopedMatrix<T>(variables, variables),
            ScopedMatrix<T>(measure == kRV ? 2 : 0, n),
            0.0};
}

template <class T>
void SetCongruenceSide(ConstMatrix<T> a, CongruenceSide<T>* side) {
    CenterColsMV(side->n, side->p, a, side->x);
    if (side->measure == kProcrustes) GowerStandardizationCols(side->n, side->p, side->x);
    side->hasMissing = HasMissing<T>(side->n, side->p, side->x);
    if (side->measure != kRV) return;
    if (side->byObjects)
        for (int i = 0; i < side->n; i++) {
            RowOfObjects(*side, i, side->objects[i]);
            for (int j = i + 1; j < side->n; j++) side->objects[j][i] = side->objects[i][j];
        }
    side->self = VecProd<T>(*side, *side, side->variables, side->rows);
}

template <class T>
CongruenceScratch<T> MakeCongruenceScratch(int measure, int n, int p1, int p2) {
    const int wide = std::max(p1, p2);
    const int narrow = std::min(p1, p2);
    const int values = measure == kProcrustes ? narrow : 0;
    return {ScopedMatrix<T>(wide, narrow), ScopedMatrix<T>(measure == kRV ? 2 : 0, n),
            ScopedMatrix<double>(values > 0 ? wide : 0, values), ScopedVector<double>(values),
            ScopedVector<double>(3 * values)};
}

template <class T>
double Congruence(const CongruenceSide<T>& a, const CongruenceSide<T>& b,
                  CongruenceScratch<T>* scratch) {
    if (a.measure == kProcrustes) return ProcrustesOfSides(a, b, scratch);
    return VecProd<T>(a, b, scratch->product, scratch->rows) / std::sqrt(b.self * a.self);
}

template CongruenceSide<float> MakeCongruenceSide<float>(int, int, int);
template CongruenceSide<double> MakeCongruenceSide<double>(int, int, int);
template void SetCongruenceSide<float>(ConstMatrix<float>, CongruenceSide<float>*);
template void SetCongruenceSide<double>(ConstMatrix<double>, CongruenceSide<double>*);
template CongruenceScratch<float> MakeCongruenceScratch<float>(int, int, int, int);
template CongruenceScratch<double> MakeCongruenceScratch<double>(int, int, int, int);
template double Congruence<float>(const CongruenceSide<float>&, const CongruenceSide<float>&,
                                  CongruenceScratch<float>*);
template double Congruence<double>(const CongruenceSide<double>&, const CongruenceSide<double>&,
                                   CongruenceScratch<double>*);
