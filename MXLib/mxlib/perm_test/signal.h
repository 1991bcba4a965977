#pragma once
/// \file
/// Phylogenetic signal ro(BF): traits against phylogeny at the level of the OTUs. Under the matrix
/// correlation similarities Sb with resemblances Sf, otherwise the normalised B with the scores of
/// the phylogenetic ordination, in single precision.

#include <memory>

#include "mxlib/perm_test/orders.h"
#include "mxlib/perm_test/statistics.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence_kernels.h"

/// Under the matrix correlation and RV the statistic is a sum of products of two square matrices
/// over a constant, and a permutation only looks up the cells of the second one.
struct SignalOfPairs {
    bool plain;                      ///< missing values, or halves that differ: no lookup
    ScopedVector<double> above;      ///< first matrix above its diagonal
    ScopedVector<double> diagonal;   ///< and the diagonal, 0 where it does not count
    ScopedVector<double> phylogeny;  ///< second matrix, all cells
    double scale;                    ///< 0: one side does not vary
};

/// What is the same in every order, and a worker's room.
struct PhylogeneticSignal {
    double observed;
    std::shared_ptr<SignalOfPairs> pairs;
    std::shared_ptr<CongruenceSide<float>> sideB;  ///< Procrustes and RV
    std::unique_ptr<CongruenceSide<float>> sideScores;
    std::unique_ptr<CongruenceScratch<float>> scratch;
    ScopedVector<const float*> permutedScores;
    std::unique_ptr<ScopedMatrix<double>> terms;       ///< by order: what each place adds
    std::unique_ptr<ScopedMatrix<double>> permutedSf;  ///< for the plain route
};

/// A matrix correlation with dissimilarities, whose sign is turned in the observed value only.
bool SignalIsTurned(const TestRecord& in);

/// Computes the observed signal too.
PhylogeneticSignal MakePhylogeneticSignal(const TestRecord& in);

/// What the permutations look up. Sf is complete by then.
void PreparePermutedSignal(const TestRecord& in, PhylogeneticSignal* signal);

/// For one more worker, with what `first` looks up.
PhylogeneticSignal ShareSignal(const TestRecord& in, const PhylogeneticSignal& first);

/// For new orders, before PermutedSignal of each of them.
void SignalsAhead(const Orders& orders, PhylogeneticSignal* signal);
double PermutedSignal(const TestRecord& in, const Orders& orders, int order,
                      PhylogeneticSignal* signal);
