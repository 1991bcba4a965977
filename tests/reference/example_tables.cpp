#include "reference/example_tables.h"

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>
#include <stdexcept>

namespace {

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

}  // namespace

ExampleTables ReadExampleTables(const std::string& folder, const std::string& environment) {
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
