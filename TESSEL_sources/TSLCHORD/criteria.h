#pragma once
/// \file
/// The criteria that a search for the best subset of traits can maximise.

#include <span>

#include "TSLCHORD/search_frame.h"

/// What a data set must have for a criterion's lines to stand in the menu.
struct ShownWith {
    bool sites;  ///< matrix E
    bool phylogeny;
    bool noNominalTrait;
};

struct RankingCriterion {
    int option;
    const char* statistic;  ///< "XE.T"; a product of two: "PTxTE"
    ShownWith shown;
    bool needsSites;          ///< never accepted without matrix E
    const char* menuLine;     ///< null: accepted, but not in the menu
    const char* explanation;  ///< under the menu
    const char* suffix;       ///< of the results file, behind the session's name
    void (*search)(const SearchRun& run);
};

extern const std::span<const RankingCriterion> kRankingCriteria;

/// The criterion of an option of the table.
const RankingCriterion& CriterionOf(int option);

/// Whether the criterion compares with the composition by phylogeny.
bool ComparesWithPhylogeny(int option);

/// What the data set lacks so that a criterion is refused.
enum class Lack { kNothing, kSites, kSitesOrNumbers, kPhylogeny };

/// r(XE.T) and r(TE) pass without E unless a trait is nominal; with E a nominal trait only takes
/// their lines off the menu.
Lack WhatIsLacking(const RankingCriterion& criterion);

/// Whether the criterion stands in the menu for the present data set.
bool IsShown(const RankingCriterion& criterion);
