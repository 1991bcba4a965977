#pragma once
/// \file
/// One simulated data set, from empty sites to the last step: environmental filtering, density
/// dependence, dispersal, mortality and the feedback of the communities on their ecosystem.

#include "TSLIF/simulation/files.h"
#include "TSLIF/simulation/world.h"

/// Puts almost nothing in the place of a density weight of exactly 0, as the first data set does.
void SettleDensityWeight(SimulationAnswers* answers);

/// Assembles the communities of a prepared world (preparation.h) and measures how far the expected
/// trait means lie beyond the traits. Random numbers come from `r`. Each step goes to `files`,
/// which is null when they are not wanted.
void AssembleCommunities(World& world, const StepFiles* files);
