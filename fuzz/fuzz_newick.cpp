// Any text as a tree: it is refused with a place, or its path lengths are distances.

#include <numeric>

#include "TSLCLI/failure.h"
#include "TSLCLI/newick.h"
#include "mxlibDim/scoped.h"
#include "one_file.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void LookAt(const Tree& tree) {
    constexpr int kMostTips = 60;
    const int tips = static_cast<int>(tree.tipNames.size());
    for (std::size_t node = 0; node < tree.parent.size(); node++)
        Require(tree.parent[node] < static_cast<int>(node) && tree.length[node] >= 0);
    if (tips > kMostTips) return;
    std::vector<int> places(tips);
    std::iota(places.begin(), places.end(), 0);
    const ScopedMatrix<double> d(tips, tips);
    PathLengths(tree, places, d);
    for (int i = 0; i < tips; i++)
        for (int j = 0; j < tips; j++) {
            Require(d[i][j] == d[j][i] && d[i][j] >= 0 && (i != j || d[i][j] == 0));
            // Sums of lengths up to the ends of the doubles round as they please.
            for (int k = 0; k < tips && d[i][j] < 1e300; k++)
                Require(d[i][j] <= (d[i][k] + d[k][j]) * (1 + 1e-12));
        }
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        LookAt(ParseNewick({reinterpret_cast<const char*>(data), size}, "tree.nwk"));
    } catch (const CommandFailure& failure) {
        Require(failure.what()[0] != '\0');
    }
    return 0;
}
