#pragma once
/// \file
/// The heads of the results files, as the lines of each search in their order.

#include <span>

#include "TSLCHORD/search_frame.h"

extern const std::span<const HeaderLine> kHeaderTCAP, kHeaderTDAP_TCAP, kHeaderTDAP,
    kHeaderDivergence, kHeaderPhylogeny, kHeaderNicheConservation;
