#pragma once
/// \file
/// Selecting and reordering parts of the data set in memory. What belongs to an item travels with
/// it: with a trait its group, with an OTU its species and its place in the phylogeny. A selection
/// names positions from 0 in their new order; one may occur more than once, but the selection is no
/// longer than what it selects from. Nothing stays allocated behind the counts.

#include <vector>

using Selection = std::vector<int>;

/// The items of a list at the positions of the selection.
template <class T>
std::vector<T> Picked(const std::vector<T>& items, const Selection& selection) {
    std::vector<T> picked;
    for (const int i : selection) picked.push_back(items[static_cast<std::size_t>(i)]);
    return picked;
}

/// The position of each of n labels among `count` ones; nothing when one is not among them.
Selection PositionsOf(int n, const char* const* wanted, int count, const char* const* labels);

/// Traits: B, labels, types, ranges, numbers of states, groups.
void SelectTraits(const Selection& selection);

/// OTUs: B, W, map to species, phylogeny. All species are kept.
void SelectOTUs(const Selection& selection);

/// Communities: W, E, labels, map of species.
void SelectCommunities(const Selection& selection);

/// Variables: E, labels, types. The kind of E is left to the caller.
void SelectVariables(const Selection& selection);

/// Releases the rows of tables of communities between the count and an earlier one.
void ReleaseCommunitiesLeftBehind(int before);

/// CheckData(1), with the phylogeny following the OTUs that are left, which it returns.
Selection CleanDataSet();
