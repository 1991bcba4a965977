// The functional analysis from the keyboard to the report: its texts line by line, its numbers
// against formulas written out here, its early ends and its failures.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <sstream>
#include <vector>

#include "support/formda_text.h"
#include "support/run_program.h"

namespace {

using Row = std::vector<double>;

// Four communities, five OTUs, two traits, two ecological variables, types 1 1 2 2 2.
const Rows kB = {{1, 10}, {2, 10}, {4, 30}, {5, 20}, {8, 50}};
const Rows kW = {{4, 0, 2, 0, 2}, {0, 3, 1, 0, 0}, {1, 1, 1, 1, 0}, {0, 0, 0, 5, 5}};
const Rows kE = {{1, 10}, {3, 10}, {2, 40}, {7, 20}};
const Rows kF = {{0, .2, .8, .8, .8},
                 {.2, 0, .8, .8, .8},
                 {.8, .8, 0, .4, .4},
                 {.8, .8, .4, 0, .1},
                 {.8, .8, .4, .1, 0}};
const int kTypes[] = {1, 1, 2, 2, 2};

FormdaText Tiny() {
    FormdaText data{kB, Transposed(kW), kE};
    data.traitTypes = "3 3";
    data.states = "5 4";
    data.traitLabels = "h sla";
    data.communityLabels = "c1 c2 c3 c4";
    data.kindOfE = "1\n3 3";
    data.envLabels = "wet pH";
    return data;
}

/// Answers of the settings, in the order of the questions.
struct Settings {
    std::string types = "k 1 1 2 2 2", fuzzy = "1", iterations = "20", restriction = "0";
    std::string congruence = "1 6", traits = "1", standardise = "y", detail = "n";
};

const Settings kDetailed = {.detail = "y"};

std::string Analysis(const Settings& s) {
    return "H " + s.types + " " + s.fuzzy + " " + s.iterations + " " + s.restriction + " 2 7 " +
           s.congruence + " " + s.traits + " " + s.standardise + " " + s.detail + "\n";
}

/// Of a session "s" on the data of session "tiny", with one analysis.
std::string ReportOf(const Settings& settings, const FormdaText& data = Tiny()) {
    TempFolder folder;
    folder.Write("tinyFormda.txt", FormdaOf(data));
    const ProgramRun run =
        RunProgram(folder, "N\ns\n2\ntiny\n1\nV\n" + Analysis(settings) + "C\nC\nX\n");
    EXPECT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.out.find("\n\nResults on file sPrinda.txt\n"), std::string::npos);
    return folder.Read("sPrinda.txt");
}

/// The numbers of a line that holds nothing else.
bool IsNumbers(const std::string& line, Row* numbers) {
    std::istringstream words(line);
    numbers->clear();
    for (std::string word; words >> word;) {
        char* end = nullptr;
        numbers->push_back(std::strtod(word.c_str(), &end));
        if (*end != '\0') return false;
    }
    return !numbers->empty();
}

/// A report with each table told by its shape, the values of statistics masked.
std::string Skeleton(const std::string& report) {
    std::istringstream lines(Masked(report) + "\n");
    std::string skeleton;
    std::vector<std::size_t> widths;
    Row row;
    for (std::string line; std::getline(lines, line);) {
        if (IsNumbers(line, &row)) {
            widths.push_back(row.size());
            continue;
        }
        if (!widths.empty()) {
            const bool isHalf = widths.size() > 1 && widths[0] == 1 && widths[1] == 2;
            skeleton += (isHalf ? "[half " : "[") + std::to_string(widths.size()) +
                        (isHalf ? "" : " x " + std::to_string(widths[0])) + "]\n";
            widths.clear();
        }
        if (Contains(line, "\tP=\t")) line = line.substr(0, line.find('\t')) + " # #";
        skeleton += line + "\n";
    }
    skeleton.pop_back();
    return skeleton;
}

/// The same as written down beside the tests.
std::string ExpectedSkeleton(const std::string& name) {
    return ReadWholeFile(std::string(TESSEL_TEST_DATA) + "/functional_analysis/" + name + ".txt");
}

