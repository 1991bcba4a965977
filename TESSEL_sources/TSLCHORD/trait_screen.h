#pragma once
/// \file
/// Screens for the searches that compare the averages of the traits (T) with tables that stay.

#include <memory>
#include <span>

#include "TSLCHORD/subset_tables.h"
#include "mxlib/subset_screen/subset_screen.h"

/// For the congruence of T with one table or, under the matrix correlation, the product of those
/// with two; distances of T by `option` (6 to 10). Null where there is no screen. To be made behind
/// the first rating.
template <class Real>
std::unique_ptr<SubsetScreen> ScreenTraits(std::span<const Table> fixed, int option,
                                           bool isNarrowed, SubsetTables<Real>* t);
