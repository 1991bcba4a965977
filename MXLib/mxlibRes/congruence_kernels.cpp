#include "mxlibRes/congruence_kernels.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <type_traits>

#include "mxlib/singular_values.h"
#include "mxlibRes/column_products.h"
#include "mxlibRes/kernels.h"
#include "mxlibRes/mantel_sides.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/subset_kernels.h"

namespace {

template <class T>
T ProductOfPresent(int p, const T* x, const T* y) {
    T sum = 0;
    for (int k = 0; k < p; k++)
        if (!IsMissing(x[k]) && !IsMissing(y[k])) sum += x[k] * y[k];
    return sum;
}

/// Row i of x x' from the diagonal on.
void RowOfObjects(const CongruenceSide<double>& side, int i, double* row) {
    const Kernels& kernels = KernelsOfProcessor();
    for (int j = i; j < side.n; j++)
        row[j] = side.hasMissing ? ProductOfPresent(side.p, side.x[i], side.x[j])
                                 : kernels.dot(side.p, side.x[i], side.x[j]);
}

/// The same: the row that the side keeps, or one made in `room`.
const double* ObjectsRow(const CongruenceSide<double>& side, int i, double* room) {
    if (side.byObjects) return side.objects[i];
    RowOfObjects(side, i, room);
    return room;
}

/// Sum of products of the elements of the two matrices x x', whole, from their upper halves.
double VecProdByObjects(const CongruenceSide<double>& a, const CongruenceSide<double>& b,
                        Matrix<double> rows) {
    double diagonal = 0.0;
    double above = 0.0;
    for (int i = 0; i < a.n; i++) {
        const double* x = ObjectsRow(a, i, rows[0]);
        const double* y = ObjectsRow(b, i, rows[1]);
        diagonal += x[i] * y[i];
        for (int j = i + 1; j < a.n; j++) above += x[j] * y[j];
    }
    return diagonal + 2.0 * above;
}

/// The same sum through variables: trace(A A' B B') is the sum of squares of A'B.
double VecProdByVariables(const CongruenceSide<double>& a, const CongruenceSide<double>& b,
                          Matrix<double> product) {
    ColumnProducts(a.n, a.p, a.x, b.p, b.x, product, false);
    double sum = 0.0;
    for (int i = 0; i < a.p; i++)
        for (int j = 0; j < b.p; j++) sum += product[i][j] * product[i][j];
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

double VecProd(const CongruenceSide<double>& a, const CongruenceSide<double>& b,
               Matrix<double> product, Matrix<double> rows) {
    if (a.byObjects != b.byObjects && !a.hasMissing && !b.hasMissing)
        return a.byObjects ? VecProdOfMixed(a, b, product) : VecProdOfMixed(b, a, product);
    if (a.byObjects || b.byObjects || a.hasMissing || b.hasMissing)
        return VecProdByObjects(a, b, rows);
    return a.p > b.p ? VecProdByVariables(a, b, product) : VecProdByVariables(b, a, product);
}

void SetObjects(CongruenceSide<double>* side) {
    if (side->byObjects)
        for (int i = 0; i < side->n; i++) {
            RowOfObjects(*side, i, side->objects[i]);
            for (int j = i + 1; j < side->n; j++) side->objects[j][i] = side->objects[i][j];
        }
    side->self = VecProd(*side, *side, side->variables, side->rows);
}

void SetObjects(CongruenceSide<float>* side) {
    const int n = side->n;
    const int p = side->p;
    const Matrix<float> x = side->x;
    for (int i = 0; i < n; i++)
        side->diagonal[i] = static_cast<double>(ProductOfPresent(p, x[i], x[i]));
    if (side->hasMissing) {
        double* cell = side->above;
        for (int i = 0; i < n; i++)
            for (int j = i + 1; j < n; j++)
                *cell++ = static_cast<double>(ProductOfPresent(p, x[i], x[j]));
        return;
    }
    for (int i = 0; i < n; i++)
        for (int k = 0; k < p; k++) side->columns.columns[k][i] = x[i][k];
    SubsetKernelsOfProcessor().objectProducts(n, p, side->columns.columns, side->above);
}

/// VecProd of up to kMostChains pairs of sides; the sums run side by side.
void VecProds(int pairs, const CongruenceSide<float>* const* a,
              const CongruenceSide<float>* const* b, double* results) {
    constexpr double kNoMean[kMostChains] = {};
    const auto products = SubsetKernelsOfProcessor().products;
    const double* x[kMostChains];
    const double* y[kMostChains];
    double diagonal[kMostChains];
    double above[kMostChains];
    for (int c = 0; c < pairs; c++) {
        x[c] = a[c]->diagonal;
        y[c] = b[c]->diagonal;
    }
    products(pairs, a[0]->n, x, kNoMean, y, kNoMean, diagonal);
    for (int c = 0; c < pairs; c++) {
        x[c] = a[c]->above;
        y[c] = b[c]->above;
    }
    products(pairs, CountCellsAbove(a[0]->n), x, kNoMean, y, kNoMean, above);
    for (int c = 0; c < pairs; c++) results[c] = diagonal[c] + 2.0 * above[c];
}

double RVOfSides(const CongruenceSide<double>& a, const CongruenceSide<double>& b,
                 CongruenceScratch<double>* scratch) {
    return VecProd(a, b, scratch->product, scratch->rows) / std::sqrt(b.self * a.self);
}

/// With the sums of squares, which cost nothing beside the sum of products.
double RVOfSides(const CongruenceSide<float>& a, const CongruenceSide<float>& b,
                 CongruenceScratch<float>*) {
    const CongruenceSide<float>* const x[] = {&a, &a, &b};
    const CongruenceSide<float>* const y[] = {&b, &a, &b};
    double sums[3];
    VecProds(3, x, y, sums);
    return sums[0] / std::sqrt(sums[2] * sums[1]);
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
    const bool single = std::is_same_v<T, float>;
    const int nSingle = measure == kRV && single ? n : 0;
    const int nDouble = measure == kRV && !single ? n : 0;
    const bool byObjects = measure == kRV && (single || p >= n);
    const int variables = measure == kRV && !byObjects ? p : 0;
    return {measure,
            n,
            p,
            false,
            ScopedMatrix<T>(n, p),
            byObjects,
            ScopedMatrix<T>(byObjects ? nDouble : 0, n),
            ScopedMatrix<T>(variables, variables),
            ScopedMatrix<T>(nDouble > 0 ? 2 : 0, n),
            0.0,
            MakeColumnTable<T>(nSingle, nSingle > 0 ? p : 0),
            ScopedVector<double>(nSingle),
            ScopedVector<double>(nSingle > 0 ? CountCellsAbove(n) + kOverrun : 0)};
}

template <class T>
void SetCongruenceSide(ConstMatrix<T> a, CongruenceSide<T>* side) {
    CenterColsMV(side->n, side->p, a, side->x);
    if (side->measure == kProcrustes) GowerStandardizationCols(side->n, side->p, side->x);
    side->hasMissing = HasMissing<T>(side->n, side->p, side->x);
    if (side->measure == kRV) SetObjects(side);
}

double SelfProduct(const CongruenceSide<float>& side) {
    const CongruenceSide<float>* const x[] = {&side};
    double sum;
    VecProds(1, x, x, &sum);
    return sum;
}

template <class T>
CongruenceScratch<T> MakeCongruenceScratch(int measure, int n, int p1, int p2) {
    const int wide = std::max(p1, p2);
    const int narrow = std::min(p1, p2);
    const int values = measure == kProcrustes ? narrow : 0;
    return {ScopedMatrix<T>(wide, narrow), ScopedMatrix<T>(measure == kRV ? 2 : 0, n),
            ScopedMatrix<double>(values > 0 ? wide : 0, values), ScopedVector<double>(values),
            ScopedVector<double>(3L * values)};
}

template <class T>
double Congruence(const CongruenceSide<T>& a, const CongruenceSide<T>& b,
                  CongruenceScratch<T>* scratch) {
    if (a.measure == kProcrustes) return ProcrustesOfSides(a, b, scratch);
    return RVOfSides(a, b, scratch);
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
