#include "mxlib/singular_values.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <limits>

namespace {

double Dot(int n, const double* x, const double* y) {
    double sum[4] = {};
    int i = 0;
    for (; i + 4 <= n; i += 4)
        for (int t = 0; t < 4; t++) sum[t] += x[i + t] * y[i + t];
    for (; i < n; i++) sum[0] += x[i] * y[i];
    return (sum[0] + sum[1]) + (sum[2] + sum[3]);
}

void AddMultiple(int n, double factor, const double* x, double* y) {
    for (int i = 0; i < n; i++) y[i] += factor * x[i];
}

/// The reflection 1 - tau v v' that turns a vector of squared length `squares` and first element
/// `first` into (beta, 0, ...): v is the vector with its first element increased by `shift`.
struct Reflection {
    double beta;
    double shift;
    double tau;
};
Reflection Reflect(double squares, double first) {
    constexpr double kNothing = 1e-280;  // beside elements near 1, and its inverse is finite
    if (squares < kNothing) return {0.0, 0.0, 0.0};
    const double length = std::sqrt(squares);
    const double beta = first > 0.0 ? -length : length;
    return {beta, -beta, 1.0 / (squares - first * beta)};
}

/// Reduces a to the bidiagonal form with diagonal d[0..n-1] and e[k] above d[k], e[0] = 0. Each
/// column's reflection and the row's that follows it go over the rows of a in one pass, which also
/// gathers what the next column's reflection needs: `gathered`[j] is the product of that column
/// with column j. `reflected` and `gathered` have n places.
void Bidiagonalise(int m, int n, Matrix<double> a, double* d, double* e, double* reflected,
                   double* gathered) {
    std::fill(gathered, gathered + n, 0.0);
    for (int i = 0; i < m; i++) AddMultiple(n, a[i][0], a[i], gathered);
    e[0] = 0.0;
    for (int k = 0; k < n; k++) {
        const Reflection left = Reflect(gathered[k], a[k][k]);
        d[k] = left.beta;
        const int rest = n - k - 1;
        if (rest == 0) return;
        double* row = a[k] + k + 1;
        // what the left reflection takes from each row, per unit of the row's element of v
        double* taken = gathered + k + 1;
        AddMultiple(rest, left.shift, row, taken);
        for (int j = 0; j < rest; j++) taken[j] *= left.tau;
        AddMultiple(rest, -(a[k][k] + left.shift), taken, row);

        const Reflection right = Reflect(Dot(rest, row, row), row[0]);
        e[k + 1] = right.beta;
        double* v = reflected + k + 1;
        std::copy(row, row + rest, v);
        v[0] += right.shift;
        // both reflections of a row below: row - x taken, then less tau (row v) v
        const double takenV = Dot(rest, taken, v);
        double* next = a[k];  // the finished row is free to gather in
        std::fill(next, next + n, 0.0);
        for (int i = k + 1; i < m; i++) {
            double* below = a[i] + k + 1;
            const double x = a[i][k];
            const double y = right.tau * (Dot(rest, below, v) - x * takenV);
            for (int j = 0; j < rest; j++) below[j] -= x * taken[j] + y * v[j];
            AddMultiple(rest, below[0], below, next + k + 1);
        }
        std::copy(next + k + 1, next + n, gathered + k + 1);
    }
}

struct Rotation {
    double c;
    double s;
    double length;
};
Rotation Rotate(double f, double h) {
    const double length = std::sqrt(f * f + h * h);
    return length == 0.0 ? Rotation{1.0, 0.0, 0.0} : Rotation{f / length, h / length, length};
}

/// A zero before d[l] splits the matrix: rotates e[l] out of the block l..k.
void CancelAbove(int l, int k, double negligible, double* d, double* e) {
    double c = 0.0;
    double s = 1.0;
    for (int i = l; i <= k; i++) {
        const double f = s * e[i];
        e[i] *= c;
        if (std::fabs(f) <= negligible) return;
        const Rotation r = Rotate(d[i], f);
        d[i] = r.length;
        c = r.c;
        s = -r.s;
    }
}

/// One implicit QR step on the block l..k, shifted by the bottom corner of its square.
void QrStep(int l, int k, double* d, double* e) {
    const double y0 = d[k - 1];
    const double z0 = d[k];
    const double g0 = k - 1 > l ? e[k - 1] : 0.0;
    const double h0 = e[k];
    double x = d[l];
    double f = ((y0 - z0) * (y0 + z0) + (g0 - h0) * (g0 + h0)) / (2.0 * h0 * y0);
    const double root = std::sqrt(f * f + 1.0);
    f = ((x - z0) * (x + z0) + h0 * (y0 / (f + std::copysign(root, f)) - h0)) / x;
    double c = 1.0;
    double s = 1.0;
    for (int j = l; j < k; j++) {
        double g = c * e[j + 1];
        double h = s * e[j + 1];
        const Rotation right = Rotate(f, h);
        if (j > l) e[j] = right.length;
        f = x * right.c + g * right.s;
        g = g * right.c - x * right.s;
        h = d[j + 1] * right.s;
        const double y = d[j + 1] * right.c;
        const Rotation left = Rotate(f, h);
        d[j] = left.length;
        c = left.c;
        s = left.s;
        f = c * g + s * y;
        x = c * y - s * g;
    }
    e[k] = f;
    d[k] = x;
}

bool DiagonaliseBlock(int k, double negligible, double* d, double* e) {
    constexpr int kMaxSteps = 100;
    for (int step = 0; step < kMaxSteps; step++) {
        int l = k;
        while (l > 0 && std::fabs(e[l]) > negligible && std::fabs(d[l - 1]) > negligible) l--;
        if (l > 0 && std::fabs(e[l]) > negligible) CancelAbove(l, k, negligible, d, e);
        if (l == k) return true;
        QrStep(l, k, d, e);
    }
    return false;
}

/// Brings the elements near 1 by a power of 2, which is returned; NaN when one is not finite.
double Normalise(int m, int n, Matrix<double> a) {
    double largest = 0.0;
    for (int i = 0; i < m; i++)
        for (int j = 0; j < n; j++) {
            if (!std::isfinite(a[i][j])) return std::numeric_limits<double>::quiet_NaN();
            largest = std::max(largest, std::fabs(a[i][j]));
        }
    if (largest == 0.0 || (largest > 1e-50 && largest < 1e50)) return 1.0;
    const int exponent = std::ilogb(largest);
    for (int i = 0; i < m; i++)
        for (int j = 0; j < n; j++) a[i][j] = std::ldexp(a[i][j], -exponent);
    return std::ldexp(1.0, exponent);
}

}  // namespace

bool SingularValuesAlone(int m, int n, Matrix<double> a, double* s, double* room) {
    const double scale = Normalise(m, n, a);
    if (std::isnan(scale)) {
        std::fill(s, s + n, scale);
        return true;
    }
    double* e = room;
    Bidiagonalise(m, n, a, s, e, room + n, room + 2L * n);
    double norm = 0.0;
    for (int k = 0; k < n; k++) norm = std::max(norm, std::fabs(s[k]) + std::fabs(e[k]));
    for (int k = n - 1; k >= 0; k--)
        if (!DiagonaliseBlock(k, DBL_EPSILON * norm, s, e)) return false;
    for (int k = 0; k < n; k++) s[k] = std::fabs(s[k]) * scale;
    return true;
}
