#include "mxlib/subsets.h"

#include <algorithm>
#include <limits>
#include <numeric>

/// The running product is C(n - k + i, i) at each step: a whole number.
std::int64_t CountSubsets64(int n, int k) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
    if (k < 0 || k > n) return 0;
    k = std::min(k, n - k);
    std::int64_t count = 1;
    for (int i = 1; i <= k; i++) {
        const std::int64_t factor = n - k + i;
        if (count <= kMost / factor) {
            count = count * factor / i;
            continue;
        }
        const std::int64_t common = std::gcd(factor, std::int64_t{i});
        count /= i / common;  // what is left of the divisor divides the count
        if (count > kMost / (factor / common)) return kMost;
        count *= factor / common;
    }
    return count;
}

void SubsetOfNumber(int n, int k, std::int64_t number, int* members) {
    int member = 0;
    for (int j = 0; j < k; j++) {
        // Subsets that go on with this member: those of the rest out of the greater ones.
        std::int64_t with = 0;
        while (++member, with = CountSubsets64(n - member, k - j - 1), number >= with)
            number -= with;
        members[j] = member;
    }
}

void NextSubset(int n, int k, int* members) {
    int j = k - 1;
    while (j >= 0 && members[j] > n - k + j) j--;
    if (j < 0) return;
    members[j]++;
    for (int i = j + 1; i < k; i++) members[i] = members[i - 1] + 1;
}
