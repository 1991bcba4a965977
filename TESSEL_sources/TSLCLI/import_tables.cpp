#include "TSLCLI/import_tables.h"

#include "TSLCLI/failure.h"

namespace {

DelimitedTable ReadDistinct(const std::string& path) {
    DelimitedTable table = ReadDelimitedTable(path);
    RequireDistinct({path, &table.rowNames}, "row");
    RequireDistinct({path, &table.columnNames}, "column");
    return table;
}

[[noreturn]] void FailTurned(const std::string& file, const char* found, const char* belongs) {
    FailRun(file + ": the table is turned the wrong way round: its " + found + "; put " + belongs);
}

DelimitedTable ReadTypes(const std::string& path) {
    DelimitedTable table = ReadDistinct(path);
    if (table.columnNames.size() != 1)
        FailRun(path + ", line 1: " + std::to_string(table.columnNames.size()) +
                " columns behind the names, where one of types belongs");
    std::vector<std::string_view> cell;
    for (int i = 0; i < static_cast<int>(table.rowNames.size()); i++) {
        CellsOf(table, i, &cell);
        if (cell[0].empty() || cell[0] == "NA")
            FailRun(PlaceOf(table, i, 0) + ": no type is given");
    }
    return table;
}

/// A table is turned when more of its names match crosswise than as they should.
void CheckOrientation(const ImportTables& tables) {
    const DelimitedTable& B = tables.traits;
    const DelimitedTable& W = tables.communities;
    const int straight = CountAmong(B.rowNames, W.columnNames);
    const bool turnedW = CountAmong(B.rowNames, W.rowNames) > straight;
    const bool turnedB = CountAmong(B.columnNames, W.columnNames) > straight;
    const bool turnedBoth = CountAmong(B.columnNames, W.rowNames) > straight;
    if (turnedW)
        FailTurned(W.file, "rows are the OTUs of the traits",
                   "communities in rows, OTUs in columns");
    if (turnedB || turnedBoth)
        FailTurned(B.file,
                   turnedB ? "columns are the OTUs of the communities"
                           : "columns are the OTUs, which are rows of the communities",
                   "OTUs in rows, traits in columns");
    if (!tables.environment) return;
    const DelimitedTable& E = *tables.environment;
    if (CountAmong(E.columnNames, W.rowNames) > CountAmong(E.rowNames, W.rowNames))
        FailTurned(E.file, "columns are the communities",
                   "communities in rows, variables in columns");
}

}  // namespace

ImportTables ReadImportTables(const TableFiles& files, bool dropUnmatched) {
    const char* const advice = "correct the names, or leave them out with --drop-unmatched";
    ImportTables tables;
    tables.traits = ReadDistinct(files.traits);
    tables.communities = ReadDistinct(files.communities);
    if (!files.environment.empty()) tables.environment = ReadDistinct(files.environment);
    CheckOrientation(tables);
    std::vector<NameList> otus = {{files.traits, &tables.traits.rowNames},
                                  {files.communities, &tables.communities.columnNames}};
    if (!files.phylogeny.empty()) {
        tables.phylogeny = ReadPhylogenyFile(files.phylogeny, tables.traits.rowNames);
        otus.push_back({files.phylogeny, &tables.phylogeny->names});
    }
    if (!files.types.empty()) {
        tables.types = ReadTypes(files.types);
        otus.push_back({files.types, &tables.types->rowNames});
    }
    tables.otus = MatchNames(otus, "OTUs", dropUnmatched, advice);
    std::vector<NameList> sites = {{files.communities, &tables.communities.rowNames}};
    if (tables.environment) sites.push_back({files.environment, &tables.environment->rowNames});
    tables.sites = MatchNames(sites, "communities", dropUnmatched, advice);
    return tables;
}
