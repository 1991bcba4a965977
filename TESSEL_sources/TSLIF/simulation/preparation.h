#pragma once
/// \file
/// What stands before the first individual comes: reading the input files, standardising, a fresh
/// start of each data set.

#include "TSLIF/simulation/world.h"

/// Reads all input files into the world, sets the trait flags and their number. False when a file
/// is too short, which the reader has told.
bool ReadWorld(World& world);

/// Standardise what came from files: the traits, the initial conditions.
void PrepareTraits(World& world);
void PrepareEnvironment(World& world);

/// Lets the data set of the world's number depend on no other: its own stream of the seed rseed,
/// and nothing left of those before.
void StartStream(World& world);

/// A fresh start of a data set. The traits are drawn when they come from correlations; the
/// ecosystem is drawn or restored, and the sites are empty.
void RenewTraits(World& world);
void RenewSites(World& world);

/// Forms the rows of interactions of E at the sites from..to. Row F + i is the product of factor i
/// and the last factor; the rows behind those stay 0.
void FormInteractions(World& world, int from, int to);
