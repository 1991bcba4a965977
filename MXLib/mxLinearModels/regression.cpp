#include <climits>

#include "mxLinearModels/least_squares.h"
#include "mxLinearModels/mxLinearModels.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/column_products.h"
#include "mxlibRes/mantel_sides.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

void SquaresOfColumns(int n, int m, ConstMatrix<double> a, double* squares) {
    ScopedVector<double> column(n);
    for (int r = 0; r < m; r++) {
        for (int i = 0; i < n; i++) column[i] = a[i][r];
        squares[r] = SumOfSquaresDev(n, column);
    }
}

template <class T>
int Regression(int n, int m, int p, ConstMatrix<T> Y, ConstMatrix<T> X, Matrix<double> B,
               double* b0, Matrix<double> Yhat, double* r2, double* ss) {
    ScopedVector<double> meansY(m);
    ScopedVector<double> meansX(p);
    MeansByShares(n, m, Y, meansY);
    MeansByShares(n, p, X, meansX);

    ScopedMatrix<double> Xc(n, p);
    ScopedMatrix<double> Yc(n, m);
    CenterColsMV(n, p, X, Xc);
    CenterColsMV(n, m, Y, Yc);
    ScopedVector<double> ownSs(ss == nullptr ? m : 0);
    if (ss == nullptr) ss = ownSs;
    SquaresOfColumns(n, m, Yc, ss);

    ScopedMatrix<double> S(p, p);
    const bool missing = HasMissing<double>(n, p, Xc) || HasMissing<double>(n, m, Yc);
    ColumnProducts(n, p, Xc, p, Xc, S, missing);
    ColumnProducts(n, p, Xc, m, Yc, B, missing);
    ScopedMatrix<double> system(p + 1, p + 1);
    ScopedMatrix<double> solution(p + 1, m + 1);
    ScopedVector<int> room(3L * (p + 1));
    SolveNormalEquations(p, m, S, B, system, solution, room);
    Intercepts(p, m, B, meansX, meansY, b0);

    for (int i = 0; i < n; i++)
        for (int f = 0; f < p; f++) Xc[i][f] += meansX[f];
    MatrixProd(n, p, p, m, Xc, B, Yhat);
    // shares of the variance, while the predictions still lack the intercept
    SquaresOfColumns(n, m, Yhat, r2);
    for (int r = 0; r < m; r++) r2[r] /= ss[r];
    for (int i = 0; i < n; i++)
        for (int r = 0; r < m; r++) Yhat[i][r] += b0[r];
    return 1;
}

}  // namespace

int regression(int n, int m, int p, ConstMatrix<double> Y, ConstMatrix<double> X, Matrix<double> B,
               double* b0, Matrix<double> Yhat, double* r2, double* ss, bool /*print*/,
               FILE* /*stream*/, int /*language*/, bool /*detail*/) {
    return Regression(n, m, p, Y, X, B, b0, Yhat, r2, ss);
}
int regression(int n, int m, int p, ConstMatrix<float> Y, ConstMatrix<float> X, Matrix<double> B,
               double* b0, Matrix<double> Yhat, double* r2, double* ss, bool /*print*/,
               FILE* /*stream*/, int /*language*/, bool /*detail*/) {
    return Regression(n, m, p, Y, X, B, b0, Yhat, r2, ss);
}

void ResidualsMatrixRegression(int n, ConstMatrix<double> a, ConstMatrix<double> b,
                               Matrix<double> R) {
    const std::ptrdiff_t cells = CountCellsAbove(n);
    if (cells < 1) return;
    if (cells > INT_MAX) RaiseError(kOutOfMemory);  // more rows than a table of them can have
    const int q = static_cast<int>(cells);
    ScopedMatrix<float> factor(q, 1);
    ScopedMatrix<float> response(q, 1);
    int cell = 0;
    for (int i = 0; i < n - 1; i++)
        for (int j = i + 1; j < n; j++, cell++) {
            factor[cell][0] = static_cast<float>(a[i][j]);
            response[cell][0] = static_cast<float>(b[i][j]);
        }
    ScopedMatrix<double> B(1, 1);
    ScopedMatrix<double> predicted(q, 1);
    double b0 = 0.0;
    double r2 = 0.0;
    regression(q, 1, 1, response, factor, B, &b0, predicted, &r2, nullptr, false, nullptr, 0,
               false);
    cell = 0;
    for (int i = 0; i < n - 1; i++)
        for (int j = i + 1; j < n; j++, cell++)
            R[i][j] = static_cast<double>(response[cell][0]) - predicted[cell][0];
}

void Regression_ResidualsSelect(int n, int m, int p, ConstMatrix<double> Y, ConstMatrix<double> X,
                                Matrix<double> R, const int* sel) {
    ScopedMatrix<double> factors(n, p);
    int nFactors = 0;
    for (int k = 0; k < p; k++) {
        if (sel != nullptr && sel[k] != 1) continue;
        for (int i = 0; i < n; i++) factors[i][nFactors] = X[i][k];
        nFactors++;
    }
    ScopedMatrix<double> B(nFactors, m);
    ScopedMatrix<double> predicted(n, m);
    ScopedVector<double> b0(m);
    ScopedVector<double> r2(m);
    regression(n, m, nFactors, Y, factors, B, b0, predicted, r2, nullptr, false, nullptr, 0, false);
    for (int i = 0; i < n; i++)
        for (int r = 0; r < m; r++) R[i][r] = Y[i][r] - predicted[i][r];
}
