#include "reference/plain_congruence.h"

#include <algorithm>
#include <cmath>

#include "mxLinearModels/mxLinearModels.h"
#include "mxlib/eigen.h"
#include "mxlib/ordination.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/crossproducts.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

template <class T>
T Procrustes(int n, int p1, int p2, ConstMatrix<T> a, ConstMatrix<T> b) {
    if (p1 > p2) return Procrustes(n, p2, p1, b, a);
    const int q = p1;
    const int p = p2;
    ScopedMatrix<T> narrow(q, n);
    ScopedMatrix<T> wide(n, p);
    TransposeMatrix(n, q, a, narrow);
    CenterRowsMV(q, n, narrow, narrow);
    CenterColsMV(n, p, b, wide);
    GowerStandardizationRows(q, n, narrow);
    GowerStandardizationCols(n, p, wide);
    ScopedMatrix<T> m(p, p);
    MatrixProd(q, n, n, p, narrow, wide, m);
    ScalarMatrixProd(p, p, static_cast<T>(1.0 / (n - 1)), m, m);
    ScopedMatrix<T> u(p + 1, p + 1);
    ScopedMatrix<T> v(p + 1, p + 1);
    ScopedVector<T> s(p + 1);
    T sum = 0;
    if (SingValueDecomp(p, p, m, u, s, v) == 1)
        for (int k = 0; k < p; k++) sum += s[k];
    return sum;
}

template <class T>
double RV(int n, int p1, int p2, ConstMatrix<T> a, ConstMatrix<T> b) {
    const auto products = [n](int p, ConstMatrix<T> x, Matrix<T> s) {
        ScopedMatrix<T> centred(n, p);
        ScopedMatrix<T> transposed(p, n);
        CenterColsMV(n, p, x, centred);
        TransposeMatrix(n, p, centred, transposed);
        MatrixProd(n, p, p, n, centred, transposed, s);
    };
    ScopedMatrix<T> s1(n, n);
    ScopedMatrix<T> s2(n, n);
    products(p1, a, s1);
    products(p2, b, s2);
    return vecProd(n, s1, s2) / std::sqrt(vecProd(n, s2, s2) * vecProd(n, s1, s1));
}

}  // namespace

float PlainProcrustes(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b) {
    return Procrustes(n, p1, p2, a, b);
}
double PlainProcrustes(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b) {
    return Procrustes(n, p1, p2, a, b);
}
double PlainRV(int n, int p1, int p2, ConstMatrix<float> a, ConstMatrix<float> b) {
    return RV(n, p1, p2, a, b);
}
double PlainRV(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b) {
    return RV(n, p1, p2, a, b);
}

void PlainComponentResiduals(int n, int m, int p, ConstMatrix<double> Y, ConstMatrix<double> X,
                             Matrix<double> R, int opt, double overfit) {
    ScopedMatrix<double> z(p, n);
    TransposeMatrix(n, p, X, z);
    if (opt == 1) CenterRowsCovMV(p, n, z, z);
    if (opt == 2) {
        CenterRowsMV(p, n, z, z);
        NormalizeRowsMV(p, n, z, z);
    }
    ScopedMatrix<double> cross(p, p);
    CrossProductMV(p, n, z, cross);
    UpperToLowerMatrix(p, cross);
    ScopedMatrix<double> data(n, p);
    TransposeMatrix(p, n, z, data);
    ScopedMatrix<double> scores(p, n);
    const int nAxes =
        OrdinationLib_Scores(p, n, data, cross, scores, kPrincipalComponents, opt == 1 ? 1 : 17, 2);
    const double limit = (n - 2) / overfit;
    const int used = nAxes > limit ? std::max(0, static_cast<int>(limit)) : nAxes;
    ScopedMatrix<double> factors(n, p);
    TransposeMatrix(p, n, scores, factors);
    Regression_ResidualsSelect(n, m, used, Y, factors, R, nullptr);
}
