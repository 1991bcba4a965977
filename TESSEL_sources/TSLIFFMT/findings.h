#pragma once
/// \file
/// What is certain of a data set, and may be a slip of who entered it.

#include <string>
#include <vector>

/// The labels that are numbers; none where they are the default ones, 1, 2, 3 and so on.
std::vector<std::string> LabelsThatAreNumbers(int n, const char* const* labels);

/// The findings of the data set in memory, a line each without its end: labels that are numbers
/// (the default ones, 1, 2, 3 and so on, aside), communities without individuals, OTUs that occur
/// nowhere, and last the sizes of the tables.
std::vector<std::string> FindingsOfDataSet();
