#pragma once
/// \file
/// Congruence of residuals with the residuals of a fixed, wide matrix, without making the latter.
/// Residuals on factors have the same products with a matrix as with its own residuals; what is
/// left to find is the share of the fixed matrix that the factors leave.

#include "mxLinearModels/component_regression.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence_kernels.h"

struct Projection {
    ScopedMatrix<double> columns;  ///< factors in rows, made orthonormal
    ScopedMatrix<double> basis;    ///< the same, objects by factors
    ScopedMatrix<double> images;   ///< of the basis in the fixed matrix
    ScopedMatrix<double> second;   ///< and of the images
    ScopedMatrix<double> among;    ///< products with the basis
    CongruenceSide<double> other;  ///< the residuals that are compared
};
Projection MakeProjection(int measure, int n, int maxFactors, int widestFixed, int columnsOfOther);

/// Sum of the squares of a side.
double SquaresOf(const CongruenceSide<double>& side);

/// The coefficient between the residuals `a` and those of `fixed`, both on the factors; NaN where
/// they are too small a part of `fixed`, or the factors too dependent, for all digits to hold.
double CongruenceOfResiduals(const CongruenceSide<double>& a, const CongruenceSide<double>& fixed,
                             double squaresOfFixed, const ComponentFactors& factors,
                             Projection* projection, CongruenceScratch<double>* scratch);
