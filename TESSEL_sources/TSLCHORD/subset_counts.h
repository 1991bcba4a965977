#pragma once
/// \file
/// How many subsets of traits there are.

/// Number of subsets of k out of n: exact up to 2^53, infinity where it leaves the finite numbers.
double CountSubsets(int n, int k);

/// Sum of CountSubsets(n, k) for k from first to last.
double CountSubsetsOfSizes(int n, int first, int last);

/// A search counts its subsets in an int; a walk of more would not end in a lifetime.
inline constexpr double kMostSubsets = 2147483647.0;
