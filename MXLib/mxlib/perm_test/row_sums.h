#pragma once
/// \file
/// Rao's sums of several orders of the OTUs, row by row of the table of differences: a row stays at
/// hand while all communities that have its OTU, in all orders, look it up. Where the table fits
/// the cache, sums community by community are quicker.

#include "mxlib/perm_test/composition.h"
#include "mxlib/perm_test/orders.h"

/// Entries of a community in its sum are taken in blocks of so many, whose rows are looked up
/// together; an entry looks up those behind its block first, then those behind it within it. What
/// is left behind the last whole block goes entry by entry.
inline constexpr int kBlockOfSum = 4;

/// What one entry looks up.
struct EntryOfRow {
    std::ptrdiff_t entry;
    int behind;  ///< places from the entry to the first one behind its block
    int length;  ///< entries from there to the end of its community
};

struct EntriesByRow {
    int together;                        ///< orders in one pass
    ScopedVector<std::ptrdiff_t> start;  ///< first entry of each OTU, and the end
    ScopedVector<EntryOfRow> entries;    ///< of OTU after OTU, the longest first
};

/// A worker's room.
struct RowTerms {
    ScopedMatrix<int> at;        ///< by order in the pass: OTU of each entry
    ScopedMatrix<double> terms;  ///< by order in the pass: what each entry adds
};

/// Pairs of entries of the same community.
double CountPairs(int nCommunities, const SparseCells& cells);

EntriesByRow MakeEntriesByRow(int nCommunities, int nOTUs, const SparseCells& cells);
RowTerms MakeRowTerms(int nOTUs, const EntriesByRow& rows);

/// entropies[k][i] = sum over the ordered pairs of OTUs of community i, in order k, of the product
/// of their proportions with their difference in `table` (OTUs by OTUs).
void SumByRows(int nCommunities, const SparseCells& proportions, const double* table,
               const Orders& orders, const EntriesByRow& rows, RowTerms* room,
               Matrix<double> entropies);
