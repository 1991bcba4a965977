// The searches of trait subsets against a brute-force recomputation from the raw tables, and their
// odd cases.

#include <algorithm>
#include <cfloat>
#include <climits>
#include <cmath>
#include <random>
#include <set>
#include <sstream>

#include "TSLCHORD/searches.h"
#include "in_process.h"
#include "mxlibPar/side_by_side.h"
#include "reference/ranking_session.h"
#include "support/text.h"

namespace {

const std::set<int> kAllCriteria = {1,  9,  10, 11, 12, 13, 14, 15, 16,
                                    17, 18, 19, 20, 21, 22, 23, 24};
const std::set<int> kByMagnitude = {9, 12, 17, 20, 23}, kNiche = {14, 15};

/// What single precision leaves of agreement: of the tables, of the correlations, of nothing.
double Tolerance(int criterion) {
    if (std::set{1, 10, 14, 15}.contains(criterion)) return 2e-6;
    return std::set{11, 12, 13, 16, 24}.contains(criterion) ? 1e-9 : 2e-7;
}

/// A subset by the letters of its traits, and its value; "none" for no subset.
struct Rated {
    std::string subset;
    double value;
    bool operator==(const Rated&) const = default;
};
using RatedSubsets = std::vector<Rated>;

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

/// The lines behind the heading that begins so, up to an empty one; its second line names the
/// columns.
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
    RatedSubsets ranked;
};

Report ParseReport(const std::string& text) {
    Report report{text, {}, ListBehind(text, "Trait subsets ")};
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with("Ranking criterion value"))
            report.bestOfSize.push_back(ParseLine(line.substr(line.find('\t') + 1)));
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
    const int communities = 7 + int(seed) % 5 * 3, OTUs = 9 + int(seed) % 4 * 5;
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
        in.W[i][i % OTUs] = 2;
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

    Report Search(const RankingCase& in, char eachSubset = 'n', int digits = 10) {
        OpenRanking(in);
        sDigits = digits;
        printRankIntermedResults = eachSubset;
        const ConsoleRun run = Typed("", [] { CriterionOf(opt_struct).search({}); });
        EXPECT_EQ(run.raised, 0);
        return ParseReport(folder_.Read("Ranking.txt"));
    }
};

/// Subsets of equal value may stand for each other.
void ExpectSameRanking(const RankingCase& in, const Report& report) {
    const RatedSubsets all = RateAll(in);
    const double tolerance = Tolerance(in.criterion);
    const bool byMagnitude = kByMagnitude.contains(in.criterion);
    const auto key = [&](double v) { return byMagnitude ? std::fabs(v) : v; };
    ASSERT_EQ(report.bestOfSize.size(), in.weights.size());
    for (std::size_t k = 0; k < in.weights.size(); k++) {
        double best = -DBL_MAX;
        for (const Rated& rated : all)
            if (rated.subset.size() == k + 1) best = std::max(best, key(rated.value));
        const Rated& found = report.bestOfSize[k];
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
    if (expected.size() > 100) expected.resize(100);
    ASSERT_GE(report.ranked.size(), expected.size());
    if (kNiche.contains(in.criterion)) {
        EXPECT_EQ(report.ranked.size(), 100U);
    }
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
                    ExpectSameRanking(in, Search(in, seed % 2 == 0 ? 'y' : 'n'));
                }
}

// With a line for each subset all are rated; without, an estimate leaves most of them out.
TEST_F(RankingSearch, EstimatesLeaveOutWhatIsNotKept) {
    for (unsigned seed = 1; seed <= 60; seed++) {
        RankingCase in = RandomCase(seed, seed % 2 == 0 ? 20 : 23, seed % 4 < 2 ? 2 : 3, true);
        for (std::size_t i = 0; i < in.B.size(); i++) {
            in.types[i] = int(i % (seed % 6 + 1));
            for (int k = 0; k < 3; k++)  // at times the same trait twice, or times itself
                in.B[i].push_back(in.B[i][(seed >> k) % 5] * (seed % 7 == 0 ? 1 : in.B[i][k]));
        }
        in.traitTypes.insert(in.traitTypes.end(), 3, 3);
        in.weights.insert(in.weights.end(), 3, 1);
        in.overfit = seed % 3 + 1;
        const Report all = Search(in, 'y', 17), estimated = Search(in, 'n', 17);
        EXPECT_EQ(estimated.bestOfSize, all.bestOfSize) << seed;
        EXPECT_EQ(estimated.ranked, all.ranked) << seed;
    }
}

