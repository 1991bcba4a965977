#include "TSLCLI/variable_kinds.h"

#include <algorithm>
#include <cstdlib>
#include <map>
#include <utility>

#include "TSLCLI/failure.h"
#include "TSLCLI/named_items.h"
#include "TSLCLI/number_cells.h"
#include "TSLCLI/wording.h"
#include "mxlibRes/missing.h"

namespace {

struct ToldKind {
    VariableType kind;
    const char* option;
    std::vector<std::string> KindsAsTold::*names;
};
constexpr ToldKind kToldKinds[] = {{kBinaryVariable, "binary", &KindsAsTold::binary},
                                   {kNominalVariable, "nominal", &KindsAsTold::nominal},
                                   {kIntervalVariable, "quantitative", &KindsAsTold::quantitative},
                                   {kOrdinalVariable, "ordinal", &KindsAsTold::ordinal}};

/// The kind told for the column, or null.
const ToldKind* KindTold(const KindsAsTold& told, const std::string& name, const Names& columns) {
    for (const ToldKind& kind : kToldKinds) {
        const Names names = NamesAsGiven(told.*kind.names, columns);
        if (std::find(names.begin(), names.end(), name) != names.end()) return &kind;
    }
    return nullptr;
}

/// One column while it is read.
struct Column {
    const DelimitedTable& table;
    const std::vector<int>& rows;
    int at;
    std::vector<std::string> cells;
    std::vector<CellContent> contents;
    std::vector<float> numbers;
};

std::string ColumnOf(const Column& column) {
    return column.table.file + ", column " + Quoted(column.table.columnNames[column.at]);
}

int CountOf(const Column& column, CellContent content) {
    return static_cast<int>(std::count(column.contents.begin(), column.contents.end(), content));
}

/// Fails at the first cell of that content.
[[noreturn]] void FailAtFirst(const Column& column, CellContent content,
                              const std::string& problem) {
    const auto first = std::find(column.contents.begin(), column.contents.end(), content);
    const auto i = static_cast<std::size_t>(first - column.contents.begin());
    FailRun(PlaceOf(column.table, column.rows[i], column.at) + ": " + problem);
}

/// The different words, or numbers, of the cells that are not missing, in ascending order.
template <class T>
std::vector<T> Distinct(const Column& column, const std::vector<T>& values) {
    std::vector<T> distinct;
    for (std::size_t i = 0; i < values.size(); i++)
        if (column.contents[i] != CellContent::kNoValue) distinct.push_back(values[i]);
    std::sort(distinct.begin(), distinct.end());
    distinct.erase(std::unique(distinct.begin(), distinct.end()), distinct.end());
    return distinct;
}

void TakeWords(const Column& column, const ToldKind* told, Variable* variable) {
    const std::vector<std::string> words = Distinct(column, column.cells);
    const bool isTold = told != nullptr;
    if (isTold && (told->kind == kOrdinalVariable || told->kind == kIntervalVariable))
        FailAtFirst(column, CellContent::kWord,
                    std::string(told->option) +
                        " values must be numbers: give each word its number in their order");
    const bool isBinary = isTold ? told->kind == kBinaryVariable : words.size() == 2;
    if (isBinary && words.size() > 2)
        FailUsage(ColumnOf(column) + ": told to be binary, but it has " +
                  std::to_string(words.size()) + " different values");
    RequireDistinct({ColumnOf(column), &words}, "word");
    variable->kind = isBinary ? kBinaryVariable : kNominalVariable;
    variable->words = words;
    variable->firstCode = isBinary ? 0 : 1;
    const std::vector<int> places = PlacesAmong(column.cells, words);
    for (std::size_t i = 0; i < places.size(); i++)
        if (column.contents[i] != CellContent::kNoValue)
            variable->values[i] = static_cast<float>(places[i] + variable->firstCode);
}

void TakeNumbers(const Column& column, const ToldKind* told, Variable* variable) {
    const std::vector<float> numbers = Distinct(column, column.numbers);
    const bool isPresence =
        std::all_of(numbers.begin(), numbers.end(), [](float x) { return x == 0.0F || x == 1.0F; });
    if (told != nullptr)
        variable->kind = told->kind;
    else if (isPresence || numbers.size() == 2)
        variable->kind = kBinaryVariable;
    if (variable->kind == kBinaryVariable && numbers.size() > 2)
        FailUsage(ColumnOf(column) + ": told to be binary, but it has " +
                  std::to_string(numbers.size()) + " different values");
    for (std::size_t i = 0; i < column.numbers.size(); i++)
        if (column.contents[i] == CellContent::kNumber) variable->values[i] = column.numbers[i];
}

/// Values that differ beyond the digits that the session keeps become one.
void WarnOfLostDifferences(const Column& column) {
    const std::vector<float> numbers = Distinct(column, column.numbers);
    std::vector<float> kept;
    kept.reserve(numbers.size());
    for (const float number : numbers)
        kept.push_back(std::strtof(NumberText(static_cast<double>(number)).c_str(), nullptr));
    const auto left = std::unique(kept.begin(), kept.end()) - kept.begin();
    if (left < static_cast<std::ptrdiff_t>(numbers.size()))
        Warn(ColumnOf(column) + ": " + std::to_string(numbers.size()) +
             " different values become " + std::to_string(left) +
             " in the six digits that a session keeps: subtract a constant from the column");
}

/// The number that marks a missing value in a session is one in a table too.
void TakeMarks(Column& column, MissingCells missing) {
    bool isTold = false;
    for (std::size_t i = 0; i < column.numbers.size(); i++) {
        if (column.contents[i] != CellContent::kNumber || !IsMissing(column.numbers[i])) continue;
        column.contents[i] = CellContent::kNoValue;
        const std::string place = PlaceOf(column.table, column.rows[i], column.at);
        if (missing == MissingCells::kFault)
            FailRun(place +
                    ": -999 is the mark of a missing value: shift the variable by a constant, or "
                    "leave the row out of all tables where it is missing");
        if (!std::exchange(isTold, true)) Warn(place + ": -999 counts as a missing value");
    }
}

/// Fails where a cell of a column of numbers is none, or the other way round.
void RefuseFaults(const Column& column, int words, int numbers, const NumberForm& form) {
    const char* const advice = ": correct it, or tell the column with --nominal";
    if (words > numbers)
        FailAtFirst(column, CellContent::kNumber,
                    std::string("a number, where the column has words") + advice);
    for (const CellContent fault :
         {CellContent::kWord, CellContent::kTooLarge, CellContent::kOtherMark}) {
        const auto first = std::find(column.contents.begin(), column.contents.end(), fault);
        if (first == column.contents.end()) continue;
        const std::string& cell = column.cells[first - column.contents.begin()];
        FailAtFirst(column, fault,
                    ProblemOf(fault, cell, form, "") + (fault == CellContent::kWord ? advice : ""));
    }
}

Variable ReadVariable(Column& column, const ToldKind* told, MissingCells missing,
                      NumberForm* form) {
    column.numbers.assign(column.cells.size(), 0.0F);
    column.contents.clear();
    const bool wasLong = std::exchange(form->isLong, false);
    for (std::size_t i = 0; i < column.cells.size(); i++)
        column.contents.push_back(ReadNumber(column.cells[i], form, &column.numbers[i]));
    TakeMarks(column, missing);
    const int words = CountOf(column, CellContent::kWord);
    const int numbers = CountOf(column, CellContent::kNumber);
    if (CountOf(column, CellContent::kNoValue) > 0 && missing == MissingCells::kFault)
        FailAtFirst(column, CellContent::kNoValue,
                    "a missing value, which the environment must not have: fill it in or leave the "
                    "row out of all tables");
    if (numbers + words == 0 && CountOf(column, CellContent::kTooLarge) == 0)
        FailRun(ColumnOf(column) + ": every cell is missing: leave the column out");
    Variable variable;
    variable.name = column.table.columnNames[column.at];
    variable.values.assign(column.cells.size(), static_cast<float>(kMissing));
    const bool takesWords =
        told != nullptr && (told->kind == kNominalVariable || told->kind == kBinaryVariable);
    if (words > 0 && (numbers == 0 || takesWords)) {
        TakeWords(column, told, &variable);
        form->isLong = wasLong;
        return variable;
    }
    RefuseFaults(column, words, numbers, *form);
    TakeNumbers(column, told, &variable);
    if (form->isLong) WarnOfLostDifferences(column);
    form->isLong = form->isLong || wasLong;
    return variable;
}

}  // namespace

