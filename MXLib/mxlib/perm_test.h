#pragma once
/// \file
/// The permutation test of trait-convergence, trait-divergence and phylogenetically structured
/// assembly patterns: up to 22 congruence statistics with their probabilities under permutation of
/// the OTUs, the community matrix W and the ecological matrix E staying fixed.

#include <cstdio>
#include <functional>

/// Matrices of one analysis, in; statistics and probabilities, out. The caller owns everything.
struct PermTest_FunctionalPhyl_Correl_Input {
    int nIterations;   ///< the observed arrangement included
    int nTraits;       ///< columns of B
    int* traitsInUse;  ///< 1 for each trait in use
    int nOTUs;
    int nTypes;  ///< columns of U
    int nTaxa;   ///< columns of Q
    int nEnv;    ///< columns of E
    int nCommunities;
    int nPhylAxes;       ///< columns of PhylScores
    float** B;           ///< OTUs by traits
    float** Sb;          ///< similarities between OTUs by the traits in use
    float** PhylScores;  ///< OTUs by axes
    double** Sf;         ///< phylogenetic resemblances between OTUs
    double** E;          ///< communities by ecological variables
    double** U;          ///< belonging of OTUs to types
    double** Q;          ///< belonging of OTUs to taxa
    double** W;          ///< communities by OTUs
    double** DE;         ///< resemblance between communities by E
    double** DZ;         ///< and by the smoothed compositions
    double** DY;
    double** Z;  ///< smoothed compositions, communities by OTUs
    double** Y;
    double roXE, roTE, roXE_T, roRE, roXE_TR, roTZ, roTY, roXZ, roXY, roXZ_T, roXY_T, roBF, roFE,
        roPE, roPT, roPX, roPX_T, roTE_P, roXE_P, roXE_TP, roPE_T, roPE_X;
    double probXE, probTE, probXE_T, probRE, probXE_TR, probTZ, probTY, probXZ, probXY, probXZ_T,
        probXY_T, probBF, probFE, probPE, probPT, probPX, probPX_T, probTE_P, probXE_P, probXE_TP,
        probPE_T, probPE_X;
    int rese_opt;
    int opt_ro;  ///< 1 Mantel, 2 Procrustes, 3 RV
    double overfitFactorPCARegr;
    bool saveRndData;           ///< write the intermediate results to stream
    bool optWeightedNullModel;  ///< always false
    bool includePhylogeny;
    bool phylogenyIsDissimilarity;  ///< Sf holds dissimilarities
    bool sqrtDissimOpt_RaoTraits;
    bool sqrtDissimOpt_RaoPhyl;
    int optRestrictPermutNullModel;  ///< 1: permutations within nesting groups
    int* nestingMembershipOTUs;      ///< nesting group of each OTU
    bool returnMatrices;             ///< also hand back X and the raw Rao entropies
    bool twoTailedTestMantel;
    double** outT;  ///< communities by traits, always filled
    double** outX;
    double** outP;
    double* outR;
    double* outF;
    FILE* stream;  ///< intermediate results
    /// Orders of DrawPermutations; null: they are drawn as the test goes.
    int** orders;
    /// Called for the observed arrangement and then for each permuted one, with the record, whose
    /// statistics are those of that arrangement; those that are not computed hold no meaning. All
    /// roBF have the sign of the observed one. Empty: nothing is called.
    std::function<void(const PermTest_FunctionalPhyl_Correl_Input&)> eachArrangement;
};

/// Draws the orders of the record's test ahead, as the test would: nIterations - 1 rows of the
/// indices of the OTUs, from 1. `r` must be seeded.
void DrawPermutations(const PermTest_FunctionalPhyl_Correl_Input& in, int** orders);

/// Runs the test. `r` must be seeded (random_lists.h) unless the orders are given. Returns true.
bool PermTest_FunctionalPhyl_Correl(PermTest_FunctionalPhyl_Correl_Input* input);
