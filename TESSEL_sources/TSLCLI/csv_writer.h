#pragma once
/// \file
/// Tables of results as CSV: a header, then rows; quoted where a name needs it, numbers in full,
/// each file replaced as a whole.

#include <string>
#include <string_view>
#include <vector>

#include "mxlibDim/dim.h"
#include "mxlibDim/replacement.h"

/// One table. Every row has the cells of the header. What cannot be written fails the command.
class CsvWriter {
  public:
    /// Opens `path` for a table with these names over its columns.
    CsvWriter(const std::string& path, const std::vector<std::string>& header);

    void Text(std::string_view text);
    void Integer(long long value);
    /// The shortest text that is surely read back as the same double ("%.17g"); NaN as NaN,
    /// infinities as Inf and -Inf, the missing value as an empty cell.
    void Real(double value);
    /// The same where -999 is a number like any other.
    void RealAsIs(double value);
    void EndRow();

    /// Puts the table in its place. A table without it is dropped.
    void Finish();

  private:
    void Separate();
    void Put(const char* text, const char* end);
    std::string path_;
    FileReplacement file_;
    std::size_t columns_;
    std::size_t cell_ = 0;
    std::string row_;
};

/// The whole table of a rows x cols matrix, its rows and columns under their names; `corner` stands
/// over the names of the rows.
template <class T>
void WriteMatrix(const std::string& path, const std::string& corner,
                 const std::vector<std::string>& rowNames,
                 const std::vector<std::string>& columnNames, ConstMatrix<T> matrix);
