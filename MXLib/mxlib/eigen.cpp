#include "mxlib/eigen.h"

#include "mxlib/gsl_decompositions.h"

namespace {

/// 0 when a value is below -0.001 of the sum of all, else 1.
template <class T>
int SaneSpectrum(int n, const T* values) {
    T total = 0;
    for (int k = 0; k < n; k++) total += values[k];
    for (int k = 0; k < n; k++)
        if (static_cast<double>(values[k]) / static_cast<double>(total) < -0.001) return 0;
    return 1;
}

template <class T>
void ToGsl(int n, int p, ConstMatrix<T> a, gsl_matrix* g) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            gsl_matrix_set(g, static_cast<size_t>(i), static_cast<size_t>(j),
                           static_cast<double>(a[i][j]));
}

template <class T>
void FromGsl(int n, int p, const gsl_matrix* g, Matrix<T> a) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            a[i][j] =
                static_cast<T>(gsl_matrix_get(g, static_cast<size_t>(i), static_cast<size_t>(j)));
}

template <class T>
void FromGsl(int n, const gsl_vector* g, T* x) {
    for (int i = 0; i < n; i++) x[i] = static_cast<T>(gsl_vector_get(g, static_cast<size_t>(i)));
}

template <class T>
int Eigen(int n, ConstMatrix<T> a, Matrix<T> v, T* e) {
    if (n < 1) return 1;
    const GslMatrix copy = MakeGslMatrix(n, n);
    const GslMatrix evec = MakeGslMatrix(n, n);
    const GslVector eval = MakeGslVector(n);
    const GslEigenWork work = MakeGslEigenWork(n);
    ToGsl(n, n, a, copy.get());
    EigenInPlace(copy.get(), evec.get(), eval.get(), work.get());
    gsl_matrix_transpose(evec.get());
    FromGsl(n, n, evec.get(), v);
    FromGsl(n, eval.get(), e);
    return SaneSpectrum(n, e);
}

template <class T>
int SingularValues(int n, int p, ConstMatrix<T> a, Matrix<T> u, T* s, Matrix<T> v) {
    if (p < 1) return 1;
    if (n < p) return 0;
    const GslMatrix left = MakeGslMatrix(n, p);
    const GslMatrix right = MakeGslMatrix(p, p);
    const GslVector values = MakeGslVector(p);
    const GslVector work = MakeGslVector(p);
    ToGsl(n, p, a, left.get());
    if (!SingularValuesInPlace(left.get(), right.get(), values.get(), work.get())) return 0;
    FromGsl(n, p, left.get(), u);
    FromGsl(p, values.get(), s);
    FromGsl(p, p, right.get(), v);
    return SaneSpectrum(p, s);
}

}  // namespace

int EigenHouseholderQL_GSL(int n, ConstMatrix<float> a, Matrix<float> v, float* e) {
    return Eigen(n, a, v, e);
}
int EigenHouseholderQL_GSL_D(int n, ConstMatrix<double> a, Matrix<double> v, double* e) {
    return Eigen(n, a, v, e);
}

int SingValueDecomp(int n, int p, ConstMatrix<float> a, Matrix<float> u, float* s,
                    Matrix<float> v) {
    return SingularValues(n, p, a, u, s, v);
}
int SingValueDecomp(int n, int p, ConstMatrix<double> a, Matrix<double> u, double* s,
                    Matrix<double> v) {
    return SingularValues(n, p, a, u, s, v);
}
