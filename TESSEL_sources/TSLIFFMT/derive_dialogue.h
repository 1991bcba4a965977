#pragma once
/// \file
/// The questions on a data set that is derived from the one in memory.

#include "TSLIFFMT/derive.h"

/// Asks everything.
Derivation AskDerivation();
