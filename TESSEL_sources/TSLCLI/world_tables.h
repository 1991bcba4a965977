#pragma once
/// \file
/// The tables of a simulated world by the names of their rows and columns, as the raw files that
/// the simulation reads.

#include <string>
#include <vector>

#include "TSLCLI/name_matching.h"

struct SimulationAnswers;

inline constexpr const char* kNoTable = "none";

/// Files of the tables, or kNoTable, and the sizes that they leave open.
struct WorldTables {
    std::string traits = kNoTable;                   ///< OTUs x traits
    std::string traitCorrelations = kNoTable;        ///< traits x traits, in the place of traits
    std::string traitDistribution = "normal";        ///< normal or uniform
    std::string environment = kNoTable;              ///< sites x factors
    std::string environmentCorrelations = kNoTable;  ///< factors x factors
    std::string environmentDistribution = "normal";
    std::string responses = kNoTable;  ///< traits x predictors
    std::string effects = kNoTable;    ///< factors x traits; none: no feedback
    bool interactions = false;
    int otus = 0;     ///< 0: as many as the table of traits has; so the sites and factors
    int sites = 0;    ///< of the environment
    int factors = 0;  ///< of the environment or its correlations
    std::vector<std::string> predictorsInUse;  ///< names; empty: all
};

/// Names of what the tables hold. Predictors are the factors and, with interactions, the products
/// of each other factor with the last one, as in "water:light".
struct WorldNames {
    Names otus, traits, factors, predictors;
};

/// Reads the tables, orders them by the traits and factors of the tables of these, and puts them
/// with their sizes into the answers. Fails for names that one table has and another lacks, for
/// sizes that contradict the tables, for tables turned the wrong way round, cells without a number,
/// constant traits and factors, and correlations that cannot be.
WorldNames TakeWorldTables(const WorldTables& tables, SimulationAnswers* answers);
