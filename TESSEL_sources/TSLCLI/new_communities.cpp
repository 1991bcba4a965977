#include "TSLCLI/new_communities.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "TSLCLI/delimited_table.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/named_items.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/dataset.h"
#include "TSLIFFMT/community_groups.h"
#include "mxlibDim/text.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"

namespace {

enum VariableType : int { kBinary = 1, kNominal = 2 };

std::string Cell(const DelimitedTable& table, int row, int column) {
    std::vector<std::string_view> cells;
    CellsOf(table, row, &cells);
    return std::string(cells[static_cast<std::size_t>(column)]);
}

/// Each community has to stand in the table once.
void RequireAllCommunities(const DelimitedTable& table, const Selection& found, const Names& names,
                           const char* advice) {
    Names missing;
    for (int c = 0; c < ncsm; c++) {
        const auto times = std::count(found.begin(), found.end(), c);
        const std::string& name = names[static_cast<std::size_t>(c)];
        if (times > 1) FailRun(table.file + ": the community " + Quoted(name) + " stands twice");
        if (times == 0) missing.push_back(name);
    }
    if (missing.empty()) return;
    FailRun(table.file + ": communities of the session are missing: " + Listed(missing) + ": " +
            advice);
}

/// Names that fit are the labels of the groups; else they have the numbers from 1.
void LabelGroups(const Names& groups) {
    nGroups = static_cast<int>(groups.size());
    NumberGroups(nGroups, grLabel);
    const bool fit = std::all_of(groups.begin(), groups.end(), [](const std::string& name) {
        return name.size() <= kGroupLabelLength && name.find_first_of(" \t") == std::string::npos;
    });
    for (std::size_t g = 0; fit && g < groups.size(); g++)
        CopyText(grLabel[g], kGroupLabelLength, groups[g].c_str());
}

/// The groups in the order in which the table names them first.
Names PoolByTable(const std::string& file, const FullNames& names) {
    const DelimitedTable table = ReadDelimitedTable(file);
    if (table.columnNames.size() != 1)
        FailRun(file + ": give one column behind the communities, their groups");
    const Selection found =
        PlacesOfNames(file, "community", table.rowNames, names.communities, reLabel);
    RequireAllCommunities(table, found, names.communities,
                          "put them into groups, or derive a session without them first");
    PrepareGroups();
    Names groups;
    for (std::size_t row = 0; row < found.size(); row++) {
        const std::string group = Cell(table, static_cast<int>(row), 0);
        if (group.empty())
            FailRun(PlaceOf(table, static_cast<int>(row), 0) + ": the group is missing");
        const auto place = std::find(groups.begin(), groups.end(), group);
        groupRel[found[row]] = static_cast<int>(place - groups.begin()) + 1;
        if (place == groups.end()) groups.push_back(group);
    }
    LabelGroups(groups);
    return groups;
}

/// The first communities of all pairs come before the second ones.
Names TakePairsOfTable(const std::string& file, const FullNames& names, Selection* communities) {
    const DelimitedTable table = ReadDelimitedTable(file);
    communities->clear();
    for (const char* column : {"first", "second"}) {
        const std::vector<int> place = PlacesAmong({column}, table.columnNames);
        if (table.columnNames.size() != 2 || place[0] < 0)
            FailRun(file + ": give two columns, 'first' and 'second', behind the new names");
        Names wanted;
        for (std::size_t row = 0; row < table.rowNames.size(); row++)
            wanted.push_back(Cell(table, static_cast<int>(row), place[0]));
        for (const int c : PlacesOfNames(file, "community", wanted, names.communities, reLabel))
            communities->push_back(c);
    }
    RequireAllCommunities(table, *communities, names.communities,
                          "give them partners, or derive a session without them first");
    PrepareGroups();
    const int pairs = static_cast<int>(table.rowNames.size());
    for (int c = 0; c < ncsm; c++) groupRel[c] = c % pairs + 1;
    LabelGroups(table.rowNames);
    return table.rowNames;
}

Names AverageAlong(int window, const FullNames& names) {
    if (window % 2 != 0 || window < 2 || window > ncsm)
        FailUsage("--moving-window: an even number from 2 to the number of communities, " +
                  std::to_string(ncsm));
    SMWSize = window / 2;
    return {names.communities.begin(), names.communities.end() - (SMWSize - 1)};
}

std::string NamesOfType(int type, const FullNames& names, const Derivation& derivation) {
    Names variables;
    for (std::size_t k = 0; k < derivation.variables.size(); k++)
        if (envVarType[derivation.variables[k]] == type) variables.push_back(names.variables[k]);
    return Listed(variables);
}

void RequireNoMissingValues(const FullNames& names, const Derivation& derivation) {
    const auto fail = [&](int c, const std::string& of) {
        FailRun("the value of " + of + " in the community " +
                Quoted(names.communities[static_cast<std::size_t>(c)]) +
                " is missing and would count as -999: derive a session without the one or the "
                "other first");
    };
    for (const int i : derivation.otus)
        for (int c = 0; c < ncsm; c++)
            if (cadat[i][c] == kMissing) fail(c, Quoted(names.otus[static_cast<std::size_t>(i)]));
    for (std::size_t k = 0; k < derivation.variables.size(); k++)
        for (int c = 0; c < ncsm; c++)
            if (env[c][derivation.variables[k]] == kMissing) fail(c, Quoted(names.variables[k]));
}

void TellOfVariables(const FullNames& names, const Derivation& derivation) {
    const std::string nominal = NamesOfType(kNominal, names, derivation);
    const std::string binary = NamesOfType(kBinary, names, derivation);
    if (derivation.communityOption == CommunityOption::kChange) {
        if (!nominal.empty()) Warn("nominal variables become binary, 1 for any change: " + nominal);
        return;
    }
    if (!nominal.empty())
        FailRun("nominal variables have no averages: " + nominal +
                ": leave them out with --variables");
    if (!binary.empty()) Warn("binary variables become quantitative, as averages: " + binary);
}

}  // namespace

void AddNewCommunities(CLI::App& command, CLI::Option* communities, NewCommunities* options) {
    auto* const pool =
        command
            .add_option("--pool", options->pool,
                        "File of communities and their groups: the new communities are the "
                        "means of the groups")
            ->type_name("FILE");
    auto* const change =
        command
            .add_option("--change", options->change,
                        "File of new names and the columns first and second, communities both: "
                        "the new communities are second less first")
            ->type_name("FILE");
    auto* const window =
        command
            .add_option("--moving-window", options->window,
                        "Even size of the window of an edge detection along the series of the "
                        "communities: the new ones are means of half as many")
            ->type_name("NUMBER");
    pool->excludes(change)->excludes(window)->excludes(communities);
    change->excludes(window)->excludes(communities);
    window->excludes(communities);
}

Names SettleNewCommunities(const NewCommunities& options, const FullNames& names,
                           Derivation* derivation) {
    if (!options.pool.empty())
        derivation->communityOption = CommunityOption::kPool;
    else if (!options.change.empty())
        derivation->communityOption = CommunityOption::kChange;
    else if (options.window != 0)
        derivation->communityOption = CommunityOption::kMovingWindow;
    else
        return Picked(names.communities, derivation->communities);
    RequireNoMissingValues(names, *derivation);
    TellOfVariables(names, *derivation);
    if (!options.pool.empty()) return PoolByTable(options.pool, names);
    if (!options.change.empty())
        return TakePairsOfTable(options.change, names, &derivation->communities);
    return AverageAlong(options.window, names);
}
