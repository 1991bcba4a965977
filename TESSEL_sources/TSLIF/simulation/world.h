#pragma once
/// \file
/// The world of the simulation of community assembly: sites, OTUs with traits, ecosystem predictors
/// and the communities that assemble on them.

#include "TSLIF/simulation/answers.h"
#include "mxlibDim/scoped.h"

/// An empty table; one beyond all reason raises kOutOfMemory.
template <class T>
ScopedMatrix<T> Table(int rows, int cols) {
    RequireRoomForTable(rows, cols, sizeof(T));
    return ScopedMatrix<T>(rows, cols);
}

/// All tables of one run. S sites, N OTUs, T traits, F factors, Q predictors (answers.h). A table
/// that the source of the traits or of the environment does not need is empty.
struct World {
    explicit World(SimulationAnswers* answersOfRun);

    SimulationAnswers& answers;

    // Traits
    ScopedMatrix<float> B;                  ///< N x T, Z scores once prepared
    ScopedMatrix<float> BTransposed;        ///< T x N
    ScopedVector<double> traitMean;         ///< T, before the standardisation, as traitSd
    ScopedVector<double> traitSd;           ///< T, divisor N - 1 where the Z scores have N
    ScopedVector<double> traitMin;          ///< T, of the Z scores, as traitMax
    ScopedVector<double> traitMax;          ///< T
    ScopedMatrix<float> traitCorrelations;  ///< T x T
    ScopedVector<int> traitFlags;           ///< T, 1 for a trait with a response to a predictor
    int nTraitsFlagged = 0;                 ///< degrees of freedom of the filter

    // Ecosystem
    ScopedMatrix<double> E;                   ///< Q x S, the factors first
    ScopedMatrix<double> EInitial;            ///< Q x S
    ScopedMatrix<double> factorCorrelations;  ///< F x F
    ScopedMatrix<double> responses;           ///< T x Q, expected traits on predictors
    ScopedMatrix<double> effects;             ///< F x T, change of factors on change of traits

    // Communities
    int target;                       ///< individuals of the full sites
    ScopedMatrix<double> W;           ///< (S + 1) x N individuals; row S: totals of the OTUs
    ScopedVector<int> abundance;      ///< S
    int total = 0;                    ///< individuals over all sites
    ScopedMatrix<double> shares;      ///< S x N, W with its rows at unit sum
    ScopedMatrix<double> expected;    ///< T x S, expected trait means at the step
    ScopedMatrix<double> means;       ///< T x S, weighted trait means of the communities
    ScopedMatrix<double> beyond;      ///< T x S, amount of extrapolation
    ScopedVector<int> richness;       ///< S, when recording started
    ScopedVector<int> extinctions;    ///< S, since then, as colonizations
    ScopedVector<int> colonizations;  ///< S
    int onset = 0;                    ///< step where recording started
    int step = 0;                     ///< last step
    int dataSet = 0;                  ///< number of the data set, from 1
    long long chiSquareCalls = 0;     ///< values of the tables of the chi-square distribution
};
