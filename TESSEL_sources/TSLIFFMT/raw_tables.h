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
