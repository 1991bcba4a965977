#pragma once
/// \file
/// The tables of two data sets joined: the one in memory first, behind it the one of a file that is
/// being read. Each step reads a stretch of the file, compares what both must have alike and joins
/// what each has of its own. It gives null, or the text that tells why the sessions do not match.

#include <optional>

#include "TSLIFFM2/data_fields.h"
#include "mxlibDim/scoped.h"

struct JoinedTables {
    int communities = 0, otus = 0, species = 0;     ///< of both; species 0 when there are none
    std::optional<ScopedMatrix<char>> reLabel;      ///< communities x 11
    std::optional<ScopedVector<int>> ncst;          ///< communities
    std::optional<ScopedMatrix<float>> csm_Float;   ///< otus x nch
    std::optional<ScopedMatrix<float>> cadat;       ///< otus x communities
    std::optional<ScopedMatrix<float>> env;         ///< communities x nenv, with variables
    std::optional<ScopedMatrix<char>> spp;          ///< species x 71, with species
    std::optional<ScopedMatrix<char>> sppRelMap;    ///< species x communities, with species
    std::optional<ScopedMatrix<char>> cstSppMap;    ///< otus x species, with species
    std::optional<ScopedMatrix<double>> phylogeny;  ///< otus x otus, with a phylogeny
    std::optional<ScopedMatrix<float>> clades;      ///< otus x nClados, with phylogeny data
};

/// The whole file, up to the window marker.
const char* JoinFile(const DataFile& file, JoinedTables& joined);

/// F has -999 for all pairs with an OTU of the file, but for the resemblance with itself.
void JoinPhylogeny(JoinedTables& joined);
