#include "TSLCLI/findings.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "TSLCLI/variable_kinds.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/dataset.h"
#include "TSLIFFM2/formda_versions.h"
#include "TSLIFFMT/checks.h"
#include "TSLIFFMT/findings.h"
#include "mxlibDim/text.h"
#include "mxlibRes/missing.h"

namespace {

using Names = std::vector<std::string>;
using Lines = std::vector<std::string>;

/// "'a', 'b' and 12 more".
std::string ListedUpToMany(const Names& names) {
    constexpr std::size_t kMost = 20;
    if (names.size() <= kMost) return Listed(names);
    return Listed({names.begin(), names.begin() + kMost}) + " and " +
           std::to_string(names.size() - kMost) + " more";
}

template <class Has>
Names Where(const Names& names, const Has& has) {
    Names found;
    for (int i = 0; i < static_cast<int>(names.size()); i++)
        if (has(i)) found.push_back(names[i]);
    return found;
}

/// Adds "what: names: why" where there are names.
void Add(Lines* lines, const std::string& what, const Names& names, const std::string& why) {
    if (!names.empty()) lines->push_back(what + " " + ListedUpToMany(names) + ": " + why);
}

/// Labels of one table. Numbers from 1 in their order are what raw entry gives where there are
/// none.
struct LabelTable {
    std::string what;
    const char* const* labels;
    int n;
};

void FindInLabels(Lines* lines, const LabelTable& table) {
    const Names labels(table.labels, table.labels + table.n);
    std::map<std::string, int> places;
    for (int i = 0; i < table.n; i++) places.emplace(labels[i], i);
    const std::string what = "labels of " + table.what;
    Add(lines, what + " that are empty:", Where(labels, [&](int i) { return labels[i].empty(); }),
        "their file ended too early");
    Add(lines, what + " that are there twice:",
        Where(labels, [&](int i) { return !labels[i].empty() && places[labels[i]] != i; }),
        "a table may have been read out of step");
    Add(lines, what + " that are numbers:", LabelsThatAreNumbers(table.n, table.labels),
        "numbers of the table may have been taken for labels");
}

void FindSharedLabels(Lines* lines, const LabelTable& table, const LabelTable& other) {
    const Names labels(table.labels, table.labels + table.n);
    const std::set<std::string> others(other.labels, other.labels + other.n);
    Add(lines, "labels of " + table.what + " that are labels of " + other.what + " too:",
        Where(labels,
              [&](int i) {
                  return CountNumbers(labels[i].c_str()) == 0 && !labels[i].empty() &&
                         others.contains(labels[i]);
              }),
        "a file may have been given for another");
}

void FindLabels(Lines* lines, const FullNames& names) {
    const LabelTable traits = {"traits", chLabel, nch};
    const LabelTable communities = {"communities", reLabel, ncsm};
    const LabelTable variables = {"environmental variables", envLabel, nenv};
    Add(lines, "traits labelled sp:",
        Where(names.traits, [](int k) { return chLabel[k] == std::string("sp"); }),
        "deriving and merging put the number of the species in their place; rename them");
    // Names that were matched between tables are no slip.
    if (names.isFromTable) return;
    for (const LabelTable& table : {traits, communities, variables}) FindInLabels(lines, table);
    FindSharedLabels(lines, communities, traits);
    FindSharedLabels(lines, variables, traits);
    FindSharedLabels(lines, variables, communities);
}

void FindEmpty(Lines* lines, const FullNames& names) {
    Add(lines, "OTUs that occur nowhere:", Where(names.otus, OccursNowhere),
        "their traits take part in the permutations and in the types all the same");
    Add(lines, "communities without any OTU:", Where(names.communities, IsEmptyCommunity),
        "every statistic is false; leave them out");
}

void FindFalseQuantities(Lines* lines, const FullNames& names) {
    const auto has = [](int c, auto&& is) {
        for (int i = 0; i < tcst; i++)
            if (is(cadat[i][c])) return true;
        return false;
    };
    const auto isMissing = [](float x) { return IsMissing(x); };
    const auto isFalse = [](float x) { return !(x >= 0.0F) && !IsMissing(x); };
    Add(lines, "communities with missing quantities:",
        Where(names.communities, [&](int c) { return has(c, isMissing); }),
        "a missing quantity counts as presence; write 0 where the OTU does not occur");
    Add(lines, "communities with negative quantities:",
        Where(names.communities, [&](int c) { return has(c, isFalse); }),
        "a table may have been read out of step");
}

/// Values of one trait or variable that are not missing, in ascending order, each once.
std::vector<float> Distinct(const float* const* table, int rows, int column) {
    std::vector<float> values;
    for (int i = 0; i < rows; i++)
        if (!IsMissing(table[i][column]) && !std::isnan(table[i][column]))
            values.push_back(table[i][column]);
    std::sort(values.begin(), values.end());
    values.erase(std::unique(values.begin(), values.end()), values.end());
    return values;
}

/// Of one trait or variable.
bool IsBelowZero(const float* const* table, int rows, int column) {
    const std::vector<float> values = Distinct(table, rows, column);
    return !values.empty() && values.back() < 0;
}

constexpr const char* kRangeUpToZero =
    "their range counts up to 0; add a constant that makes them positive";

/// Whether the values of a trait have no sum to divide by, but for rounding, or a negative one.
bool HasNoPositiveSum(int trait) {
    constexpr double kRounding = 1e-5;
    double sum = 0, magnitude = 0;
    for (int i = 0; i < tcst; i++) {
        const double x = csm_Float[i][trait];
        if (IsMissing(x)) continue;
        sum += x;
        magnitude += std::abs(x);
    }
    return magnitude > 0 && sum < kRounding * magnitude;
}

bool HasMissingValue(const float* const* table, int rows, int column) {
    for (int i = 0; i < rows; i++)
        if (IsMissing(table[i][column])) return true;
    return false;
}

/// What holds for the columns of B and of E alike.
void FindInColumns(Lines* lines, const std::string& what, const Names& names,
                   const float* const* table, int rows, const int* kinds) {
    std::vector<std::vector<float>> distinct;
    distinct.reserve(names.size());
    for (int k = 0; k < static_cast<int>(names.size()); k++)
        distinct.push_back(Distinct(table, rows, k));
    const auto isCoded = [&](int k) {
        const auto& values = distinct[k];
        if (kinds[k] == kBinaryVariable) return values.size() > 2;
        return kinds[k] == kNominalVariable &&
               std::any_of(values.begin(), values.end(),
                           [](float x) { return x != std::floor(x); });
    };
    Add(lines,
        what + " without any value:", Where(names, [&](int k) { return distinct[k].empty(); }),
        "leave them out");
    Add(lines, what + " of one value everywhere:",
        Where(names, [&](int k) { return distinct[k].size() == 1; }),
        "they tell nothing, and make everything more alike; leave them out");
    Add(lines,
        what + " told binary or nominal, with values that are no codes:", Where(names, isCoded),
        "a table may have been read out of step");
}

void FindInTraits(Lines* lines, const FullNames& names) {
    FindInColumns(lines, "traits", names.traits, csm_Float, tcst, chtype);
    Add(lines, "quantitative traits with missing values:",
        Where(names.traits,
              [](int k) {
                  return chtype[k] == kIntervalVariable && HasMissingValue(csm_Float, tcst, k) &&
                         !Distinct(csm_Float, tcst, k).empty();
              }),
        "the mark -999 counts in their range, so that differences between OTUs almost vanish; fill "
        "the gaps, or leave out the traits or the OTUs");
    Add(lines, "quantitative traits with values below 0 only:",
        Where(names.traits,
              [](int k) {
                  return chtype[k] == kIntervalVariable && IsBelowZero(csm_Float, tcst, k);
              }),
        kRangeUpToZero);
    Add(lines, "traits whose values sum to less than 0, or to 0 but for rounding:",
        Where(names.traits, HasNoPositiveSum),
        "T of the report and of the tables is divided by that sum, and shows them upside down or "
        "not at all, though the statistics are right; another unit or an added constant makes the "
        "sum positive, but r(TE) depends on either");
    Add(lines, "OTUs without any trait value:",
        Where(names.otus,
              [](int i) {
                  return std::all_of(csm_Float[i], csm_Float[i] + nch,
                                     [](float x) { return IsMissing(x); });
              }),
        "they resemble no other OTU; leave them out");
    Add(lines, "nominal traits of which every OTU has its own code:",
        Where(names.traits,
              [](int k) {
                  return chtype[k] == kNominalVariable &&
                         static_cast<int>(Distinct(csm_Float, tcst, k).size()) == tcst;
              }),
        "names or remarks are no traits; leave them out");
    Add(lines,
        "nominal traits:", Where(names.traits, [](int k) { return chtype[k] == kNominalVariable; }),
        "an analysis that averages traits over communities takes their codes for quantities; "
        "r(TE) and what stands on T mean nothing with them");
}

void FindInEnvironment(Lines* lines, const FullNames& names) {
    if (nenv == 0) return;
    FindInColumns(lines, "environmental variables", names.variables, env, ncsm, envVarType);
    Add(lines, "environmental variables with missing values:",
        Where(names.variables, [](int v) { return HasMissingValue(env, ncsm, v); }),
        "the environment must be known of every community; leave out the communities");
    // Beside nominal variables the environment is compared by Gower's index.
    if (std::find(envVarType, envVarType + nenv, kNominalVariable) != envVarType + nenv)
        Add(lines, "quantitative environmental variables with values below 0 only:",
            Where(names.variables,
                  [](int v) {
                      return envVarType[v] == kIntervalVariable && IsBelowZero(env, ncsm, v);
                  }),
            kRangeUpToZero);
}

void FindInPhylogeny(Lines* lines, const FullNames& names) {
    if (hasPhylogeny == 0 || phylogenyMatrixType == kPhylogenyData) return;
    const bool areDistances = phylogenyMatrixType == kPhylogenyDistances;
    Names outside, askew;
    bool isEmpty = true;
    for (int i = 0; i < tcst; i++) {
        bool isOutside = false, isAskew = false;
        for (int j = 0; j < tcst; j++) {
            const double x = phylogenyRese[i][j];
            if (i != j && x != 0) isEmpty = false;
            isOutside = isOutside || !(x >= 0 && x <= 1) || (i == j && areDistances && x != 0);
            isAskew = isAskew || std::abs(x - phylogenyRese[j][i]) > 1e-5;
        }
        if (isOutside) outside.push_back(names.otus[i]);
        if (isAskew) askew.push_back(names.otus[i]);
    }
    if (isEmpty)
        lines->push_back(
            "the phylogeny is 0 between all OTUs: give one with distances (raw entry keeps full "
            "matrices only)");
    Add(lines, "OTUs of which the phylogeny holds what is no distance or similarity:", outside,
        "its file may have been read out of step");
    Add(lines, "OTUs of which the phylogeny is not symmetric:", askew,
        "its file may have been read out of step");
}

void FindSizes(Lines* lines) {
    constexpr int kFewestCommunities = 4, kFewestOTUs = 3;
    const auto tell = [&](bool is, const std::string& text) {
        if (is) lines->push_back(text);
    };
    tell(tcst < kFewestOTUs, "fewer than three OTUs: there is nothing to permute");
    tell(ncsm < kFewestCommunities,
         "fewer than four communities: correlations between them say nothing");
    tell(nenv >= ncsm, "as many environmental variables as communities, or more");
    tell(nch >= tcst, "as many traits as OTUs, or more");
}

}  // namespace

Lines Findings(const FullNames& names) {
    Lines lines;
    FindLabels(&lines, names);
    FindEmpty(&lines, names);
    FindFalseQuantities(&lines, names);
    FindInTraits(&lines, names);
    FindInEnvironment(&lines, names);
    FindInPhylogeny(&lines, names);
    FindSizes(&lines);
    return lines;
}
