#include "TSLCLI/null_values.h"

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

std::vector<std::string> Header(const std::vector<std::string>& names) {
    std::vector<std::string> header = {"arrangement"};
    header.insert(header.end(), names.begin(), names.end());
    return header;
}

}  // namespace

/// Welford's recurrence.
void Moments::Add(double value) {
    if (std::isnan(value)) return;
    count_++;
    const double before = value - mean_;
    mean_ += before / count_;
    squares_ += before * (value - mean_);
}

double Moments::Mean() const {
    return count_ > 0 ? mean_ : kNaN;
}

double Moments::StandardDeviation() const {
    return count_ > 1 ? std::sqrt(squares_ / (count_ - 1)) : kNaN;
}

NullValues::NullValues(const std::string& path, const std::vector<std::string>& names)
    : table_(path, Header(names)), moments_(names.size()) {}

void NullValues::Add(std::span<const double> values) {
    table_.Integer(arrangements_);
    for (std::size_t k = 0; k < values.size(); k++) {
        table_.RealAsIs(values[k]);
        if (arrangements_ > 0) moments_[k].Add(values[k]);
    }
    table_.EndRow();
    arrangements_++;
}

void NullValues::Finish() {
    table_.Finish();
}

void PutNullCells(double value, double probability, int iterations, const Moments& moments,
                  CsvWriter* table) {
    const double deviation = moments.StandardDeviation();
    table->RealAsIs(value);
    table->RealAsIs(probability);
    table->Integer(iterations);
    table->Integer(moments.count());
    table->RealAsIs(moments.Mean());
    table->RealAsIs(deviation);
    table->RealAsIs(deviation > 0.0 ? (value - moments.Mean()) / deviation : kNaN);
}
