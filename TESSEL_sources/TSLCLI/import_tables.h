#pragma once
/// \file
/// The tables of an import: read, looked at one by one, and matched by their names.

#include <optional>
#include <string>

#include "TSLCLI/delimited_table.h"
#include "TSLCLI/name_matching.h"
#include "TSLCLI/phylogeny_file.h"

/// Files of the tables; empty where there is none.
struct TableFiles {
    std::string traits, communities, environment, phylogeny, types;
};

struct ImportTables {
    DelimitedTable traits;       ///< OTUs by traits
    DelimitedTable communities;  ///< communities by OTUs
    std::optional<DelimitedTable> environment;
    std::optional<PhylogenyFile> phylogeny;
    std::optional<DelimitedTable> types;  ///< a column of groups
    Names otus;                           ///< that all tables have, in the order of the traits
    Names sites;  ///< that both tables have, in the order of the communities
};

/// Reads the tables. Fails for names that are not distinct, for tables turned the wrong way round,
/// and for names that one table lacks, unless these are to be left out.
ImportTables ReadImportTables(const TableFiles& files, bool dropUnmatched);
