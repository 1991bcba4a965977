#include "mxlib/gsl_decompositions.h"

#include <gsl/gsl_errno.h>
#include <gsl/gsl_linalg.h>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// The largest absolute element that is finite, or 0; tells whether all are.
double LargestFinite(const gsl_matrix* a, bool* allFinite) {
    double largest = 0.0;
    *allFinite = true;
    for (size_t i = 0; i < a->size1; i++)
        for (size_t j = 0; j < a->size2; j++) {
            const double x = std::fabs(gsl_matrix_get(a, i, j));
            if (std::isfinite(x))
                largest = std::max(largest, x);
            else
                *allFinite = false;
        }
    return largest;
}

/// The library's QL iteration has no limit and circles where squares and products leave the range
/// of double. Elements that cannot show in any digit of the result become 0, and a matrix far from
/// 1 is brought near it by a power of 2, which is returned; ordinary matrices stay as they are.
int BringIntoRange(double largest, gsl_matrix* a) {
    int exponent = 0;
    if (largest > 0.0 && (largest < 1e-30 || largest > 1e30)) std::frexp(largest, &exponent);
    const double negligible = 1e-100 * std::ldexp(largest, -exponent);
    for (size_t i = 0; i < a->size1; i++)
        for (size_t j = 0; j < a->size2; j++) {
            double* x = gsl_matrix_ptr(a, i, j);
            if (exponent != 0) *x = std::ldexp(*x, -exponent);
            if (std::fabs(*x) < negligible) *x = 0.0;
        }
    return exponent;
}

}  // namespace

void EigenInPlace(gsl_matrix* a, gsl_matrix* evec, gsl_vector* eval,
                  gsl_eigen_symmv_workspace* work) {
    bool allFinite = true;
    const int exponent = BringIntoRange(LargestFinite(a, &allFinite), a);
    const int status = gsl_eigen_symmv(a, eval, evec, work);
    if (status != GSL_SUCCESS) {
        gsl_vector_set_all(eval, kNaN);
        gsl_matrix_set_all(evec, kNaN);
        return;
    }
    if (exponent != 0)
        for (size_t k = 0; k < eval->size; k++)
            gsl_vector_set(eval, k, std::ldexp(gsl_vector_get(eval, k), exponent));
    gsl_eigen_symmv_sort(eval, evec, GSL_EIGEN_SORT_VAL_DESC);
}

bool SingularValuesInPlace(gsl_matrix* a, gsl_matrix* v, gsl_vector* s, gsl_vector* work) {
    bool allFinite = true;
    LargestFinite(a, &allFinite);
    if (!allFinite) {
        gsl_matrix_set_all(a, kNaN);
        gsl_matrix_set_all(v, kNaN);
        gsl_vector_set_all(s, kNaN);
        return a->size1 >= a->size2;
    }
    return gsl_linalg_SV_decomp(a, v, s, work) == GSL_SUCCESS;
}
