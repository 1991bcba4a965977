#include "TSLCLI/summary.h"

#include <algorithm>

#include "TSLCLI/failure.h"
#include "TSLCLI/number_cells.h"
#include "TSLCLI/variable_kinds.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/dataset.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFMT/environment_kinds.h"
#include "mxlibRes/missing.h"

namespace {

std::string FirstAndLast(const std::vector<std::string>& names) {
    return names.size() == 1 ? Quoted(names[0])
                             : Quoted(names.front()) + " to " + Quoted(names.back());
}

/// Kind, values or words, and missing values of one column of a table.
void TellVariable(const std::string& name, const std::string& group, int kind,
                  const std::vector<float>& column, const std::vector<FullNames::Codes>& codes) {
    std::vector<float> values;
    for (const float x : column)
        if (!IsMissing(x)) values.push_back(x);
    std::string text = "  " + name + group + ": " + KindName(kind);
    const auto words =
        std::find_if(codes.begin(), codes.end(), [&](const auto& c) { return c.name == name; });
    if (words != codes.end()) {
        for (std::size_t k = 0; k < words->words.size(); k++)
            text += (k == 0 ? ", " : "; ") + std::to_string(words->first + static_cast<int>(k)) +
                    " = " + words->words[k];
    } else if (!values.empty()) {
        const auto [least, most] = std::minmax_element(values.begin(), values.end());
        text += ", " + NumberText(*least) + (kind == kBinaryVariable ? " and " : " to ") +
                NumberText(*most);
    }
    if (values.size() < column.size())
        text += ", " + std::to_string(column.size() - values.size()) + " missing";
    Tell(text);
}

std::vector<float> ColumnOf(const float* const* table, int rows, int column) {
    std::vector<float> values(rows);
    for (int i = 0; i < rows; i++) values[i] = table[i][column];
    return values;
}

const char* KindOfEnvironment() {
    switch (optEnvVarType) {
        case kSameUnits:
            return "quantitative, in the same units";
        case kDifferentUnits:
            return "quantitative, in different units";
        case kQualitative:
            return "nominal";
        case kOnlyBinary:
            return "binary";
        default:
            return "of several kinds";
    }
}

std::string PhylogenyText() {
    if (hasPhylogeny == 0) return "none";
    switch (phylogenyMatrixType) {
        case kPhylogenyDistances:
            return "distances between the OTUs";
        case kPhylogenySimilarities:
            return "similarities between the OTUs";
        case kPhylogenyData:
            return Counted(nClados, "column of data", "columns of data");
        default:
            return "one without values";
    }
}

void TellCommunities(const FullNames& names) {
    std::vector<int> otus(ncsm, 0);
    for (int i = 0; i < tcst; i++)
        for (int c = 0; c < ncsm; c++) otus[c] += cadat[i][c] != 0.0F ? 1 : 0;
    const auto [poorest, richest] = std::minmax_element(otus.begin(), otus.end());
    const auto told = [&](const char* what, std::vector<int>::const_iterator c) {
        return std::string(what) + Quoted(names.communities[c - otus.begin()]) + " with " +
               Counted(*c, "OTU", "OTUs");
    };
    Tell(Counted(ncsm, "community", "communities") + ": " + FirstAndLast(names.communities) +
         told("; richest ", richest) + told(", poorest ", poorest));
}

}  // namespace

void TellSummary(const std::string& session, const FullNames& names) {
    Tell("Session " + session);
    Tell(Counted(tcst, "OTU", "OTUs") + ": " + FirstAndLast(names.otus));
    TellCommunities(names);
    Tell(Counted(nch, "trait", "traits") + (hasTraitGroups != 0 ? ", in groups" : "") + ":");
    for (int k = 0; k < nch; k++)
        TellVariable(names.traits[k],
                     hasTraitGroups != 0 ? " (group " + std::to_string(traitGroups[k]) + ")" : "",
                     chtype[k], ColumnOf(csm_Float, tcst, k), names.traitCodes);
    if (nenv > 0)
        Tell(Counted(nenv, "environmental variable", "environmental variables") + ", " +
             KindOfEnvironment() + ":");
    else
        Tell("No environmental variables");
    for (int v = 0; v < nenv; v++)
        TellVariable(names.variables[v], "", envVarType[v], ColumnOf(env, ncsm, v),
                     names.variableCodes);
    Tell("Phylogeny: " + PhylogenyText());
}
