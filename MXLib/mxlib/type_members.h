#pragma once
/// \file
/// The steps that all routines on degrees of belonging share: which OTUs make up a type, which of
/// them count once, the mean resemblance to the members.

#include <algorithm>

#include "mxlibDim/scoped.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"

inline constexpr int kNoColumn = -1;

/// The members of K types of n OTUs: those of type g are list[start[g]] and on, size[g] of them,
/// ascending. An OTU with a label beyond the first K has no column.
struct TypeMembers {
    ScopedVector<int> columns;
    ScopedVector<int> list;
    ScopedVector<int> start;
    ScopedVector<int> size;
};

/// Without a partition (null) each OTU is a type of its own.
TypeMembers MakeTypeMembers(int n, int K, const int* partition);

/// Leaves out of the `size` members of one type, in place, those that are identical to an earlier
/// one, which then represents them; returns how many stay. The raw entry is tested, also of
/// dissimilarities.
template <class S>
int MergeIdentical(ConstMatrix<S> s, int size, int* members, int* representative) {
    int kept = 0;
    for (int a = 0; a < size; a++) {
        const int i = members[a];
        if (representative[i] != i) continue;
        members[kept++] = i;
        for (int b = a + 1; b < size; b++) {
            const int j = members[b];
            if (representative[j] == j && IsAlmostOne(s[i][j])) representative[j] = i;
        }
    }
    return kept;
}

/// A redundant OTU meets its own type in the place of its representative: `own` gets the members
/// with the one exchanged for the other, ascending.
inline void ExchangeForRepresentative(int otu, int representative, int size, const int* members,
                                      int* own) {
    int count = 0;
    for (int a = 0; a < size; a++)
        if (members[a] != representative) own[count++] = members[a];
    own[count] = otu;
    std::rotate(std::upper_bound(own, own + count, otu), own + count, own + count + 1);
}

/// Each term is taken in the type of the resemblances, the sum in that of the result.
template <class S, class U>
U MeanResemblance(const S* row, int size, const int* members, bool dissimilarity) {
    const S divisor = static_cast<S>(size);
    U sum = 0;
    for (int a = 0; a < size; a++) {
        const S x = row[members[a]];
        if (IsMissing(x)) continue;
        sum += static_cast<U>((dissimilarity ? S(1) - x : x) / divisor);
    }
    return sum;
}
