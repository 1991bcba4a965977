#pragma once
/// \file
/// Values of the statistics of the examples by general packages, as tests/data/judge_values.txt
/// holds them.

#include <string>
#include <vector>

/// The numbers under `name`; none, and a failed test, without such a line.
std::vector<double> Judged(const std::string& name);
bool HasJudged(const std::string& name);

/// `value` against the only number under `name`, within `tolerance` relative to it.
void ExpectAsJudged(const std::string& name, double value, double tolerance);
/// The same number by number, within `tolerance` relative to the largest.
void ExpectAsJudged(const std::string& name, const std::vector<double>& values, double tolerance);
