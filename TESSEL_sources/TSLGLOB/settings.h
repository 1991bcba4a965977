#pragma once
/// \file
/// Preferences of the user and settings of the analyses.

#include <ctime>

#include "mxlibRes/congruence.h"

extern const char* const TESSELPrefsName;  ///< "TESSEL.prf": the preferences file
extern const char* const versionPref;      ///< its version word

// Preferences (defaults in InitGlobals)
extern int sDigits;                   ///< significant digits in reports, 6
extern char saveRndData;              ///< 'y': save the tables of randomization
extern char saveStruct;               ///< 'y': save structures in whichStructures
extern int countDoubleAbsence;        ///< 1: matching absences in binary traits count (Gower)
extern bool sqrtDissimOpt_RaoTraits;  ///< square roots of dissimilarities for Rao on traits
extern bool sqrtDissimOpt_RaoPhyl;    ///< the same on phylogeny
extern bool BealsIncludeOpt;          ///< target OTU used in Beals smoothing
extern double overfitFactorPCARegr;   ///< predictors of a PCA regression at most (n - 2) / this
extern bool twoTailedTestMantel;      ///< two-tailed probabilities of Mantel correlations
extern int maxComponents;             ///< 6; stored, limits nothing
// Stored and read back, used by nothing
extern int isHierarchicalPref, scatterPointSize, profileType, profilePointSize, nProcessors,
    rndTestOpt;
extern float scatterHSize, scatterVSize, profileHSize, profileVSize, treeHSize, treeVSize,
    biplotCorrThreshold;
extern char drawProfPtsOpt, showMemory;

// Settings of the functional analysis
enum FuzzyOption : int { kCrisp = 0, kFuzzyTypes = 3 };
/// The criteria of the trait ranking whose settings differ from those of the others.
enum RankingOption : int { kRankTE = 10, kRankRE = 16 };

extern int part;                        ///< data partition type, 1 mixed
extern int traitBasedOpt;               ///< 1 composition of types, 2 trait averages
extern int poolCSTopt;                  ///< 2 polythetic, 0 with traitBasedOpt 2
extern int clusMethPoolCSTs;            ///< 0: the user gives the groups
extern bool OTUsTypesAreSpecies;        ///< the types are the species of the data set
extern int reseCSTopt;                  ///< resemblance between OTUs: 1 Gower index
extern int fuzzy;                       ///< 0 crisp, 3 fuzzy belonging to types
extern float fuzziness;                 ///< degree of fuzziness, kept in the track file
extern bool optRndTests;                ///< run the permutation tests
extern int niter;                       ///< iterations, the observed arrangement included
extern bool optWeightedNullModel;       ///< always false
extern int optRestrictPermutNullModel;  ///< 1: permutations within nesting groups
extern int* nestingMembershipOTUs;      ///< tcst, while the above is 1
extern int seedOpt;                     ///< 1 clock, 2 typed
extern unsigned long rseed;             ///< seed in force
extern int opt_ro;                      ///< congruence measure: 1 Mantel, 2 Procrustes, 3 RV
extern int rese_opt;                    ///< resemblance between communities, 1 to 10
extern int whichObj;                    ///< what is compared: 114, the letter r, communities
extern bool optUnitTotalAdjust1;        ///< W[1] to unit totals
extern bool optUnitTotalAdjust2;        ///< W[0] to unit totals
extern int includePhylogeny;            ///< the phylogeny takes part
extern int fuzzyPhyl;                   ///< 1: fuzzy belonging to taxa
extern int* partition_OTUs_Phyl;        ///< tcst: taxa, while the phylogeny takes part
extern int nTaxa;                       ///< columns of Q and P
extern int isHierarchical;              ///< 0
extern bool optCoVariable;              ///< 0
extern bool printDetail;                ///< detailed results in the print-out
extern char prindaMode[2];              ///< "w" or "a": mode of the report
extern int opt_struct;                  ///< trait ranking criterion; 9 for the functional analysis
extern int nMaxCSTGroupsChRank, nMinCSTGroupsChRank, nMinTraitsChRank, nMaxTraitsChRank;
extern int rankingAlgorithm;           ///< 2, all subsets of the traits
extern char printRankIntermedResults;  ///< 'y': a line for each subset in the results file
extern int nKeepTrack;                 ///< subsets in the ranked list, 100
extern std::time_t time0;              ///< wall clock at the start of a test
extern int cohe, reseTypeOrd, reseTypeClus, reseTypeEv, reseTypeRnd, reseTypeERank, reseCstOpt;
