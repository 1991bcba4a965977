#include "example_data.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

#include "mxlibRes/standardisation.h"

namespace {

/// The raw tables of an example folder, as its README tells.
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

/// The numbers that follow `key` on its line of the README; none without that line.
std::vector<int> Field(const std::string& folder, const std::string& key) {
    std::ifstream readme(folder + "/README.txt");
    std::vector<int> numbers;
    for (std::string line; std::getline(readme, line);) {
        if (line.rfind(key + ": ", 0) != 0) continue;
        std::istringstream words(line.substr(key.size() + 2));
        for (int number; words >> number;) numbers.push_back(number);
    }
    return numbers;
}

int Size(const std::string& folder, const std::string& key) {
    const std::vector<int> numbers = Field(folder, key);
    if (numbers.size() != 1) throw std::runtime_error("no " + key + " in the README of " + folder);
    return numbers[0];
}

ExampleTables::Rows Table(const std::string& file, int rows, int cols) {
    std::ifstream stream(file);
    ExampleTables::Rows table(rows, std::vector<double>(cols));
    for (auto& row : table)
        for (double& x : row)
            if (!(stream >> x)) throw std::runtime_error("cannot read " + file);
    return table;
}

ExampleTables ReadExampleTables(const std::string& folder) {
    const std::string environment = "E";
    ExampleTables t;
    t.communities = Size(folder, "communities");
    t.OTUs = Size(folder, "OTUs");
    t.traits = Size(folder, "traits");
    t.variables = Size(folder, environment + " variables");
    t.B = Table(folder + "/B.txt", t.OTUs, t.traits);
    t.W = Table(folder + "/W.txt", t.communities, t.OTUs);
    t.E = Table(folder + "/" + environment + ".txt", t.communities, t.variables);
    const ExampleTables::Rows labels = Table(folder + "/types.txt", 1, t.OTUs);
    t.labels.assign(labels[0].begin(), labels[0].end());
    t.types = int(std::set<int>(t.labels.begin(), t.labels.end()).size());
    t.traitTypes = Field(folder, "trait types");
    t.variableTypes = Field(folder, environment + " types");
    t.traitGroups = Field(folder, "trait groups");
    if (std::ifstream(folder + "/F.txt")) {
        t.F = Table(folder + "/F.txt", t.OTUs, t.OTUs);
        double largest = 0.0;
        for (const auto& row : t.F) largest = std::max(largest, *std::ranges::max_element(row));
        for (auto& row : t.F)
            for (double& x : row) x /= largest;
    }
    return t;
}

std::vector<float> TraitWeights(const ExampleTables& tables) {
    std::vector<float> weights(tables.traits, 1.0F);
    for (std::size_t k = 0; k < tables.traitGroups.size(); k++)
        weights[k] /= float(std::ranges::count(tables.traitGroups, tables.traitGroups[k]));
    return weights;
}

template <class T>
void CopyRows(const ExampleTables::Rows& rows, T** to) {
    for (std::size_t i = 0; i < rows.size(); i++) std::copy(rows[i].begin(), rows[i].end(), to[i]);
}

}  // namespace

std::unique_ptr<PermTestData> ExamplePermTestData(const std::string& examples,
                                                  const std::string& name, bool phylogeny,
                                                  int opt_ro) {
    const ExampleTables tables = ReadExampleTables(examples + "/" + name);
    auto data = EmptyPermTestData({tables.communities, tables.OTUs, tables.traits, tables.variables,
                                   tables.types, phylogeny ? tables.types : 0, 0.0},
                                  opt_ro);
    data->traitTypes = tables.traitTypes;
    data->traitWeights = TraitWeights(tables);
    data->typeLabels = data->taxonLabels = tables.labels;
    PermTest_FunctionalPhyl_Correl_Input& in = data->record;
    CopyRows(tables.B, in.B);
    CopyRows(tables.W, in.W);
    CopyRows(tables.E, in.E);
    CorrAdj(in.nCommunities, in.nEnv, in.E, in.E);
    UnitSumRowsAdjMV(in.nCommunities, in.nOTUs, in.W, in.W);
    if (phylogeny && tables.F.empty()) {
        std::mt19937 random(1);
        RandomPhylogeny(in.nOTUs, &random, in.Sf);
    }
    if (phylogeny) CopyRows(tables.F, in.Sf);
    DeriveFromTables(data.get());
    return data;
}
