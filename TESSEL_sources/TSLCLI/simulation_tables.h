#pragma once
/// \file
/// The tables of a simulation's results.

#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// How those tables are called.
inline constexpr std::initializer_list<const char*> kSimulationTables = {"statistics.csv",
                                                                         "rates.csv"};

/// Their folder, if no other is given.
inline constexpr const char* kSimulatedTables = "SimulatedTables";

/// One of several parts of an evaluation, as the option --part has it.
struct SimulationPart {
    int part = 0;
    int parts = 0;
};
inline constexpr const char* kWholeRun = "1/1";
/// Of "3/20"; of 0 parts where the text is none.
SimulationPart PartOf(std::string_view text);

/// The columns of the first, and what stands in it for each statistic in turn.
inline constexpr const char* kStatisticsHeader[] = {"data set", "statistic", "value", "P"};
std::string NameOfRated(int k);

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
