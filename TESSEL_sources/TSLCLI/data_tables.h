#pragma once
/// \file
/// The data set in memory as tables of CSV, by full names and in words: what was understood of the
/// files that it came from.

#include <string>

#include "TSLCLI/names.h"

/// Writes to `folder`, which it makes: traits.csv (OTUs x traits), communities.csv (communities x
/// OTUs), environment.csv (communities x variables), phylogeny.csv (OTUs x OTUs), as far as the
/// data set has them, and variables.csv: the table, name and kind of each trait and variable.
void WriteDataTables(const std::string& folder, const FullNames& names);
