#include "mxLinearModels/least_squares.h"

#include "nrutilMX/nrutilMX.h"

namespace {

template <class T>
void Means(int n, int p, ConstMatrix<T> a, double* means) {
    for (int j = 0; j < p; j++) means[j] = 0.0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) means[j] += static_cast<double>(a[i][j]) / n;
}

}  // namespace

void MeansByShares(int n, int p, ConstMatrix<float> a, double* means) {
    Means(n, p, a, means);
}
void MeansByShares(int n, int p, ConstMatrix<double> a, double* means) {
    Means(n, p, a, means);
}

void SolveNormalEquations(int p, int m, ConstMatrix<double> S, Matrix<double> B,
                          Matrix<double> system, Matrix<double> solution, int* room) {
    Convertn_n1(p, p, S, system);
    Convertn_n1(p, m, B, solution);
    gaussj(system, p, solution, m, room);
    Convertn1_n(p, m, solution, B);
}

void Intercepts(int p, int m, ConstMatrix<double> B, const double* meansX, const double* meansY,
                double* b0) {
    for (int r = 0; r < m; r++) {
        double explained = 0.0;
        for (int f = 0; f < p; f++) explained += B[f][r] * meansX[f];
        b0[r] = meansY[r] - explained;
    }
}