std::vector<Variable> ReadVariables(const DelimitedTable& table, const std::vector<int>& rows,
                                    const KindsAsTold& told, MissingCells missing) {
    std::vector<std::vector<std::string_view>> cells(rows.size());
    for (std::size_t i = 0; i < rows.size(); i++) CellsOf(table, rows[i], &cells[i]);
    std::vector<Variable> variables;
    NumberForm form = FormOf(table);
    for (int j = 0; j < static_cast<int>(table.columnNames.size()); j++) {
        Column column{table, rows, j, {}, {}, {}};
        for (const auto& row : cells) column.cells.emplace_back(row[j]);
        const ToldKind* const kind = KindTold(told, table.columnNames[j], table.columnNames);
        variables.push_back(ReadVariable(column, kind, missing, &form));
    }
    TellIfLong(form, table);
    return variables;
}

void CheckKindsAsTold(const KindsAsTold& told, const DelimitedTable& traits,
                      const DelimitedTable* environment) {
    Names known = traits.columnNames;
    if (environment != nullptr)
        known.insert(known.end(), environment->columnNames.begin(), environment->columnNames.end());
    std::map<std::string, const char*> seen;
    for (const ToldKind& kind : kToldKinds)
        for (const std::string& name : NamesAsGiven(told.*kind.names, known)) {
            if (std::find(known.begin(), known.end(), name) == known.end())
                FailUsage(std::string("--") + kind.option + ": no trait or variable is named " +
                          Quoted(name) + NearestTo(name, known));
            const auto [earlier, isNew] = seen.emplace(name, kind.option);
            if (!isNew && earlier->second != kind.option)
                FailUsage(Quoted(name) + " is told to be " + earlier->second + " and " +
                          kind.option + ": tell one kind");
        }
}

const char* KindName(int kind) {
    for (const ToldKind& told : kToldKinds)
        if (told.kind == kind) return told.option;
    return "of no kind";
}
