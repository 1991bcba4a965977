#pragma once
/// \file
/// Records for the permutation test from the examples.

#include "reference/perm_test_data.h"

/// The example `name` ("aravo", "mafragh") of the folder `examples` as the functional analysis
/// takes it: fuzzy types, traits weighted by the sizes of their groups, E standardised, W at unit
/// totals, the types for taxa. aravo has no phylogeny: a random one stands in.
std::unique_ptr<PermTestData> ExamplePermTestData(const std::string& examples,
                                                  const std::string& name, bool phylogeny,
                                                  int opt_ro);
