#pragma once
/// \file
/// What looks wrong in a data set, though an analysis would run.

#include <string>
#include <vector>

#include "TSLCLI/names.h"

/// One line for each finding on the data set in memory: what it is, where, and what it does to an
/// analysis.
std::vector<std::string> Findings(const FullNames& names);
