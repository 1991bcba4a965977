#include "TSLCLI/data_set_assembly.h"

#include <algorithm>

#include "TSLCLI/failure.h"
#include "TSLCLI/number_cells.h"
#include "TSLCLI/trait_groups.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFMT/checks.h"
#include "TSLIFFMT/environment_kinds.h"
#include "TSLIFFMT/raw_tables.h"
#include "TSLIFFMT/species_labels.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/file_path.h"
#include "mxlibDim/text.h"

namespace {

void CopyLabels(const Names& labels, char* const* destination) {
    for (std::size_t i = 0; i < labels.size(); i++)
        CopyText(destination[i], kLabelLength, labels[i].c_str());
}

/// The name of a file without its folder, as the session keeps it.
std::string FileNameOf(const std::string& path) {
    return NameOf(PathOf(path).filename());
}

/// The names at which `isChosen` is set, for a message.
std::string NamesAt(const Names& names, const std::vector<bool>& isChosen) {
    Names chosen;
    for (std::size_t i = 0; i < names.size(); i++)
        if (isChosen[i]) chosen.push_back(names[i]);
    return Listed(chosen);
}

/// Takes the things at which `isEmpty` is set out of the names, and tells.
void DropEmpty(Names* names, const std::vector<bool>& isEmpty, const std::string& what) {
    const auto count = std::count(isEmpty.begin(), isEmpty.end(), true);
    if (count > 0)
        Tell("Left out (" + std::to_string(count) + "): " + what + ": " + NamesAt(*names, isEmpty));
    std::size_t kept = 0;
    for (std::size_t i = 0; i < names->size(); i++)
        if (!isEmpty[i]) std::swap((*names)[kept++], (*names)[i]);
    names->resize(kept);
}

void DropEmptyRowsAndColumns(ImportTables* tables, const std::vector<bool>& otuIsEmpty,
                             const std::vector<bool>& siteIsEmpty) {
    int otus = 0;
    for (int i = 0; i < tcst; i++) {
        if (otuIsEmpty[i]) continue;
        swap(cadat, otus, i);
        int sites = 0;
        for (int c = 0; c < ncsm; c++)
            if (!siteIsEmpty[c]) cadat[otus][sites++] = cadat[otus][c];
        otus++;
    }
    ReleaseRows(cadat, otus, tcst);
    DropEmpty(&tables->otus, otuIsEmpty, "OTUs that occur nowhere");
    DropEmpty(&tables->sites, siteIsEmpty, "communities without any OTU");
    tcst = otus;
    ncsm = static_cast<int>(tables->sites.size());
    if (tcst == 0) FailRun("every quantity in the table of communities is 0");
}

void TakeTraits(const std::vector<Variable>& traits, const Names& names) {
    nch = static_cast<int>(traits.size());
    AllocateTraits();
    CopyLabels(LabelsFor(names), chLabel);
    for (int k = 0; k < nch; k++) {
        chtype[k] = traits[k].kind;
        for (int i = 0; i < tcst; i++) csm_Float[i][k] = traits[k].values[i];
    }
    RangeStates(nch, tcst, csm_Float, chtype, chrange);
}

/// Each OTU is a species of its name.
void TakeSpecies(const ImportTables& tables) {
    constexpr int kRoomForName = kSpeciesLength - kSpeciesLabelLength - 1;
    AllocateSpecies();
    CopyText(whichSpp, kTypedFileNameLength, FileNameOf(tables.traits.file).c_str());
    const Names names = CutNames(tables.otus, kRoomForName);
    for (int i = 0; i < tcst; i++) CopyText(spp[i], kSpeciesLength, names[i].c_str());
    SettleSpecies(kMakeSpeciesLabels);
}

void TakePhylogeny(const ImportTables& tables, bool areSimilarities) {
    hasPhylogeny = tables.phylogeny ? 1 : 0;
    if (hasPhylogeny == 0) return;
    RequireRoomForTable(tcst, tcst, sizeof(double));
    RenewPhylogeny();
    phylogenyMatrixType = areSimilarities ? kPhylogenySimilarities : kPhylogenyDistances;
    FillPhylogeny(*tables.phylogeny, tables.otus, areSimilarities, phylogenyRese);
    if (!areSimilarities && NormaliseDistances(static_cast<long long>(tcst) * tcst))
        Tell("The phylogenetic distances were divided by the largest");
}

void TakeEnvironment(const std::vector<Variable>& variables, const Names& names,
                     const std::string& file, bool sameUnits) {
    nenv = static_cast<int>(variables.size());
    CopyText(envName, kTypedFileNameLength, FileNameOf(file).c_str());
    AllocateEnvironment();
    CopyLabels(LabelsFor(names), envLabel);
    for (int v = 0; v < nenv; v++) {
        envVarType[v] = variables[v].kind;
        for (int c = 0; c < ncsm; c++) env[c][v] = variables[v].values[c];
        if (sameUnits && variables[v].kind != kIntervalVariable)
            FailUsage("--same-units: " + Quoted(variables[v].name) + " is " +
                      KindName(variables[v].kind) + ", and only quantitative variables have units");
    }
    temEnvQuant = temEnvQual = temEnvBin = 0;
    FlagVariableTypes();
    optEnvVarType = sameUnits ? kSameUnits : TypesAreMixed() ? kSeveralTypes : KindOfOneType();
}

std::vector<FullNames::Codes> CodesOf(const std::vector<Variable>& variables) {
    std::vector<FullNames::Codes> codes;
    for (const Variable& variable : variables)
        if (!variable.words.empty())
            codes.push_back({variable.name, variable.firstCode, variable.words});
    return codes;
}

}  // namespace

