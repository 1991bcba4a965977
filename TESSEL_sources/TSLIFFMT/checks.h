#pragma once
/// \file
/// Checks that keep the linked tables of the data set consistent. They work on the globals in place
/// and print nothing. What a removal leaves behind the counts stays allocated unless told:
/// ReleaseRowsLeftBehind releases it.

/// How the labels before the names of species come about.
enum SpeciesLabels : int { kLabelsPrecedeNames = 1, kMakeSpeciesLabels = 2 };

/// Builds cstSppMap (tcst x tcst) from the names of raw entry, one per OTU, merging equal names,
/// and with option 2 puts a label of up to four characters before each name. Sets nSpp.
void CheckSpecies(int option);

/// Builds sppRelMap from cstSppMap and W; a missing value counts as present.
void SpeciesReleveMap();

/// states[k] = number of distinct values of trait k, the missing value one like any other. A value
/// of exactly 1e8 is never counted; NaN differs from everything, itself included.
void CountStates(int nTraits, int nOTUs, int* states, const float* const* B);

/// ranges[k] = maximum - minimum of each type 3 trait, missing values included; the maximum starts
/// at the smallest positive float, so that a trait of negative values alone reaches up to there.
void RangeStates(int nTraits, int nOTUs, const float* const* B, const int* types, float* ranges);

/// Whether an OTU, or a community, has no |value| in W above 1e-13.
bool OccursNowhere(int otu);
bool IsEmptyCommunity(int community);

/// Cleans the data set after a change: drops OTUs that occur nowhere, merges species, fills ncst
/// and emptyReleves, with `recount` 1 onsta, and chrange.
void CheckData(int recount);

/// Merges species of equal name after two data sets were joined. The last species is not compared,
/// and only one step of moving is done, so that it is exact for a duplicate next to the end.
void CheckSpeciesMerge();

/// Gives OTUs of one species the same value of the trait labelled "sp", the last one so labelled.
void CheckCSTsSameSpecies();

/// Removes species without OTUs among the first nOTUs or without communities, takes OTUs out of
/// species with which they share no community, and releases the removed rows of spp and sppRelMap.
void TrimSpecies(int nOTUs);

/// Releases and nulls the rows of B, W, the labels of OTU groups and the species tables between the
/// counts and the counts that these tables were allocated with.
void ReleaseRowsLeftBehind(int allocatedOTUs, int allocatedSpecies);