/// The table that follows the first line that begins with `title`, passing over a line of traits.
Rows TableAfter(const std::string& report, const std::string& title) {
    std::istringstream text(report.substr(std::min(report.find("\n" + title), report.size() - 1)));
    std::string line;
    std::getline(text, line);
    std::getline(text, line);
    Rows table;
    Row row;
    while (std::getline(text, line) && (IsNumbers(line, &row) || table.empty())) {
        if (line.rfind("Traits:", 0) == 0) continue;
        if (row.empty()) break;
        table.push_back(row);
    }
    EXPECT_FALSE(table.empty()) << title;
    return table;
}

void ExpectTable(const std::string& report, const char* what, const Rows& expected) {
    const Rows printed = TableAfter(report, what);
    ASSERT_EQ(printed.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); i++) {
        ASSERT_EQ(printed[i].size(), expected[i].size()) << what;
        for (std::size_t j = 0; j < expected[i].size(); j++)
            EXPECT_NEAR(printed[i][j], expected[i][j], 1e-5 * std::fabs(expected[i][j]) + 1e-9)
                << what << " " << i << " " << j;
    }
}

/// A redundancy is what an entropy leaves of the Gini-Simpson index.
void ExpectRedundancy(const std::string& report, const char* title, const char* entropy) {
    Row redundancy = TableAfter(report, "Gini-Simpson")[0];
    const Row rao = TableAfter(report, entropy)[0];
    for (std::size_t i = 0; i < 4; i++) redundancy[i] -= rao[i];
    ExpectTable(report, title, {redundancy});
}

/// The value and the probability behind a label.
std::array<double, 2> StatisticOf(const std::string& report, const std::string& label) {
    std::array<double, 2> s = {NAN, NAN};
    const std::size_t at = report.find(label + "\t");
    EXPECT_NE(at, std::string::npos) << label;
    if (at != std::string::npos)
        std::sscanf(report.c_str() + at + label.size(), "%lf P= %lf", &s[0], &s[1]);
    return s;
}

// ---- The formulas of the analysis, from its description alone

Rows Unit(Rows a) {
    for (Row& row : a) {
        double total = 0;
        for (double x : row) total += x;
        for (double& x : row) x /= total;
    }
    return a;
}

Rows Product(const Rows& a, const Rows& b) {
    Rows c(a.size(), Row(b[0].size(), 0.0));
    for (std::size_t i = 0; i < a.size(); i++)
        for (std::size_t k = 0; k < b.size(); k++)
            for (std::size_t j = 0; j < b[0].size(); j++) c[i][j] += a[i][k] * b[k][j];
    return c;
}

/// Distances below the diagonal, which is 0.
Rows Euclid(const Rows& a) {
    Rows d;
    for (std::size_t i = 0; i < a.size(); i++) {
        d.emplace_back();
        for (std::size_t j = 0; j <= i; j++) {
            double sum = 0;
            for (std::size_t k = 0; k < a[i].size(); k++) sum += std::pow(a[i][k] - a[j][k], 2);
            d[i].push_back(std::sqrt(sum));
        }
    }
    return d;
}

/// Gower's similarity by quantitative traits with the ranges 7 and 40.
double Gower(std::size_t i, std::size_t j) {
    return 1 - (std::fabs(kB[i][0] - kB[j][0]) / 7 + std::fabs(kB[i][1] - kB[j][1]) / 40) / 2;
}

/// Mean similarity of each OTU with the OTUs of each type, over the sum of its means.
template <class Similarity>
Rows Belonging(Similarity s) {
    Rows u(5, Row(2, 0.0));
    for (std::size_t i = 0; i < 5; i++)
        for (std::size_t j = 0; j < 5; j++)
            u[i][std::size_t(kTypes[j] - 1)] += s(i, j) / (kTypes[j] == 1 ? 2 : 3);
    return Unit(u);
}

template <class Dissimilarity>
Row Rao(const Rows& w, Dissimilarity d) {
    Row q;
    for (const Row& row : Unit(w)) {
        q.push_back(0);
        for (std::size_t i = 0; i < row.size(); i++)
            for (std::size_t j = 0; j < row.size(); j++) q.back() += row[i] * row[j] * d(i, j);
    }
    return q;
}

