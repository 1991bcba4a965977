#pragma once
/// \file
/// The inner loop of screening by Euclidean distances.

#include <cstddef>

/// Sums over m cells (a multiple of kRootSumCells) of the roots d of a + b: sums[0] of d, sums[1]
/// and sums[2] of d times `first` and `second`, which may be null. Float sums of kRootSumChain
/// terms are gathered in double precision.
inline constexpr int kRootSumChain = 32;
inline constexpr int kRootSumCells = 512;
void RootSums(std::ptrdiff_t m, const float* a, const float* b, const float* first,
              const float* second, double* sums);
