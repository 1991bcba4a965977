// Any text as a table: it is refused with a line, or its cells are whole and read as the kinds of
// variables; with itself as the communities it is refused or becomes a session.

#include <algorithm>
#include <numeric>

#include "TSLCLI/command_line.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/number_cells.h"
#include "TSLCLI/utf8.h"
#include "TSLCLI/variable_kinds.h"
#include "mxlibRes/missing.h"
#include "one_file.h"

namespace {

void Require(bool holds) {
    if (!holds) std::abort();
}

void LookAt(const DelimitedTable& table) {
    Require(!table.columnNames.empty() && !table.rowNames.empty());
    std::vector<std::string_view> cells;
    for (int i = 0; i < static_cast<int>(table.rowNames.size()); i++) {
        CellsOf(table, i, &cells);
        Require(cells.size() == table.columnNames.size() && !table.rowNames[i].empty());
        for (const std::string_view cell : cells) {
            Require(ValidUtf8(cell) == cell.size());
            NumberForm form = FormOf(table);
            double number = 0;
            if (ReadNumber(cell, &form, &number) == CellContent::kNumber)
                Require(number - number == 0);
        }
    }
    std::vector<int> rows(table.rowNames.size());
    std::iota(rows.begin(), rows.end(), 0);
    for (const Variable& variable : ReadVariables(table, rows, {}, MissingCells::kAllowed))
        Require(variable.values.size() == rows.size() &&
                std::any_of(variable.values.begin(), variable.values.end(),
                            [](float x) { return !IsMissing(x); }));
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    EnterPrivateFolder();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    WriteInput("table.csv", data, size);
    try {
        LookAt(ReadDelimitedTable("table.csv"));
    } catch (const CommandFailure& failure) {
        Require(failure.what()[0] != '\0');
        return 0;
    }
    const char* const arguments[] = {"TESSEL",        "import",       "--traits",  "table.csv",
                                     "--communities", "table.csv",    "--session", "s",
                                     "--force",       "--drop-empty", "--quiet"};
    RunCommandLine(static_cast<int>(std::size(arguments)), arguments);
    return 0;
}
