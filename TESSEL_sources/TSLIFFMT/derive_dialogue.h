#pragma once
/// \file
/// The questions on a data set that is derived from the one in memory.

#include "TSLIFFMT/selection.h"

/// What becomes of the communities: the numbers of the menu.
enum class CommunityOption : int { kKeep = 1, kSelect, kPool, kChange, kMovingWindow };

/// What is kept, in the new order.
struct Derivation {
    Selection traits, otus;
    CommunityOption communityOption = CommunityOption::kKeep;
    Selection communities, variables;
};

/// Asks everything. Groups of communities are left in nGroups, groupRel and grLabel, a window in
/// SMWSize.
Derivation AskDerivation();

/// Whether OTUs that occur in none of the communities are to be dropped.
bool AskWhetherToTrimOTUs();
