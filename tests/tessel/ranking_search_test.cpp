// The searches of trait subsets against a brute-force recomputation from the raw tables, and their
// odd cases.

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <functional>
#include <random>
#include <sstream>

#include "in_process.h"
#include "nrutilMX/nrutilMX.h"
#include "reference/ranking_session.h"
#include "support/text.h"

namespace {

constexpr int kAllCriteria[] = {1, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24};

/// A subset by the letters of its traits, and its value; "none" for no subset.
struct Rated {
    std::string subset;
    double value;
};
using RatedSubsets = std::vector<Rated>;

bool IsByMagnitude(int criterion) {
    return Contains(" 9 12 17 20 23 ", " " + std::to_string(criterion) + " ");
}
bool IsNiche(int criterion) {
    return criterion == 14 || criterion == 15;
}

/// Value and labels among the fields of a line, blanks and the number of types left out.
Rated ParseLine(const std::string& line) {
    std::istringstream fields(line);
    std::string field;
    Rated rated{"", 0};
    std::getline(fields, field, '\t');
    rated.value = std::strtod(field.c_str(), nullptr);
    while (std::getline(fields, field, '\t'))
        if (!Contains(field, "groups")) rated.subset += field.substr(0, field.find(' '));
    return rated;
}

/// The lines behind the n-th heading that begins so, up to an empty one; the heading's second line
/// names the columns.
RatedSubsets ListBehind(const std::string& text, const std::string& heading) {
    RatedSubsets list;
    std::istringstream lines(text.substr(std::min(text.size(), text.find(heading))));
    std::string line;
    std::getline(lines, line);
    std::getline(lines, line);
    while (std::getline(lines, line) && !line.empty() && !Contains(line, "Elapsed"))
        list.push_back(ParseLine(line));
    return list;
}

struct Report {
    std::string text;
    RatedSubsets bestOfSize;  ///< by the lines that the search writes as it goes
    RatedSubsets table;       ///< the same by the closing table or the overwritten head
    RatedSubsets ranked;
    RatedSubsets rankedTwin;  ///< second list of the niche conservation
};

/// Labels of each size, numbers of types, values.
RatedSubsets ParseHead(const std::string& text, int sizes) {
    std::istringstream lines(text);
    std::string line;
    RatedSubsets head(sizes);
    for (Rated& rated : head) {
        std::getline(lines, line);
        rated.subset = ParseLine("0\t" + line).subset;
    }
    std::getline(lines, line);
    std::getline(lines, line);
    for (Rated& rated : head)
        if (lines >> line) rated.value = std::strtod(line.c_str(), nullptr);
    return head;
}

Report ParseReport(const std::string& text) {
    Report report{text, {}, {}, {}, {}};
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("Ranking criterion value"))
            report.bestOfSize.push_back(ParseLine(line.substr(line.find('\t') + 1)));
    const int sizes = int(report.bestOfSize.size());
    if (IsNiche(opt_struct)) {
        report.table = ParseHead(text, sizes);
        report.ranked = ListBehind(text, "Trait subsets and number of types with maximum");
        report.rankedTwin = ListBehind(text, "Trait subsets with maximum matrix correlation (only");
    } else {
        report.ranked = ListBehind(text, "Trait subsets with maximum");
        report.table = ListBehind(text, "Trait subsets with maximum rank for each number");
    }
    return report;
}

/// All subsets of the traits in use in the order of the walk: size after size, by letters.
RatedSubsets RateAll(const RankingCase& in) {
    const auto rate = PlainRanking(in);
    const int p = int(in.weights.size());
    RatedSubsets all;
    for (int k = 1; k <= p; k++) {
        std::vector<int> selected(p, 0);
        std::fill_n(selected.begin(), k, 1);
        do {
            Rated rated{"", 0};
            bool inUse = true;
            for (int j = 0; j < p; j++)
                if (selected[j] == 1) rated.subset += char('a' + j), inUse &= in.weights[j] > 0;
            rated.value = inUse ? rate(selected) : 0;
            if (inUse) all.push_back(rated);
        } while (std::prev_permutation(selected.begin(), selected.end()));
    }
    return all;
}

double ValueOf(const RatedSubsets& all, const std::string& subset) {
    const auto found = std::ranges::find(all, subset, &Rated::subset);
    EXPECT_NE(found, all.end()) << "'" << subset << "'";
    return found == all.end() ? std::nan("") : found->value;
}

