#pragma once
/// \file
/// The subsets of k out of n in lexicographic order, numbered from 0. A subset is its members,
/// ascending, from 1.

#include <cstdint>

/// Number of subsets of k out of n; the largest number where it does not fit.
std::int64_t CountSubsets64(int n, int k);

/// members (k places) becomes the subset of this number, 0 to C(n, k) - 1.
void SubsetOfNumber(int n, int k, std::int64_t number, int* members);

/// members becomes the next subset; the last one stays.
void NextSubset(int n, int k, int* members);
