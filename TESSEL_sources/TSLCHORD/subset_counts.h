#pragma once
/// \file
/// How many subsets of traits there are.

#include <cstdint>

/// Number of subsets of k out of n: exact up to 2^53, infinity where it leaves the finite numbers.
double CountSubsets(int n, int k);

/// Sum of CountSubsets(n, k) for k from first to last.
double CountSubsetsOfSizes(int n, int first, int last);

/// The same as a whole number; the largest one where it does not fit.
std::int64_t CountSubsetsOfSizes64(int n, int first, int last);

/// The dialogue takes no search of more subsets.
inline constexpr double kMostSubsets = 2147483647.0;
