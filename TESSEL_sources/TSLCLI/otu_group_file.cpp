#include "TSLCLI/otu_group_file.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <set>
#include <sstream>

#include "TSLCLI/delimited_table.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/input_file.h"
#include "TSLCLI/name_matching.h"
#include "TSLCLI/wording.h"

namespace {

std::optional<int> IntegerOf(std::string_view text) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end) return std::nullopt;
    return number;
}

/// The integers of a text that holds nothing else.
std::optional<std::vector<int>> IntegersOf(const std::string& text) {
    std::istringstream words(text);
    std::vector<int> numbers;
    for (std::string word; words >> word;) {
        const std::optional<int> number = IntegerOf(word);
        if (!number) return std::nullopt;
        numbers.push_back(*number);
    }
    return numbers;
}

/// The first of the names that are not among the others, and how many more; empty where there are
/// none.
std::string NotAmong(const Names& names, const Names& others) {
    const std::vector<int> places = PlacesAmong(names, others);
    const auto missing = std::find(places.begin(), places.end(), -1);
    if (missing == places.end()) return "";
    const std::string& name = names[static_cast<std::size_t>(missing - places.begin())];
    const auto count = std::count(missing, places.end(), -1);
    return Quoted(name) + NearestTo(name, others) +
           (count > 1 ? " and " + std::to_string(count - 1) + " more" : "");
}

/// The words of the only column, in the order of the OTUs.
Names ReadColumn(const std::string& path, const std::string& what, const Names& otus) {
    const DelimitedTable table = ReadDelimitedTable(path);
    if (table.columnNames.size() != 1)
        FailRun(path + ": " + what + " are one column behind the names of the OTUs, not " +
                std::to_string(table.columnNames.size()));
    RequireDistinct({path, &table.rowNames}, "row");
    const std::string without = NotAmong(otus, table.rowNames);
    if (!without.empty()) FailRun(path + ": no row for the OTU " + without);
    const std::string left = NotAmong(table.rowNames, otus);
    if (!left.empty()) Warn(path + ": rows left aside, for the session has no OTU " + left);
    Names groups;
    std::vector<std::string_view> cells;
    for (const int row : PlacesAmong(otus, table.rowNames)) {
        CellsOf(table, row, &cells);
        if (cells[0].empty()) FailRun(PlaceOf(table, row, 0) + ": give the OTU a group");
        groups.emplace_back(cells[0]);
    }
    return groups;
}

}  // namespace

OTUGroups ReadOTUGroups(const std::string& path, const std::string& what,
                        const std::vector<std::string>& otus) {
    if (const auto numbers = IntegersOf(ReadWhole(path))) {
        if (numbers->size() != otus.size())
            FailRun(path + ": " + std::to_string(numbers->size()) + " numbers of " + what +
                    " for " + std::to_string(otus.size()) + " OTUs: give one for each");
        return {*numbers, {}};
    }
    const Names words = ReadColumn(path, what, otus);
    OTUGroups groups;
    for (const std::string& word : words)
        if (const std::optional<int> number = IntegerOf(word)) groups.group.push_back(*number);
    if (groups.group.size() == words.size()) return groups;
    const std::set<std::string> distinct(words.begin(), words.end());
    groups = {{}, {distinct.begin(), distinct.end()}};
    for (const int place : PlacesAmong(words, groups.words)) groups.group.push_back(place + 1);
    return groups;
}
