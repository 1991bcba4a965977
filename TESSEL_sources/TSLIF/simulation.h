#pragma once
/// \file
/// The simulation of community assembly, behind the main menu's hidden entry A.

#include <functional>

struct Evaluation;
struct SimulationAnswers;

/// Estimates the error rates of the permutation tests on simulated data.
void IFAssemblyRulesSimulation_EnvFeedback_TypeI_II_Error();

/// Runs the world of the answers under the present settings of the analysis, with the seed rseed,
/// and writes all files; `evaluated` gets each evaluated data set by its number, from 1. False,
/// after the message and with nothing written, for a world that cannot be: a file that is too short
/// or no trait that responds.
bool RunSimulation(SimulationAnswers* answers,
                   const std::function<void(int dataSet, const Evaluation&)>& evaluated);
