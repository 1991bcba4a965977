#pragma once
/// \file
/// The steps of raw data entry. Each asks for the layout of one raw file, reads it into tables of
/// the data set that it allocates (FreeGlobals2 releases them), and closes the file.

#include "TSLIFFMT/raw_files.h"

/// Matrix B: tcst, nch, csm_Float, chLabel, chtype, onsta, chrange, traitGroups.
void EnterTraits(RawFile& file);

/// Matrix F in the place of the phylogeny in memory, which outlives FreeGlobals2. A half matrix
/// leaves phylogenyMatrixType as it is.
void EnterPhylogeny(RawFile& file);

/// Matrix W: ncsm, cadat, reLabel, ncst.
void EnterCommunities(RawFile& file);

/// Species names, one per OTU: nSpp, spp, whichSpp, sppRelMap, cstSppMap.
void EnterSpecies(RawFile& file);

/// Matrix E: nenv, env, envLabel, envName, envVarType and the kind of the matrix. The file is read
/// strictly: what is not a number among its numbers raises kEndOfFile.
void EnterEnvironment(RawFile& file);

// What the steps have in common with other roads to a data set.

/// Releases the data set in memory and sets its counts to 0; the phylogeny stays.
void ForgetDataSet();

/// The tables of raw entry for the counts, which are set. W itself is not among them. They refuse
/// what is too large as RequireRoomForTable does.
void AllocateTraits();
void AllocateCommunities();
void AllocateSpecies();
void AllocateEnvironment();

/// Merges species of equal name, one name per OTU being in spp, labels them by the option
/// (SpeciesLabels) and makes the maps.
void SettleSpecies(int option);

/// Divides the distances of F by the largest of the upper triangle when that is above 1, and tells
/// whether it did. Only the first `numbers`, by rows, are known; the others stay missing.
bool NormaliseDistances(long long numbers);

/// Counts the states of the traits and writes whichFormda under the title.
void WriteDataSet(const char* title);
