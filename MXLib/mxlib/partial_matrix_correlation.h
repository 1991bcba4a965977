#pragma once
/// \file
/// Partial Procrustes and partial RV: the coefficient between residual matrices.

#include <initializer_list>

#include "mxLinearModels/component_regression.h"
#include "mxlib/perm_test/projection.h"
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

/// A wide matrix b that stays the same, for many matrices a.
struct FixedMatrix {
    CongruenceSide<double> side;
    double squares;
    Projection projection;
};
FixedMatrix MakeFixedMatrix(ConstMatrix<double> b, int covariables,
                            const PartialCorrelationRoom& room);

/// Whether the residuals of b cost so much that the estimates below pay: b is far wider than a. RV
/// has none where it compares a by its objects.
inline bool EstimatesPay(const PartialCorrelationRoom& room) {
    return !room.a.byObjects && room.b.p >= 2 * room.a.p;
}

/// The coefficient for a and the fixed b without making the residuals of b: the same to eight
/// digits; NaN where fewer would be left.
double EstimatedPartialCorrelation(ConstMatrix<double> a, double overfit,
                                   std::initializer_list<CovariableSet> sets, FixedMatrix* b,
                                   PartialCorrelationRoom* room);
