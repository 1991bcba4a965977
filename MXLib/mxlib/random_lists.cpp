#include "mxlib/random_lists.h"

#include <cstdlib>
#include <utility>

#include "mxlib/belonging.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/scoped.h"

gsl_rng* r = nullptr;

namespace {

/// Forward Fisher-Yates.
void Shuffle(int n, int* list) {
    for (int i = 0; i < n - 1; i++) {
        const auto u = static_cast<int>(gsl_rng_uniform_int(r, static_cast<unsigned long>(n - i)));
        std::swap(list[i], list[i + u]);
    }
}

void Identity(int n, int* list) {
    for (int i = 0; i < n; i++) list[i] = i + 1;
}

}  // namespace

void InitRndNumberGenerator(unsigned long seed) {
    gsl_rng_free(std::exchange(r, nullptr));
    r = gsl_rng_alloc(gsl_rng_default);
    if (r == nullptr) RaiseError(kOutOfMemory);
    gsl_rng_set(r, seed);
    std::srand(static_cast<unsigned>(seed));
}

void RndList(int n, int* list) {
    Identity(n, list);
    Shuffle(n, list);
}

void RndListSpecified(int n, int* list) {
    Shuffle(n, list);
}

void RndListSelect(int n, int* list, const bool* mask) {
    ScopedVector<int> chosen(n);
    ScopedVector<int> order(n);
    int count = 0;
    for (int i = 0; i < n; i++)
        if (mask[i]) chosen[count++] = i + 1;
    RndList(count, order);
    for (int m = 0; m < count; m++) list[chosen[m] - 1] = chosen[order[m] - 1];
}

void RndListNestedNew(int n, const int* groups, int type, int* list) {
    constexpr int kWithinGroups = 1;
    Identity(n, list);
    if (type != kWithinGroups) return;
    ScopedVector<int> labels(n);
    ScopedVector<bool> mask(n);
    int count = 0;
    CountGroups(n, groups, &count, labels);
    for (int g = 0; g < count; g++) {
        for (int i = 0; i < n; i++) mask[i] = groups[i] == labels[g];
        RndListSelect(n, list, mask);
    }
}
