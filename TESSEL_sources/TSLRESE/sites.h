#pragma once
/// \file
/// The ecological variables of the data set and the resemblance of the sites by them.

#include "mxlibDim/dim.h"

/// E (ncsm x nenv) = the variables of the data set.
template <class T>
void TakeSites(Matrix<T> E);

/// DE (ncsm x ncsm, upper half) by the kind of the variables: `distances` for variables in the
/// same units, and in different units, or of several kinds none of which is nominal, once E has
/// been standardised in place; otherwise Gower dissimilarities, E ranked in place where ordinal.
template <class T>
void CompareSites(Matrix<T> E, void (*distances)(int n, int p, ConstMatrix<T> a, Matrix<double> d),
                  Matrix<double> DE);
