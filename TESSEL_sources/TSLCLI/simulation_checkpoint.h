#pragma once
/// \file
/// The checkpoints of a simulation that is evaluated.

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "TSLCLI/checkpoint.h"
#include "TSLIF/simulation.h"

/// Receives a data set's number and its EvaluatedValues.
using EvaluatedReceiver = std::function<void(int dataSet, std::span<const double> values)>;

class SimulationCheckpoint {
  public:
    /// Takes up what is in the file. Only an evaluation has checkpoints; one whose report tells of
    /// each data set begins anew.
    SimulationCheckpoint(const std::string& path, std::uint64_t digest, bool evaluates,
                         bool reportsDataSets);

    bool GoesOn() const { return goesOn_; }

    /// The run begins.
    void Begin();

    /// Lets the run go on where it was, and follows it; `receive` gets every data set, former ones
    /// first.
    void Follow(const SimulationAnswers& answers, SimulationRun* run,
                const EvaluatedReceiver& receive);

    void Remove() { file_.Remove(); }

  private:
    void SaveIfDue(const SimulationPlace& place);

    Checkpoint file_;
    const bool evaluates_;
    const bool reportsDataSets_;
    bool goesOn_ = false;
    std::optional<SimulationPlace> place_;
    std::vector<std::vector<double>> rows_;  ///< EvaluatedValues, by data set
};
