#pragma once
/// \file
/// The matrices of communities that are products with W: traits T = W B with columns at unit
/// length, composition X = W U, composition by phylogeny P = W Q.

#include <memory>

#include "mxlib/perm_test/statistics.h"
#include "mxlibDim/scoped.h"

/// T, X, P, and R and F as matrices of one column, in the present order of the OTUs.
struct Arrangement {
    ScopedMatrix<double> T;
    ScopedMatrix<double> X;
    ScopedMatrix<double> P;
    ScopedMatrix<double> R;
    ScopedMatrix<double> F;
};
Arrangement MakeArrangement(const TestRecord& in);

/// Matrix of a letter and its number of columns.
ConstMatrix<double> MatrixOf(const TestRecord& in, const Arrangement& now, Letter letter);
int ColumnsOf(const TestRecord& in, Letter letter);

/// The cells of W that add anything, community after community, OTUs ascending.
struct SparseCells {
    ScopedVector<std::ptrdiff_t> start;  ///< first entry of each community, and the end
    ScopedVector<int> otu;
    ScopedVector<double> value;
};
std::ptrdiff_t CountPresent(int nCommunities, int nOTUs, ConstMatrix<double> w);
SparseCells PresentCells(int nCommunities, int nOTUs, ConstMatrix<double> w);

/// What the products read in every order of the OTUs.
struct CompositionTables {
    bool plain;  ///< values that are not finite: only the full products have their meaning
    SparseCells w;
    int width;                   ///< columns of the table
    ScopedVector<double> table;  ///< by OTUs: traits in use, types, taxa; a missing value is 0
};

/// The tables, and a worker's room.
struct Composition {
    std::shared_ptr<const CompositionTables> tables;
    ScopedVector<int> at;              ///< table row of each entry of w in the present order
    ScopedVector<double> row;          ///< of the table, for one community
    ScopedVector<const float*> rowsB;  ///< rows of B, U and Q in the present order
    ScopedVector<const double*> rowsU;
    ScopedVector<const double*> rowsQ;
};

/// With the tables of `first`; null: with new ones.
Composition MakeComposition(const TestRecord& in, const Composition* first);

/// Takes the order of the OTUs from `list` and makes T (normalised), X and P anew.
void ScaleUp(const TestRecord& in, const int* list, Composition* c, Arrangement* now);
