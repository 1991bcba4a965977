#pragma once
/// \file
/// The matrices of one functional analysis and the steps that compute them, in the order in which
/// the analysis takes them. Each step reads the data set and the settings of the session and what
/// the steps before it made.

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlibDim/scoped.h"

/// Kinds of phylogenetic data (phylogenyMatrixType).
enum PhylogenyKind : int {
    kPhylogenySimilarities = 1,
    kPhylogenyVariables = 2,
    kPhylogenyDistances = 3
};

/// Number of traits with a weight above 0.
int CountTraitsInUse();

/// Whether the principal coordinates of the phylogeny are read: by Procrustes and RV for its
/// signal, and by a detailed report.
bool ReadsCoordinates();

/// In the comments c stands for the communities, n for the OTUs, p for the traits, e for the
/// ecological variables, K for the types and f for the taxa.
struct ScalingUpMatrices {
    int nTypes = nGrPoly[0];                                  ///< K
    int nTraitsInUse = CountTraitsInUse();                    ///< traits with a weight above 0
    int nTaxaInUse = includePhylogeny != 0 ? nTaxa : 0;       ///< f, 0 without phylogeny
    int nOTUsInPhylogeny = includePhylogeny != 0 ? tcst : 0;  ///< n, 0 without phylogeny

    // Sites
    ScopedMatrix<float> E{ncsm, nenv};         ///< c x e, standardised or ranked by the kind of E
    ScopedMatrix<double> EDouble{ncsm, nenv};  ///< the same for the test
    ScopedMatrix<double> DE{ncsm, ncsm};       ///< c x c, upper half

    // Compositions
    ScopedMatrix<double> W{ncsm, tcst};      ///< c x n, at unit totals only on request
    ScopedMatrix<double> WUnit{ncsm, tcst};  ///< c x n, at unit totals
    ScopedMatrix<double> Z{ncsm, tcst};      ///< c x n, smoothed by joint occurrence
    ScopedMatrix<double> Y{ncsm, tcst};      ///< c x n, smoothed by joint performance, odds
    ScopedMatrix<double> DZ{ncsm, ncsm};     ///< c x c, upper half
    ScopedMatrix<double> DY{ncsm, ncsm};     ///< c x c, upper half

    // Traits
    ScopedVector<int> include{nch};       ///< p: 1 for a trait in use
    ScopedMatrix<float> B{tcst, nch};     ///< n x p, 0 in the columns of traits not in use
    ScopedMatrix<float> Sb{tcst, tcst};   ///< n x n, identity at first, then similarities
    ScopedMatrix<double> T{ncsm, nch};    ///< c x p
    ScopedMatrix<double> DT{ncsm, ncsm};  ///< c x c, upper half

    // Types
    ScopedVector<int> typeLabels{tcst};           ///< K ascending labels
    ScopedVector<int> typeSizes{nTypes};          ///< K: OTUs of each type
    ScopedMatrix<double> C{tcst, nTypes};         ///< n x K, crisp belonging
    ScopedMatrix<double> U{tcst, nTypes};         ///< n x K, fuzzy belonging
    ScopedMatrix<double> X{ncsm, nTypes};         ///< c x K, W U
    ScopedMatrix<double> XCrisp{ncsm, nTypes};    ///< c x K, W C
    ScopedMatrix<float> typeTraits{nTypes, nch};  ///< K x p, trait averages of the types

    // Phylogeny; empty without it
    int nPhylAxes = 0;
    ScopedMatrix<float> phylScores{ReadsCoordinates() ? tcst : 0, tcst};  ///< n x axes kept
    ScopedMatrix<double> Q{nOTUsInPhylogeny, nTaxaInUse};  ///< n x f, belonging to taxa
    ScopedMatrix<double> P{ncsm, nTaxaInUse};              ///< c x f, W Q
    ScopedMatrix<double> DP{ncsm, ncsm};                   ///< c x c, upper half

    // Diversity of the communities
    ScopedVector<double> D{ncsm};                 ///< Gini-Simpson index
    ScopedVector<double> RaoTraits{ncsm};         ///< Rao entropy by traits
    ScopedVector<double> RaoPhyl{ncsm};           ///< Rao entropy by phylogeny
    ScopedVector<double> redundancyTraits{ncsm};  ///< D - RaoTraits
    ScopedVector<double> redundancyPhyl{ncsm};    ///< D - RaoPhyl
};

/// Whether phylogenyRese is taken for dissimilarities: everything but similarities, the Gower
/// similarities of phylogenetic variables included.
bool PhylogenyIsDissimilarity();

/// phylogenyRese from phylogenetic variables, where the phylogeny is given by them.
void ComparePhylogeneticVariables();

/// E and DE.
void CompareSites(ScalingUpMatrices& m);
/// Both copies of W, the ranges of the traits, and E for the test.
void CopyDataSet(ScalingUpMatrices& m);
/// WUnit at unit totals, and W if the user asked for it.
void AdjustToUnitTotals(ScalingUpMatrices& m);
/// Z and Y, with DZ and DY under the matrix correlation.
void SmoothCompositions(ScalingUpMatrices& m);
/// D, from the identity matrix in the place of Sb.
void MeasureGiniSimpson(ScalingUpMatrices& m);
/// The scores if they are read, Q, P, DP and RaoPhyl; with phylogenetic variables phylogenyRese
/// before them.
void ScalePhylogenyUp(ScalingUpMatrices& m);
/// B and include.
void SelectTraits(ScalingUpMatrices& m);
/// T as averages at community level.
void AverageTraits(ScalingUpMatrices& m);
/// T at unit length of its columns, and DT.
void NormaliseTraits(ScalingUpMatrices& m);
/// Sb by the traits in use.
void CompareOTUs(ScalingUpMatrices& m);
/// Labels and sizes of the types, C, U, X and XCrisp.
void PoolIntoTypes(ScalingUpMatrices& m);
/// RaoTraits and the redundancies.
void MeasureRedundancy(ScalingUpMatrices& m);
/// typeTraits: a missing value lowers the average, since the divisor counts all OTUs of the type. A
/// sum of 0 is missing where any OTU, of whatever type, misses the trait: -999 over the size.
void AverageTraitsOfTypes(ScalingUpMatrices& m);
