#pragma once
/// \file
/// The simulation of community assembly, behind the main menu's hidden entry A.

#include <cstdint>
#include <functional>
#include <vector>

struct Evaluation;
struct SimulationAnswers;

/// Estimates the error rates of the permutation tests on simulated data.
void IFAssemblyRulesSimulation_EnvFeedback_TypeI_II_Error();

/// Where an evaluation stands: behind so many data sets.
struct SimulationPlace {
    int dataSets = 0;
    long long chiSquareCalls = 0;
    std::vector<double> rejections;        ///< by statistic
    std::vector<std::uint32_t> generator;  ///< GeneratorState
};

/// What becomes of a simulation as it goes; its functions may be empty.
struct SimulationRun {
    /// Gets each evaluated data set by its number, from 1.
    std::function<void(int dataSet, const Evaluation&)> evaluated = nullptr;
    /// Called behind each evaluated data set; an exception ends the run, and leaves the former
    /// results.
    std::function<void(const SimulationPlace&)> between = nullptr;
    /// The evaluation goes on there, if its report holds nothing of each data set.
    const SimulationPlace* from = nullptr;
};

/// Runs the world of the answers under the present settings of the analysis, with the seed rseed,
/// and writes all files. False, after the message and with nothing written, for a world that cannot
/// be: a file that is too short or no trait that responds.
bool RunSimulation(SimulationAnswers* answers, const SimulationRun& run = {});
