#pragma once
/// \file
/// The criteria that a search for the best subset of traits can maximise.

#include <span>

/// What a data set must have for a criterion's lines to stand in the menu.
struct ShownWith {
    bool sites;  ///< matrix E
    bool phylogeny;
    bool noNominalTrait;
};

struct RankingCriterion {
    int option;
    ShownWith shown;
    bool needsSites;          ///< never accepted without matrix E
    const char* menuLine;     ///< null: accepted, but not in the menu
    const char* explanation;  ///< under the menu
    const char* suffix;       ///< of the results file, behind the session's name
    void (*search)();
};

extern const std::span<const RankingCriterion> kRankingCriteria;

/// The criterion of an option of the table.
const RankingCriterion& CriterionOf(int option);

/// Whether the criterion compares with the composition by phylogeny.
bool ComparesWithPhylogeny(int option);

/// Whether the criterion stands in the menu for the present data set.
bool IsShown(const RankingCriterion& criterion);
