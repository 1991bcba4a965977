#pragma once
/// \file
/// The permutation test of assembly patterns written out step by step: every matrix is made again
/// in each iteration, by dense loops, nothing is kept or shared. It takes and fills the same record
/// as PermTest_FunctionalPhyl_Correl and writes no intermediate results.

#include "mxlib/perm_test.h"

bool PlainPermTest(PermTest_FunctionalPhyl_Correl_Input* input);
