#pragma once
/// \file
/// A data set in a few lines, for a person to check against the tables that it came from.

#include <string>

#include "TSLCLI/names.h"

/// Tells sizes, first and last names, kinds, values and missing values of the traits and variables,
/// the richest and the poorest community of the data set in memory.
void TellSummary(const std::string& session, const FullNames& names);
