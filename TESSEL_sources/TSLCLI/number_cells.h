#pragma once
/// \file
/// Cells of text as numbers.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "TSLCLI/delimited_table.h"

enum class CellContent {
    kNumber,
    kNoValue,   ///< empty, NA, #N/A, NaN
    kWord,      ///< anything else
    kTooLarge,  ///< infinite, or beyond the range of the type
    kOtherMark  ///< a number with another decimal mark than those before it
};

/// How the numbers of one table are written; learnt while they are read.
struct NumberForm {
    bool mayHaveCommas = false;  ///< where no comma parts the cells, a decimal comma is understood
    char mark = '\0';            ///< the first decimal mark met
    bool isLong = false;         ///< a number of more digits than the session keeps was met
};

NumberForm FormOf(const DelimitedTable& table);

/// Tells that numbers of the table lose digits, if any do.
void TellIfLong(const NumberForm& form, const DelimitedTable& table);

/// Reads a cell as a number of type float or double; `number` is written only for a number.
template <class T>
CellContent ReadNumber(std::string_view cell, NumberForm* form, T* number);

/// What is wrong with a cell that should be a number, and what to do; `advice` where it is missing.
std::string ProblemOf(CellContent content, std::string_view cell, const NumberForm& form,
                      const std::string& advice);

/// A number as messages tell it, with at most six digits.
std::string NumberText(double number);

/// The first fault among the cells of a table, and how many there are.
class CellFaults {
  public:
    explicit CellFaults(const DelimitedTable& table) : table_(table) {}
    void Add(int row, int column, const std::string& problem);
    /// Fails with the first.
    void FailIfAny() const;

  private:
    const DelimitedTable& table_;
    std::string first_;
    std::ptrdiff_t count_ = 0;
};

/// Hands each number, from row rows[i] and column columns[j] of the table, to take(i, j, number),
/// which gives null or what is wrong with it. Cells of which `take` sees nothing are faults, a
/// missing one with the advice. Fails, with the first fault, when all have been read.
template <class T, class Take>
NumberForm ForEachNumber(const DelimitedTable& table, const std::vector<int>& rows,
                         const std::vector<int>& columns, const std::string& advice,
                         const Take& take) {
    NumberForm form = FormOf(table);
    CellFaults faults(table);
    std::vector<std::string_view> cells;
    for (int i = 0; i < static_cast<int>(rows.size()); i++) {
        CellsOf(table, rows[i], &cells);
        for (int j = 0; j < static_cast<int>(columns.size()); j++) {
            T number = 0;
            const CellContent content = ReadNumber(cells[columns[j]], &form, &number);
            if (content != CellContent::kNumber) {
                faults.Add(rows[i], columns[j],
                           ProblemOf(content, cells[columns[j]], form, advice));
            } else if (const char* const problem = take(i, j, number)) {
                faults.Add(rows[i], columns[j],
                           std::string(cells[columns[j]]).append(" ").append(problem));
            }
        }
    }
    faults.FailIfAny();
    return form;
}
