#pragma once
/// \file
/// The intermediate results file of the permutation test.

#include "mxlib/perm_test/composition.h"

/// One stage of the test as the file shows it.
struct Stage {
    const TestRecord* in;
    const Arrangement* now;
    const int* list;
    const Statistics* observed;
    const Statistics* random;  ///< not in the observed stage
    const double* frequency;   ///< by reported statistic; not in the observed stage
    int iteration;
};

/// The observed stage, at the end of the block T, X or R; other blocks print nothing.
void PrintObservedBlock(const Stage& stage, Block block);

/// A permutation, at the end of any block.
void PrintPermutedBlock(const Stage& stage, Block block);
