#include <cmath>
#include <cstdio>

#include "mxlibDim/standard_streams.h"
#include "nrutilMX/nrutilMX.h"

namespace {

template <class T>
int Factor(Matrix<T> a, int n, T* diag) {
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) {
            T sum = a[i][j];
            for (int k = i - 1; k >= 0; k--) sum -= a[i][k] * a[j][k];
            if (j > i) {
                a[j][i] = sum / diag[i];
            } else if (sum > 0) {
                diag[i] = std::sqrt(sum);
            } else {
                std::fputs("\ncholdc failed", ScreenStream());
                return 0;
            }
        }
    return 1;
}

}  // namespace

int choldc(Matrix<float> a, int n, float* diag) {
    return Factor(a, n, diag);
}
int choldc(Matrix<double> a, int n, double* diag) {
    return Factor(a, n, diag);
}
