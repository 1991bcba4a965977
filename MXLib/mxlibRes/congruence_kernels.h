#pragma once
/// \file
/// Procrustes and RV coefficients for callers that compare the same matrices many times. Each
/// matrix is made ready once (a side); two sides are then compared without any allocation.
/// ProcrustesCoeff and RVcoeff of congruence.h are these steps in a row. T is float or double.

#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/distance_cells.h"

/// A matrix of n objects by p variables, its variables centred; for Procrustes also divided by one
/// scale, so that their variances sum to 1. RV in single precision is defined on the products among
/// objects, which are kept by their cells on and above the diagonal; their sums are double.
template <class T>
struct CongruenceSide {
    int measure;
    int n;
    int p;
    bool hasMissing;            ///< some centred value is -999
    ScopedMatrix<T> x;          ///< n x p
    bool byObjects;             ///< RV: compared through products among objects, x x'
    ScopedMatrix<T> objects;    ///< RV of double by objects: x x' (n x n)
    ScopedMatrix<T> variables;  ///< RV of double by variables: room for x' x (p x p)
    ScopedMatrix<T> rows;       ///< RV of double: room for a row of x x' of either side
    double self;                ///< RV of double: sum of squares of all elements of x x'

    ColumnTable<T> columns;         ///< RV of float: x by column
    ScopedVector<double> diagonal;  ///< RV of float: of x x'
    ScopedVector<double> above;     ///< RV of float: the cells of x x' above it, row after row
};

/// Room for a matrix of n x p under `measure` (kProcrustes or kRV).
template <class T>
CongruenceSide<T> MakeCongruenceSide(int measure, int n, int p);

/// Makes `a` (n x p, unchanged) ready in `side`; may be called any number of times.
template <class T>
void SetCongruenceSide(ConstMatrix<T> a, CongruenceSide<T>* side);

/// RV of float: sum of squares of all elements of x x'.
double SelfProduct(const CongruenceSide<float>& side);

/// Room for comparing sides of n objects and at most p1 and p2 variables, in either order.
template <class T>
struct CongruenceScratch {
    ScopedMatrix<T> product;        ///< variables of the wider by variables of the narrower side
    ScopedMatrix<T> rows;           ///< RV of double: a row of x x' of each side
    ScopedMatrix<double> core;      ///< Procrustes: the product, to be decomposed
    ScopedVector<double> singular;  ///< its singular values
    ScopedVector<double> room;
};
template <class T>
CongruenceScratch<T> MakeCongruenceScratch(int measure, int n, int p1, int p2);

/// The coefficient between two sides made under the same measure, with the same n. Procrustes: the
/// sum of the singular values, 0 when the decomposition fails; RV: NaN without variation.
template <class T>
double Congruence(const CongruenceSide<T>& a, const CongruenceSide<T>& b,
                  CongruenceScratch<T>* scratch);
