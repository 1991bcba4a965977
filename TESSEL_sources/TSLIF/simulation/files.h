#pragma once
/// \file
/// Files of the simulation in the working directory, but for the final report (report.h). A file
/// that cannot be opened raises kFailedOpening.

#include <cstdio>

#include "TSLIF/simulation/world.h"

/// Opens a file of results.
FILE* OpenResults(const char* name, const char* mode);

/// The traits' means and standard deviations, each behind its heading.
void PrintTraitScales(FILE* stream, const World& world);

/// Writes TraitData.txt: the traits as they were read, or their correlations.
void WriteTraitsAsRead(const World& world);

/// Appends the standardised traits to TraitData.txt and says so on the screen.
void AppendStandardizedTraits(const World& world);

/// The files of every step, open from their headings to the end of the run.
struct StepFiles {
    ScopedFile environment{OpenResults("EnvData.txt", "w")};
    ScopedFile expected{OpenResults("CWM_Expected.txt", "w")};
    ScopedFile distances{OpenResults("Distances.txt", "w")};
    ScopedFile survival{OpenResults("Prob.txt", "w")};
    ScopedFile communities{OpenResults("CommunityData.txt", "w")};
    ScopedFile means{OpenResults("CWM.txt", "w")};
};
void PrintStepHeadings(const StepFiles& files, const World& world);

/// The communities of the step before or after mortality.
enum class Mortality { kBefore, kAfter };
void PrintStepCommunities(const StepFiles& files, const World& world, Mortality when);

/// The step's ecosystem, expected trait means, distances and probabilities (S x N both).
void PrintStepFilter(const StepFiles& files, const World& world, ConstMatrix<double> distances,
                     ConstMatrix<double> survival);

/// The step's community weighted means.
void PrintStepMeans(const StepFiles& files, const World& world);

/// Says on the screen where the steps are.
void TellStepFiles();

/// Rewrites B_Simulated.txt, W_Simulated.txt, E_Simulated.txt and TraitTypes_Simulated.txt, which
/// raw data entry takes as they are.
void WriteRawFiles(const World& world);

/// Rewrites OTUs_Simulated.txt, a partition with each OTU as a type.
void WriteOTUNumbers(const World& world);
