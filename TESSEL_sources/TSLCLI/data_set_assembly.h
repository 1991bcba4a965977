#pragma once
/// \file
/// The tables of an import as the data set in memory (TSLGLOB/dataset.h), table by table, as raw
/// entry makes it. FreeGlobals2 releases it.

#include <string>
#include <vector>

#include "TSLCLI/import_tables.h"
#include "TSLCLI/names.h"
#include "TSLCLI/variable_kinds.h"

/// W of the OTUs and communities of `tables`. OTUs that occur nowhere and communities without OTU
/// are taken out of `tables`, and told, where `dropEmpty` says so; otherwise a community without
/// OTU fails. Fails for missing and negative quantities. The text of the table is given up.
void TakeCommunities(ImportTables* tables, bool dropEmpty);

/// The rest of the data set, for the OTUs and communities that remain, and its full names.
struct ImportSettings {
    KindsAsTold kinds;
    std::vector<std::string> traitGroups;  ///< trait=group
    bool sameUnits = false;                ///< of the environmental variables
    bool areSimilarities = false;          ///< the phylogeny's matrix
};
FullNames TakeOtherTables(const ImportTables& tables, const ImportSettings& settings);
