#pragma once
/// \file
/// The partial congruence r(XA.T) of a subset: composition of types X with a table A, the traits T
/// removed.

#include <array>
#include <cstdio>
#include <memory>
#include <span>

#include "TSLCHORD/subset_tables.h"
#include "mxlib/partial_matrix_correlation.h"

/// r(ab.T), or r(ab.TR) with entropy, under Procrustes and RV.
std::unique_ptr<PartialCorrelationRoom> MakePartialRoom(Table a, Table b, bool withEntropy,
                                                        SubsetTables<double>* t);
double PartialOfTables(Table a, Table b, bool withEntropy, const TraitSubset& subset,
                       PartialCorrelationRoom* room, SubsetTables<double>* t);

/// r(ab.T) with a fixed, wide b by a quicker way (EstimatedPartialCorrelation).
double EstimateOfTables(Table a, const TraitSubset& subset, FixedMatrix* b,
                        PartialCorrelationRoom* room, SubsetTables<double>* t);

struct DivergenceRating {
    float roTA;
    float roXA;
    float roXT;
    double partial;
};
struct TraitDivergence {
    Table a;
    std::unique_ptr<PartialCorrelationRoom> room;         ///< null under the matrix correlation
    std::array<DivergenceRating, kMostTogether> ratings;  ///< by lane
};
TraitDivergence MakeTraitDivergence(Table a, SubsetTables<double>* t);

/// Rates subsets whose T and X are made, with their resemblances: r(TA) and r(XA) and r(XT) in
/// single precision under the matrix correlation. Otherwise roXA and roXT stay 0, and roTA, a
/// matrix correlation, is only found if wanted. The values are those of `partial`.
void RateTraitDivergence(std::span<const TraitSubset> subsets, bool wantsAll,
                         TraitDivergence* divergence, double* values, SubsetTables<double>* t);

/// The part of the structures file behind the tables of a subset: the statistics with E, and under
/// the matrix correlation the residuals of DX on DT, in the place of DX.
void PrintTraitDivergence(FILE* stream, const TraitSubset& subset, const DivergenceRating& rating,
                          SubsetTables<double>* t);
