// The example study of the assembly simulation: what its README tells comes out of its answers.

#include <gtest/gtest.h>

#include <filesystem>

#include "support/run_program.h"
#include "support/text.h"

namespace {

/// Runs the example's answers, and expects the number behind each label in `file` to be from low to
/// high.
void ExpectBetween(const char* answers, const char* file, double low, double high,
                   std::initializer_list<const char*> labels) {
    const TempFolder folder;
    std::filesystem::copy(TESSEL_EXAMPLES "/simulation", folder.path());
    const ProgramRun run = RunProgram(folder, folder.Read(answers), 250);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(WithoutBells(run.err), "");
    const std::string text = folder.Read(file);
    for (const std::string label : labels) {
        const std::size_t at = text.find("\n" + label);
        ASSERT_NE(at, std::string::npos) << label;
        const double number = std::stod(text.substr(at + 1 + label.size()));
        EXPECT_TRUE(number >= low && number <= high) << label << number;
    }
}

}  // namespace

// 200 tests at 0.05: more than 22 rejections come by chance once in some thousand runs.
TEST(SimulationStudy, NeutralWorldIsRejectedAtAboutAlpha) {
    ExpectBetween("answers_neutral.txt", "FinalSimulatedData.txt", 0.01, 0.11,
                  {"Convergence (TCAP): r(TE)\tP=\t",
                   "Both TCAP and Divergence (TDAP): r(XE)\tP=\t", "TDAP: r(XE.T)\tP=\t"});
}

TEST(SimulationStudy, StrongFilterIsFound) {
    ExpectBetween(
        "answers_filter.txt", "FinalSimulatedData.txt", 0.9, 1,
        {"Convergence (TCAP): r(TE)\tP=\t", "Both TCAP and Divergence (TDAP): r(XE)\tP=\t"});
}

TEST(SimulationStudy, SimulatedDataGoThroughTheFunctionalAnalysis) {
    ExpectBetween("answers.txt", "assemblyPrinda.txt", 0.5, 1, {"Convergence (TCAP): r(TE)=\t"});
}
