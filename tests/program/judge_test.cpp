// The report on the examples against general packages of statistics; scripts/judge tells how the
// values were made.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "support/judge_values.h"
#include "support/run_program.h"

namespace {

constexpr double kPrintedDigits = 1e-5;

struct Analysis {
    const char* name;        ///< of its values
    const char* belonging;   ///< 0 crisp, 1 fuzzy
    const char* congruence;  ///< with the resemblance function
    const char* unitTotals;
};

const Analysis kAnalyses[] = {{"mantel6", "1", "1\n6", "y"},
                              {"mantel8", "1", "1\n8", "y"},
                              {"mantel10_raw", "1", "1\n10", "n"},
                              {"mantel6_crisp", "0", "1\n6", "y"},
                              {"procrustes", "1", "2", "y"},
                              {"rv", "1", "3", "y"},
                              {"rv_raw", "1", "3", "n"}};

/// The prepared answers of an example up to the types of OTUs, then the settings of `analysis`.
std::string Answers(const std::string& prepared, const std::string& example, const Analysis& a) {
    const std::string types = "types.txt\n";
    const std::size_t end = prepared.find(types);
    EXPECT_NE(end, std::string::npos);
    const std::string traitGroups = example == "mafragh" ? "y\n" : "";
    return prepared.substr(0, end) + types + a.belonging + "\n1\n0\n2\n1\n" + a.congruence +
           "\n1\n" + traitGroups + a.unitTotals + "\nn\nC\nC\nX\n";
}

/// The numbers that stand after the first tab or line end behind `title`.
std::vector<double> NumbersAfter(const std::string& report, const std::string& title) {
    const std::size_t at = report.find_first_of("\t\n", report.find(title) + title.size());
    std::vector<double> numbers;
    if (report.find(title) == std::string::npos || at == std::string::npos) return numbers;
    std::istringstream words(report.substr(at));
    for (double x; words >> x;) numbers.push_back(x);
    return numbers;
}

int CountAsJudged(const std::string& report, const std::string& analysis) {
    int judged = 0;
    for (const char* letters : {"TE", "XE", "XE.T", "RE", "XE.TR", "BF", "PE", "PT", "PX", "PX.T",
                                "TE.P", "XE.P", "XE.TP", "PE.T", "PE.X", "FE"}) {
        std::string name = letters;
        std::ranges::replace(name, '.', '_');
        name = analysis + ".ro" + name;
        if (!HasJudged(name)) continue;
        ExpectAsJudged(name, NumbersAfter(report, std::string("(") + letters + ")"),
                       kPrintedDigits);
        judged++;
    }
    return judged;
}

void RunProgramAsJudged(TempFolder* folder, const std::string& answers, std::string* report) {
    const ProgramRun run = RunProgram(*folder, answers);
    ASSERT_EQ(run.status, 0) << run.err;
    *report =
        folder->Read(folder->Has("aravoPrinda.txt") ? "aravoPrinda.txt" : "mafraghPrinda.txt");
}

TEST(JudgedReport, OfTheExamples) {
    for (const std::string example : {"aravo", "mafragh"}) {
        for (const Analysis& analysis : kAnalyses) {
            SCOPED_TRACE(example + " " + analysis.name);
            TempFolder folder;
            std::filesystem::copy(TESSEL_EXAMPLES "/" + example, folder.path());
            std::string report;
            RunProgramAsJudged(&folder, Answers(folder.Read("answers.txt"), example, analysis),
                               &report);
            EXPECT_EQ(CountAsJudged(report, example + "." + analysis.name),
                      example == "mafragh" ? 16 : 5);
            ExpectAsJudged(example + ".gini", NumbersAfter(report, "\nGini-Simpson index (D)"),
                           kPrintedDigits);
            ExpectAsJudged(example + ".rao_sqrt",
                           NumbersAfter(report, "considering trait dissimilarities"),
                           kPrintedDigits);
            if (example == "mafragh")
                ExpectAsJudged(example + ".rao_phylogeny",
                               NumbersAfter(report, "\nRao quadratic entropy (Rp)"),
                               kPrintedDigits);
        }
    }
}

TEST(JudgedReport, OfVariablesOfMixedTypes) {
    TempFolder folder;
    std::filesystem::copy(TESSEL_EXAMPLES "/aravo", folder.path());
    std::filesystem::rename(folder.path() / "E_mixed.txt", folder.path() / "E.txt");
    std::string prepared = folder.Read("answers.txt");
    const std::string kind = "\n4\n2\n2\nN\nV\n";
    ASSERT_NE(prepared.find(kind), std::string::npos);
    prepared.replace(prepared.find(kind), kind.size(), "\n6\n2\n5\nk\n3 3 4 3 2 3\ny\nN\nV\n");
    std::string report;
    RunProgramAsJudged(&folder, Answers(prepared, "aravo", kAnalyses[0]), &report);
    EXPECT_EQ(CountAsJudged(report, "aravo.mixed"), 5);
}

}  // namespace
