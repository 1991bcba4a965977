#pragma once
/// \file
/// New communities out of those of a session: pooled by groups, changes within pairs, moving
/// averages.

#include <string>

#include "TSLCLI/name_matching.h"
#include "TSLCLI/names.h"
#include "TSLIFFMT/derive.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

struct NewCommunities {
    std::string pool;    ///< file: community, group
    std::string change;  ///< file: name of the new community, first, second
    int window = 0;      ///< communities of the edge detection's window; 0 for none
};

/// Adds the options, which exclude one another and `communities`.
void AddNewCommunities(CLI::App& command, CLI::Option* communities, NewCommunities* options);

/// Settles what becomes of the communities of the data set in memory, of which the variables of
/// `derivation` are kept: its option, the order of the communities, their groups, the window. Gives
/// the names of the new ones. `names`: of the communities in memory and of the variables kept.
/// Fails where values that are missing or nominal would be averaged.
Names SettleNewCommunities(const NewCommunities& options, const FullNames& names,
                           Derivation* derivation);
