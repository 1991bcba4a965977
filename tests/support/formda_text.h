#pragma once
/// \file
/// The text of a formatted data file around given tables.

#include <sstream>
#include <string>
#include <vector>

#include "support/text.h"

using Rows = std::vector<std::vector<double>>;

/// A data set; labels, types and blocks as they stand in the file.
struct FormdaText {
    Rows B = {}, W = {}, E = {};  ///< OTUs x traits, OTUs x communities, communities x variables
    std::string traitTypes = {}, states = {}, traitLabels = {}, communityLabels = {};
    std::string kindOfE = {}, envLabels = {};  ///< kind and types of the variables
    std::string species = "0\n", phylogeny = "0\n";
};

inline std::string TextOf(const Rows& rows) {
    std::ostringstream text;
    for (const auto& row : rows) {
        for (const double x : row) text << x << "\t";
        text << "\n";
    }
    return text.str();
}

inline Rows Transposed(const Rows& rows) {
    Rows turned(rows.empty() ? 0 : rows[0].size());
    for (const auto& row : rows)
        for (std::size_t j = 0; j < row.size(); j++) turned[j].push_back(row[j]);
    return turned;
}

inline std::string FormdaOf(const FormdaText& data) {
    const std::size_t traits = data.B[0].size(), communities = data.W[0].size();
    const std::size_t variables = data.E.empty() ? 0 : data.E[0].size();
    const auto each = [](const std::string& given, const char* usual, std::size_t n) {
        return (given.empty() ? Repeated(usual, n) : given) + "\n";
    };
    std::ostringstream text;
    text << "Tiny data\n" << traits << "\n" << each(data.traitLabels, "t ", traits);
    text << each(data.traitTypes, "3 ", traits) << each("", "0 ", traits)
         << each(data.states, "2 ", traits);
    text << communities << "\n" << each(data.communityLabels, "c ", communities);
    text << data.B.size() << "\n" << each("", "0 ", communities) << "0 0 0 0 0 0 0\n\n25Jun2016\n";
    text << TextOf(data.B) << "\n" << TextOf(data.W) << "\n" << variables << "\n";
    if (variables > 0)
        text << "97Sep08\n"
             << (data.kindOfE.empty() ? "2\n" : "") << each(data.kindOfE, "3 ", variables)
             << each(data.envLabels, "v ", variables) << "E.txt\n"
             << TextOf(Transposed(data.E));
    text << data.species << "SMW 1\n" << data.phylogeny << "0\n";
    return text.str();
}
