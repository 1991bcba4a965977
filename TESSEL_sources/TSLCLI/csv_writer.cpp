#include "TSLCLI/csv_writer.h"

#include <cassert>
#include <charconv>
#include <cmath>

#include "TSLCLI/failure.h"
#include "mxlibDim/real_text.h"
#include "mxlibRes/missing.h"

CsvWriter::CsvWriter(const std::string& path, const std::vector<std::string>& header)
    : path_(path), file_(path.c_str(), nullptr), columns_(header.size()) {
    if (file_ == nullptr) FailRun(path + ": the table cannot be written there");
    for (const std::string& name : header) Text(name);
    EndRow();
}

void CsvWriter::Separate() {
    if (cell_++ > 0) row_.push_back(',');
}

void CsvWriter::Put(const char* text, const char* end) {
    Separate();
    row_.append(text, end);
}

void CsvWriter::Text(std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos)
        return Put(text.data(), text.data() + text.size());
    Separate();
    row_.push_back('"');
    for (const char c : text) {
        if (c == '"') row_.push_back('"');
        row_.push_back(c);
    }
    row_.push_back('"');
}

void CsvWriter::Integer(long long value) {
    char text[32];
    Put(text, std::to_chars(text, text + sizeof text, value).ptr);
}

void CsvWriter::RealAsIs(double value) {
    if (std::isnan(value)) return Text("NaN");
    if (std::isinf(value)) return Text(value > 0 ? "Inf" : "-Inf");
    char text[32];
    Put(text, WriteRealInFull(text, value));
}

void CsvWriter::Real(double value) {
    if (value == kMissing)
        Separate();
    else
        RealAsIs(value);
}

void CsvWriter::EndRow() {
    assert(cell_ == columns_);
    cell_ = 0;
    row_.push_back('\n');
    std::fwrite(row_.data(), 1, row_.size(), file_);
    row_.clear();
}

void CsvWriter::Finish() {
    if (!file_.Commit())
        FailRun(path_ +
                ": the table could not be written whole: free the disk or choose another folder");
}

template <class T>
void WriteMatrix(const std::string& path, const std::string& corner,
                 const std::vector<std::string>& rowNames,
                 const std::vector<std::string>& columnNames, ConstMatrix<T> matrix) {
    std::vector<std::string> header = {corner};
    header.insert(header.end(), columnNames.begin(), columnNames.end());
    CsvWriter table(path, header);
    for (std::size_t i = 0; i < rowNames.size(); i++) {
        table.Text(rowNames[i]);
        for (std::size_t j = 0; j < columnNames.size(); j++)
            table.Real(static_cast<double>(matrix[i][j]));
        table.EndRow();
    }
    table.Finish();
}

template void WriteMatrix(const std::string&, const std::string&, const std::vector<std::string>&,
                          const std::vector<std::string>&, ConstMatrix<float>);
template void WriteMatrix(const std::string&, const std::string&, const std::vector<std::string>&,
                          const std::vector<std::string>&, ConstMatrix<double>);
