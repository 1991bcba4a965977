#include <cstdint>
#include <limits>
#include <numeric>
#include <vector>

#include "mxlib/random_lists.h"

namespace {

/// C(n, k), or the largest number where it does not fit.
std::uint64_t Binomial(int n, int k) {
    std::uint64_t count = 1;
    for (int i = 1; i <= k; i++) {
        auto factor = static_cast<std::uint64_t>(n - k + i);
        auto divisor = static_cast<std::uint64_t>(i);
        const std::uint64_t common = std::gcd(factor, divisor);
        factor /= common;
        divisor /= common;
        count /= divisor;  // what is left of the divisor divides the count
        if (count > std::numeric_limits<std::uint64_t>::max() / factor)
            return std::numeric_limits<std::uint64_t>::max();
        count *= factor;
    }
    return count;
}

struct SubsetWalk {
    std::vector<int> list;       // the current subset, ascending positions, in its first k places
    std::vector<int> arrayTemp;  // 1 to n
    std::vector<char> isIn;      // 1 at the positions taken
    std::uint64_t nPermutations = 0;
    std::uint64_t counter = 0;
};

SubsetWalk StartWalk(int n, int k) {
    const auto size = static_cast<size_t>(n);
    SubsetWalk walk{std::vector<int>(size), std::vector<int>(size), std::vector<char>(size),
                    Binomial(n, k), 0};
    std::iota(walk.list.begin(), walk.list.end(), 0);
    std::iota(walk.arrayTemp.begin(), walk.arrayTemp.end(), 1);
    return walk;
}

void Advance(int n, int k, std::vector<int>* list) {
    int* position = list->data();
    int j = k - 1;
    while (j >= 0 && position[j] >= n - k + j) j--;
    if (j < 0) return;
    position[j]++;
    for (int i = j + 1; i < k; i++) position[i] = position[i - 1] + 1;
}

}  // namespace

void PermuteArray(int n, int k, int* array, bool first) {
    static SubsetWalk walk;
    if (first)
        walk = StartWalk(n, k);
    else if (walk.list.empty())
        return;  // no walk under way
    else
        Advance(n, k, &walk.list);

    walk.isIn.assign(walk.isIn.size(), 0);
    for (int j = 0; j < k; j++) {
        const auto position = static_cast<size_t>(walk.list[static_cast<size_t>(j)]);
        array[j] = walk.arrayTemp[position];
        walk.isIn[position] = 1;
    }
    int next = k;
    for (size_t i = 0; i < walk.isIn.size(); i++)
        if (walk.isIn[i] == 0) array[next++] = walk.arrayTemp[i];
    if (++walk.counter == walk.nPermutations) walk = SubsetWalk{};
}