// By hand: the first cell is (4 x 1 + 2 x 4 + 2 x 8) / 8 over the trait's sum of 20.
const Rows kT = {{0.175, 25.0 / 120}, {0.125, 0.125}, {0.15, 17.5 / 120}, {0.325, 35.0 / 120}};

TEST(FunctionalAnalysis, PrintsEveryLineOfADetailedReport) {
    EXPECT_EQ(Skeleton(ReportOf({.restriction = "1 k 3 3 9 9 9", .detail = "y"})),
              ExpectedSkeleton("detailed"));
    EXPECT_EQ(Skeleton(ReportOf({.traits = "2 0 0"})), ExpectedSkeleton("no_traits"));
    EXPECT_EQ(Skeleton(ReportOf({.types = "k 4 4 4 4 4"})), ExpectedSkeleton("one_type"));
}

// The statistics and the diversities are held against other packages on the examples.
TEST(FunctionalAnalysis, PrintsTheTablesThatItsFormulasGive) {
    const std::string report = ReportOf(kDetailed);
    Rows normalised = kT;
    for (std::size_t k = 0; k < 2; k++) {
        double squares = 0;
        for (const Row& row : kT) squares += row[k] * row[k];
        for (Row& row : normalised) row[k] /= std::sqrt(squares);
    }
    const Rows u = Belonging(Gower);
    const std::pair<const char*, Rows> tables[] = {
        {"Community matrix W with 4 communities by 5 OTUs: ", kW},
        {"Community matrix W with 4 communities by 5 OTUs adjusted", Unit(kW)},
        {"Trait matrix B", kB},
        {"Matrix E with", kE},
        {"Resemblance matrix (DE)", Euclid(kE)},
        {"Matrix T with trait averages", kT},
        {"Matrix T with normalized traits", normalised},
        {"Resemblance matrix (DT)", Euclid(normalised)},
        {"Fuzzy degrees of belonging", u},
        {"Crisp degrees of belonging", {{1, 0}, {1, 0}, {0, 1}, {0, 1}, {0, 1}}},
        {"Pooled performance matrix X", Product(Unit(kW), u)},
        {"Average trait matrix", {{1.5, 10}, {17.0 / 3, 100.0 / 3}}},
        {"Pooled performance community matrix", {{0.5, 0.5}, {0.75, 0.25}, {0.5, 0.5}, {0, 1}}},
        {"Gini-Simpson", {{0.625, 0.375, 0.75, 0.5}}},
    };
    for (const auto& [title, expected] : tables) ExpectTable(report, title, expected);
    ExpectRedundancy(report, "Functional redundancy", "Rao quadratic entropy within");
    for (const char* label : {"r(TE)=", "r(XE)=", "r(XE.T)=", "r(RE)=", "r(XE.TR)="}) {
        const double p = StatisticOf(report, label)[1];
        EXPECT_TRUE(p >= 0.05 && p <= 1.0) << label << p;
        EXPECT_NEAR(p * 20, std::round(p * 20), 1e-9) << label;
    }
}

TEST(FunctionalAnalysis, PrintsCrispTypesOfRawPerformancesAndOtherCongruence) {
    const std::string report = ReportOf({.fuzzy = "0", .congruence = "3", .standardise = "n"});
    EXPECT_EQ(Skeleton(report), ExpectedSkeleton("crisp_rv"));
    ExpectTable(report, "Pooled performance matrix X", {{4, 4}, {3, 1}, {2, 2}, {0, 10}});
    ExpectTable(report, "Matrix T with trait averages", kT);
    ExpectTable(report, "Gini-Simpson", {{0.625, 0.375, 0.75, 0.5}});
    EXPECT_TRUE(Contains(ReportOf({.congruence = "2"}),
                         "\nThe statistics shown below are Procrustes correlations (traceW).\n"));
}

