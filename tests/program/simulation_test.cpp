// The example study of the assembly simulation: what its README tells comes out of its answers.

#include <gtest/gtest.h>

#include "support/run_program.h"
#include "support/text.h"

namespace {

/// Runs the example's answers in a copy of its folder; gives the screen.
std::string RunExample(const TempFolder& folder, const std::string& answers) {
    namespace fs = std::filesystem;
    fs::copy(fs::path(TESSEL_EXAMPLES) / "simulation", folder.path());
    const ProgramRun run = RunProgram(folder, folder.Read(answers), 250);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(WithoutBells(run.err), "");
    return run.out;
}

/// The rate of rejection behind the label in the report of an evaluation.
double Rate(const TempFolder& folder, const std::string& label) {
    const std::string report = folder.Read("FinalSimulatedData.txt");
    const std::string key = "\n" + label + "\tP=\t";
    const std::size_t at = report.find(key);
    return at == std::string::npos ? -1.0 : std::stod(report.substr(at + key.size()));
}

constexpr const char* kConvergence = "Convergence (TCAP): r(TE)";
constexpr const char* kBoth = "Both TCAP and Divergence (TDAP): r(XE)";

}  // namespace

// 200 tests at 0.05: more than 22 rejections come by chance once in some thousand runs.
TEST(SimulationStudy, NeutralWorldIsRejectedAtAboutAlpha) {
    const TempFolder folder;
    RunExample(folder, "answers_neutral.txt");
    for (const char* label : {kConvergence, kBoth, "TDAP: r(XE.T)"}) {
        EXPECT_GE(Rate(folder, label), 0.01) << label;
        EXPECT_LE(Rate(folder, label), 0.11) << label;
    }
}

TEST(SimulationStudy, StrongFilterIsFound) {
    const TempFolder folder;
    RunExample(folder, "answers_filter.txt");
    EXPECT_GE(Rate(folder, kConvergence), 0.95);
    EXPECT_GE(Rate(folder, kBoth), 0.9);
}

TEST(SimulationStudy, SimulatedDataGoThroughTheFunctionalAnalysis) {
    const TempFolder folder;
    EXPECT_TRUE(Contains(RunExample(folder, "answers.txt"), "Results on file assemblyPrinda.txt"));
    const std::string key = "Convergence (TCAP): r(TE)=\t";
    const std::string report = folder.Read("assemblyPrinda.txt");
    const std::size_t at = report.find(key);
    ASSERT_NE(at, std::string::npos);
    EXPECT_GT(std::stod(report.substr(at + key.size())), 0.5);
}
