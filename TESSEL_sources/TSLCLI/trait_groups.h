#pragma once
/// \file
/// Groups of traits as an option gives them.

#include "TSLCLI/name_matching.h"

/// Fills traitGroups of the data set in memory from texts of the form trait=group, several in one
/// parted by commas. `traits` are their full names; a label does too. A trait that is not given is
/// a group of its own. Fails as wrong usage for another form, an unknown trait and one given twice.
void TakeTraitGroups(const Names& given, const Names& traits);
