#pragma once
/// \file
/// Decompositions on the library's own objects, in place and without allocation, with defined
/// results where the library would hang, crash or read its arguments wrong.

#include "mxlib/gsl_guards.h"

/// Eigenvalues of the symmetric `a` (destroyed), descending by signed value, and its eigenvectors
/// as columns of evec. The work space may be larger than a. With elements that are not finite the
/// values and vectors are what the library makes of them, NaN at least in part.
void EigenInPlace(gsl_matrix* a, gsl_matrix* evec, gsl_vector* eval,
                  gsl_eigen_symmv_workspace* work);

/// a = u diag(s) v' with u in the place of a. False, with s and v unfinished, when the library
/// refuses: fewer rows than columns, or no convergence. Elements that are not finite give NaN for
/// every value and vector.
bool SingularValuesInPlace(gsl_matrix* a, gsl_matrix* v, gsl_vector* s, gsl_vector* work);
