#pragma once
/// \file
/// Types and nesting groups of the OTUs from a file: as many integers as there are OTUs, in their
/// order, or a table with a row per OTU, under its name, and a column of groups.

#include <string>
#include <vector>

struct OTUGroups {
    std::vector<int> group;          ///< of each OTU
    std::vector<std::string> words;  ///< groups given as words: what 1, 2, ... stand for
};

/// Groups given as words are numbered in alphabetical order. Fails for OTUs without a group; rows
/// of other names, as of OTUs that the session has left out, are told. `what` the groups are, for
/// messages: "types".
OTUGroups ReadOTUGroups(const std::string& path, const std::string& what,
                        const std::vector<std::string>& otus);
