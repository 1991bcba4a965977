#pragma once
/// \file
/// Checks that keep the linked tables of the data set consistent. They work on the globals in place
/// and print nothing. What a removal leaves behind the counts stays allocated unless told.

/// Builds cstSppMap from the names of raw entry, one per OTU, merging equal names, and with option
/// 2 puts a label of up to four characters before each name.
void CheckSpecies(int option);

/// Builds sppRelMap from cstSppMap and W; a missing value counts as present.
void SpeciesReleveMap();

/// states[k] = number of distinct values of trait k, the missing value one like any other.
void CountStates(int nTraits, int nOTUs, int* states, const float* const* B);

/// ranges[k] = maximum - minimum of each type 3 trait, missing values included; the maximum starts
/// at the smallest positive float.
void RangeStates(int nTraits, int nOTUs, const float* const* B, const int* types, float* ranges);

/// Cleans the data set after a change: drops OTUs that occur nowhere, merges species, recounts.
void CheckData(int recount);

/// Merges species of equal name after two data sets were joined.
void CheckSpeciesMerge();

/// Gives OTUs of one species the same value of the trait labelled "sp".
void CheckCSTsSameSpecies();

/// Removes species without OTUs or communities among the first nOTUs OTUs.
void TrimSpecies(int nOTUs);

/// 1 when the first 4 characters of label equal those of one of the first n texts.
int CheckIdenticalLabels(const char* label, const char* const* texts, int n);
