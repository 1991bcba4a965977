// The functional analysis from the keyboard to the report: its texts line by line, its numbers
// against formulas written out here, its early ends and its failures.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>

#include "support/run_program.h"

namespace {

using Row = std::vector<double>;
using Table = std::vector<Row>;

// Four communities, five OTUs, two traits, two ecological variables, types 1 1 2 2 2.
const Table kB = {{1, 10}, {2, 10}, {4, 30}, {5, 20}, {8, 50}};
const Table kW = {{4, 0, 2, 0, 2}, {0, 3, 1, 0, 0}, {1, 1, 1, 1, 0}, {0, 0, 0, 5, 5}};
const Table kE = {{1, 10}, {3, 10}, {2, 40}, {7, 20}};
const Table kF = {
    {0, 2, 8, 8, 8}, {2, 0, 8, 8, 8}, {8, 8, 0, 4, 4}, {8, 8, 4, 0, 1}, {8, 8, 4, 1, 0}};
const std::vector<int> kTypes = {1, 1, 2, 2, 2};

struct Data {
    Table B = kB;
    Table W = kW;
    bool hasE = true;
    std::string kindOfE = "1 \n3\t3\t\n";  ///< same units; types of the two variables
    std::string species;                   ///< the block of the species, or none
    std::string phylogeny;                 ///< the block of the phylogeny, or none
};

std::string Rows(const Table& table, bool byColumns = false) {
    std::ostringstream text;
    const std::size_t rows = byColumns ? table[0].size() : table.size();
    const std::size_t cols = byColumns ? table.size() : table[0].size();
    for (std::size_t i = 0; i < rows; i++) {
        for (std::size_t j = 0; j < cols; j++)
            text << (byColumns ? table[j][i] : table[i][j]) << "\t";
        text << "\n";
    }
    return text.str();
}

std::string Formda(const Data& data) {
    return "Tiny data\n2 \nh\tsla\t\n 3\t 3\t\n0\t0\t\n 5\t 4\t\n4 \nc1\tc2\tc3\tc4\t\n5 \n"
           "0\t0\t0\t0\t\n0\t0\t0\t0\t0\t0\t0\t\n\n25Jun2016 \n" +
           Rows(data.B) + "\n" + Rows(data.W, true) + "\n" +
           (data.hasE ? "2 \n97Sep08 \n" + data.kindOfE + "wet\tpH\t\nE.txt \n" + Rows(kE, true)
                      : "0 \n") +
           (data.species.empty() ? "0 \n" : data.species) + "SMW 1\n" +
           (data.phylogeny.empty() ? "0\n" : data.phylogeny) + "0\n";
}

/// Answers of the settings, in the order of the questions.
struct Settings {
    std::string types = "k\n1 1 2 2 2\n";
    std::string fuzzy = "1\n";
    std::string iterations = "20\n";
    std::string restriction = "0\n";
    std::string congruence = "1\n6\n";  ///< with the resemblance function
    std::string traits = "1\n";
    std::string standardise = "y\n";
    std::string detail = "n\n";
    std::string mode;  ///< what to do with an earlier report
};

std::string Analysis(const Settings& s) {
    return "H\n" + s.types + s.fuzzy + s.iterations + s.restriction + "2\n7\n" + s.congruence +
           s.traits + s.standardise + s.detail + s.mode;
}

/// A session "s" on the data of session "tiny", with one analysis.
ProgramRun Analyse(const TempFolder& folder, const Settings& settings, const Data& data = {}) {
    folder.Write("tinyFormda.txt", Formda(data));
    return RunProgram(folder, "N\ns\n2\ntiny\n1\nV\n" + Analysis(settings) + "C\nC\nX\n");
}

std::string ReportOf(const Settings& settings, const Data& data = {}) {
    TempFolder folder;
    const ProgramRun run = Analyse(folder, settings, data);
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
    std::istringstream lines(Masked(report));
    std::ostringstream skeleton;
    Table table;
    const auto closeTable = [&] {
        if (table.empty()) return;
        if (table.size() > 1 && table[0].size() == 1 && table[1].size() == 2)
            skeleton << "[half " << table.size() << "]\n";
        else
            skeleton << "[" << table.size() << " x " << table[0].size() << "]\n";
        table.clear();
    };
    Row row;
    for (std::string line; std::getline(lines, line);) {
        if (IsNumbers(line, &row)) {
            table.push_back(row);
            continue;
        }
        closeTable();
        if (line.find("\tP=\t") != std::string::npos)
            line = line.substr(0, line.find('\t')) + " # #";
        skeleton << line << "\n";
    }
    closeTable();
    return skeleton.str();
}

/// The same as written down beside the tests.
std::string ExpectedSkeleton(const std::string& name) {
    return ReadWholeFile(std::string(TESSEL_TEST_DATA) + "/functional_analysis/" + name + ".txt");
}

/// The table that follows the first line that begins with `title`, passing over a line of traits.
Table TableAfter(const std::string& report, const std::string& title) {
    std::istringstream text(report.substr(std::min(report.find("\n" + title), report.size() - 1)));
    std::string line;
    std::getline(text, line);
    std::getline(text, line);
    Table table;
    Row row;
    while (std::getline(text, line) && (IsNumbers(line, &row) || table.empty())) {
        if (line.rfind("Traits:", 0) == 0) continue;
        if (row.empty()) break;
        table.push_back(row);
    }
    EXPECT_FALSE(table.empty()) << title;
    return table;
}

void ExpectTable(const Table& printed, const Table& expected, const char* what) {
    ASSERT_EQ(printed.size(), expected.size()) << what;
    for (std::size_t i = 0; i < expected.size(); i++) {
        ASSERT_EQ(printed[i].size(), expected[i].size()) << what;
        for (std::size_t j = 0; j < expected[i].size(); j++)
            EXPECT_NEAR(printed[i][j], expected[i][j], 1e-5 * std::fabs(expected[i][j]) + 1e-9)
                << what << " " << i << " " << j;
    }
}

struct Statistic {
    double value = NAN;
    double probability = NAN;
};

Statistic StatisticOf(const std::string& report, const std::string& label) {
    Statistic s;
    const std::size_t at = report.find(label + "\t");
    EXPECT_NE(at, std::string::npos) << label;
    if (at != std::string::npos)
        std::sscanf(report.c_str() + at + label.size(), "%lf P= %lf", &s.value, &s.probability);
    return s;
}

// ---- The formulas of the analysis, from its description alone

Table Unit(Table a) {
    for (Row& row : a) {
        double total = 0;
        for (double x : row) total += x;
        for (double& x : row) x /= total;
    }
    return a;
}

Table Product(const Table& a, const Table& b) {
    Table c(a.size(), Row(b[0].size(), 0.0));
    for (std::size_t i = 0; i < a.size(); i++)
        for (std::size_t k = 0; k < b.size(); k++)
            for (std::size_t j = 0; j < b[0].size(); j++) c[i][j] += a[i][k] * b[k][j];
    return c;
}

/// Distances below the diagonal, which is 0.
Table Euclid(const Table& a) {
    Table d;
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

Table FuzzyTypes() {
    Table u(5, Row(2, 0.0));
    for (std::size_t i = 0; i < 5; i++)
        for (std::size_t j = 0; j < 5; j++)
            u[i][std::size_t(kTypes[j] - 1)] += Gower(i, j) / (kTypes[j] == 1 ? 2 : 3);
    return Unit(u);
}

template <class Dissimilarity>
Row Rao(const Table& w, Dissimilarity d) {
    Row q;
    for (const Row& row : Unit(w)) {
        q.push_back(0);
        for (std::size_t i = 0; i < row.size(); i++)
            for (std::size_t j = 0; j < row.size(); j++) q.back() += row[i] * row[j] * d(i, j);
    }
    return q;
}

/// Correlation of two lower halves without their diagonals.
double Mantel(const Table& a, const Table& b) {
    double n = 0, sa = 0, sb = 0, aa = 0, bb = 0, ab = 0;
    for (std::size_t i = 0; i < a.size(); i++)
        for (std::size_t j = 0; j < i; j++) {
            n++, sa += a[i][j], sb += b[i][j];
            aa += a[i][j] * a[i][j], bb += b[i][j] * b[i][j], ab += a[i][j] * b[i][j];
        }
    return (ab - sa * sb / n) / std::sqrt((aa - sa * sa / n) * (bb - sb * sb / n));
}

double Partial(double xy, double xz, double yz) {
    return (xy - xz * yz) / std::sqrt((1 - xz * xz) * (1 - yz * yz));
}

// By hand: the first cell is (4 x 1 + 2 x 4 + 2 x 8) / 8 over the trait's sum of 20.
const Table kT = {{0.175, 25.0 / 120}, {0.125, 0.125}, {0.15, 17.5 / 120}, {0.325, 35.0 / 120}};

TEST(FunctionalAnalysis, PrintsEveryLineOfADetailedReport) {
    Settings settings;
    settings.detail = "y\n";
    settings.restriction = "1\nk\n3 3 9 9 9\n";
    EXPECT_EQ(Skeleton(ReportOf(settings)), ExpectedSkeleton("detailed"));
}

TEST(FunctionalAnalysis, ComputesWhatItsFormulasSay) {
    Settings settings;
    settings.detail = "y\n";
    const std::string report = ReportOf(settings);
    const Table w = Unit(kW);
    ExpectTable(TableAfter(report, "Community matrix W with 4 communities by 5 OTUs: "), kW, "W");
    ExpectTable(TableAfter(report, "Matrix T with trait averages"), kT, "T");
    Table normalised = kT;
    for (std::size_t k = 0; k < 2; k++) {
        double squares = 0;
        for (const Row& row : kT) squares += row[k] * row[k];
        for (Row& row : normalised) row[k] /= std::sqrt(squares);
    }
    ExpectTable(TableAfter(report, "Matrix T with normalized traits"), normalised, "T normalised");
    const Table dt = Euclid(normalised);
    const Table de = Euclid(kE);
    const Table u = FuzzyTypes();
    const Table x = Product(w, u);
    const Table dx = Euclid(x);
    ExpectTable(TableAfter(report, "Resemblance matrix (DE)"), de, "DE");
    ExpectTable(TableAfter(report, "Resemblance matrix (DT)"), dt, "DT");
    ExpectTable(TableAfter(report, "Fuzzy degrees of belonging"), u, "U");
    ExpectTable(TableAfter(report, "Pooled performance matrix X"), x, "X");
    ExpectTable(TableAfter(report, "Average trait matrix"), {{1.5, 10}, {17.0 / 3, 100.0 / 3}},
                "averages of types");
    ExpectTable(TableAfter(report, "Pooled performance community matrix"),
                {{0.5, 0.5}, {0.75, 0.25}, {0.5, 0.5}, {0, 1}}, "W C");
    const Row gini = {0.625, 0.375, 0.75, 0.5};
    const Row rao =
        Rao(kW, [](std::size_t i, std::size_t j) { return std::sqrt(1 - Gower(i, j)); });
    Row redundancy;
    Table r;
    for (std::size_t i = 0; i < 4; i++) {
        redundancy.push_back(gini[i] - rao[i]);
        r.push_back({1 / (1 - rao[i])});
    }
    ExpectTable(TableAfter(report, "Gini-Simpson"), {gini}, "D");
    ExpectTable(TableAfter(report, "Rao quadratic entropy within"), {rao}, "Rf");
    ExpectTable(TableAfter(report, "Functional redundancy"), {redundancy}, "FR");

    const Table dr = Euclid(r);
    const double te = Mantel(dt, de), xe = Mantel(dx, de), re = Mantel(dr, de);
    const double xt = Mantel(dx, dt), xr = Mantel(dx, dr), tr = Mantel(dt, dr);
    const double xe_tr = Partial(Partial(xe, xr, re), Partial(xt, xr, tr), Partial(te, tr, re));
    const std::pair<const char*, double> statistics[] = {{"r(TE)=", te},
                                                         {"r(XE)=", xe},
                                                         {"r(XE.T)=", Partial(xe, xt, te)},
                                                         {"r(RE)=", re},
                                                         {"r(XE.TR)=", xe_tr}};
    for (const auto& [label, value] : statistics) {
        const Statistic printed = StatisticOf(report, label);
        EXPECT_NEAR(printed.value, value, 1e-4) << label;
        EXPECT_GE(printed.probability, 0.05) << label;
        EXPECT_LE(printed.probability, 1.0) << label;
        EXPECT_NEAR(printed.probability * 20, std::round(printed.probability * 20), 1e-9) << label;
    }
}

TEST(FunctionalAnalysis, PrintsCrispTypesOfRawPerformancesAndOtherCongruence) {
    Settings settings;
    settings.fuzzy = "0\n";
    settings.congruence = "3\n";
    settings.standardise = "n\n";
    const std::string report = ReportOf(settings);
    EXPECT_EQ(Skeleton(report), ExpectedSkeleton("crisp_rv"));
    ExpectTable(TableAfter(report, "Pooled performance matrix X"),
                {{4, 4}, {3, 1}, {2, 2}, {0, 10}}, "X crisp");
    ExpectTable(TableAfter(report, "Matrix T with trait averages"), kT, "T");
    ExpectTable(TableAfter(report, "Gini-Simpson"), {{0.625, 0.375, 0.75, 0.5}}, "D");
    settings.congruence = "2\n";
    EXPECT_NE(ReportOf(settings).find(
                  "\nThe statistics shown below are Procrustes correlations (traceW).\n"),
              std::string::npos);
}

TEST(FunctionalAnalysis, ComparesSitesByTheKindOfTheirVariables) {
    Data data;
    data.kindOfE = "5 \n2\t4\t\n";
    std::string report = ReportOf({}, data);
    // Gower: all states of the nominal variable differ, the ranks are 1.5 1.5 4 3.
    ExpectTable(TableAfter(report, "Resemblance matrix (DE)"),
                {{0}, {0.5, 0}, {1, 1, 0}, {0.8, 0.8, 0.7, 0}}, "mixed");
    ExpectTable(TableAfter(report, "Matrix E with"), kE, "E");
    data.kindOfE = "2 \n3\t3\t\n";
    report = ReportOf({}, data);
    // Sums of squares about the means: 20.75 and 600.
    Table scaled = kE;
    for (Row& row : scaled) row = {row[0] / std::sqrt(20.75), row[1] / std::sqrt(600)};
    ExpectTable(TableAfter(report, "Resemblance matrix (DE)"), Euclid(scaled), "different units");
}

TEST(FunctionalAnalysis, EndsEarlyWithoutTraitsOrWithOneType) {
    Settings settings;
    settings.traits = "2\n0 0\n";
    EXPECT_EQ(Skeleton(ReportOf(settings)), ExpectedSkeleton("no_traits"));
    Settings oneType;
    oneType.types = "k\n4 4 4 4 4\n";
    EXPECT_EQ(Skeleton(ReportOf(oneType)), ExpectedSkeleton("one_type"));
}

TEST(FunctionalAnalysis, LeavesOutATraitAndAMissingValue) {
    Settings settings;
    settings.traits = "2\n0 1\n";
    settings.detail = "y\n";
    Data data;
    data.B[4][1] = -999;
    const std::string report = ReportOf(settings, data);
    EXPECT_NE(report.find("resemblance:\nsla\nFuzzy transformation"), std::string::npos);
    EXPECT_NE(report.find("based on 1 traits:\n"), std::string::npos);
    // The missing value leaves both sums of T, of 70, but not the divisor of the type's average.
    ExpectTable(TableAfter(report, "Matrix T with trait averages"),
                {{0, 12.5 / 70}, {0, 15.0 / 70}, {0, 17.5 / 70}, {0, 10.0 / 70}}, "T");
    ExpectTable(TableAfter(report, "Average trait matrix"), {{1.5, 10}, {17.0 / 3, 50.0 / 3}},
                "averages of types");
    ExpectTable(TableAfter(report, "Trait matrix B"), data.B, "B");
}

TEST(FunctionalAnalysis, NamesTheSpeciesOfTypesByPosition) {
    Settings settings;
    settings.types = "y\n";
    Data data;
    data.species = "2 \nspp.txt \nAira caryophyllea\nBriza minor\n1111\n1111\n10\n10\n01\n01\n01\n";
    EXPECT_NE(ReportOf(settings, data)
                  .find("\nThe types are species (# labels are used later in these results to "
                        "identify the species) :\n#\tSpecies\n1\tAira caryophyllea\n"
                        "2\tBriza minor\n\nLabels of 2 specified types:\n1\t2\t\n"),
              std::string::npos);
}

Table Scaled(Table a, double divisor) {
    for (Row& row : a)
        for (double& x : row) x /= divisor;
    return a;
}

TEST(FunctionalAnalysis, WeighsThePhylogenyOfEachKind) {
    Settings settings;
    settings.detail = "y\n";
    Data data;
    const Table distances = Scaled(kF, 10);
    data.phylogeny = "1\n3\n" + Rows(distances);
    std::string report = ReportOf(settings, data);
    EXPECT_EQ(Skeleton(report), ExpectedSkeleton("phylogeny"));
    const auto d = [&](std::size_t i, std::size_t j) { return distances[i][j]; };
    ExpectTable(TableAfter(report, "Rao quadratic entropy (Rp)"), {Rao(kW, d)}, "Rp");
    Table q(5, Row(2, 0.0));
    for (std::size_t i = 0; i < 5; i++)
        for (std::size_t j = 0; j < 5; j++)
            q[i][std::size_t(kTypes[j] - 1)] += (1 - d(i, j)) / (kTypes[j] == 1 ? 2 : 3);
    const Table p = Product(Unit(kW), Unit(q));
    ExpectTable(TableAfter(report, "Fuzzy belonging of 5"), Unit(q), "Q");
    ExpectTable(TableAfter(report, "Pooled performance matrix P"), p, "P");
    EXPECT_NEAR(StatisticOf(report, "ro(PE)=").value, Mantel(Euclid(p), Euclid(kE)), 1e-4);

    Table similarities = distances;
    for (Row& row : similarities)
        for (double& x : row) x = 1 - x;
    data.phylogeny = "1\n1\n" + Rows(similarities);
    report = ReportOf(settings, data);
    EXPECT_NE(report.find("\nSimilarity matrix, in the range 0-1, between 5 OTUs based on their "
                          "phylogeny:\n"),
              std::string::npos);
    EXPECT_NE(report.find("obtained by transformation of input similarities [D= sqrt(1-S)] "
                          "between OTUs:\n"),
              std::string::npos);
    ExpectTable(TableAfter(report, "Rao quadratic entropy (Rp)"), {Rao(kW, d)}, "Rp");
    ExpectTable(TableAfter(report, "Fuzzy belonging of 5"), Unit(q), "Q");
}

TEST(FunctionalAnalysis, DoesNotDependOnTheNumberingOfTheOTUs) {
    const std::size_t order[5] = {3, 0, 4, 2, 1};
    Data data;
    data.phylogeny = "1\n3\n" + Rows(Scaled(kF, 10));
    Data renumbered;
    Table distances = kF;
    Settings settings;
    settings.types = "k\n";
    for (std::size_t i = 0; i < 5; i++) {
        settings.types += std::to_string(kTypes[order[i]]) + "\n";
        renumbered.B[i] = kB[order[i]];
        for (std::size_t c = 0; c < 4; c++) renumbered.W[c][i] = kW[c][order[i]];
        for (std::size_t j = 0; j < 5; j++) distances[i][j] = kF[order[i]][order[j]];
    }
    renumbered.phylogeny = "1\n3\n" + Rows(Scaled(distances, 10));
    for (const char* congruence : {"1\n10\n", "2\n", "3\n"}) {
        Settings first;
        first.congruence = settings.congruence = congruence;
        const std::string one = ReportOf(first, data);
        const std::string other = ReportOf(settings, renumbered);
        for (const char* label : {"r(TE)=", "r(XE)=", "r(XE.T)=", "r(RE)=", "r(XE.TR)=",
                                  "ro(BF) = ", "ro(PE)=", "ro(PT)=", "ro(PX)=", "r(FE)="})
            EXPECT_NEAR(StatisticOf(one, label).value, StatisticOf(other, label).value, 1e-5)
                << label << " under " << congruence;
    }
}

TEST(FunctionalAnalysis, TakesSimilaritiesByPhylogeneticVariablesForDissimilarities) {
    Settings settings;
    settings.detail = "y\n";
    Data data;
    data.phylogeny = "1\n2\n2\n4\t3\t\n10\t0\n30\t1\n20\t4\n20\t2\n90\t3\n";
    const std::string report = ReportOf(settings, data);
    EXPECT_NE(report.find("\nVariable types in the phylogeny matrix with 5 OTUs by 2 phylogenetic "
                          "variables: \n4\t3\t\n\nPhylogeny matrix with 5 OTUs by 2 phylogenetic "
                          "variables: \n"),
              std::string::npos);
    const Table ranks = {{1, 0}, {4, 1}, {2.5, 4}, {2.5, 2}, {5, 3}};
    ExpectTable(TableAfter(report, "Phylogeny matrix with 5"), ranks, "ranks");
    const auto s = [&](std::size_t i, std::size_t j) {
        return 1 -
               (std::fabs(ranks[i][0] - ranks[j][0]) + std::fabs(ranks[i][1] - ranks[j][1])) / 8;
    };
    Table gower(5, Row(5));
    for (std::size_t i = 0; i < 5; i++)
        for (std::size_t j = 0; j < 5; j++) gower[i][j] = s(i, j);
    ExpectTable(TableAfter(report, "Similarity matrix (Gower index)"), gower, "Sf");
    ExpectTable(TableAfter(report, "Rao quadratic entropy (Rp)"), {Rao(kW, s)}, "Rp");
}

TEST(FunctionalAnalysis, RunsWithoutEcologicalVariables) {
    Data data;
    data.hasE = false;
    data.phylogeny = "1\n3\n" + Rows(Scaled(kF, 10));
    for (const char* congruence : {"1\n6\n", "2\n", "3\n"}) {
        Settings settings;
        settings.congruence = congruence;
        const std::string report = ReportOf(settings, data);
        EXPECT_NE(report.find("\nEcological variables (factors or effects):\t\n\n"
                              "Matrix E with ecological variables (4 communities x 0 variables):\n"
                              "\n\n\n\n\n"),
                  std::string::npos);
        EXPECT_NE(report.find("PHYLOGENETIC DIVERSITY"), std::string::npos);
    }
}

TEST(FunctionalAnalysis, AppendsOrErasesAndRepeatsWithItsSeed) {
    TempFolder folder;
    folder.Write("tinyFormda.txt", Formda({}));
    Settings first;
    first.iterations = "200\n";
    Settings append = first;
    append.mode = "a\n";
    Settings erase = first;
    erase.mode = "w\n";
    RunProgram(folder, "N\ns\n2\ntiny\n1\nV\n" + Analysis(first) + "C\nC\nX\n");
    const std::string once = Masked(folder.Read("sPrinda.txt"));
    const std::string version =
        "\nCHARACTER-BASED COMMUNITY ANALYSIS                    TESSEL v.2.11.08\n";
    ASSERT_EQ(once.rfind(version, 0), 0u);
    RunProgram(folder, "O\ns\nV\n" + Analysis(append) + "C\nC\nX\n");
    EXPECT_EQ(Masked(folder.Read("sPrinda.txt")), once + once.substr(version.size()));
    // Twice in one session: the data set is read again between them.
    RunProgram(folder, "O\ns\nV\n" + Analysis(erase) + Analysis(erase) + "C\nC\nX\n");
    EXPECT_EQ(Masked(folder.Read("sPrinda.txt")), once);
    EXPECT_TRUE(folder.Has("sRDa.txt"));
    EXPECT_EQ(folder.Read("sRDa.txt"), "");
}

TEST(FunctionalAnalysis, EndsWithStatus1WhenAFileCannotBeWritten) {
    TempFolder tables;
    std::filesystem::create_directory(tables.path() / "sRDa.txt");
    const ProgramRun noTables = Analyse(tables, {});
    EXPECT_EQ(noTables.status, 1);
    EXPECT_NE(noTables.err.find("can't open sRDa.txt"), std::string::npos);
    // The report holds what came before the test.
    EXPECT_NE(tables.Read("sPrinda.txt").find("Pooled performance matrix X"), std::string::npos);

    TempFolder report;
    std::filesystem::create_directory(report.path() / "sPrinda.txt");
    Settings settings;
    settings.mode = "w\n";
    const ProgramRun noReport = Analyse(report, settings);
    EXPECT_EQ(noReport.status, 1);
    EXPECT_NE(noReport.err.find("FAIL TO OPEN FILE"), std::string::npos);
}

TEST(FunctionalAnalysis, RunsThePreparedAnswersOfTheExamples) {
    struct Example {
        const char* name;
        int communities, traits, traitGroups;
        const char* sizes;
    };
    for (const Example& example : {Example{"aravo", 75, 8, 0, "18\t28\t7\t6\t11\t3\t5\t4\t"},
                                   Example{"mafragh", 97, 14, 9, "14\t3\t12\t8\t2\t17\t"}}) {
        TempFolder folder;
        std::filesystem::copy(std::string(TESSEL_EXAMPLES) + "/" + example.name, folder.path());
        const ProgramRun run = RunProgram(folder, folder.Read("answers.txt"), 240);
        ASSERT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(run.err, "");
        const std::string report = folder.Read(std::string(example.name) + "Prinda.txt");
        EXPECT_NE(
            report.find(std::string("\nNumber of OTUs in each type:\t") + example.sizes + "\n"),
            std::string::npos)
            << example.name;
        // r(TE) from the two resemblance matrices of the report.
        const double te = Mantel(TableAfter(report, "Resemblance matrix (DT)"),
                                 TableAfter(report, "Resemblance matrix (DE)"));
        EXPECT_NEAR(StatisticOf(report, "r(TE)=").value, te, 1e-4) << example.name;
        const double xe = Mantel(Euclid(TableAfter(report, "Pooled performance matrix X")),
                                 TableAfter(report, "Resemblance matrix (DE)"));
        EXPECT_NEAR(StatisticOf(report, "r(XE)=").value, xe, 1e-4) << example.name;
    }
}

}  // namespace