// The same report to the byte for any number of threads; lines and structures are left to one.
using ThreadsRanking = RankingSearch;
TEST_F(ThreadsRanking, SameReportForAnyNumberOfThreads) {
    unsigned seed = 0;
    for (const int criterion : kAllCriteria)
        for (const int measure : {1, 2, 3}) {
            RankingCase in = RandomCase(seed, criterion, measure, seed % 5 != 0);
            std::mt19937 random(seed++);
            for (std::size_t i = 0; i < in.B.size(); i++)
                for (int k = 0; k < 4; k++) in.B[i].push_back(double(random() % 40) / 8);
            in.traitTypes.insert(in.traitTypes.end(), 4, 3);
            in.weights.insert(in.weights.end(), 4, 1);
            const auto report = [&](int threads) {
                OpenRanking(in);
                sDigits = 17;
                saveStruct = seed % 17 == 3 ? 'y' : 'n';
                printRankIntermedResults = seed % 17 == 6 ? 'y' : 'n';
                SetThreads(threads);
                Typed("", [] { CriterionOf(opt_struct).search({.aloneFor = 0}); });
                saveStruct = 'n';
                SetThreads(0);
                const std::string text = folder_.Read("Ranking.txt");
                return text.substr(text.find("Ranking c"),
                                   text.find("Elapsed") - text.find("Ranking c"));
            };
            const int threads = std::vector{2, 3, 5, 16}[seed % 4];
            const std::string serial = report(1);
            EXPECT_EQ(report(threads), serial) << criterion << " " << measure << " " << threads;
        }
}

/// Screened, alone and with others: the same file as from rating every subset, by all resemblances
/// that the screens know, with tied and unused traits and with few and many subsets kept.
TEST_F(ThreadsRanking, SameReportFromScreenedSubsets) {
    unsigned seed = 0;
    for (const int criterion : {10, 13, 14, 19, 22})
        for (const int measure : {1, 2, 3})
            for (const int resemblance : {6, 7, 8, 9, 10}) {
                RankingCase in = RandomCase(seed, criterion, measure, true);
                std::mt19937 random(seed++);
                for (std::size_t i = 0; i < in.B.size(); i++)
                    for (int k = 0; k < 7; k++) in.B[i].push_back(double(random() % 40) / 8);
                in.traitTypes.insert(in.traitTypes.end(), 7, 3);
                in.weights.insert(in.weights.end(), 7, 1);
                in.weights[2] = float(seed % 3);
                const auto report = [&](bool screens, int threads) {
                    OpenRanking(in);
                    rese_opt = resemblance;
                    nMinTraitsChRank = 1;
                    nMaxTraitsChRank = nch;
                    sDigits = 17;
                    SetThreads(threads);
                    Typed("", [screens] {
                        CriterionOf(opt_struct).search({.aloneFor = 0, .screens = screens});
                    });
                    SetThreads(0);
                    const std::string text = folder_.Read("Ranking.txt");
                    return text.substr(text.find("Ranking c"),
                                       text.find("Elapsed") - text.find("Ranking c"));
                };
                const std::string all = report(false, 1);
                for (const int threads : {1, 3})
                    EXPECT_EQ(report(true, threads), all)
                        << criterion << " " << measure << " " << resemblance << " " << threads;
            }
}

TEST_F(RankingSearch, WithoutEcologicalVariables) {
    for (const int criterion : {9, 10, 17, 18, 19, 20, 21, 22, 23})
        for (const int measure : {1, 2, 3}) {
            RankingCase in = RandomCase(2, criterion, measure, true);
            in.E.assign(in.W.size(), {});
            SCOPED_TRACE(testing::Message() << "criterion " << criterion << " measure " << measure);
            ExpectSameRanking(in, Search(in));
        }
}

TEST_F(RankingSearch, OneHundredBestOfMore) {
    for (const int criterion : {1, 9, 15}) {
        RankingCase in = RandomCase(6, criterion, 3, true);
        for (std::size_t i = 0; i < in.B.size(); i++)
            for (const int factor : {7, 5}) in.B[i].push_back(double(i * i * factor % 11));
        in.traitTypes.insert(in.traitTypes.end(), 2, 3);
        in.weights.insert(in.weights.end(), 2, 1);
        const Report report = Search(in);
        ExpectSameRanking(in, report);
        EXPECT_EQ(report.ranked.size(), 100U);
    }
}

/// Three communities of three OTUs, the types being {1} and {2, 3}; traits by their columns.
RankingCase TinyCase(int criterion, int measure, bool fuzzy,
                     const std::vector<std::vector<double>>& traits = {{0, 3, 4}}) {
    RankingCase in;
    in.B.resize(3);
    for (const auto& trait : traits)
        for (int i = 0; i < 3; i++) in.B[i].push_back(trait[i]);
    in.W = {{1, 0, 5}, {1, 1, 0}, {1, 3, 2}};
    in.E = {{0}, {1}, {3}};
    in.F = {{0, 0.5, 0.75}, {0.5, 0, 0.5}, {0.75, 0.5, 0}};
    in.traitTypes.assign(traits.size(), 3);
    in.weights.assign(traits.size(), 1);
    in.variableTypes = {3};
    in.types = in.taxa = {1, 2, 2};
    in.kindOfE = 1;
    in.criterion = criterion;
    in.measure = measure;
    in.fuzzy = fuzzy;
    return in;
}

