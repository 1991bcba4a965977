#pragma once
/// \file
/// Names of rows and columns: told apart within a table, matched between tables.

#include <string>
#include <vector>

using Names = std::vector<std::string>;

/// Names of one kind of thing in one file.
struct NameList {
    std::string file;
    const Names* names;
};

/// Fails where two of the names are the same, or are but for case and blanks. `what` tells what
/// they name: "row", "column", "tip".
void RequireDistinct(const NameList& list, const std::string& what);

/// The place of each name among `others`, or -1.
std::vector<int> PlacesAmong(const Names& names, const Names& others);

/// Number of the names that are among `others`.
int CountAmong(const Names& names, const Names& others);

/// What to write instead of `name`: " (near 'Poa annua')", the closest of the names or one that
/// differs in case and blanks alone; empty where none is close.
std::string NearestTo(const std::string& name, const Names& names);

/// The names that all lists have, in the order of the first. What another list lacks, or has beyond
/// the first, is told with its nearest spelling: left out where `dropUnmatched` says so, else the
/// run fails with the advice. Fails too where nothing is left. `what` they name, in the plural:
/// "OTUs".
Names MatchNames(const std::vector<NameList>& lists, const std::string& what, bool dropUnmatched,
                 const std::string& advice);
