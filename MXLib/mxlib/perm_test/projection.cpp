#include "mxlib/perm_test/projection.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "mxlibRes/column_products.h"
#include "mxlibRes/kernels.h"

namespace {

constexpr double kLeastShare = 0.01;  // two digits of sixteen go with it

double SumOfProducts(int n, int p, ConstMatrix<double> a, ConstMatrix<double> b) {
    const Kernels& kernels = KernelsOfProcessor();
    double sum = 0.0;
    for (int i = 0; i < n; i++) sum += kernels.dot(p, a[i], b[i]);
    return sum;
}

/// Gram-Schmidt, twice. False when a factor keeps less than half of its length, or is no number.
bool MakeBasis(const ComponentFactors& factors, Projection* p) {
    const Kernels& kernels = KernelsOfProcessor();
    const int n = factors.n;
    for (int j = 0; j < factors.nFactors; j++) {
        double* column = p->columns[j];
        for (int i = 0; i < n; i++) column[i] = factors.centred[i][j];
        const double before = std::sqrt(kernels.dot(n, column, column));
        for (int pass = 0; pass < 2; pass++)
            for (int t = 0; t < j; t++) {
                const double product = kernels.dot(n, p->columns[t], column);
                for (int i = 0; i < n; i++) column[i] -= product * p->columns[t][i];
            }
        const double length = std::sqrt(kernels.dot(n, column, column));
        if (!(length > 0.5 * before)) return false;
        for (int i = 0; i < n; i++) {
            column[i] /= length;
            p->basis[i][j] = column[i];
        }
    }
    return true;
}

/// Share of the variance of x that the basis leaves.
double ShareOfVariance(const CongruenceSide<double>& fixed, double squares, int k, Projection* p) {
    ColumnProducts(fixed.n, fixed.p, fixed.x, k, p->basis, p->images, false);
    return 1.0 - SumOfProducts(fixed.p, k, p->images, p->images) / squares;
}

/// Share of the squares of x x' that are left when the basis is taken from both of its sides. With
/// H = basis basis' and G = x x' the trace of ((1 - H) G)^2 is that of G G - 2 H G G + H G H G.
double ShareOfObjects(const CongruenceSide<double>& fixed, int k, Projection* p) {
    double once = 0.0;
    if (fixed.byObjects) {
        ColumnProducts(fixed.n, fixed.n, fixed.objects, k, p->basis, p->images, false);
        ColumnProducts(fixed.n, k, p->basis, k, p->images, p->among, false);
        once = SumOfProducts(fixed.n, k, p->images, p->images);
    } else {
        ColumnProducts(fixed.n, fixed.p, fixed.x, k, p->basis, p->images, false);
        ColumnProducts(fixed.p, fixed.p, fixed.variables, k, p->images, p->second, false);
        ColumnProducts(fixed.p, k, p->images, k, p->images, p->among, false);
        once = SumOfProducts(fixed.p, k, p->images, p->second);
    }
    const double twice = SumOfProducts(k, k, p->among, p->among);
    return (fixed.self - 2.0 * once + twice) / fixed.self;
}

/// Takes from the residuals what rounding left of the factors in them, which the residuals of the
/// fixed matrix would not have met.
void TakeOther(const CongruenceSide<double>& a, int k, Projection* p) {
    ColumnProducts(a.n, k, p->basis, a.p, a.x, p->among, false);
    for (int i = 0; i < a.n; i++) {
        double* x = p->other.x[i];
        std::copy(a.x[i], a.x[i] + a.p, x);
        for (int t = 0; t < k; t++)
            for (int j = 0; j < a.p; j++) x[j] -= p->basis[i][t] * p->among[t][j];
    }
    p->other.self = a.self;
}

}  // namespace

Projection MakeProjection(int measure, int n, int maxFactors, int widestFixed, int columnsOfOther) {
    const int k = maxFactors;
    const int widest = std::max(n, widestFixed);
    return {ScopedMatrix<double>(k, n),
            ScopedMatrix<double>(n, k),
            ScopedMatrix<double>(widest, k),
            ScopedMatrix<double>(measure == kRV ? widestFixed : 0, k),
            ScopedMatrix<double>(k, std::max(k, columnsOfOther)),
            MakeCongruenceSide<double>(measure, n, columnsOfOther)};
}

double SquaresOf(const CongruenceSide<double>& side) {
    return SumOfProducts(side.n, side.p, side.x, side.x);
}

double CongruenceOfResiduals(const CongruenceSide<double>& a, const CongruenceSide<double>& fixed,
                             double squaresOfFixed, const ComponentFactors& factors,
                             Projection* projection, CongruenceScratch<double>* scratch) {
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    const int k = factors.nFactors;
    if (a.hasMissing || fixed.hasMissing || a.byObjects || a.p > fixed.p) return kNaN;
    if (!MakeBasis(factors, projection)) return kNaN;
    const double share = fixed.measure == kProcrustes
                             ? ShareOfVariance(fixed, squaresOfFixed, k, projection)
                             : ShareOfObjects(fixed, k, projection);
    if (!(share > kLeastShare)) return kNaN;
    TakeOther(a, k, projection);
    return Congruence(projection->other, fixed, scratch) / std::sqrt(share);
}
