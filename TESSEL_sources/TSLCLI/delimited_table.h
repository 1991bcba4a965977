#pragma once
/// \file
/// A table of text cells under names of rows and columns, as spreadsheets and R write it.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "TSLCLI/failure.h"

/// The cells stand row after row in one text, each ended by a zero byte: a table takes hardly more
/// room than its file.
struct DelimitedTable {
    std::string file;      ///< its name, for messages
    char separator = ',';  ///< comma, semicolon or tab
    std::vector<std::string> columnNames;
    std::vector<std::string> rowNames;
    std::vector<int> lines;           ///< of the file, from 1, at which each row begins
    std::vector<std::size_t> starts;  ///< of each row in `text`
    std::string text;
};

/// Reads a CSV file in UTF-8, with or without byte order mark and with any line ends. The separator
/// is the one by which all rows have as many cells as the header, or one more where nothing stands
/// over the names of the rows. Blank lines, rows of empty cells and empty columns without name
/// behind the others are passed over. Fails, with the line, for whatever else is no table: ragged
/// rows, misplaced quotes, missing names, names over several lines, other encodings.
DelimitedTable ReadDelimitedTable(const std::string& path);

/// The cells of a row, as many as there are columns; they point into the table.
void CellsOf(const DelimitedTable& table, int row, std::vector<std::string_view>* cells);

/// "sites.csv, line 7, column 'Poa annua' (row 'AR07')".
std::string PlaceOf(const DelimitedTable& table, int row, int column);