TEST_F(RankingSearch, TwoCommunities) {
    // T: (20 9)/6 at unit length, distance 11/sqrt(481); X: (1 5) and (1 1), distance 4; E: 1.
    for (const auto& [criterion, value] :
         {std::pair(10, 11 / std::sqrt(481)), {1, 0.25}, {16, 0.0}, {24, 0.0}}) {
        RankingCase in = TinyCase(criterion, 1, false);
        in.W.pop_back();
        in.E.pop_back();
        EXPECT_NEAR(Search(in).bestOfSize[0].value, value, 1e-6) << criterion;
    }
}

// The columns were as wide as the digits asked for: gigabytes of blanks.
TEST_F(RankingSearch, DigitsBeyondThoseOfAnyNumber) {
    for (const int digits : {INT_MAX, INT_MIN}) {
        const Report report = Search(TinyCase(10, 2, true), 'y', digits);
        EXPECT_LT(report.text.size(), 10000U);
        EXPECT_EQ(report.bestOfSize.size(), 1U);
    }
}

TEST_F(RankingSearch, FirstOfEqualSubsets) {
    const Report equal = Search(TinyCase(10, 2, true, {{0, 3, 4}, {0, 3, 4}}));
    EXPECT_EQ(equal.bestOfSize[0].subset, "a");
    // Crisp types are the same for all subsets.
    const Report crisp = Search(TinyCase(1, 2, false, {{1, 2, 9}, {0, 3, 4}, {4, 1, 1}}));
    for (const char* first : {"a", "ab", "abc"})
        EXPECT_EQ(crisp.bestOfSize[std::strlen(first) - 1].subset, first);
    EXPECT_EQ(crisp.ranked.size(), 7U);
}

TEST_F(RankingSearch, ValuesThatAreDropped) {
    // All OTUs alike by trait a: no entropy anywhere, and RV divides 0 by 0.
    const Report undefined = Search(TinyCase(16, 3, true, {{2, 2, 2}, {0, 3, 4}}));
    EXPECT_EQ(undefined.bestOfSize[0].subset, "b");
    EXPECT_EQ(undefined.ranked.size(), 2U);
    const Report never = Search(TinyCase(16, 3, true, {{2, 2, 2}}), 'y');
    EXPECT_TRUE(Contains(never.text, "r(RE)=\tnan\tTraits:\ta"));
    EXPECT_EQ(never.bestOfSize[0], (Rated{"", -HUGE_VAL}));
    // Negative values stand in the table per size alone.
    const Report negative = Search(TinyCase(10, 1, true));
    EXPECT_TRUE(negative.ranked.empty());
    EXPECT_EQ(negative.bestOfSize[0].subset, "a");
    EXPECT_LT(negative.bestOfSize[0].value, -0.9);
}

TEST_F(RankingSearch, NumbersThatAreNoneHaveNoSign) {
    for (const int criterion : kAllCriteria)
        for (const int measure : {1, 2, 3}) {
            RankingCase in = TinyCase(criterion, measure, true, {{0, -NAN, 4}, {1, 2, 3}});
            in.E[1][0] = in.W[0][0] = in.F[0][1] = -NAN;
            OpenRanking(in);
            saveStruct = printRankIntermedResults = 'y';
            Typed("", [] { CriterionOf(opt_struct).search({}); });
            saveStruct = 'n';
            int met = 0;
            for (const auto& file : std::filesystem::directory_iterator(folder_.path())) {
                const std::string text = ReadWholeFile(file);
                met += Contains(text, "nan");
                EXPECT_FALSE(Contains(text, "-nan")) << file << criterion;
            }
            EXPECT_GT(met, 0);
        }
}

TEST_F(RankingSearch, OneTypeGivesNoValue) {
    for (const int criterion : kAllCriteria) {
        if (criterion == 10) continue;
        RankingCase in = TinyCase(criterion, 1, true);
        in.types = {4, 4, 4};
        const Report report = Search(in, 'y');
        EXPECT_EQ(report.bestOfSize[0],
                  kByMagnitude.contains(criterion) ? (Rated{"none", 0}) : (Rated{"", -HUGE_VAL}))
            << criterion;
        EXPECT_FALSE(Contains(report.text, "\tTraits:")) << criterion;
        EXPECT_EQ(report.ranked.size(), kNiche.contains(criterion) ? 100U : 0U) << criterion;
    }
}

}  // namespace
