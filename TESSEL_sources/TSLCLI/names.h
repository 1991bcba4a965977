#pragma once
/// \file
/// The full names behind the ten places of the session's labels, in a table beside the session
/// (sessionName followed by namesExt): kind, label, name, a row each.

#include <string>
#include <vector>

inline constexpr const char* kNamesExt = "Names.csv";

/// Full names in the order of the data set. `otus` are those of the rows of B.
struct FullNames {
    std::vector<std::string> otus, traits, communities, variables;
    /// For each nominal trait or variable that came as words: what the codes 1, 2, ... stand for.
    struct Codes {
        std::string name;  ///< of the trait or variable
        std::vector<std::string> words;
    };
    std::vector<Codes> traitCodes, variableCodes;
};

/// Distinct labels of at most kLabelLength characters for the names: blanks become underscores,
/// longer ones are shortened. Labels of bytes, never parting a character of UTF-8.
std::vector<std::string> LabelsFor(const std::vector<std::string>& names);

/// Writes the table of the session `session`.
void WriteNames(const std::string& session, const FullNames& names);

/// The full names of the data set in memory: from the session's table where there is one and its
/// labels are those of the data set; else the labels, and for the OTUs the names of the species
/// where each OTU has one of its own, or OTU1, OTU2, ...
FullNames ReadNames(const std::string& session);
