#pragma once
/// \file
/// Files of the simulation in the working directory, but for the final report (report.h). A file
/// that cannot be opened raises kFailedOpening, one that cannot be written kFailedOutput; the old
/// one stays until the new one is whole.

#include <cstdio>
#include <vector>

#include "TSLIF/simulation/world.h"
#include "mxlibDim/replacement.h"

/// The report.
inline constexpr const char* kReportFile = "FinalSimulatedData.txt";

/// Whether the run leaves the tables of its data set for raw data entry: one of two at most does.
bool LeavesRawFiles(const SimulationAnswers& answers);

/// All files that a run of these answers writes.
std::vector<const char*> FilesOfRun(const SimulationAnswers& answers);

/// The traits' means and standard deviations, each behind its heading.
void PrintTraitScales(FILE* stream, const World& world);

inline constexpr const char* kTraitDataFile = "TraitData.txt";

/// The traits as they were read, or their correlations.
void PrintTraitsAsRead(FILE* stream, const World& world);

/// The standardised traits, with which kTraitDataFile is whole; says so on the screen.
void FinishTraitData(ResultsFile& file, const World& world);

inline constexpr const char* kStepFiles[] = {"EnvData.txt", "CWM_Expected.txt",  "Distances.txt",
                                             "Prob.txt",    "CommunityData.txt", "CWM.txt"};

/// The files of every step, open from their headings to the last step.
struct StepFiles {
    ResultsFile environment{kStepFiles[0]};
    ResultsFile expected{kStepFiles[1]};
    ResultsFile distances{kStepFiles[2]};
    ResultsFile survival{kStepFiles[3]};
    ResultsFile communities{kStepFiles[4]};
    ResultsFile means{kStepFiles[5]};
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

/// Finishes the files and says on the screen where the steps are.
void FinishStepFiles(StepFiles& files);

/// Rewrites B_Simulated.txt, W_Simulated.txt, E_Simulated.txt and TraitTypes_Simulated.txt, which
/// raw data entry takes as they are.
void WriteRawFiles(const World& world);

/// Writes OTUs_Simulated.txt, a partition with each OTU as a type.
void WriteOTUNumbers(const World& world);
