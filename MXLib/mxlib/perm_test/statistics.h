#pragma once
/// \file
/// The statistics of the permutation test as data: what is compared with what, what is removed,
/// where the result stands in the record.

#include <array>

#include "mxlib/perm_test.h"

using TestRecord = PermTest_FunctionalPhyl_Correl_Input;

/// The matrices of communities. E, Z and Y are fixed, the others follow the order of the OTUs.
enum Letter : int { kE, kZ, kY, kT, kX, kP, kR, kF, kLetters, kFixedLetters = kT };

/// The blocks of a stage, in their order. Each makes the matrix of its own letter.
enum Block : int { kBlockT, kBlockX, kBlockP, kBlockR, kBlockF, kBlocks };
Letter MadeIn(Block block);

/// The reported statistics in the order of the record, then those that only serve others.
enum Statistic : int {
    kXE,
    kTE,
    kXE_T,
    kRE,
    kXE_TR,
    kTZ,
    kTY,
    kXZ,
    kXY,
    kXZ_T,
    kXY_T,
    kBF,
    kFE,
    kPE,
    kPT,
    kPX,
    kPX_T,
    kTE_P,
    kXE_P,
    kXE_TP,
    kPE_T,
    kPE_X,
    kReported,
    kXT = kReported,
    kXR,
    kTR,
    kXT_P,
    kXE_R,
    kTE_R,
    kXT_R,
    kStatistics
};
using Statistics = std::array<double, kStatistics>;

struct ReportedStatistic {
    double TestRecord::*observed;
    double TestRecord::*probability;
    Block block;  ///< at whose end it is compared
    bool alwaysTwoTailed;
};
extern const std::array<ReportedStatistic, kReported> kReportedStatistics;

/// Congruence of a and b, computed in the block that makes the later of them.
struct PairStatistic {
    Statistic result;
    Block block;
    Letter a;
    Letter b;
    bool servesOthersOnly;  ///< needed for partial correlations, not reported
};
extern const std::array<PairStatistic, 14> kPairStatistics;

/// Under the matrix correlation: PartialCorrelation of three others, in an order in which each
/// finds its own ready.
struct PartialOfPairs {
    Statistic result;
    Block block;
    Statistic xy;
    Statistic xz;
    Statistic yz;
};
extern const std::array<PartialOfPairs, 14> kPartialsOfPairs;

/// What is removed under Procrustes and RV.
enum Covariables : int { kRemoveT, kRemoveX, kRemoveP, kRemoveTP, kRemoveTR, kCovariableChoices };
extern const std::array<std::array<Letter, 2>, kCovariableChoices> kCovariableLetters;  ///< E: none

/// Under Procrustes and RV: congruence of the residuals of a and b.
struct PartialOfMatrices {
    Statistic result;
    Block block;
    Letter a;
    Letter b;
    Covariables removed;
};
extern const std::array<PartialOfMatrices, 10> kPartialsOfMatrices;
