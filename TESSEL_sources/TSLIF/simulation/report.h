#pragma once
/// \file
/// The report of the simulation, FinalSimulatedData.txt. Every block is appended; a file that
/// cannot be opened raises kFailedOpening.

#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/world.h"

/// Creates the report with what the user specified.
void WriteSpecification(const World& world);

/// Appends the communities, ecosystem and expectations of a data set.
void AppendDataSet(const World& world);

/// Appends the statistics of a data set.
void AppendTest(const World& world, const Evaluation& evaluation);

/// Appends the rates of rejection, behind the settings when `withSettings`.
void AppendRates(const World& world, const Evaluation& evaluation, double seconds,
                 bool withSettings);
