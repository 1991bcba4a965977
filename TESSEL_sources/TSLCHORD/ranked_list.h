#pragma once
/// \file
/// What a search keeps: the best subset of each size, and the nKeepTrack best of all.

#include "mxlibDim/scoped.h"

/// A subset of the traits.
struct TraitSubset {
    int size;
    const int* members;   ///< trait numbers from 1, ascending
    const int* selected;  ///< for each trait 1 for a member, else 0
};

/// What counts as better.
enum class Keeping {
    bySign,         ///< the greater value
    byMagnitude,    ///< the greater magnitude, the values keeping their signs; never 0
    enteredBySign,  ///< the greater value enters the ranked list, which is ordered by magnitude
};

/// Kept subsets, by place; a place that was never filled has the value 0 and the size 0.
struct KeptSubsets {
    explicit KeptSubsets(int places);
    ScopedVector<double> value;
    ScopedVector<int> size;
    ScopedVector<int> groups;   ///< types that the subset was rated with
    ScopedMatrix<int> members;  ///< trait numbers from 1
};

/// A list of nKeepTrack + 1 places in ascending order: place 0 is the next to go.
struct RankedList {
    RankedList();
    int places;
    KeptSubsets layers[2];       ///< the list, and room for its next order
    int current;                 ///< layer that holds the list
    ScopedVector<double> order;  ///< places from 1
};

/// The list as it stands.
const KeptSubsets& Kept(const RankedList& list);

/// Whether the value is better than `best`; a NaN never is.
bool IsBetter(Keeping keeping, double value, double best);

/// Puts the subset in the place given.
void Keep(const TraitSubset& subset, double value, int groups, int place, KeptSubsets* kept);

/// Puts the subset in place 0 and orders the list anew, if the value is better than that of place
/// 0.
void EnterRankedList(const TraitSubset& subset, double value, int groups, Keeping keeping,
                     RankedList* list);
