#pragma once
/// \file
/// The random generator of the process, random permutations, and the walk over subsets.

#include <gsl/gsl_rng.h>

#include <cstdint>
#include <vector>

#include "mxlibDim/scoped.h"

/// The one generator, a kTwister (twister.h); null until seeded.
extern gsl_rng* r;

/// Makes and seeds the generator, releasing the former one, and seeds rand too.
void InitRndNumberGenerator(unsigned long seed);

/// Where the generator stands, as numbers that are the same on every machine, and back.
std::vector<std::uint32_t> GeneratorState();
void SetGeneratorState(const std::vector<std::uint32_t>& state);

/// The same for one stream of several under a seed: the key of the generator (SeedTwister) is the
/// seed's lower 32 bits and the stream's number. Other numbers give other streams.
void InitRandomStream(unsigned long seed, std::uint32_t number);

/// list becomes a random permutation of 1 to n (forward Fisher-Yates, n - 1 draws).
void RndList(int n, int* list);

/// Shuffles the n values that list holds.
void RndListSpecified(int n, int* list);

/// Permutes among themselves the indices (from 1) of the places where mask is true; other places
/// keep their value.
void RndListSelect(int n, int* list, const bool* mask);

/// The members of each group, for drawing many lists within the same groups.
struct NestedGroups {
    int n;
    int nGroups;
    ScopedVector<int> start;    ///< where each group begins among the members; its end the next
    ScopedVector<int> members;  ///< indices from 1, group after group in the order of labels
    ScopedVector<int> order;
};
NestedGroups MakeNestedGroups(int n, const int* groups);

/// list becomes a permutation of 1 to n that keeps each index within its group.
void RndListNested(const NestedGroups& groups, int* list);

/// The same (type 1; any other type gives 1 to n) for a single list.
void RndListNestedNew(int n, const int* groups, int type, int* list);

/// The next subset of k out of n in lexicographic order: the members first, ascending, then the
/// others. `first` starts the walk; the caller asks exactly C(n, k) times.
void PermuteArray(int n, int k, int* array, bool first);
