#pragma once
/// \file
/// The functional analysis: traits scaled up from OTUs to communities, and their tests.

/// Runs the analysis on the data set and settings in memory and writes the report whichPrinda.
/// Raises kFailedOpening.
void PFTs_ScalingUp();