TEST(FunctionalAnalysis, ComparesSitesByTheKindOfTheirVariables) {
    FormdaText data = Tiny();
    data.kindOfE = "5\n2 4";
    // Gower: all states of the nominal variable differ, the ranks are 1.5 1.5 4 3.
    std::string report = ReportOf({}, data);
    ExpectTable(report, "Resemblance matrix (DE)", {{0}, {0.5, 0}, {1, 1, 0}, {0.8, 0.8, 0.7, 0}});
    ExpectTable(report, "Matrix E with", kE);
    // Sums of squares about the means: 20.75 and 600.
    data.kindOfE = "2\n3 3";
    Rows scaled = kE;
    for (Row& row : scaled) row = {row[0] / std::sqrt(20.75), row[1] / std::sqrt(600)};
    ExpectTable(ReportOf({}, data), "Resemblance matrix (DE)", Euclid(scaled));
    data.E.clear();
    EXPECT_TRUE(Contains(ReportOf({}, data),
                         "\nEcological variables (factors or effects):\t\n\nMatrix E with "
                         "ecological variables (4 communities x 0 variables):\n\n\n\n\n\n"));
}

TEST(FunctionalAnalysis, LeavesOutATraitAndAMissingValue) {
    FormdaText data = Tiny();
    data.B[4][1] = -999;
    const std::string report = ReportOf({.traits = "2 0 1", .detail = "y"}, data);
    EXPECT_TRUE(Contains(report, "resemblance:\nsla\nFuzzy transformation"));
    EXPECT_TRUE(Contains(report, "based on 1 traits:\n"));
    // The missing value leaves both sums of T, of 70, but not the divisor of the type's average.
    ExpectTable(report, "Matrix T with trait averages",
                {{0, 12.5 / 70}, {0, 15.0 / 70}, {0, 17.5 / 70}, {0, 10.0 / 70}});
    ExpectTable(report, "Average trait matrix", {{1.5, 10}, {17.0 / 3, 50.0 / 3}});
    // A type without any value printed 0 for the missing value over its size.
    data.B[0][1] = data.B[1][1] = -999;
    ExpectTable(ReportOf({}, data), "Average trait matrix", {{1.5, -499.5}, {17.0 / 3, 50.0 / 3}});
}

TEST(FunctionalAnalysis, NamesTheSpeciesOfTypesByPosition) {
    FormdaText data = Tiny();
    data.species = "2\nspp.txt\nAira caryophyllea\nBriza minor\n1111\n1111\n10\n10\n01\n01\n01\n";
    EXPECT_TRUE(Contains(ReportOf({.types = "y"}, data),
                         "\nThe types are species (# labels are used later in these results to "
                         "identify the species) :\n#\tSpecies\n1\tAira caryophyllea\n"
                         "2\tBriza minor\n\nLabels of 2 specified types:\n1\t2\t\n"));
}

TEST(FunctionalAnalysis, WeighsThePhylogenyOfEachKind) {
    FormdaText data = Tiny();
    data.phylogeny = "1\n3\n" + TextOf(kF);
    std::string report = ReportOf(kDetailed, data);
    EXPECT_EQ(Skeleton(report), ExpectedSkeleton("phylogeny"));
    const auto d = [](std::size_t i, std::size_t j) { return kF[i][j]; };
    const auto s = [](std::size_t i, std::size_t j) { return 1 - kF[i][j]; };
    const Rows q = Belonging(s);
    ExpectTable(report, "Pooled performance matrix P", Product(Unit(kW), q));
    const auto expectBoth = [&] {
        ExpectTable(report, "Rao quadratic entropy (Rp)", {Rao(kW, d)});
        ExpectRedundancy(report, "Phylogenetic redundancy", "Rao quadratic entropy (Rp)");
        ExpectTable(report, "Fuzzy belonging of 5", q);
    };
    expectBoth();
    Rows similarities = kF;
    for (Row& row : similarities)
        for (double& x : row) x = 1 - x;
    data.phylogeny = "1\n1\n" + TextOf(similarities);
    report = ReportOf(kDetailed, data);
    for (const char* text : {"\nSimilarity matrix, in the range 0-1, between 5 OTUs based on their "
                             "phylogeny:\n",
                             "obtained by transformation of input similarities [D= sqrt(1-S)] "
                             "between OTUs:\n"})
        EXPECT_TRUE(Contains(report, text)) << text;
    expectBoth();
}

