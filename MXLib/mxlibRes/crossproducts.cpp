#include "mxlibRes/crossproducts.h"

#include <cmath>

#include "mxlibDim/scoped.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/standardisation.h"

namespace {

bool BothPresent(double x, double y) {
    return !IsMissing(x) && !IsMissing(y);
}

/// Products of row x with `count` rows of A, each product in the element type, each sum in double
/// over k ascending; four sums run side by side.
template <class T>
void ProductsWithRows(int p, const T* x, int count, ConstMatrix<T> rows, double* c) {
    const auto term = [x](const T* y, int k) { return static_cast<double>(x[k] * y[k]); };
    int j = 0;
    for (; j + 4 <= count; j += 4) {
        const T *y0 = rows[j], *y1 = rows[j + 1], *y2 = rows[j + 2], *y3 = rows[j + 3];
        double s0 = 0, s1 = 0, s2 = 0, s3 = 0;
        for (int k = 0; k < p; k++) {
            s0 += term(y0, k);
            s1 += term(y1, k);
            s2 += term(y2, k);
            s3 += term(y3, k);
        }
        c[j] = s0;
        c[j + 1] = s1;
        c[j + 2] = s2;
        c[j + 3] = s3;
    }
    for (; j < count; j++) {
        double sum = 0;
        for (int k = 0; k < p; k++) sum += term(rows[j], k);
        c[j] = sum;
    }
}

/// Cells j >= i by `pair`, a routine of two rows.
void EachPair(int n, int p, ConstMatrix<double> a, Matrix<double> c,
              double (*pair)(int, const double*, const double*)) {
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) c[i][j] = pair(p, a[i], a[j]);
}

struct PairMeans {
    int m = 0;  ///< positions present in both vectors
    double x = 0;
    double y = 0;
};

PairMeans MeansOfPairs(int p, const double* x, const double* y) {
    PairMeans mean;
    for (int k = 0; k < p; k++)
        if (BothPresent(x[k], y[k])) {
            mean.x += x[k];
            mean.y += y[k];
            mean.m++;
        }
    mean.x /= mean.m;
    mean.y /= mean.m;
    return mean;
}

}  // namespace

void CrossProduct(int n, int p, ConstMatrix<float> a, Matrix<double> c) {
    for (int i = 0; i < n; i++) ProductsWithRows(p, a[i], n - i, a + i, c[i] + i);
}

void CrossProductMV(int n, int p, ConstMatrix<double> a, Matrix<double> c) {
    if (HasMissing(n, p, a)) {
        EachPair(n, p, a, c, CrossProduct2VecMV);
        return;
    }
    for (int i = 0; i < n; i++) ProductsWithRows(p, a[i], n - i, a + i, c[i] + i);
}

double CrossProduct2VecMV(int p, const double* x, const double* y) {
    double sum = 0;
    for (int k = 0; k < p; k++)
        if (BothPresent(x[k], y[k])) sum += x[k] * y[k];
    return sum;
}

void CovarianceMV(int n, int p, ConstMatrix<double> a, Matrix<double> c) {
    if (HasMissing(n, p, a)) {
        EachPair(n, p, a, c, Covariance2VecMV);
        return;
    }
    const ScopedMatrix<double> centred(n, p);
    CenterRowsCovMV(n, p, a, centred);
    CrossProductMV(n, p, centred, c);
}

double Covariance2VecMV(int p, const double* x, const double* y) {
    const PairMeans mean = MeansOfPairs(p, x, y);
    double covariance = 0;
    for (int k = 0; k < p; k++)
        if (BothPresent(x[k], y[k])) covariance += (x[k] - mean.x) * (y[k] - mean.y) / (mean.m - 1);
    return covariance;
}

void CorrelationMV(int n, int p, ConstMatrix<double> a, Matrix<double> c) {
    if (HasMissing(n, p, a)) {
        EachPair(n, p, a, c, Correlation2VecMV);
        return;
    }
    const ScopedMatrix<double> scaled(n, p);
    CenterRowsMV(n, p, a, scaled);
    NormalizeRowsMV(n, p, scaled, scaled);
    CrossProductMV(n, p, scaled, c);
}

double Correlation2VecMV(int p, const double* x, const double* y) {
    const PairMeans mean = MeansOfPairs(p, x, y);
    double squaresX = 0;
    double squaresY = 0;
    for (int k = 0; k < p; k++)
        if (BothPresent(x[k], y[k])) {
            squaresX += (x[k] - mean.x) * (x[k] - mean.x);
            squaresY += (y[k] - mean.y) * (y[k] - mean.y);
        }
    const double scaleX = std::sqrt(squaresX);
    const double scaleY = std::sqrt(squaresY);
    double correlation = 0;
    for (int k = 0; k < p; k++)
        if (BothPresent(x[k], y[k]))
            correlation += (y[k] - mean.y) / scaleY * (x[k] - mean.x) / scaleX;
    return correlation;
}

void Correlation(int n, ConstMatrix<double> c, Matrix<double> correlations) {
    for (int i = 0; i < n; i++)
        for (int j = i + 1; j < n; j++) {
            double value = 0;
            if (c[i][i] > 0 && c[j][j] > 0) value = c[i][j] / std::sqrt(c[i][i] * c[j][j]);
            if (value > 1) value = 1;
            if (value < -1) value = -1;
            correlations[i][j] = value;
        }
    for (int i = 0; i < n; i++) correlations[i][i] = 1;
}
