#pragma once
/// \file
/// The rule for missing values: the number -999, exactly, in single and double precision. A NaN is
/// a present value and spreads like any NaN.

#include <cfloat>
#include <cstddef>

static_assert(FLT_EVAL_METHOD == 0, "each step must be rounded to its own type");

inline constexpr int kMissing = -999;

inline bool IsMissing(float x) {
    return x == -999.0F;
}
inline bool IsMissing(double x) {
    return x == -999.0;
}

/// Whether a matrix of n x p holds a missing value anywhere.
template <class T>
bool HasMissing(int n, std::ptrdiff_t p, const T* const* a) {
    for (int i = 0; i < n; i++)
        for (std::ptrdiff_t j = 0; j < p; j++)
            if (IsMissing(a[i][j])) return true;
    return false;
}
