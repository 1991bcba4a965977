#include "mxlib/ordination.h"

#include <cmath>

#include "mxlib/eigen.h"
#include "mxlib/ordination_steps.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

int EigenOf(int n, ConstMatrix<float> a, Matrix<float> v, float* e) {
    return EigenHouseholderQL_GSL(n, a, v, e);
}
int EigenOf(int n, ConstMatrix<double> a, Matrix<double> v, double* e) {
    return EigenHouseholderQL_GSL_D(n, a, v, e);
}

bool IsSimilarity(int reseType) {
    switch (reseType) {
        case 5:
        case 6:
        case 7:
        case 9:
        case 11:
        case 12:
        case 13:
        case 14:
        case 15:
        case 16:
        case 19:
            return true;
        default:
            return false;
    }
}

bool IsCrossProduct(int reseType) {
    return reseType == 1 || reseType == 10 || reseType == 17;
}

/// Means are taken in double, also of a float matrix.
template <class T>
void CenterSquaredDistances(int n, ConstMatrix<T> d, Matrix<T> c, bool squared) {
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) c[i][j] = squared ? d[i][j] : d[i][j] * d[i][j];
    ScopedVector<double> mean(n);
    double grandMean = 0.0;
    for (int i = 0; i < n; i++) {
        double sum = 0.0;
        for (int j = 0; j < n; j++) sum += static_cast<double>(j < i ? c[j][i] : c[i][j]);
        grandMean += sum;
        mean[i] = sum / n;
    }
    grandMean /= static_cast<double>(n) * n;
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++)
            c[i][j] = static_cast<T>(
                -0.5 * (static_cast<double>(c[i][j]) - mean[i] - mean[j] + grandMean));
}

template <class T>
void SquaredDistancesOfProducts(int n, ConstMatrix<T> p, Matrix<T> d) {
    for (int i = 0; i < n; i++) {
        for (int j = i + 1; j < n; j++) d[i][j] = p[i][i] + p[j][j] - 2 * p[i][j];
    }
    for (int i = 0; i < n; i++) d[i][i] = 0;
}

template <class T>
void SquaredDistancesOfCorrelations(int n, ConstMatrix<T> r, Matrix<T> d) {
    for (int i = 0; i < n; i++) {
        for (int j = i + 1; j < n; j++) d[i][j] = d[j][i] = 2 * (1 - r[i][j]);
        d[i][i] = 0;
    }
}

/// Both triangles of w. A similarity s enters as sqrt(1 - s), which the coordinates then take as a
/// squared distance as it stands.
template <class T>
void SquaredDistances(int n, ConstMatrix<T> rese, int reseType, Matrix<T> w) {
    if (IsCrossProduct(reseType)) {
        SquaredDistancesOfProducts(n, rese, w);
    } else {
        const bool similarity = IsSimilarity(reseType);
        for (int i = 0; i < n; i++)
            for (int j = i; j < n; j++)
                w[i][j] = similarity ? std::sqrt(1 - rese[i][j]) : rese[i][j] * rese[i][j];
    }
    UpperToLowerMatrix(n, w);
}

template <class T>
int PrincipalCoordinates(int n, ConstMatrix<T> rese, Matrix<T> evec, Matrix<T> scores, T* eval,
                         bool* ok, int reseType) {
    ScopedMatrix<T> w(n, n);
    SquaredDistances<T>(n, rese, reseType, w);
    CenterSquaredDistances<T>(n, w, w, true);
    UpperToLowerMatrix(n, w);
    *ok = EigenOf(n, w, evec, eval) == 1;
    const int nAxes = CountAxes(n, eval);
    for (int k = 0; k < nAxes; k++) {
        const double scale = std::sqrt(static_cast<double>(eval[k]) / SquaredLength(n, evec[k]));
        for (int i = 0; i < n; i++)
            scores[k][i] = static_cast<T>(static_cast<double>(evec[k][i]) * scale);
    }
    return nAxes;
}

