#pragma once
/// \file
/// The raw tables of an example folder, read as its README tells.

#include <string>
#include <vector>

struct ExampleTables {
    using Rows = std::vector<std::vector<double>>;
    int communities;
    int OTUs;
    int traits;
    int variables;
    int types;                ///< types of OTUs
    Rows B;                   ///< OTUs by traits
    Rows W;                   ///< communities by OTUs
    Rows E;                   ///< communities by variables
    Rows F;                   ///< distances between OTUs, the largest 1; empty without phylogeny
    std::vector<int> labels;  ///< type of each OTU
    std::vector<int> traitTypes;
    std::vector<int> variableTypes;
    std::vector<int> traitGroups;  ///< empty without groups
};

/// The tables of `folder`, E from the file `environment`.txt.
ExampleTables ReadExampleTables(const std::string& folder, const std::string& environment = "E");

/// Weight of each trait: one over the size of its group, 1 without groups.
std::vector<float> TraitWeights(const ExampleTables& tables);
