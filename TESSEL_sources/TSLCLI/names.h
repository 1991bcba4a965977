#pragma once
/// \file
/// The full names behind the ten places of the session's labels, in a table beside the session
/// (sessionName followed by kNamesExt). Its columns: kind ("OTU", "trait", "community", "variable",
/// or a code of a trait or variable), label, code, name.

#include <string>
#include <vector>

inline constexpr const char* kNamesExt = "Names.csv";

/// Full names in the order of the data set. `otus` are those of the rows of B.
struct FullNames {
    std::vector<std::string> otus, traits, communities, variables;
    /// For each trait or variable that came as words: what its codes stand for.
    struct Codes {
        std::string name;  ///< of the trait or variable
        int first = 1;     ///< code of the first word; the others follow
        std::vector<std::string> words;
    };
    std::vector<Codes> traitCodes, variableCodes;
    bool isFromTable = false;  ///< they come from the tables that were imported
};

/// Distinct labels of at most kLabelLength bytes for the names: blanks become underscores, longer
/// ones are shortened, numbered where that makes two alike. No character of UTF-8 is parted.
std::vector<std::string> LabelsFor(const std::vector<std::string>& names);

/// Distinct names of at most `bytes` bytes: names that are longer are cut, and numbered where that
/// makes two alike. Names that are short enough and distinct stay.
std::vector<std::string> CutNames(const std::vector<std::string>& names, std::size_t bytes);

/// The name of a species of the session behind its label, which the program made or a file had;
/// without the blanks at its end.
std::string NameOfSpecies(std::string species);

/// Writes the table of the session `session`, which must be the data set in memory.
void WriteNames(const std::string& session, const FullNames& names);

/// The full names of the data set in memory: from the session's table where there is one and its
/// labels are those of the data set; else the labels, and for the OTUs the names of the species
/// where each OTU has one of its own, or OTU1, OTU2, ...
FullNames ReadNames(const std::string& session);
