#include "mxlib/random_lists.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "mxlib/belonging.h"
#include "mxlib/twister.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/scoped.h"

gsl_rng* r = nullptr;

namespace {

/// Forward Fisher-Yates.
void Shuffle(int n, int* list) {
    for (int i = 0; i < n - 1; i++) {
        const auto u = static_cast<int>(DrawBelow(r, static_cast<std::uint32_t>(n - i)));
        std::swap(list[i], list[i + u]);
    }
}

void Identity(int n, int* list) {
    for (int i = 0; i < n; i++) list[i] = i + 1;
}

/// Permutes the chosen indices (from 1) among their own places of list; order is scratch.
void Exchange(int count, const int* chosen, int* order, int* list) {
    RndList(count, order);
    for (int m = 0; m < count; m++) list[chosen[m] - 1] = chosen[order[m] - 1];
}

}  // namespace

void InitRndNumberGenerator(unsigned long seed) {
    gsl_rng_free(std::exchange(r, nullptr));
    r = gsl_rng_alloc(&kTwister);
    if (r == nullptr) RaiseError(kOutOfMemory);
    gsl_rng_set(r, seed);
    std::srand(static_cast<unsigned>(seed));
}

std::vector<std::uint32_t> GeneratorState() {
    const auto* const twister = static_cast<const Twister*>(r->state);
    std::vector<std::uint32_t> state(twister->words, twister->words + Twister::kSize);
    state.insert(state.end(), twister->numbers, twister->numbers + Twister::kSize);
    state.push_back(static_cast<std::uint32_t>(twister->next));
    return state;
}

void SetGeneratorState(const std::vector<std::uint32_t>& state) {
    auto* const twister = static_cast<Twister*>(r->state);
    std::copy_n(state.begin(), Twister::kSize, twister->words);
    std::copy_n(state.begin() + Twister::kSize, Twister::kSize, twister->numbers);
    twister->next = static_cast<int>(state.back());
}

void InitRandomStream(unsigned long seed, std::uint32_t number) {
    InitRndNumberGenerator(seed);
    SeedTwister(static_cast<Twister*>(r->state), static_cast<std::uint32_t>(seed), number);
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
    Exchange(count, chosen, order, list);
}

NestedGroups MakeNestedGroups(int n, const int* groups) {
    ScopedVector<int> labels(n);
    int nGroups = 0;
    CountGroups(n, groups, &nGroups, labels);
    NestedGroups nested{n, nGroups, ScopedVector<int>(nGroups + 1), ScopedVector<int>(n),
                        ScopedVector<int>(n)};
    int placed = 0;
    for (int g = 0; g < nGroups; g++) {
        for (int i = 0; i < n; i++)
            if (groups[i] == labels[g]) nested.members[placed++] = i + 1;
        nested.start[g + 1] = placed;
    }
    return nested;
}

void RndListNested(const NestedGroups& groups, int* list) {
    for (int g = 0; g < groups.nGroups; g++) {
        const int start = groups.start[g];
        Exchange(groups.start[g + 1] - start, groups.members + start, groups.order, list);
    }
}

void RndListNestedNew(int n, const int* groups, int type, int* list) {
    constexpr int kWithinGroups = 1;
    if (type == kWithinGroups)
        RndListNested(MakeNestedGroups(n, groups), list);
    else
        Identity(n, list);
}
