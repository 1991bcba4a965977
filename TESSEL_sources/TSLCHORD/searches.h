#pragma once
/// \file
/// The searches for the subset of traits that maximises a criterion. Each reads the data set and
/// the settings of the session, searches all subsets of nMinTraitsChRank to nMaxTraitsChRank
/// traits, and writes the results file whichChorder. A results file that does not open raises
/// kFailedOpening.

/// r(TE): congruence of the community-weighted mean traits T with the ecological variables E.
void ChRankTCAP();

/// r(XE): of the composition of types X with E.
void ChRankTDAP_TCAP();

/// r(XE.T): partial, T removed; by magnitude.
void ChRankTDAP();

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
void ChRankAlphaBetaDivergence(int mode);

/// r(PX), r(PX.T) or r(PT), by opt_struct: with the composition by phylogeny P.
void ChRankPhylogenyAssembly();

/// r(PT) r(TE) or r(PX) r(XE), by opt_struct: niche conservation.
void ChRank_Phylogeny_x_Trait_Assembly();
