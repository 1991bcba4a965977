#include <cmath>

#include "mxlibRes/congruence.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"

namespace {

struct Sums {
    double a = 0.0;
    double b = 0.0;
    double ab = 0.0;
    std::ptrdiff_t cells = 0;
};

template <class T>
Sums SumPresentCells(int n, ConstMatrix<T> a, ConstMatrix<double> b) {
    Sums sums;
    for (int i = 0; i < n - 1; i++)
        for (int j = i + 1; j < n; j++) {
            if (IsMissing(a[i][j]) || IsMissing(b[i][j])) continue;
            sums.a += static_cast<double>(a[i][j]);
            sums.b += b[i][j];
            sums.cells++;
        }
    return sums;
}

template <class T>
Sums SumDeviations(int n, ConstMatrix<T> a, ConstMatrix<double> b, double meanA, double meanB) {
    Sums sums;
    for (int i = 0; i < n - 1; i++)
        for (int j = i + 1; j < n; j++) {
            if (IsMissing(a[i][j]) || IsMissing(b[i][j])) continue;
            const double da = static_cast<double>(a[i][j]) - meanA;
            const double db = b[i][j] - meanB;
            sums.a += da * da;
            sums.b += db * db;
            sums.ab += da * db;
        }
    return sums;
}

template <class T>
double Mantel(int n, ConstMatrix<T> a, ConstMatrix<double> b) {
    if (n < 2) return 0.0;
    const Sums total = SumPresentCells(n, a, b);
    const Sums s = SumDeviations(n, a, b, total.a / static_cast<double>(total.cells),
                                 total.b / static_cast<double>(total.cells));
    if (s.a == 0.0 || s.b == 0.0) return 0.0;
    return s.ab / std::sqrt(s.a * s.b);
}

template <class T>
T Partial(T rXY, T rXZ, T rYZ, T tolerance) {
    if (AlmostEqual_Tolerance(rXZ, T(1), tolerance)) return 0;
    if (AlmostEqual_Tolerance(rYZ, T(1), tolerance)) return 0;
    return (rXY - rXZ * rYZ) / (std::sqrt(1 - rYZ * rYZ) * std::sqrt(1 - rXZ * rXZ));
}

template <class T>
double ProductOfCells(int n, ConstMatrix<T> a, ConstMatrix<T> b) {
    double sum = 0.0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++)
            sum += static_cast<double>(a[i][j]) * static_cast<double>(b[i][j]);
    return sum;
}

}  // namespace

double MatrixCorr(int n, ConstMatrix<double> a, ConstMatrix<double> b) {
    return Mantel(n, a, b);
}
double MatrixCorr(int n, ConstMatrix<float> a, ConstMatrix<double> b) {
    return Mantel(n, a, b);
}

double SmallSampleCongruence(double a, double b) {
    return 1.0 - std::fabs(a - b) / Fmax(a, b);
}

float PartialCorrelation(float rXY, float rXZ, float rYZ) {
    return Partial(rXY, rXZ, rYZ, 1e-6F);
}
double PartialCorrelation(double rXY, double rXZ, double rYZ) {
    return Partial(rXY, rXZ, rYZ, 1e-9);
}

double vecProd(int n, ConstMatrix<float> a, ConstMatrix<float> b) {
    return ProductOfCells(n, a, b);
}
double vecProd(int n, ConstMatrix<double> a, ConstMatrix<double> b) {
    return ProductOfCells(n, a, b);
}
