#pragma once
/// \file
/// Degrees of belonging to fuzzy types for callers that keep the types and change the similarities.

#include "mxlib/type_members.h"
#include "mxlibDim/dim.h"

/// A partition of n OTUs into K types, U being the type of the degrees of belonging.
template <class U>
struct FuzzyTypes {
    int n;
    int K;
    int stride;              ///< places of a type in `means`
    TypeMembers members;     ///< all of them
    ScopedVector<int> kept;  ///< room: the members of one type that count
    ScopedVector<int> representative;
    ScopedVector<int> own;
    ScopedVector<U> means;  ///< K by n: the result, type by type
};
template <class U>
FuzzyTypes<U> MakeFuzzyTypes(int n, int K, const int* partition);

/// u (n x K) as FuzzyBelonging(n, K, s, partition, u, false) makes it, to the last bit, from a
/// matrix s with both halves filled; `means` of the types holds it turned. Allocates nothing.
template <class U>
void BelongingToTypes(ConstMatrix<float> s, FuzzyTypes<U>* types, Matrix<U> u);
