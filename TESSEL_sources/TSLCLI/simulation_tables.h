#pragma once
/// \file
/// The tables of a simulation's results.

#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <vector>

struct Evaluation;

/// How those tables are called.
inline constexpr std::initializer_list<const char*> kSimulationTables = {"statistics.csv",
                                                                         "rates.csv"};

/// Value and P of each statistic in turn.
std::vector<double> EvaluatedValues(const Evaluation& evaluation);

/// The statistics of every data set, written as they come: data set, statistic, value, P.
class SimulationStatistics {
  public:
    explicit SimulationStatistics(const std::string& path);
    ~SimulationStatistics();
    /// `values` of EvaluatedValues.
    void Add(int dataSet, std::span<const double> values);
    void Finish();

  private:
    struct Table;
    std::unique_ptr<Table> table_;
};

/// The rates of rejection at `alpha` among so many data sets, from the counts of the rejections by
/// each statistic, with exact confidence limits. Tells them; writes them where a path is given.
void TellRates(const std::vector<int>& rejections, int dataSets, double alpha,
               const std::string& path);
