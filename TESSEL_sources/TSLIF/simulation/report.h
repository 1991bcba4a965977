#pragma once
/// \file
/// The report of the simulation, block by block. Each block can be read in the file under way as
/// soon as it is printed.

#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/world.h"

/// What the user specified.
void PrintSpecification(FILE* report, const World& world);

/// The communities, ecosystem and expectations of a data set.
void PrintDataSet(FILE* report, const World& world);

/// The statistics of a data set.
void PrintTest(FILE* report, const World& world, const Evaluation& evaluation);

/// The rates of rejection, behind the settings when `withSettings`.
void PrintFinalRates(FILE* report, const World& world, const Evaluation& evaluation, double seconds,
                     bool withSettings);
