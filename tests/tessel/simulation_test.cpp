#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>

#include "TSLIF/simulation/chi_square_table.h"
#include "TSLIF/simulation/dynamics.h"
#include "TSLIF/simulation/evaluation.h"
#include "TSLIF/simulation/preparation.h"
#include "in_process.h"
#include "mxlib/random_lists.h"
#include "reference/plain_simulation.h"
#include "support/text.h"

namespace {

using Simulation = InProcess;

std::string Numbers(unsigned long seed, int count, double scale) {
    InitRndNumberGenerator(seed);
    std::ostringstream text;
    for (int i = 0; i < count; i++) text << scale * (gsl_rng_uniform(r) - 0.5) << " ";
    return text.str();
}

void WriteWorld(const TempFolder& folder, unsigned long seed, const SimulationAnswers& a,
                double response, double effect) {
    folder.Write("B.txt", Numbers(seed, a.nOTUs * a.nTraits, 4));
    folder.Write("E.txt", Numbers(seed + 1, a.nFactors * a.nSites, 9));
    folder.Write("A.txt", Numbers(seed + 2, a.nTraits * a.nPredictors, response));
    folder.Write("G.txt", Numbers(seed + 3, a.nFactors * a.nTraits, effect));
}

/// A run of one data set in the working directory, by either version.
struct OneRun {
    explicit OneRun(const SimulationAnswers& a) {
        answers.nSites = a.nSites;
        answers.nOTUs = a.nOTUs;
        answers.nTraits = a.nTraits;
        answers.nFactors = a.nFactors;
        answers.nPredictors = a.nPredictors;
        answers.interactions = a.interactions;
        answers.maxIndividuals = a.maxIndividuals;
        answers.maxIterations = a.maxIterations;
        answers.threshold = a.threshold;
        answers.dispersalWeight = a.dispersalWeight;
        answers.densityWeight = a.densityWeight;
        for (const auto& [file, name] : {std::pair{&answers.traits.file, "B.txt"},
                                         {&answers.environment.file, "E.txt"},
                                         {&answers.responses, "A.txt"},
                                         {&answers.effects, "G.txt"}})
            file->stream = std::fopen(name, "r");
        world = std::make_unique<World>(&answers);
        EXPECT_TRUE(ReadWorld(*world));
        PrepareTraits(*world);
        PrepareEnvironment(*world);
        RenewTraits(*world);
        RenewSites(*world);
        InitRndNumberGenerator(3);
    }
    SimulationAnswers answers;
    std::unique_ptr<World> world;
};

/// The bytes of a table; what is no number has no sign.
std::string Bytes(double** table, int rows, int cols) {
    std::string bytes;
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++) {
            const double x = std::isnan(table[i][j]) ? std::nan("") : table[i][j];
            bytes.append(reinterpret_cast<const char*>(&x), sizeof(x));
        }
    return bytes;
}

/// The files of the steps, and gone.
std::string TakeStepFiles(const TempFolder& folder) {
    std::string texts;
    for (const char* file : {"EnvData.txt", "CWM_Expected.txt", "Distances.txt", "Prob.txt",
                             "CommunityData.txt", "CWM.txt"}) {
        texts += folder.Read(file);
        std::filesystem::remove(folder.File(file));
    }
    return texts;
}

void FinishSteps(StepFiles& steps) {
    WithConsole("", [&](FILE*) { FinishStepFiles(steps); });
}

