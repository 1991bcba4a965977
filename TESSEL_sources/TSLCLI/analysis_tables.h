#pragma once
/// \file
/// The tables of a functional analysis.

#include <optional>
#include <string>
#include <vector>

#include "TSLCLI/names.h"
#include "TSLCLI/null_values.h"
#include "TSLCLI/result_folder.h"
#include "TSLRESE/scaling_up.h"

/// Files that an analysis may write.
inline constexpr auto kAnalysisTables = {
    "statistics.csv",  "null.csv", "communities.csv", "types.csv",      "T.csv",
    "TNormalised.csv", "X.csv",    "U.csv",           "P.csv",          "Q.csv",
    "S.csv",           "DE.csv",   "DT.csv",          "DX.csv",         "DP.csv",
    "DZ.csv",          "DY.csv",   "ordinationT.csv", "ordinationX.csv"};

/// Writes the tables while the analysis goes on.
class AnalysisTables {
  public:
    /// `typeWords` stand for the types 1, 2, ...; empty: the types have no words.
    AnalysisTables(const FullNames& names, const std::vector<std::string>& typeWords,
                   ResultFolder* folder);

    /// To be handed to the analysis; refers to this object.
    AnalysisReceiver Receiver();

  private:
    using Test = PermTest_FunctionalPhyl_Correl_Input;

    void WriteMatrices(const ScalingUpMatrices& m);
    void WriteOrdinationOfT(const Test& test);
    void WriteCommunities(const ScalingUpMatrices& m);
    void WriteResemblances(const ScalingUpMatrices& m);
    void WriteStatistics(const Test& test);
    void AddArrangement(const Test& test);
    void WriteSquare(const char* table, const char* corner, const std::vector<std::string>& names,
                     const double* const* upper);

    const FullNames& names_;
    const std::vector<std::string>& typeWords_;
    ResultFolder& folder_;
    std::optional<NullValues> null_;
    std::vector<double> values_;  ///< of one arrangement
};

/// Whether the test compares communities by X and P: under the relative functions it makes no such
/// resemblance.
bool ComparesCompositions();

/// Names of the types of `partition`, by ascending label: the OTUs where each is a type of its own,
/// the species, the words, or the labels.
std::vector<std::string> TypeNames(const FullNames& names, const std::vector<std::string>& words);
