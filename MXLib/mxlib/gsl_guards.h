#pragma once
/// \file
/// Owners of objects of the GNU Scientific Library. The library's error handler is off, so an
/// allocation that fails gives null: the makers below raise kOutOfMemory instead.

#include <gsl/gsl_eigen.h>
#include <gsl/gsl_matrix.h>
#include <gsl/gsl_vector.h>

#include <algorithm>
#include <memory>

#include "mxlibDim/failure.h"

template <auto Free>
struct GslRelease {
    template <class T>
    void operator()(T* object) const {
        Free(object);
    }
};

using GslMatrix = std::unique_ptr<gsl_matrix, GslRelease<gsl_matrix_free>>;
using GslVector = std::unique_ptr<gsl_vector, GslRelease<gsl_vector_free>>;
using GslEigenWork = std::unique_ptr<gsl_eigen_symmv_workspace, GslRelease<gsl_eigen_symmv_free>>;

/// `object`, or kOutOfMemory raised for null.
template <class T>
T* GslChecked(T* object) {
    if (object == nullptr) RaiseError(kOutOfMemory);
    return object;
}

/// Each has at least one row, column and place, so that size 0 is no special case.
inline GslMatrix MakeGslMatrix(int rows, int cols) {
    return GslMatrix(GslChecked(gsl_matrix_alloc(static_cast<size_t>(std::max(rows, 1)),
                                                 static_cast<size_t>(std::max(cols, 1)))));
}
inline GslVector MakeGslVector(int n) {
    return GslVector(GslChecked(gsl_vector_alloc(static_cast<size_t>(std::max(n, 1)))));
}
inline GslEigenWork MakeGslEigenWork(int n) {
    return GslEigenWork(GslChecked(gsl_eigen_symmv_alloc(static_cast<size_t>(std::max(n, 1)))));
}
