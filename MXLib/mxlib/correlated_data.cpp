#include "mxlib/correlated_data.h"

#include <gsl/gsl_randist.h>

#include "mxlib/random_lists.h"
#include "mxlib/twister.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/products.h"
#include "nrutilMX/nrutilMX.h"

namespace {

double Draw(int dist) {
    switch (dist) {
        case kUniformDeviate:
            return DrawUniform(r) - 0.5;
        case kLognormalDeviate:
            return gsl_ran_lognormal(r, 0.0, 1.0);
        case kExponentialDeviate:
            return gsl_ran_exponential(r, 1.0);
        case kCubedExponentialDeviate: {
            const double x = gsl_ran_exponential(r, 1.0);
            return x * x * x;
        }
        default:
            return gsl_ran_gaussian(r, 1.0);
    }
}

/// u = the upper triangular factor of R: R = u'u.
template <class T>
void UpperFactor(int p, ConstMatrix<T> R, Matrix<T> u) {
    ScopedMatrix<T> a(p, p);
    ScopedVector<T> diagonal(p);
    for (int i = 0; i < p; i++)
        for (int j = 0; j < p; j++) a[i][j] = R[i][j];
    if (choldc(a, p, diagonal) == 0) EndProgram(1);
    for (int i = 0; i < p; i++) {
        u[i][i] = diagonal[i];
        for (int j = i + 1; j < p; j++) u[i][j] = a[j][i];
    }
}

template <class T>
int CorrelatedData(int n, int p, ConstMatrix<T> R, Matrix<T> out, int dist) {
    ScopedMatrix<T> u(p, p);
    UpperFactor<T>(p, R, u);
    ScopedMatrix<T> z(n, p);
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) z[i][j] = static_cast<T>(Draw(dist));
    MatrixProd(n, p, p, p, z, u, out);
    return 1;
}

}  // namespace

int CorrToData_New(int n, int p, ConstMatrix<float> R, Matrix<float> out, int dist) {
    return CorrelatedData<float>(n, p, R, out, dist);
}
int CorrToData_New(int n, int p, ConstMatrix<double> R, Matrix<double> out, int dist) {
    return CorrelatedData<double>(n, p, R, out, dist);
}
