#pragma once
/// \file
/// The searches for the subset of traits that maximises a criterion. Each reads the data set and
/// the settings of the session, searches all subsets of nMinTraitsChRank to nMaxTraitsChRank
/// traits, and writes the results file whichChorder if the run wants it. A results file that does
/// not open raises kFailedOpening.

#include "TSLCHORD/search_frame.h"

/// r(TE): congruence of the community-weighted mean traits T with the ecological variables E.
void ChRankTCAP(const SearchRun& run = {});

/// r(XE): of the composition of types X with E.
void ChRankTDAP_TCAP(const SearchRun& run = {});

/// r(XE.T): partial, T removed; by magnitude.
void ChRankTDAP(const SearchRun& run = {});

/// Criteria with Rao entropy, dark diversity and the smoothed compositions.
enum DivergenceMode : int {
    kAlphaDivergence = 1,    ///< r(RE)
    kBetaDivergence = 2,     ///< r(XE.TR), by magnitude; under the matrix correlation r(XE.T)
    kDarkDiversity = 3,      ///< r(SE)
    kCongruenceZ = 4,        ///< r(XZ)
    kTraitConvergenceZ = 5,  ///< r(TZ)
    kTraitDivergenceZ = 6,   ///< r(XZ.T), by magnitude
    kCongruenceY = 7,        ///< r(XY)
    kTraitConvergenceY = 8,  ///< r(TY)
    kTraitDivergenceY = 9,   ///< r(XY.T), by magnitude
};
void ChRankAlphaBetaDivergence(int mode, const SearchRun& run = {});

/// r(PX), r(PX.T) or r(PT), by opt_struct: with the composition by phylogeny P.
void ChRankPhylogenyAssembly(const SearchRun& run = {});

/// r(PT) r(TE) or r(PX) r(XE), by opt_struct: niche conservation.
void ChRank_Phylogeny_x_Trait_Assembly(const SearchRun& run = {});
