#pragma once
/// \file
/// Items of a session that an option or a table names.

#include <string>

#include "TSLCLI/name_matching.h"
#include "TSLIFFMT/selection.h"

/// The places of the wanted names among `names` or, where it is none of them, among as many labels
/// (null without any). Fails for a name that is neither, under the name of what it stands in.
Selection PlacesOfNames(const std::string& where, const Names& wanted, const Names& names,
                        const char* const* labels);