void ExpectSameWorlds(const World& a, const World& b) {
    const int S = a.answers.nSites;
    const int N = a.answers.nOTUs;
    const int T = a.answers.nTraits;
    EXPECT_EQ(Bytes(a.W.get(), S + 1, N), Bytes(b.W.get(), S + 1, N));
    EXPECT_EQ(Bytes(a.shares.get(), S, N), Bytes(b.shares.get(), S, N));
    EXPECT_EQ(Bytes(a.E.get(), a.answers.nPredictors, S),
              Bytes(b.E.get(), a.answers.nPredictors, S));
    EXPECT_EQ(Bytes(a.expected.get(), T, S), Bytes(b.expected.get(), T, S));
    EXPECT_EQ(Bytes(a.beyond.get(), T, S), Bytes(b.beyond.get(), T, S));
    EXPECT_EQ(Bytes(a.means.get(), T, S), Bytes(b.means.get(), T, S));
    EXPECT_EQ(Entries(a.abundance.get(), S), Entries(b.abundance.get(), S));
    EXPECT_EQ(Entries(a.richness.get(), S), Entries(b.richness.get(), S));
    EXPECT_EQ(Entries(a.colonizations.get(), S), Entries(b.colonizations.get(), S));
    EXPECT_EQ(Entries(a.extinctions.get(), S), Entries(b.extinctions.get(), S));
    EXPECT_EQ(std::tie(a.total, a.onset, a.step, a.chiSquareCalls, a.answers.densityWeight),
              std::tie(b.total, b.onset, b.step, b.chiSquareCalls, b.answers.densityWeight));
}

void PrintPoint(const StepFiles& files, const World& world, StepPoint point,
                ConstMatrix<double> distances, ConstMatrix<double> survival) {
    if (point == StepPoint::kBeforeMortality)
        PrintStepCommunities(files, world, Mortality::kBefore);
    if (point == StepPoint::kAfterMortality) PrintStepCommunities(files, world, Mortality::kAfter);
    if (point == StepPoint::kFilter) PrintStepFilter(files, world, distances, survival);
    if (point == StepPoint::kMeans) PrintStepMeans(files, world);
}

}  // namespace

TEST_F(Simulation, CheapStepsGiveWhatFullTablesGive) {
    constexpr double kProportions[] = {0.0, 0.37, 1.0};
    int renewals = 0;
    int filled = 0;
    int losses = 0;
    for (int k = 0; k < 60; k++) {
        SCOPED_TRACE(k);
        SimulationAnswers a;
        a.nSites = 1 + k % 7;
        a.nOTUs = 2 + k % 11;
        a.nTraits = 1 + k % 3;
        a.nFactors = 1 + k / 2 % 3;
        a.interactions = k % 2 == 1;
        a.nPredictors = a.nFactors + (a.interactions ? a.nFactors * (a.nFactors - 1) / 2 : 0);
        a.maxIndividuals = 1 + k % 9;
        a.maxIterations = 60;
        a.threshold = kProportions[k % 3] / 2;
        a.dispersalWeight = kProportions[k / 3 % 3] * (k % 4 == 0 ? 1 : 0.8);
        a.densityWeight = kProportions[k / 5 % 3];
        WriteWorld(folder_, 100 + 4 * k, a, 0.4 * (k % 5 + 1), 3 * (k % 4));
        if (k % 13 == 12) folder_.Write("G.txt", "inf 0 0 0 0 0 0 0 0");
        if (k % 17 == 16) folder_.Write("B.txt", "-999 nan " + Numbers(k, 40, 4));
        const bool files = k % 3 == 0;
        OneRun plain(a);
        std::unique_ptr<StepFiles> steps(files ? new StepFiles : nullptr);
        WithConsole("", [&](FILE*) {
            PlainAssembleCommunities(*plain.world, [&](StepPoint point, auto d, auto p) {
                if (files) PrintPoint(*steps, *plain.world, point, d, p);
            });
        });
        if (files) FinishSteps(*steps);
        const std::string written = TakeStepFiles(folder_);
        const double nextDraw = gsl_rng_uniform(r);
        OneRun fast(a);
        steps.reset(files ? new StepFiles : nullptr);
        WithConsole("", [&](FILE*) { AssembleCommunities(*fast.world, steps.get()); });
        if (files) FinishSteps(*steps);
        EXPECT_EQ(gsl_rng_uniform(r), nextDraw);
        ExpectSameWorlds(*fast.world, *plain.world);
        EXPECT_TRUE(TakeStepFiles(folder_) == written);
        renewals += fast.world->chiSquareCalls > kChiSquareEntries;
        filled += fast.world->step < a.maxIterations;
        losses += std::ranges::max(Entries(fast.world->extinctions.get(), a.nSites)) > 0;
    }
    EXPECT_GT(std::min({renewals, filled, losses}), 5) << renewals << filled << losses;
}