TEST(FunctionalAnalysis, DoesNotDependOnTheNumberingOfTheOTUs) {
    const std::size_t order[5] = {3, 0, 4, 2, 1};
    FormdaText data = Tiny(), renumbered = Tiny();
    Rows distances = kF;
    std::string types = "k";
    for (std::size_t i = 0; i < 5; i++) {
        types += " " + std::to_string(kTypes[order[i]]);
        renumbered.B[i] = data.B[order[i]];
        renumbered.W[i] = data.W[order[i]];
        for (std::size_t j = 0; j < 5; j++) distances[i][j] = kF[order[i]][order[j]];
    }
    data.phylogeny = "1\n3\n" + TextOf(kF);
    renumbered.phylogeny = "1\n3\n" + TextOf(distances);
    for (const char* congruence : {"1 10", "2", "3"}) {
        const std::string one = ReportOf({.congruence = congruence}, data);
        const std::string other = ReportOf({.types = types, .congruence = congruence}, renumbered);
        for (const char* label : {"r(TE)=", "r(XE)=", "r(XE.T)=", "r(RE)=", "r(XE.TR)=",
                                  "ro(BF) = ", "ro(PE)=", "ro(PT)=", "ro(PX)=", "r(FE)="})
            EXPECT_NEAR(StatisticOf(one, label)[0], StatisticOf(other, label)[0], 1e-5)
                << label << " under " << congruence;
    }
}

TEST(FunctionalAnalysis, TakesSimilaritiesByPhylogeneticVariablesForDissimilarities) {
    FormdaText data = Tiny();
    data.phylogeny = "1\n2\n2\n4\t3\t\n10\t0\n30\t1\n20\t4\n20\t2\n90\t3\n";
    const std::string report = ReportOf(kDetailed, data);
    EXPECT_TRUE(Contains(report,
                         "\nVariable types in the phylogeny matrix with 5 OTUs by 2 phylogenetic "
                         "variables: \n4\t3\t\n\nPhylogeny matrix with 5 OTUs by 2 phylogenetic "
                         "variables: \n"));
    const Rows ranks = {{1, 0}, {4, 1}, {2.5, 4}, {2.5, 2}, {5, 3}};
    ExpectTable(report, "Phylogeny matrix with 5", ranks);
    Rows gower(5, Row(5));
    for (std::size_t i = 0; i < 5; i++)
        for (std::size_t j = 0; j < 5; j++)
            gower[i][j] =
                1 -
                (std::fabs(ranks[i][0] - ranks[j][0]) + std::fabs(ranks[i][1] - ranks[j][1])) / 8;
    ExpectTable(report, "Similarity matrix (Gower index)", gower);
    const auto s = [&](std::size_t i, std::size_t j) { return gower[i][j]; };
    ExpectTable(report, "Rao quadratic entropy (Rp)", {Rao(kW, s)});
}

TEST(FunctionalAnalysis, AppendsOrErasesAndRepeatsWithItsSeed) {
    TempFolder folder;
    folder.Write("tinyFormda.txt", FormdaOf(Tiny()));
    const Settings settings = {.iterations = "200"};
    const auto reportAfter = [&](const std::string& start, const std::string& analyses) {
        RunProgram(folder, start + "V\n" + analyses + "C\nC\nX\n");
        return Masked(folder.Read("sPrinda.txt"));
    };
    const std::string once = reportAfter("N\ns\n2\ntiny\n1\n", Analysis(settings));
    const std::string version =
        "\nCHARACTER-BASED COMMUNITY ANALYSIS                    TESSEL v.2.11.08\n";
    ASSERT_EQ(once.rfind(version, 0), 0u);
    EXPECT_EQ(reportAfter("O\ns\n", Analysis(settings) + "a\n"),
              once + once.substr(version.size()));
    // Twice in one session: the data set is read again between them.
    EXPECT_EQ(reportAfter("O\ns\n", Repeated(Analysis(settings) + "w\n", 2)), once);
    EXPECT_TRUE(folder.Has("sRDa.txt"));
    EXPECT_EQ(folder.Read("sRDa.txt"), "");
}

}  // namespace