/// Random tables with zeros, ties and missing values, different for each seed: kinds of variables,
/// resemblances, a trait of weight 0, weights below 1.
RankingCase RandomCase(unsigned seed, int criterion, int measure, bool fuzzy) {
    std::mt19937 random(seed);
    const auto number = [&](int low, int high) {
        return double(std::uniform_int_distribution<int>(low, high)(random));
    };
    const int communities = 7, OTUs = 9;
    RankingCase in;
    in.traitTypes = {3, 1, 4, 2, 3};
    in.weights = {1, 1, seed % 3 == 1 ? 0.0F : 1.0F, 1, seed % 3 == 2 ? 0.5F : 1.0F};
    in.variableTypes = {3, 4, seed % 3 == 2 ? 2 : 3};
    in.kindOfE = std::vector<int>{1, 2, 5}[seed % 3];
    for (int i = 0; i < OTUs; i++) {
        in.B.push_back({number(1, 90) / 8, number(0, 1), number(1, 4), number(1, 3), number(0, 9)});
        if (i % 4 == 1) in.B[i][seed % 5] = -999;
        in.types.push_back(std::vector<int>{7, 2, 5}[i % 3]);
        in.taxa.push_back(i % 2 + 1);
    }
    for (int i = 0; i < communities; i++) {
        in.E.push_back({number(0, 40) / 4, number(1, 9), number(1, 3)});
        in.W.emplace_back(OTUs);
        for (double& w : in.W[i]) w = number(0, 1) * number(1, 6);
        in.W[i][i] = 2;
    }
    if (seed % 3 == 0) in.E[2][1] = -999;
    if (seed % 4 == 3) in.W[1][2] = in.W[4][0] = -999;
    in.F.assign(OTUs, std::vector<double>(OTUs, seed % 2));
    for (int i = 0; i < OTUs; i++)
        for (int j = 0; j < i; j++) in.F[i][j] = in.F[j][i] = number(1, 20) / 20;
    in.similarF = seed % 2 == 1;
    in.criterion = criterion;
    in.measure = measure;
    in.fuzzy = fuzzy;
    in.resemblance = criterion == 10 || criterion == 16 ? 6 : std::vector<int>{6, 10, 8}[seed % 3];
    in.unitTotals = seed % 2 == 0 && criterion != 10;
    in.doubleAbsences = int(seed % 2);
    in.squareRoots = seed % 4 != 1;
    in.target = seed % 3 != 0;
    return in;
}

class RankingSearch : public InProcess {
  protected:
    ~RankingSearch() override { BealsIncludeOpt = sqrtDissimOpt_RaoTraits = true; }

    Report Search(
        const RankingCase& in, const std::function<void()>& set = [] {}) {
        OpenRanking(in);
        sDigits = 10;
        set();
        const ConsoleRun run = Typed("", [] { CriterionOf(opt_struct).search(); });
        EXPECT_EQ(run.raised, 0);
        return ParseReport(folder_.Read("Ranking.txt"));
    }
};

/// What single precision leaves of agreement: of the tables, of the correlations, of nothing.
double Tolerance(int criterion) {
    const std::string number = " " + std::to_string(criterion) + " ";
    if (Contains(" 1 10 14 15 ", number)) return 2e-6;
    return Contains(" 11 12 13 16 24 ", number) ? 1e-9 : 2e-7;
}

/// Subsets of equal value may stand for each other.
void ExpectSameRanking(const RankingCase& in, const Report& report) {
    const RatedSubsets all = RateAll(in);
    const double tolerance = Tolerance(in.criterion);
    const bool byMagnitude = IsByMagnitude(in.criterion);
    const auto key = [&](double v) { return byMagnitude ? std::fabs(v) : v; };
    ASSERT_EQ(report.bestOfSize.size(), in.weights.size());
    for (std::size_t k = 0; k < in.weights.size(); k++) {
        double best = -DBL_MAX;
        for (const Rated& rated : all)
            if (rated.subset.size() == k + 1) best = std::max(best, key(rated.value));
        const Rated& found = report.bestOfSize[k];
        EXPECT_EQ(found.subset, report.table[k].subset);
        EXPECT_EQ(found.value, report.table[k].value);
        if (best == -DBL_MAX || (byMagnitude && best < tolerance)) {
            EXPECT_EQ(found.subset, byMagnitude ? "none" : "");
            EXPECT_EQ(found.value, byMagnitude ? 0 : -HUGE_VAL) << "as strtod reads it";
            continue;
        }
        EXPECT_EQ(found.subset.size(), k + 1);
        EXPECT_NEAR(key(found.value), best, tolerance) << found.subset;
        EXPECT_NEAR(found.value, ValueOf(all, found.subset), tolerance) << found.subset;
    }
    std::vector<double> expected;
    for (const Rated& rated : all)
        if (key(rated.value) > tolerance) expected.push_back(key(rated.value));
    std::ranges::sort(expected, std::greater<>());
    ASSERT_GE(report.ranked.size(), expected.size());
    std::set<std::string> met;
    for (std::size_t place = 0; place < expected.size(); place++) {
        const Rated& rated = report.ranked[place];
        EXPECT_TRUE(met.insert(rated.subset).second) << rated.subset << " twice";
        EXPECT_NEAR(key(rated.value), expected[place], tolerance) << place;
        EXPECT_NEAR(rated.value, ValueOf(all, rated.subset), tolerance) << rated.subset;
    }
    for (std::size_t place = expected.size(); place < report.ranked.size(); place++)
        EXPECT_NEAR(report.ranked[place].value, 0, tolerance) << place;
}

TEST_F(RankingSearch, AgreesWithBruteForce) {
    for (unsigned seed = 1; seed <= 12; seed++)
        for (const int criterion : kAllCriteria)
            for (const int measure : {1, 2, 3})
                for (const bool fuzzyTypes : {true, false}) {
                    const RankingCase in = RandomCase(seed, criterion, measure, fuzzyTypes);
                    SCOPED_TRACE(testing::Message()
                                 << "seed " << seed << " criterion " << criterion << " measure "
                                 << measure << " fuzzy " << fuzzyTypes);
                    ExpectSameRanking(in, Search(in));
                }
}

}  // namespace
