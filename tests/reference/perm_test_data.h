#pragma once
/// \file
/// Records for the permutation test, made from the example data or from random numbers.

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "mxlib/perm_test.h"
#include "mxlibDim/scoped.h"

/// A record and everything that it points to.
struct PermTestData {
    PermTest_FunctionalPhyl_Correl_Input record;
    std::vector<int> traitsInUse;
    std::vector<int> nesting;
    std::vector<int> traitTypes;
    std::vector<float> traitWeights;
    std::vector<int> typeLabels;
    std::vector<int> taxonLabels;
    std::vector<ScopedMatrix<float>> floats;
    std::vector<ScopedMatrix<double>> doubles;
    std::vector<std::vector<double>> vectors;

    float** Float(int rows, int cols) { return floats.emplace_back(rows, cols); }
    double** Double(int rows, int cols) { return doubles.emplace_back(rows, cols); }
};

struct PermTestSizes {
    int communities;
    int OTUs;
    int traits;
    int variables;
    int types;
    int taxa;  ///< 0: no phylogeny
    double density;
};

/// Random communities of a fixed seed: log-normal abundances in the given share of the cells, at
/// least one OTU in each community.
std::unique_ptr<PermTestData> RandomPermTestData(const PermTestSizes& sizes, unsigned seed,
                                                 int opt_ro);

/// A record of these sizes with empty tables, types and taxa in turn.
std::unique_ptr<PermTestData> EmptyPermTestData(const PermTestSizes& sizes, int opt_ro);

/// f = distances between n random points, the largest being 1.
void RandomPhylogeny(int n, std::mt19937* random, double** f);

/// Makes again what follows from B, W, E and Sf: to be called after changing one of them.
void DeriveFromTables(PermTestData* data);
