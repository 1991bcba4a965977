#include "mxlibRes/totals.h"

#include <cfloat>
#include <cmath>

#include "mxlibRes/missing.h"

namespace {

template <class T>
void RowTotals(int n, int p, ConstMatrix<T> a, T* totals) {
    for (int i = 0; i < n; i++) {
        T total = 0;
        for (int j = 0; j < p; j++)
            if (!IsMissing(a[i][j])) total += a[i][j];
        totals[i] = total;
    }
}

template <class T>
void ColTotals(int n, int p, ConstMatrix<T> a, T* totals) {
    for (int j = 0; j < p; j++) totals[j] = 0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            if (!IsMissing(a[i][j])) totals[j] += a[i][j];
}

template <class T>
void Transpose(int n, int p, ConstMatrix<T> a, Matrix<T> b) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) b[j][i] = a[i][j];
}

template <class T>
void TransposeSquare(int n, Matrix<T> a, Matrix<T> b) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j <= i; j++) {
            const T kept = b[j][i];
            b[j][i] = a[i][j];
            b[i][j] = kept;
        }
}

template <class T>
int ScalarProd(int n, int p, T s, ConstMatrix<T> a, Matrix<T> b) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) b[i][j] = IsMissing(a[i][j]) ? T{kMissing} : a[i][j] * s;
    return 0;
}

template <class T>
void UpperToLower(int n, Matrix<T> a) {
    for (int i = 0; i < n; i++)
        for (int j = i + 1; j < n; j++) a[j][i] = a[i][j];
}

}  // namespace

void MeanStDev(int n, const float* x, double* mean, double* sd) {
    double sum = 0;
    double squares = 0;
    for (int i = 0; i < n; i++) {
        sum += static_cast<double>(x[i]);
        squares += static_cast<double>(x[i] * x[i]);
    }
    *mean = sum / n;
    *sd = std::sqrt((squares - sum * sum / n) / (n - 1));
}

double SumOfSquaresDev(int n, const double* x) {
    double sum = 0;
    double squares = 0;
    int m = 0;
    for (int i = 0; i < n; i++)
        if (!IsMissing(x[i])) {
            sum += x[i];
            squares += x[i] * x[i];
            m++;
        }
    return squares - sum * sum / m;
}

float maxVector(int n, const float* x) {
    float largest = -FLT_MAX;
    for (int i = 0; i < n; i++)
        if (x[i] > largest) largest = x[i];
    return largest;
}

float minVector(int n, const float* x) {
    float smallest = FLT_MAX;
    for (int i = 0; i < n; i++)
        if (x[i] < smallest) smallest = x[i];
    return smallest;
}

double MatrixMax(int n, int p, ConstMatrix<double> a) {
    double largest = 0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            if (a[i][j] > largest) largest = a[i][j];
    return largest;
}

void RowTotalsMV(int n, int p, ConstMatrix<float> a, float* totals) {
    RowTotals(n, p, a, totals);
}
void RowTotalsMV(int n, int p, ConstMatrix<double> a, double* totals) {
    RowTotals(n, p, a, totals);
}
void ColTotalsMV(int n, int p, ConstMatrix<float> a, float* totals) {
    ColTotals(n, p, a, totals);
}
void ColTotalsMV(int n, int p, ConstMatrix<double> a, double* totals) {
    ColTotals(n, p, a, totals);
}

double MatrixTotalMV(int n, int p, ConstMatrix<double> a) {
    double total = 0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            if (!IsMissing(a[i][j])) total += a[i][j];
    return total;
}

void TransposeMatrix(int n, int p, ConstMatrix<float> a, Matrix<float> b) {
    Transpose(n, p, a, b);
}
void TransposeMatrix(int n, int p, ConstMatrix<double> a, Matrix<double> b) {
    Transpose(n, p, a, b);
}
void TransposeSqMatrix(int n, Matrix<float> a, Matrix<float> b) {
    TransposeSquare(n, a, b);
}
void TransposeSqMatrix(int n, Matrix<double> a, Matrix<double> b) {
    TransposeSquare(n, a, b);
}

void CopyMatrix(int n, int p, ConstMatrix<double> a, Matrix<double> b) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) b[i][j] = a[i][j];
}

int ScalarMatrixProd(int n, int p, float s, ConstMatrix<float> a, Matrix<float> b) {
    return ScalarProd(n, p, s, a, b);
}
int ScalarMatrixProd(int n, int p, double s, ConstMatrix<double> a, Matrix<double> b) {
    return ScalarProd(n, p, s, a, b);
}

int MatrixSum(int n, int p, int n2, int p2, ConstMatrix<double> a, ConstMatrix<double> b,
              Matrix<double> c, int sign) {
    if (n != n2 || p != p2) return 1;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) c[i][j] = a[i][j] + sign * b[i][j];
    return 0;
}

void UpperToLowerMatrix(int n, Matrix<float> a) {
    UpperToLower(n, a);
}
void UpperToLowerMatrix(int n, Matrix<double> a) {
    UpperToLower(n, a);
}
