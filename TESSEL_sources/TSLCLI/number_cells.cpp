#include "TSLCLI/number_cells.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <system_error>

#include "TSLCLI/wording.h"
#include "mxlibDim/real_text.h"

namespace {

constexpr int kKeptDigits = 6;  // of the formatted data file

bool IsMissingCell(std::string_view cell) {
    static constexpr std::string_view kMarks[] = {"", "NA", "#N/A", "NaN", "nan", "NAN"};
    return std::find(std::begin(kMarks), std::end(kMarks), cell) != std::end(kMarks);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Whether more digits than are kept lie between the first and the last that is not 0.
bool HasLostDigits(std::string_view number) {
    if (number.size() <= kKeptDigits) return false;
    int digits = 0, zeros = 0;
    for (const char c : number.substr(0, number.find_first_of("eE"))) {
        if (!IsDigit(c)) continue;
        if (c == '0') {
            zeros += digits > 0 ? 1 : 0;
            continue;
        }
        digits += zeros + 1;
        zeros = 0;
    }
    return digits > kKeptDigits;
}

/// A number with a decimal point, all of the text.
template <class T>
CellContent Convert(std::string_view text, T* number) {
    // A plus sign is the one thing that the conversion does not know.
    if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
    const char* const end = text.data() + text.size();
    T value = 0;
    const auto [read, error] = ReadReal(text.data(), end, value);
    if (read != end || error == std::errc::invalid_argument) return CellContent::kWord;
    if (error == std::errc::result_out_of_range) {
        // Too small is as good as 0.
        double wide = 0;
        const bool isSmall = ReadReal(text.data(), end, wide).ec == std::errc()
                                 ? std::abs(wide) < 1.0
                                 : text.find("e-") != text.npos || text.find("E-") != text.npos;
        if (!isSmall) return CellContent::kTooLarge;
        value = 0;
    }
    if (std::isnan(value)) return CellContent::kWord;
    if (std::isinf(value)) return CellContent::kTooLarge;
    *number = value;
    return CellContent::kNumber;
}

}  // namespace

NumberForm FormOf(const DelimitedTable& table) {
    NumberForm form;
    form.mayHaveCommas = table.separator != ',';
    return form;
}

void TellIfLong(const NumberForm& form, const DelimitedTable& table) {
    if (form.isLong) Tell(table.file + ": numbers of more than six digits are kept to six digits");
}

template <class T>
CellContent ReadNumber(std::string_view cell, NumberForm* form, T* number) {
    if (IsMissingCell(cell)) return CellContent::kNoValue;
    const std::size_t at = cell.find_first_of(form->mayHaveCommas ? ".," : ".");
    CellContent content = CellContent::kWord;
    if (at != std::string_view::npos && cell[at] == ',') {
        std::string pointed(cell);
        pointed[at] = '.';
        content = Convert<T>(pointed, number);
    } else {
        content = Convert<T>(cell, number);
    }
    if (content != CellContent::kNumber) return content;
    if (at != std::string_view::npos) {
        if (form->mark == '\0') form->mark = cell[at];
        if (form->mark != cell[at]) return CellContent::kOtherMark;
    }
    form->isLong = form->isLong || HasLostDigits(cell);
    return content;
}

template CellContent ReadNumber(std::string_view, NumberForm*, float*);
template CellContent ReadNumber(std::string_view, NumberForm*, double*);

std::string ProblemOf(CellContent content, std::string_view cell, const NumberForm& form,
                      const std::string& advice) {
    switch (content) {
        case CellContent::kNoValue:
            return (cell.empty() ? "the cell is empty" : "missing value " + std::string(cell)) +
                   ": " + advice;
        case CellContent::kTooLarge:
            return Quoted(cell) + " is infinite or too large: give a finite number";
        case CellContent::kOtherMark:
            return Quoted(cell) +
                   " has another decimal mark than the numbers before it: use one in the whole "
                   "table";
        default:
            return Quoted(cell) + " is no number" +
                   (!form.mayHaveCommas && cell.find(',') != std::string_view::npos
                        ? " (decimal commas need ; or tabs between the cells)"
                        : "");
    }
}

std::string NumberText(double number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*g", kKeptDigits, number);
    return text;
}

void CellFaults::Add(int row, int column, const std::string& problem) {
    if (count_++ == 0) first_ = PlaceOf(table_, row, column) + ": " + problem;
}

void CellFaults::FailIfAny() const {
    if (count_ == 0) return;
    FailRun(count_ == 1 ? first_
                        : first_ + " (and " + std::to_string(count_ - 1) +
                              " more such cells in this table)");
}
