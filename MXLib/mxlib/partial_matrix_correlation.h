#pragma once
/// \file
/// Partial Procrustes and partial RV: the coefficient between residual matrices.

#include <initializer_list>

#include "mxLinearModels/component_regression.h"
#include "mxlibDim/dim.h"
#include "mxlibRes/congruence_kernels.h"

/// A set of covariables: the columns of an n-row matrix with select[j] equal to 1, or all when
/// select is null.
struct CovariableSet {
    int columns;
    const int* select;
    ConstMatrix<double> matrix;
};

/// Coefficient (type 2 Procrustes, 3 RV) between the residuals of a (n x p1) and b (n x p2) on the
/// principal components of the sets' columns, from their correlations, at most (n - 2) / overfit of
/// them. Without sets nothing is regressed and both residual matrices stay zero.
double PartialMatrixCorrelation(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b,
                                int type, double overfit,
                                std::initializer_list<CovariableSet> sets);

/// Room for the coefficient of many matrices of the same sizes, without any allocation.
struct PartialCorrelationRoom {
    ComponentFactors factors;
    ScopedMatrix<double> residuals;
    CongruenceSide<double> a;
    CongruenceSide<double> b;
    CongruenceScratch<double> scratch;
};
PartialCorrelationRoom MakePartialCorrelationRoom(int n, int p1, int p2, int covariables, int type);
double PartialMatrixCorrelation(ConstMatrix<double> a, ConstMatrix<double> b, double overfit,
                                std::initializer_list<CovariableSet> sets,
                                PartialCorrelationRoom* room);
