#pragma once
/// \file
/// The composition by phylogeny, which stands for all subsets of a search.

#include "TSLCHORD/subset_tables.h"

/// P = W Q and its resemblance, Q being the belonging of the OTUs to the taxa. In single precision
/// the phylogenetic resemblances are narrowed first. Table P takes part in t.
template <class Real>
void TakePhylogeny(SubsetTables<Real>* t);
