#include "TSLCLI/data_tables.h"

#include <algorithm>

#include "TSLCLI/csv_writer.h"
#include "TSLCLI/failure.h"
#include "TSLCLI/variable_kinds.h"
#include "TSLGLOB/dataset.h"
#include "mxlibDim/file_path.h"

namespace {

using Names = std::vector<std::string>;
using Codes = std::vector<FullNames::Codes>;

/// Rows by columns that may hold codes of words.
struct CodedTable {
    const char* corner;
    const Names& rows;
    const Names& columns;
    const float* const* values;
    const Codes& codes;
};

void PutCell(float value, const FullNames::Codes* codes, CsvWriter* table) {
    const int word = codes == nullptr ? -1 : static_cast<int>(value) - codes->first;
    if (word >= 0 && word < static_cast<int>(codes->words.size()))
        table->Text(codes->words[word]);
    else
        table->Real(static_cast<double>(value));
}

void WriteCoded(const std::string& path, const CodedTable& t) {
    Names header = {t.corner};
    header.insert(header.end(), t.columns.begin(), t.columns.end());
    CsvWriter table(path, header);
    std::vector<const FullNames::Codes*> codes;
    for (const std::string& column : t.columns) {
        const auto found = std::find_if(t.codes.begin(), t.codes.end(),
                                        [&](const auto& c) { return c.name == column; });
        codes.push_back(found == t.codes.end() ? nullptr : &*found);
    }
    for (std::size_t i = 0; i < t.rows.size(); i++) {
        table.Text(t.rows[i]);
        for (std::size_t j = 0; j < t.columns.size(); j++)
            PutCell(t.values[i][j], codes[j], &table);
        table.EndRow();
    }
    table.Finish();
}

void WriteCommunities(const std::string& path, const FullNames& names) {
    Names header = {"community"};
    header.insert(header.end(), names.otus.begin(), names.otus.end());
    CsvWriter table(path, header);
    for (int c = 0; c < ncsm; c++) {
        table.Text(names.communities[c]);
        for (int i = 0; i < tcst; i++) table.Real(static_cast<double>(cadat[i][c]));
        table.EndRow();
    }
    table.Finish();
}

void WriteKinds(const std::string& path, const FullNames& names) {
    CsvWriter table(path, {"table", "name", "kind"});
    const auto put = [&](const char* of, const Names& columns, const int* kinds) {
        for (std::size_t k = 0; k < columns.size(); k++) {
            table.Text(of);
            table.Text(columns[k]);
            table.Text(KindName(kinds[k]));
            table.EndRow();
        }
    };
    put("traits", names.traits, chtype);
    put("environment", names.variables, envVarType);
    table.Finish();
}

}  // namespace

void WriteDataTables(const std::string& folder, const FullNames& names) {
    std::error_code error;
    std::filesystem::create_directories(PathOf(folder), error);
    const auto file = [&](const char* name) { return NameOf(PathOf(folder) / name); };
    if (error) FailRun(folder + ": the folder for the tables cannot be made: give another one");
    WriteCoded(file("traits.csv"), {"OTU", names.otus, names.traits, csm_Float, names.traitCodes});
    WriteCommunities(file("communities.csv"), names);
    if (nenv > 0)
        WriteCoded(file("environment.csv"),
                   {"community", names.communities, names.variables, env, names.variableCodes});
    if (hasPhylogeny != 0 && phylogenyRese != nullptr)
        WriteMatrix<double>(file("phylogeny.csv"), "OTU", names.otus, names.otus, phylogenyRese);
    WriteKinds(file("variables.csv"), names);
}
