#pragma once
/// \file
/// The statistics of the functional analysis as data: their names, what they say, where they stand
/// in the record of the permutation test, where the report prints them.

#include <span>
#include <string_view>

#include "mxlib/perm_test.h"

/// Where a statistic stands in the report.
enum class ReportBlock { kAssembly, kSignal, kPhylogeny, kNone };

struct AnalysisStatistic {
    using Test = PermTest_FunctionalPhyl_Correl_Input;

    const char* name;   ///< the letters of its matrices: "XE.T"
    const char* label;  ///< in the report: what it says, then "r(XE.T)="
    double Test::*value;
    double Test::*probability;
    ReportBlock block;
    bool needsPhylogeny;
};

/// In the order of the report, those that it does not print behind the others.
extern const std::span<const AnalysisStatistic> kAnalysisStatistics;

/// What a statistic says: its label without the name.
std::string_view MeaningOf(const AnalysisStatistic& statistic);
