#pragma once
/// \file
/// The assembly of communities written out step by step: all expectations, distances, probabilities
/// and means are made again in each step, by dense loops. It draws the same random numbers as
/// AssembleCommunities (TSLIF/simulation/dynamics.h) and fills the same world.

#include <functional>

#include "TSLIF/simulation/world.h"

/// Where a step stands when it calls its watcher.
enum class StepPoint { kBeforeMortality, kAfterMortality, kFilter, kMeans };

using StepWatcher = std::function<void(StepPoint point, ConstMatrix<double> distances,
                                       ConstMatrix<double> survival)>;

void PlainAssembleCommunities(World& world, const StepWatcher& watch);
