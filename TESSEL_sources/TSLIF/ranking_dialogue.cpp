#include <cmath>
#include <cstdio>
#include <string>

#include "TSLCHORD/criteria.h"
#include "TSLCHORD/subset_counts.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/analysis_settings.h"
#include "TSLIF/menus.h"
#include "TSLIF/settings_dialogue.h"
#include "TSLIF2/console.h"
#include "TSLRESE/scaling_up_matrices.h"

namespace {

void PrintCriteria() {
    Menu("CHARACTER RANKING SETTINGS");
    std::fputs("Trait ranking criterion maximized: \n", out);
    for (const RankingCriterion& criterion : kRankingCriteria)
        if (IsShown(criterion)) std::fputs(criterion.menuLine, out);
    std::fputs("\n", out);
    for (const RankingCriterion& criterion : kRankingCriteria)
        if (IsShown(criterion)) std::fputs(criterion.explanation, out);
}

int ReadCriterion() {
    std::string accepted;
    for (const RankingCriterion& criterion : kRankingCriteria)
        accepted += std::to_string(criterion.option) + " ";
    accepted.pop_back();
    return ReadOption("\nType option no.: ", accepted.c_str());
}

bool IsPossible(const RankingCriterion& criterion) {
    const Lack lack = WhatIsLacking(criterion);
    if (lack == Lack::kPhylogeny)
        std::fputs("\nThis criterion needs a phylogeny, and the session's data set has none.\n",
                   out);
    return lack == Lack::kNothing;
}

bool HasTraitsToSearch() {
    if (CountTraitsInUse() > 0) return true;
    std::fputs("\nNo trait was selected: there is no subset to search for.\n", out);
    return false;
}

int ReadSize(const char* question, int smallest, int largest) {
    std::fprintf(out,
                 "%s number of traits in the trait subset (minimum: %d, maximum: %d): ", question,
                 smallest, largest);
    return ReadIntegerIn("%d", "-", smallest, largest);
}

void TellNumberOfSubsets(double subsets) {
    if (std::isfinite(subsets))
        std::fprintf(out, "\nThese are %.15g trait subsets, more than can be searched (%.10g).\n",
                     subsets, kMostSubsets);
    else
        std::fprintf(out,
                     "\nThese are more than 1e308 trait subsets, more than can be searched "
                     "(%.10g).\n",
                     kMostSubsets);
}

/// Asked until the subsets can be counted.
void ReadSizes() {
    const int traits = CountTraitsInUse();
    for (;;) {
        nMinTraitsChRank = ReadSize("Minimum", 1, traits);
        nMaxTraitsChRank = ReadSize("Maximum", nMinTraitsChRank, traits);
        const double subsets = CountSubsetsOfSizes(nch, nMinTraitsChRank, nMaxTraitsChRank);
        if (subsets <= kMostSubsets) return;
        TellNumberOfSubsets(subsets);
    }
}

}  // namespace

void SettingsChRank() {
    do {
        do {
            PrintCriteria();
            opt_struct = ReadCriterion();
        } while (!IsPossible(CriterionOf(opt_struct)));
        includePhylogeny = ComparesWithPhylogeny(opt_struct) ? 1 : 0;
        SettingsHierarchy();
    } while (!HasTraitsToSearch());
    SettleRanking();
    ReadSizes();
    printRankIntermedResults =
        ReadYesNo("\nPrint intermediate results of the ranking process?  y/n ") ? 'y' : 'n';
}
