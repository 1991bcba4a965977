#include <algorithm>
#include <cstdint>
#include <vector>

#include "mxlib/random_lists.h"
#include "mxlib/subsets.h"

namespace {

struct SubsetWalk {
    std::vector<int> members;  // of the current subset
    std::int64_t left = 0;     // subsets to come
};

}  // namespace

void PermuteArray(int n, int k, int* array, bool first) {
    static SubsetWalk walk;
    if (first) {
        walk = {std::vector<int>(static_cast<size_t>(k)), CountSubsets64(n, k)};
        SubsetOfNumber(n, k, 0, walk.members.data());
    } else if (walk.left == 0) {
        return;  // no walk under way
    } else {
        NextSubset(n, k, walk.members.data());
    }
    walk.left--;
    int* others = std::copy(walk.members.begin(), walk.members.end(), array);
    auto member = walk.members.begin();
    for (int i = 1; i <= n; i++) {
        if (member != walk.members.end() && *member == i)
            ++member;
        else
            *others++ = i;
    }
}
