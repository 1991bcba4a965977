#pragma once
/// \file
/// Matrix correlations of the test. The cells above the diagonal of each resemblance matrix lie in
/// one vector, centred once, so that a correlation is a sum of products.

#include <array>
#include <memory>

#include "mxlib/perm_test/composition.h"
#include "mxlibRes/mantel_sides.h"

struct MantelPairs {
    std::ptrdiff_t nCells;
    int stride;                                   ///< places of a column
    std::shared_ptr<ScopedMatrix<double>> fixed;  ///< cells of the fixed letters, of all workers
    ScopedMatrix<double> varying;
    std::array<double*, kLetters> cells;   ///< centred (two communities: as they are)
    std::array<double, kLetters> squares;  ///< sum of squares of the centred cells
    std::array<bool, kLetters> hasMissing;
    ScopedVector<double> columns;  ///< the matrix at hand, column by column
    ScopedMatrix<double> square;   ///< room for ResemblanceLib
};

/// With the fixed letters of `first`; null: makes them.
MantelPairs MakeMantelPairs(const TestRecord& in, const MantelPairs* first);

/// Makes the resemblances by the letter of the block and correlates them as the tables say.
void MantelBlock(const TestRecord& in, const Arrangement& now, Block block, MantelPairs* m,
                 Statistics* s);

/// Resemblance matrix between communities by T, X, P, R or F, both halves.
void CommunityResemblance(const TestRecord& in, const Arrangement& now, Letter letter,
                          Matrix<double> d);
