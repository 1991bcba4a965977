#pragma once
/// \file
/// Matrix correlations for callers that make many of them: a resemblance matrix is the vector of
/// its cells above the diagonal, row after row, and what belongs to one matrix alone is made once.
/// Each correlation is that of MatrixCorr, to the last bit; nothing is allocated after the set-up.

#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

/// The cells of a square matrix above its diagonal, row after row.
template <class T>
void CellsAbove(int n, ConstMatrix<T> s, double* cells) {
    for (int i = 0; i < n; i++)
        for (int j = i + 1; j < n; j++) *cells++ = static_cast<double>(s[i][j]);
}

/// Cells above the diagonal of a matrix of n objects.
inline std::ptrdiff_t CountCellsAbove(int n) {
    return n < 2 ? 0 : static_cast<std::ptrdiff_t>(n) * (n - 1) / 2;
}

struct MantelSide {
    std::ptrdiff_t nCells;
    ScopedVector<double> cells;  ///< kOverrun places of room beyond the last
    double mean;                 ///< of the cells
    double squares;              ///< of their deviations from it
    bool hasMissing;
};

/// Room for a matrix of n objects; the caller fills `cells`.
MantelSide MakeMantelSide(int n);

/// Makes the rest of a side whose cells are filled and stay: a fixed side.
void CompleteMantelSide(MantelSide* side);

struct MantelPair {
    const MantelSide* a;
    const MantelSide* b;
};

/// The correlations r of nPairs pairs of sides of the same objects. The nMoving sides whose cells
/// are new are completed on the way, in the same passes; any other side must be complete. The sums
/// run side by side up to 8 at a time: it pays to give the sides of several subsets in one call.
/// 0 where a side does not vary.
void CorrelateMantelSides(int nMoving, MantelSide* const* moving, int nPairs,
                          const MantelPair* pairs, double* r);
