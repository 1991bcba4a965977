#pragma once
/// \file
/// Rao entropies of the communities, R by the similarities Sb between OTUs and F by their
/// phylogenetic resemblances Sf, as equivalent numbers of OTUs (Jost 2007, Ecology 88, 2427-2439).

#include <memory>

#include "mxlib/perm_test/composition.h"
#include "mxlib/perm_test/row_sums.h"

/// What the entropies read in every order of the OTUs. The differences between OTUs are made once;
/// a new order only looks them up.
struct EntropyTables {
    bool plain;  ///< values that are not finite, or a Q near 1: only sums over all pairs will do
    SparseCells proportions;        ///< of the OTUs present in each community
    ScopedVector<double> byTraits;  ///< differences, OTUs by OTUs; 0 where missing
    ScopedVector<double> byPhylogeny;
    std::unique_ptr<EntriesByRow> rows;  ///< null: sums community by community
};

/// The tables, and a worker's room.
struct Entropies {
    std::shared_ptr<EntropyTables> tables;
    ScopedVector<int> at;           ///< OTU of each entry in the present order
    ScopedVector<double> q;         ///< entropies of one pass
    ScopedMatrix<double> permuted;  ///< resemblances in the present order, where plain
    ScopedVector<int> otus;         ///< scratch
    ScopedVector<double> shares;
    std::unique_ptr<RowTerms> rows;
    ScopedMatrix<double> aheadByTraits;  ///< by order: entropies found by rows
    ScopedMatrix<double> aheadByPhylogeny;
};

/// With the tables of `first`, complete by FillDifferences; null: with room for new ones.
Entropies MakeEntropies(const TestRecord& in, const Entropies* first);

/// The observed arrangement, Sb in single precision; completes Sb and Sf from their upper halves
/// and hands back the entropies if the record asks for them. FillDifferences then prepares the
/// permuted arrangements, Sb in double precision. Entropies near 1, whose equivalent number is
/// their rounding, are summed pair after pair in the order of the OTUs, the others by a faster way.
void ObservedEntropies(const TestRecord& in, Entropies* e, Arrangement* now);
void FillDifferences(const TestRecord& in, Entropies* e);

/// For new orders, before PermutedEntropies of each of them.
void EntropiesAhead(const TestRecord& in, const Orders& orders, Entropies* e);
void PermutedEntropies(const TestRecord& in, const Orders& orders, int order, Entropies* e,
                       Arrangement* now);

/// Rows and columns of s in the order of `list`.
template <class T>
void PermuteBoth(int n, const int* list, ConstMatrix<T> s, Matrix<double> permuted) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) permuted[i][j] = s[list[i] - 1][list[j] - 1];
}
