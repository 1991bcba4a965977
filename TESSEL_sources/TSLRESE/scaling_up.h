#pragma once
/// \file
/// The functional analysis: traits scaled up from OTUs to communities, and their tests.

#include <functional>

struct PermTest_FunctionalPhyl_Correl_Input;
struct ScalingUpMatrices;

/// Who is told of an analysis besides its report. What is empty is not called.
struct AnalysisReceiver {
    /// The trait averages T of the communities, before their columns are brought to unit length.
    std::function<void(const ScalingUpMatrices&)> averages = nullptr;
    /// All matrices, before the test.
    std::function<void(const ScalingUpMatrices&)> matrices = nullptr;
    /// Each arrangement of the test (PermTest_FunctionalPhyl_Correl_Input::eachArrangement).
    std::function<void(const PermTest_FunctionalPhyl_Correl_Input&)> arrangement = nullptr;
    /// The record of the test, its statistics and probabilities in it.
    std::function<void(const PermTest_FunctionalPhyl_Correl_Input&)> tested = nullptr;
};

/// Runs the analysis on the data set and settings in memory and writes the report whichPrinda.
/// Without a trait, with a single OTU or a single type it ends before the test. Raises
/// kFailedOpening.
void PFTs_ScalingUp(const AnalysisReceiver& receiver = {});
