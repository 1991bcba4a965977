#pragma once
/// \file
/// The community menu's entry K: ranking of trait subsets.

/// Searches the trait subset that maximises a criterion.
void IFChOrderSearch();
