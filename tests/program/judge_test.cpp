// The reports on the examples against general packages of statistics; scripts/judge tells how the
// values were made.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

#include "support/run_program.h"
#include "support/text.h"

namespace {

using Numbers = std::vector<double>;

/// The numbers of tests/data/judge_values.txt by their names.
std::map<std::string, Numbers> ReadJudged() {
    std::ifstream stream(TESSEL_TEST_DATA "/judge_values.txt");
    std::map<std::string, Numbers> judged;
    for (std::string line, name; std::getline(stream, line);) {
        std::istringstream words(line);
        words >> name;
        for (double x; words >> x;) judged[name].push_back(x);
    }
    return judged;
}
const std::map<std::string, Numbers> kJudged = ReadJudged();

/// To the digits printed, relative to the largest number.
void ExpectAsJudged(const std::string& name, const Numbers& numbers) {
    const Numbers& judged = kJudged.at(name);
    ASSERT_EQ(numbers.size(), judged.size()) << name;
    double largest = 0.0;
    for (const double x : judged) largest = std::max(largest, std::fabs(x));
    for (std::size_t i = 0; i < judged.size(); i++)
        EXPECT_NEAR(numbers[i], judged[i], 1e-5 * largest) << name << " " << i;
}

struct Analysis {
    const char* name;        ///< of its values
    const char* belonging;   ///< 0 crisp, 1 fuzzy
    const char* congruence;  ///< with the resemblance function
    const char* unitTotals;
    int rankings;  ///< judged with smoothed communities; a ranking always takes T at unit totals
};

const Analysis kAnalyses[] = {
    {"mantel6", "1", "1 6", "y", 6},       {"mantel8", "1", "1 8", "y", 6},
    {"mantel10_raw", "1", "1 10", "n", 2}, {"mantel6_crisp", "0", "1 6", "y", 6},
    {"procrustes", "1", "2", "y", 5},      {"rv", "1", "3", "y", 5},
    {"rv_raw", "1", "3", "n", 2}};

/// The prepared answers of an example up to the types of OTUs, then the settings of `analysis` and,
/// where traits have no groups, the rankings that compare the subset of all eight with smoothed
/// communities.
std::string Answers(const std::string& prepared, bool traitGroups, const Analysis& a) {
    const std::string types = std::string("n f\ntypes.txt\n") + a.belonging + "\n";
    const std::string rest =
        std::string(a.congruence) + (traitGroups ? " 1 y " : " 1 ") + a.unitTotals;
    std::string answers = prepared.substr(0, prepared.find("H\nn\n"));
    answers += "H " + types + "1 0 2 1 " + rest + " n\n";
    for (int criterion = 18; criterion <= 23 && !traitGroups; criterion++)
        answers += "K " + std::to_string(criterion) + " " + types + rest + " 8 8 n\n";
    return answers + "C C X\n";
}

/// The numbers that stand after the first tab or line end behind `title`.
Numbers NumbersAfter(const std::string& report, const std::string& title) {
    const std::size_t at = report.find_first_of("\t\n", report.find(title) + title.size());
    Numbers numbers;
    if (report.find(title) == std::string::npos || at == std::string::npos) return numbers;
    std::istringstream words(report.substr(at));
    for (double x; words >> x;) numbers.push_back(x);
    return numbers;
}

/// Runs an example and holds each statistic that was judged as `example.analysis`.
void ExpectAnalysisAsJudged(const std::string& example, const std::string& name,
                            const Analysis& analysis, const TempFolder& folder,
                            const std::string& prepared) {
    SCOPED_TRACE(example + "." + name);
    const bool hasPhylogeny = example == "mafragh";
    const ProgramRun run = RunProgram(folder, Answers(prepared, hasPhylogeny, analysis), 240);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    const std::string report = folder.Read(example + "Prinda.txt");
    int judged = 0;
    const auto expect = [&](std::string letters, const std::string& text,
                            const std::string& title) {
        std::ranges::replace(letters, '.', '_');
        const std::string key = example + "." + name + ".ro" + letters;
        if (!kJudged.contains(key)) return;
        const Numbers numbers = NumbersAfter(text, title);
        ExpectAsJudged(key, {numbers.empty() ? NAN : numbers[0]});
        judged++;
    };
    for (const std::string letters : {"TE", "XE", "XE.T", "RE", "XE.TR", "BF", "PE", "PT", "PX",
                                      "PX.T", "TE.P", "XE.P", "XE.TP", "PE.T", "PE.X", "FE"})
        expect(letters, report, "(" + letters + ")");
    // The ranking calls the smoothing by joint performances Z, the judge calls it Y.
    const std::pair<const char*, const char*> rankings[] = {{"XY", "roXZ"},     {"XZ", "roXY"},
                                                            {"TY", "roTZ"},     {"TZ", "roTY"},
                                                            {"XY.T", "roXZ_T"}, {"XZ.T", "roXY_T"}};
    for (int k = 0; k < analysis.rankings && !hasPhylogeny; k++)
        expect(rankings[k].first,
               folder.Read("aravoChRank_" + std::string(rankings[k].second) + ".txt"), "traits: ");
    EXPECT_EQ(judged, hasPhylogeny ? 16 : 5 + analysis.rankings);
    ExpectAsJudged(example + ".gini", NumbersAfter(report, "\nGini-Simpson index (D)"));
    ExpectAsJudged(example + ".rao_sqrt",
                   NumbersAfter(report, "considering trait dissimilarities"));
    if (hasPhylogeny)
        ExpectAsJudged(example + ".rao_phylogeny",
                       NumbersAfter(report, "\nRao quadratic entropy (Rp)"));
}

TEST(JudgedReport, OfTheExamples) {
    for (const std::string example : {"aravo", "mafragh"})
        for (const Analysis& analysis : kAnalyses) {
            const TempFolder folder;
            std::filesystem::copy(TESSEL_EXAMPLES "/" + example, folder.path());
            ExpectAnalysisAsJudged(example, analysis.name, analysis, folder,
                                   folder.Read("answers.txt"));
        }
    const TempFolder mixed;
    std::filesystem::copy(TESSEL_EXAMPLES "/aravo", mixed.path());
    mixed.Write("E.txt", mixed.Read("E_mixed.txt"));
    ExpectAnalysisAsJudged("aravo", "mixed", kAnalyses[0], mixed,
                           Replaced(mixed.Read("answers.txt"), "\n4\n2\n2\nN\nV\n",
                                    "\n6\n2\n5\nk\n3 3 4 3 2 3\ny\nN\nV\n"));
}

}  // namespace