TEST(ChiSquareTable, TailsAndTheLastEntry) {
    ChiSquareTable table;
    RenewTable(2.0, 2, &table);  // the tail of two degrees of freedom is exp(-x / 2)
    EXPECT_NEAR(LogTail(3.7815, &table), -0.5 * 3.781, 1e-12);
    EXPECT_EQ(LogTail(0.0, &table), 0.0);
    EXPECT_NEAR(LogTail(10.0, &table), -0.5 * 9.999, 1e-12);
    for (const double past : {10.5, 1e300, HUGE_VAL, std::nan("")})
        EXPECT_EQ(LogTail(past, &table), LogTail(10.0, &table));
}

namespace {

/// An evaluation with everything drawn from correlations; predictor 2 takes no part.
std::string Evaluation20(const char* fuzziness, const char* measure, const char* details) {
    return std::string(
               "A\n12\n9\n2\nc\nC.txt\nu\n2\nc\nC.txt\nn\nn\nA.txt\nG.txt\n6\n.5\n.2\n.4\n40\n"
               "y\n20\nk\n1 2 3 4 5 6 7 8 9\ny\n") +
           fuzziness + "\n20\n0\n2\n9\n" + measure + "\n1\ny\n" + details + "\n2\n1 0\n.05\nX\n";
}

/// Numbers behind each place where the label and what ends it stand.
std::vector<double> NumbersBehind(const std::string& text, const std::string& label) {
    std::vector<double> numbers;
    for (std::size_t at = text.find(label); at != std::string::npos; at = text.find(label, at + 1))
        numbers.push_back(std::strtod(text.c_str() + at + label.size(), nullptr));
    return numbers;
}

}  // namespace

TEST_F(Simulation, RatesAreSharesOfTheRejections) {
    folder_.Write("C.txt", "1 .5\n.5 1\n");
    folder_.Write("A.txt", "1 0\n0 0\n");
    folder_.Write("G.txt", "0 0 0 .3\n");
    for (const auto& [fuzziness, measure] :
         {std::pair{"1", "1\n6"}, {"0", "2"}, {"1", "3"}, {"0", "1\n10"}}) {
        const ConsoleRun run = RunWhole(Evaluation20(fuzziness, measure, "y"));
        EXPECT_EQ(run.exitStatus, 0);
        const std::string report = folder_.Read("FinalSimulatedData.txt");
        EXPECT_EQ(Count(report, "\n\nSIMULATED DATA "), 20);
        for (const RatedStatistic& statistic : ratedStatistics) {
            const std::string label = std::string("\n") + statistic.label;
            double rejections = 0;
            std::istringstream rows(report);
            for (std::string row; std::getline(rows, row);)
                if (row.rfind(std::string(statistic.label) + "=\t", 0) == 0)
                    rejections += NumbersBehind(row, "P=\t")[0] <= 0.05;
            const std::vector<double> rates = NumbersBehind(report, label + "\tP=\t");
            ASSERT_EQ(rates.size(), 1U) << label;
            EXPECT_NEAR(rates[0], rejections / 20, 1e-6) << label;
        }
        EXPECT_TRUE(Contains(report, "\neights:" + std::string(50, ' ') + "\t1\t0\n\nPROB"));
        EXPECT_EQ(Count(report, "\nFactor (f) for limiting"), measure[0] == '1' ? 0 : 1);
        EXPECT_FALSE(folder_.Has("B_Simulated.txt"));
        // Without details: the same rates, nothing of the data sets, no settings.
        RunWhole(Evaluation20(fuzziness, measure, "n"));
        const std::string brief = folder_.Read("FinalSimulatedData.txt");
        EXPECT_EQ(brief.substr(brief.find("\n\nPROB")), report.substr(report.find("\n\nPROB")));
        EXPECT_FALSE(Contains(brief, "SIMULATED DATA ") || Contains(brief, "eights:"));
    }
}
