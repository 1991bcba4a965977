#pragma once
/// \file
/// The simulation of community assembly, behind the main menu's hidden entry A.

/// Estimates the error rates of the permutation tests on simulated data.
void IFAssemblyRulesSimulation_EnvFeedback_TypeI_II_Error();
