// The report on the examples against general packages of statistics; scripts/judge tells how the
// values were made.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <vector>

#include "support/judge_values.h"
#include "support/run_program.h"
#include "support/text.h"

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

/// The prepared answers of an example: as they are for the first analysis, else up to the types of
/// OTUs, then the settings of `analysis`.
std::string Answers(const std::string& prepared, const std::string& example, const Analysis& a) {
    if (&a == kAnalyses) return prepared;
    const std::string types = "types.txt\n";
    const std::string traitGroups = example == "mafragh" ? "y\n" : "";
    return prepared.substr(0, prepared.find(types)) + types + a.belonging + "\n1\n0\n2\n1\n" +
           a.congruence + "\n1\n" + traitGroups + a.unitTotals + "\nn\nC\nC\nX\n";
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

/// Runs an example and holds the `count` correlations of its report that were judged as `analysis`
/// against their values.
std::string ReportAsJudged(const TempFolder& folder, const std::string& answers,
                           const std::string& analysis, int count) {
    const ProgramRun run = RunProgram(folder, answers, 240);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    const std::string example = analysis.substr(0, analysis.find('.'));
    const std::string report = folder.Read(example + "Prinda.txt");
    int judged = 0;
    for (const std::string letters : {"TE", "XE", "XE.T", "RE", "XE.TR", "BF", "PE", "PT", "PX",
                                      "PX.T", "TE.P", "XE.P", "XE.TP", "PE.T", "PE.X", "FE"}) {
        std::string name = analysis + ".ro" + letters;
        std::replace(name.end() - std::ptrdiff_t(letters.size()), name.end(), '.', '_');
        if (!HasJudged(name)) continue;
        ExpectAsJudged(name, NumbersAfter(report, "(" + letters + ")"), kPrintedDigits);
        judged++;
    }
    EXPECT_EQ(judged, count);
    return report;
}

TEST(JudgedReport, OfTheExamples) {
    for (const std::string example : {"aravo", "mafragh"})
        for (const Analysis& analysis : kAnalyses) {
            SCOPED_TRACE(example + " " + analysis.name);
            const bool hasPhylogeny = example == "mafragh";
            TempFolder folder;
            std::filesystem::copy(TESSEL_EXAMPLES "/" + example, folder.path());
            const std::string report =
                ReportAsJudged(folder, Answers(folder.Read("answers.txt"), example, analysis),
                               example + "." + analysis.name, hasPhylogeny ? 16 : 5);
            const auto expect = [&](const char* name, const char* title) {
                ExpectAsJudged(example + name, NumbersAfter(report, title), kPrintedDigits);
            };
            expect(".gini", "\nGini-Simpson index (D)");
            expect(".rao_sqrt", "considering trait dissimilarities");
            if (hasPhylogeny) expect(".rao_phylogeny", "\nRao quadratic entropy (Rp)");
        }
}

TEST(JudgedReport, OfVariablesOfMixedTypes) {
    TempFolder folder;
    std::filesystem::copy(TESSEL_EXAMPLES "/aravo", folder.path());
    std::filesystem::rename(folder.path() / "E_mixed.txt", folder.path() / "E.txt");
    ReportAsJudged(folder,
                   Replaced(folder.Read("answers.txt"), "\n4\n2\n2\nN\nV\n",
                            "\n6\n2\n5\nk\n3 3 4 3 2 3\ny\nN\nV\n"),
                   "aravo.mixed", 5);
}

}  // namespace
