#pragma once
/// \file
/// The matrix product cell by cell.

#include <type_traits>

#include "mxlibDim/dim.h"

/// One cell of A B over present pairs: row `a` and column j of B, in the order of k, each term in
/// the wider of the factors' types and the sum rounded to C at every step. `skipped` counts the
/// pairs passed over, `weights` adds up the factors of B that took part.
template <class A, class B, class C>
C PlainProductCell(int p, const A* a, ConstMatrix<B> b, int j, int* skipped, C* weights) {
    using Wide = std::common_type_t<A, B>;
    C sum = 0;
    *skipped = 0;
    *weights = 0;
    for (int k = 0; k < p; k++) {
        if (a[k] == A(-999) || b[k][j] == B(-999)) {
            ++*skipped;
            continue;
        }
        sum = C(Wide(sum) + Wide(a[k]) * Wide(b[k][j]));
        *weights += C(b[k][j]);
    }
    return sum;
}
