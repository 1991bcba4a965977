#pragma once
/// \file
/// Probabilities of survival from distances: upper tails of the chi-square distribution, in steps.

#include "mxlibDim/scoped.h"

inline constexpr int kChiSquareEntries = 10000;

/// The logarithms of the tails. An entry is computed when it is first read.
struct ChiSquareTable {
    double step = 0;
    double end = 0;  ///< five times the distance that the table was made for
    int freedom = 0;
    int placed = 0;  ///< arguments that stand in `argument`
    ScopedVector<double> argument{kChiSquareEntries};
    ScopedVector<double> logTail{kChiSquareEntries};
    ScopedVector<bool> known{kChiSquareEntries};
};

/// Makes the table anew for distances up to five times `largest`.
void RenewTable(double largest, int freedom, ChiSquareTable* table);

/// Logarithm of the tail at the table's step below the distance. A distance past the table, or
/// without a place in it, has the last entry.
double LogTail(double distance, ChiSquareTable* table);
