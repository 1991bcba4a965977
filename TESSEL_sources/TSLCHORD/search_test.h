#pragma once
/// \file
/// The test of a search for the best subset of traits: the whole search repeated under the null
/// model. A test of the winning subset alone would forget that it was chosen among many.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "TSLCHORD/search_frame.h"

/// The best value of each size from nMinTraitsChRank to nMaxTraitsChRank, then the best of all; NaN
/// where no subset counts as better than nothing.
std::vector<double> BestValues(const SubsetSearch& search, const SearchOutcome& outcome);

/// A test under way, before a permutation.
struct TestState {
    int done = 0;                          ///< permutations
    std::vector<double> frequency;         ///< of each value, as counted so far
    std::vector<int> order;                ///< of the OTUs in the last permutation
    std::vector<std::uint32_t> generator;  ///< GeneratorState
};

struct TestRun {
    int permutations;
    std::function<void(std::span<const double>)> each = nullptr;  ///< best values of a permutation
    std::optional<TestState> from = std::nullopt;  ///< goes on there; empty: from the beginning
    std::function<void(const TestState&)> begins = nullptr;  ///< before each permutation
    SearchRun search = {};  ///< of a permutation: where it goes on, and what is called between
};

/// Probabilities of `observed`, the BestValues of the search by opt_struct under the present
/// settings: the share of arrangements, the observed one and the permuted ones, whose best value is
/// at least as good, by magnitude where magnitude is kept. Values that differ by what single
/// precision leaves count as equal; the probability of a NaN is NaN.
///
/// A permutation gives the OTUs the traits of others, and with them their types, as the test of the
/// functional analysis does with the same seed (rseed) and nesting groups; the communities, the
/// sites and the phylogeny of the OTUs stay. No file is written. The functions of the run may be
/// empty.
std::vector<double> TestSearch(std::span<const double> observed, Keeping keeping,
                               const TestRun& run);
