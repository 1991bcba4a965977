#pragma once
/// \file
/// The test of a search for the best subset of traits: the whole search repeated under the null
/// model. A test of the winning subset alone would forget that it was chosen among many.

#include <functional>
#include <span>
#include <vector>

#include "TSLCHORD/search_frame.h"

/// The best value of each size from nMinTraitsChRank to nMaxTraitsChRank, then the best of all; NaN
/// where no subset counts as better than nothing.
std::vector<double> BestValues(const SubsetSearch& search, const SearchOutcome& outcome);

/// Probabilities of `observed`, the BestValues of the search by opt_struct under the present
/// settings: the share of arrangements, the observed one and the permuted ones, whose best value is
/// at least as good, by magnitude where magnitude is kept. Values that differ by what single
/// precision leaves count as equal; the probability of a NaN is NaN.
///
/// A permutation gives the OTUs the traits of others, and with them their types, as the test of the
/// functional analysis does with the same seed (rseed) and nesting groups; the communities, the
/// sites and the phylogeny of the OTUs stay. No file is written. `each` receives the best values of
/// each permutation; it may be empty.
std::vector<double> TestSearch(std::span<const double> observed, Keeping keeping, int permutations,
                               const std::function<void(std::span<const double>)>& each);