template <class T>
int PrincipalComponents(int n, int p, ConstMatrix<T> data, ConstMatrix<T> rese, Matrix<T> evec,
                        Matrix<T> scores, T* eval, bool* ok, int reseType, int orientation) {
    ScopedMatrix<T> x(n, p);
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) x[i][j] = orientation == 1 ? data[i][j] : data[j][i];
    *ok = EigenOf(n, rese, evec, eval) == 1;
    const int nAxes = CountAxes(n, eval);
    if (nAxes == 0) return 0;
    UnitLengthRows(nAxes, n, evec);
    if (reseType == 17) {
        CenterRowsMV(n, p, x, x);
        NormalizeRowsMV(n, p, x, x);
    } else if (reseType == 22) {
        CenterRowsCovMV(n, p, x, x);
    }
    ComponentScores<T>(nAxes, n, p, x, evec, scores);
    return nAxes;
}

template <class T>
int Ordination(int n, int p, ConstMatrix<T> data, ConstMatrix<T> rese, Matrix<T> evec,
               Matrix<T> scores, int* nAxes, T* eval, bool* ok, int method, int reseType,
               int orientation) {
    *nAxes =
        method == kPrincipalCoordinates
            ? PrincipalCoordinates(n, rese, evec, scores, eval, ok, reseType)
            : PrincipalComponents(n, p, data, rese, evec, scores, eval, ok, reseType, orientation);
    return 1;
}

}  // namespace

int OrdinationLib(int n, int p, ConstMatrix<float> data, ConstMatrix<float> rese,
                  Matrix<float> evec, Matrix<float> scores, int* nAxes, float* eval, bool* ok,
                  int method, int reseType, int orientation) {
    return Ordination(n, p, data, rese, evec, scores, nAxes, eval, ok, method, reseType,
                      orientation);
}
int OrdinationLib_D(int n, int p, ConstMatrix<double> data, ConstMatrix<double> rese,
                    Matrix<double> evec, Matrix<double> scores, int* nAxes, double* eval, bool* ok,
                    int method, int reseType, int orientation) {
    return Ordination(n, p, data, rese, evec, scores, nAxes, eval, ok, method, reseType,
                      orientation);
}

int OrdinationLib_Scores(int n, int p, ConstMatrix<double> data, ConstMatrix<double> rese,
                         Matrix<double> scores, int method, int reseType, int orientation) {
    ScopedMatrix<double> evec(n, n);
    ScopedVector<double> eval(n);
    int nAxes = 0;
    bool ok = true;
    OrdinationLib_D(n, p, data, rese, evec, scores, &nAxes, eval, &ok, method, reseType,
                    orientation);
    return nAxes;
}

void DissToCenterProdMatrix(int n, ConstMatrix<float> d, Matrix<float> c, bool squared) {
    CenterSquaredDistances(n, d, c, squared);
}
void DissToCenterProdMatrix(int n, ConstMatrix<double> d, Matrix<double> c, bool squared) {
    CenterSquaredDistances(n, d, c, squared);
}

void ProdToSqDist(int n, ConstMatrix<float> p, Matrix<float> d) {
    SquaredDistancesOfProducts(n, p, d);
}
void ProdToSqDist(int n, ConstMatrix<double> p, Matrix<double> d) {
    SquaredDistancesOfProducts(n, p, d);
}

void CorrToSqDist(int n, ConstMatrix<float> corr, Matrix<float> d) {
    SquaredDistancesOfCorrelations(n, corr, d);
}
void CorrToSqDist(int n, ConstMatrix<double> corr, Matrix<double> d) {
    SquaredDistancesOfCorrelations(n, corr, d);
}

void ProbToDissim(int n, ConstMatrix<double> p, Matrix<double> d) {
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) d[i][j] = d[j][i] = 1 - p[i][j];
}
