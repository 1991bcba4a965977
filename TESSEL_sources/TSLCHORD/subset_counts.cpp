#include "TSLCHORD/subset_counts.h"

#include <algorithm>

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