void TakeCommunities(ImportTables* tables, bool dropEmpty) {
    const DelimitedTable& table = tables->communities;
    tcst = static_cast<int>(tables->otus.size());
    ncsm = static_cast<int>(tables->sites.size());
    RequireRoomForTable(tcst, ncsm, sizeof(float));
    cadat = dim2Dfloat(tcst, ncsm);
    std::vector<bool> otuIsEmpty(tcst, true), siteIsEmpty(ncsm, true);
    const NumberForm form =
        ForEachNumber<float>(table, PlacesAmong(tables->sites, table.rowNames),
                             PlacesAmong(tables->otus, table.columnNames),
                             "write 0 where the OTU does not occur, or leave the community out",
                             [&](int site, int otu, float quantity) -> const char* {
                                 cadat[otu][site] = quantity;
                                 if (quantity > 0) otuIsEmpty[otu] = siteIsEmpty[site] = false;
                                 return quantity < 0 ? "is a negative quantity" : nullptr;
                             });
    TellIfLong(form, table);
    tables->communities.text = {};
    if (dropEmpty) return DropEmptyRowsAndColumns(tables, otuIsEmpty, siteIsEmpty);
    const std::string empty = NamesAt(tables->sites, siteIsEmpty);
    if (!empty.empty())
        FailRun(table.file + ": communities without any OTU, which falsify every statistic: " +
                empty + ": leave them out with --drop-empty");
}

FullNames TakeOtherTables(const ImportTables& tables, const ImportSettings& settings) {
    CheckKindsAsTold(settings.kinds, tables.traits,
                     tables.environment ? &*tables.environment : nullptr);
    AllocateCommunities();
    CopyLabels(LabelsFor(tables.sites), reLabel);
    const std::vector<Variable> traits =
        ReadVariables(tables.traits, PlacesAmong(tables.otus, tables.traits.rowNames),
                      settings.kinds, MissingCells::kAllowed);
    TakeTraits(traits, tables.traits.columnNames);
    hasTraitGroups = settings.traitGroups.empty() ? 0 : 1;
    TakeTraitGroups(settings.traitGroups, tables.traits.columnNames);
    TakeSpecies(tables);
    TakePhylogeny(tables, settings.areSimilarities);
    FullNames names;
    names.otus = tables.otus;
    names.traits = tables.traits.columnNames;
    names.communities = tables.sites;
    names.traitCodes = CodesOf(traits);
    names.isFromTable = true;
    if (!tables.environment) return names;
    const DelimitedTable& E = *tables.environment;
    const std::vector<Variable> variables = ReadVariables(E, PlacesAmong(tables.sites, E.rowNames),
                                                          settings.kinds, MissingCells::kFault);
    TakeEnvironment(variables, E.columnNames, E.file, settings.sameUnits);
    names.variables = E.columnNames;
    names.variableCodes = CodesOf(variables);
    return names;
}
