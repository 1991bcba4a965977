#include "TSLCLI/csv_writer.h"

#include <cassert>
#include <cmath>

#include "TSLCLI/failure.h"
#include "mxlibRes/missing.h"

CsvWriter::CsvWriter(const std::string& path, const std::vector<std::string>& header)
    : path_(path), file_(path.c_str(), nullptr), columns_(header.size()) {
    if (file_ == nullptr) FailRun(path + ": the table cannot be written there");
    for (const std::string& name : header) Text(name);
    EndRow();
}

void CsvWriter::Separate() {
    if (cell_++ > 0) std::fputc(',', file_);
}

void CsvWriter::Text(std::string_view text) {
    Separate();
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        std::fwrite(text.data(), 1, text.size(), file_);
        return;
    }
    std::fputc('"', file_);
    for (const char c : text) {
        if (c == '"') std::fputc('"', file_);
        std::fputc(c, file_);
    }
    std::fputc('"', file_);
}

void CsvWriter::Integer(long long value) {
    Separate();
    std::fprintf(file_, "%lld", value);
}

void CsvWriter::RealAsIs(double value) {
    Separate();
    if (std::isnan(value))
        std::fputs("NaN", file_);
    else if (std::isinf(value))
        std::fputs(value > 0 ? "Inf" : "-Inf", file_);
    else
        std::fprintf(file_, "%.17g", value);
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
    std::fputc('\n', file_);
}

void CsvWriter::Finish() {
    if (!file_.Commit()) FailRun(path_ + ": the table could not be written whole");
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
