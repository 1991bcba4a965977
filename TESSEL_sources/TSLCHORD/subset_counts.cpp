#include "TSLCHORD/subset_counts.h"

#include <algorithm>
#include <limits>

#include "mxlib/subsets.h"

/// The running product is C(n - k + i, i) at each step: a whole number, and exact while it and its
/// next multiple are.
double CountSubsets(int n, int k) {
    if (k < 0 || k > n) return 0.0;
    k = std::min(k, n - k);
    double count = 1.0;
    for (int i = 1; i <= k; i++) count = count * (n - k + i) / i;
    return count;
}

double CountSubsetsOfSizes(int n, int first, int last) {
    double count = 0.0;
    for (int k = first; k <= last; k++) count += CountSubsets(n, k);
    return count;
}

std::int64_t CountSubsetsOfSizes64(int n, int first, int last) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    std::int64_t count = 0;
    for (int k = first; k <= last; k++) count += std::min(CountSubsets64(n, k), kMost - count);
    return count;
}
