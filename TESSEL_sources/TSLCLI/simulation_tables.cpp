#include "TSLCLI/simulation_tables.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <optional>
#include <string_view>

#include "TSLCLI/csv_writer.h"
#include "TSLCLI/failure.h"
#include "TSLIF/simulation/evaluation.h"
#include "TSLRESE/analysis_statistics.h"
#include "mxlibRes/binomial_limits.h"

namespace {

constexpr double kLevel = 0.95;  // of the confidence limits

/// The report's label is "meaning: statistic", or the statistic alone, whose letters Y and Z are
/// not those of analyse: its meaning is then that of the record.
struct Label {
    std::string_view meaning, statistic;
};

Label LabelOf(const RatedStatistic& rated) {
    const std::string_view label = rated.label;
    constexpr std::string_view kBetween = ": ";
    const std::size_t at = label.rfind(kBetween);
    if (at == std::string_view::npos) {
        const auto known =
            std::find_if(kAnalysisStatistics.begin(), kAnalysisStatistics.end(),
                         [&](const AnalysisStatistic& s) { return s.value == rated.value; });
        return {MeaningOf(*known), label};
    }
    return {label.substr(0, at), label.substr(at + kBetween.size())};
}

}  // namespace

SimulationPart PartOf(std::string_view text) {
    SimulationPart part;
    const char* const end = text.data() + text.size();
    const char* const bar = std::from_chars(text.data(), end, part.part).ptr;
    if (bar == end || *bar != '/') return {};
    const auto [rest, error] = std::from_chars(bar + 1, end, part.parts);
    if (error != std::errc() || rest != end || part.part < 1 || part.part > part.parts) return {};
    return part;
}

std::string NameOfRated(int k) {
    return std::string(LabelOf(ratedStatistics[k]).statistic);
}

struct SimulationStatistics::Table : CsvWriter {
    using CsvWriter::CsvWriter;
};

SimulationStatistics::SimulationStatistics(const std::string& path)
    : table_(std::make_unique<Table>(path, std::vector<std::string>(std::begin(kStatisticsHeader),
                                                                    std::end(kStatisticsHeader)))) {
}

SimulationStatistics::~SimulationStatistics() = default;

void SimulationStatistics::Add(int dataSet, std::span<const double> values) {
    for (std::size_t k = 0; k < kRatedStatistics; k++) {
        table_->Integer(dataSet);
        table_->Text(LabelOf(ratedStatistics[k]).statistic);
        table_->RealAsIs(values[2 * k]);
        table_->RealAsIs(values[2 * k + 1]);
        table_->EndRow();
    }
}

void SimulationStatistics::Finish() {
    table_->Finish();
}

void TellRates(const std::vector<int>& rejections, int dataSets, double alpha,
               const std::string& path) {
    std::optional<CsvWriter> table;
    if (!path.empty())
        table.emplace(path, std::vector<std::string>{"statistic", "meaning", "rejections",
                                                     "data sets", "rate", "lower limit",
                                                     "upper limit", "confidence level", "alpha"});
    char head[80];
    std::snprintf(head, sizeof head, "Rates of P <= %g, with their %g %% limits:", alpha,
                  100 * kLevel);
    Tell(head);
    for (int k = 0; k < kRatedStatistics; k++) {
        const Label label = LabelOf(ratedStatistics[k]);
        const ConfidenceLimits limits = BinomialLimits(rejections[k], dataSets, kLevel);
        const double rate = static_cast<double>(rejections[k]) / dataSets;
        char line[80];
        std::snprintf(line, sizeof line, "%-8s %-6.4g (%.4g to %.4g) ",
                      std::string(label.statistic).c_str(), rate, limits.lower, limits.upper);
        Tell(line + std::string(label.meaning));
        if (!table) continue;
        table->Text(label.statistic);
        table->Text(label.meaning);
        table->Integer(rejections[k]);
        table->Integer(dataSets);
        for (const double number : {rate, limits.lower, limits.upper, kLevel, alpha})
            table->RealAsIs(number);
        table->EndRow();
    }
    if (table) table->Finish();
}
