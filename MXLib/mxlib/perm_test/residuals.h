#pragma once
/// \file
/// Procrustes and RV coefficients of the test, and their partial forms between residuals. Each
/// matrix is made ready once for an arrangement, E, Z and Y once for all; the components of a set
/// of covariables are found once, and residuals on them made once, for all statistics that use
/// them.

#include <array>
#include <memory>

#include "mxLinearModels/component_regression.h"
#include "mxlib/perm_test/composition.h"
#include "mxlib/perm_test/projection.h"
#include "mxlibRes/congruence_kernels.h"

using Side = std::shared_ptr<CongruenceSide<double>>;

struct MatrixPairs {
    std::array<Side, kLetters> sides;
    std::array<std::unique_ptr<ComponentFactors>, kCovariableChoices> factors;
    std::array<bool, kCovariableChoices> hasFactors;  ///< in the present arrangement
    std::array<std::array<Side, kLetters>, kCovariableChoices> residuals;
    std::array<std::array<bool, kLetters>, kCovariableChoices> hasResiduals;
    ScopedMatrix<double> room;  ///< residuals of one matrix
    CongruenceScratch<double> scratch;
    Projection projection;                 ///< for r(XZ.T) and r(XY.T)
    std::array<double, kLetters> squares;  ///< of Z and Y made ready
    bool allPairs;  ///< also those that serve no partial statistic here and are only printed
};

/// With the fixed matrices of `first`; null: makes them.
MatrixPairs MakeMatrixPairs(const TestRecord& in, bool allPairs, const MatrixPairs* first);

/// To be called for each new arrangement, before its first block.
void StartArrangement(MatrixPairs* m);

/// Makes the matrix of the block ready and computes the statistics of the block.
void MatrixBlock(const TestRecord& in, const Arrangement& now, Block block, MatrixPairs* m,
                 Statistics* s);
