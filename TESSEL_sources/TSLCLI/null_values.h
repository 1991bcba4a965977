#pragma once
/// \file
/// Values of statistics under a null model as tables: each of them, and what they come to.

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "TSLCLI/csv_writer.h"

/// Mean and standard deviation (n - 1) of values as they come. What is not a number is left out.
class Moments {
  public:
    void Add(double value);
    int count() const { return count_; }
    double Mean() const;               ///< NaN without values
    double StandardDeviation() const;  ///< NaN for less than two

  private:
    int count_ = 0;
    double mean_ = 0.0;
    double squares_ = 0.0;  ///< of the deviations
};

/// The values of some statistics, arrangement after arrangement, the observed one first.
class NullValues {
  public:
    /// Writes them to `path`, a row per arrangement, a column for each of `names`.
    NullValues(const std::string& path, const std::vector<std::string>& names);

    void Add(std::span<const double> values);
    void Finish();

    /// Of the permuted values of a statistic.
    const Moments& moments(int statistic) const { return moments_[statistic]; }

  private:
    CsvWriter table_;
    int arrangements_ = 0;
    std::vector<Moments> moments_;
};

/// The names of the columns that PutNullCells fills.
inline const std::vector<std::string> kNullColumns = {
    "value", "P", "iterations", "null_values", "null_mean", "null_sd", "SES"};

/// Adds a value with its probability, the iterations behind it and what its null values come to.
/// SES is the standardised effect size, (value - mean) / standard deviation.
void PutNullCells(double value, double probability, int iterations, const Moments& moments,
                  CsvWriter* table);
