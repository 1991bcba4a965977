#pragma once
/// \file
/// Analysis of simulated data sets: the permutation test on each, and how often each null
/// hypothesis is rejected.

#include <array>
#include <vector>

#include "TSLIF/simulation/world.h"
#include "mxlib/perm_test.h"

/// A statistic that is counted. Its label is that of the report, where Y and Z stand for each
/// other's matrices of the test.
struct RatedStatistic {
    const char* label;
    double PermTest_FunctionalPhyl_Correl_Input::*value;
    double PermTest_FunctionalPhyl_Correl_Input::*probability;
};
inline constexpr int kRatedStatistics = 11;
extern const RatedStatistic ratedStatistics[kRatedStatistics];

/// The tables of the analysis, made once for all data sets, and the tally. S sites, N OTUs, T
/// traits, Q predictors.
struct Evaluation {
    explicit Evaluation(const SimulationAnswers& answersOfRun);
    Evaluation(const SimulationAnswers& answersOfRun, int S, int N, int T, int Q);

    const SimulationAnswers& answers;
    ScopedMatrix<float> B;              ///< N x T, the data set's, as shares and predictors
    ScopedMatrix<double> shares;        ///< S x N
    ScopedMatrix<double> predictors;    ///< Q x S
    ScopedVector<int> traitsInUse;      ///< T
    ScopedMatrix<float> Sb;             ///< N x N similarities between OTUs
    ScopedMatrix<double> U;             ///< N x N belonging of OTUs
    ScopedMatrix<double> coOccurrence;  ///< S x N, compositions smoothed by co-occurrence
    ScopedMatrix<double> products;      ///< S x N, smoothed by products of abundances
    ScopedMatrix<double> DCoOccurrence;
    ScopedMatrix<double> DProducts;
    ScopedMatrix<double> E;  ///< S x Q, standardised, excluded predictors at 0
    ScopedMatrix<double> DE;
    ScopedMatrix<double> outT;  ///< S x T
    ScopedMatrix<double> outX;  ///< S x N
    ScopedVector<double> outR;  ///< S
    PermTest_FunctionalPhyl_Correl_Input test = {};
    std::array<double, kRatedStatistics> rejections = {};
};

/// Takes what the analysis reads of the data set that stands in the world, which may go on then.
void TakeDataSet(World& world, Evaluation* evaluation);

/// Analyses the data set taken.
void EvaluateDataSet(Evaluation* evaluation);

/// Value and P of each statistic in turn, as a test has them.
inline constexpr int kRatedValues = 2 * kRatedStatistics;
std::vector<double> EvaluatedValues(const Evaluation& evaluation);
void TakeValues(const double* values, Evaluation* evaluation);

/// Whether a P rejects its null hypothesis at `alpha`: narrowed to single precision, one at the
/// threshold does.
bool IsRejected(double probability, double alpha);

/// Counts the rejections of the test at hand.
void CountRejections(Evaluation* evaluation);

/// Makes rates of the counts.
void ToRates(Evaluation* evaluation);
