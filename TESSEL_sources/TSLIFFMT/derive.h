#pragma once
/// \file
/// Deriving a data set from another session's.

#include "TSLIFFMT/selection.h"

/// What becomes of the communities: the numbers of the menu.
enum class CommunityOption : int { kKeep = 1, kSelect, kPool, kChange, kMovingWindow };

/// What is kept, in the new order. Groups of communities stand in nGroups, groupRel and grLabel
/// (community_groups.h), a window in SMWSize.
struct Derivation {
    Selection traits, otus;
    CommunityOption communityOption = CommunityOption::kKeep;
    Selection communities, variables;
    bool trims = false;  ///< drops OTUs that occur in none of the communities
};

/// Brings the data set of the file that whichFormda names, of the session tempSession, into memory,
/// with that session's settings. The caller releases it.
void OpenSource();

/// Makes the derived data set of the one in memory and writes it as the data file of the current
/// session, to which whichFormda then refers. `derivation->otus` are narrowed to those left. False,
/// with nothing written, when no OTU or no community would be left.
bool DeriveDataSet(Derivation* derivation);

/// Asks what is to be kept of the data set of the file that whichFormda names, of the session
/// tempSession, and whether its communities are pooled or turned into changes, and writes the
/// result as the data file of the current session, to which whichFormda then refers. False, with
/// nothing written, when no OTU or no community would be left.
bool PickSomeFormda();
