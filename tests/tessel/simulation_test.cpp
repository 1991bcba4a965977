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
#include "support/run_program.h"
#include "support/text.h"

namespace {

using Simulation = InProcess;

/// Answers of a run with trait data and initial conditions from files: sizes and interactions
/// (sites, OTUs, traits, factors, y or n), rules, the rest.
std::string RunOfFiles(const Texts& sizes, const std::string& rules, const std::string& rest) {
    return "A\n" + sizes[0] + "\n" + sizes[1] + "\n" + sizes[2] + "\nt\nB.txt\n" + sizes[3] +
           "\ne\nE.txt\n" + sizes[4] + "\nA.txt\nG.txt\n" + rules + "\n" + rest + "\nX\n";
}

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

/// Counts what the recorded communities tell: arrivals and losses of OTUs since the onset.
struct Tally {
    Ints colonizations, extinctions;
    std::vector<std::vector<double>> before;

    explicit Tally(const World& world)
        : colonizations(world.answers.nSites),
          extinctions(world.answers.nSites),
          before(world.answers.nSites, std::vector<double>(world.answers.nOTUs)) {}

    void Watch(StepPoint point, const World& world) {
        if (point == StepPoint::kFilter || point == StepPoint::kMeans) return;
        EXPECT_LE(world.total, world.target);
        int sum = 0;
        for (int s = 0; s < world.answers.nSites; s++)
            for (int j = 0; j < world.answers.nOTUs; j++) {
                const double now = world.W[s][j];
                sum += static_cast<int>(now);
                EXPECT_GE(now, 0);
                if (world.onset > 0) {
                    colonizations[s] += before[s][j] == 0 && now > 0;
                    extinctions[s] += before[s][j] > 0 && now == 0;
                }
                before[s][j] = now;
            }
        EXPECT_EQ(sum, world.total);
    }
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
        Tally tally(*plain.world);
        std::unique_ptr<StepFiles> steps(files ? new StepFiles : nullptr);
        WithConsole("", [&](FILE*) {
            PlainAssembleCommunities(*plain.world, [&](StepPoint point, auto d, auto p) {
                tally.Watch(point, *plain.world);
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
        EXPECT_EQ(tally.colonizations, Entries(fast.world->colonizations.get(), a.nSites));
        EXPECT_EQ(tally.extinctions, Entries(fast.world->extinctions.get(), a.nSites));
        renewals += fast.world->chiSquareCalls > kChiSquareEntries;
        filled += fast.world->step < a.maxIterations;
        losses += *std::max_element(tally.extinctions.begin(), tally.extinctions.end()) > 0;
    }
    EXPECT_GT(std::min({renewals, filled, losses}), 5) << renewals << filled << losses;
}

/// Two OTUs of trait -1 and 1 (mean 0, standard deviation sqrt 2) at two sites of factor -1 and 1,
/// all unit Z scores; C = E / sqrt 2. Squared distances 0.0858 and 2.914 give the probabilities
/// 0.771 and 0.0879 (one degree of freedom). Draws of seed 802, site by site:
/// 1: OTU 1, immigrant 0.702, 0.547 < 0.771: settles. OTU 1, 0.827, 0.005 < 0.0879: settles.
///    Horizon I = 4: risks 0.0572 and 0.228 against 0.894 and 0.791. R = (4 - 2) / 2 = 1.
/// 2: OTU 1, resident 0.223, 0.470: a second one. OTU 1, resident 0.748: refused.
///    Horizon 2 + 1: 0.0762 against 0.136, 0.602; 0.304 against 0.957. R = (4 - 3) / 1 = 1.
/// 3: OTU 2, 0.965, 0.910 > 0.0879: fails. OTU 2, 0.852, 0.386 < 0.771: settles. Full.
///    Horizon 4: 0.0572 against 0.341, 0.970; 0.228 against 0.029: OTU 1 is gone; 0.0572, 0.648.
///    The means of site 2 rise from -1 to 1, and its factor from 1 to 3: C = 2.12.
/// 4: OTU 2, 0.722, 0.057 < 0.0879: settles. Full: the second site draws nothing. 0.425, 0.865,
///    0.944 against 0.0572, 0.0572, 0.228; (1.12)^2 leaves 0.2624 and a risk of 0.184 to 0.972.
TEST_F(Simulation, DrawsOfATinyWorld) {
    for (const char* name : {"A.txt", "G.txt"}) folder_.Write(name, "1\n");
    for (const char* name : {"B.txt", "E.txt"}) folder_.Write(name, "-1 1\n");
    const ConsoleRun run =
        RunWhole(RunOfFiles({"2", "2", "1", "1", "n"}, "2\n0\n.5\n0\n4", "n\n2\n802\ny"));
    EXPECT_EQ(run.exitStatus, 0);
    std::string expected;
    const auto block = [&](int step, const char* when, const char* cells, const char* sums) {
        expected += "\nCommunity data matrix at step " + std::to_string(step) + ", " + when +
                    " mortality, for 2 community sites in rows and 2 OTUs in columns:\n" + cells +
                    "\nAbundance in each community:\n" + sums;
    };
    block(1, "BEFORE", "1\t0\t\n1\t0\t\n", "1\t1\t\nTotal abundance:\t2\n");
    block(2, "BEFORE", "2\t0\t\n1\t0\t\n", "2\t1\t\nTotal abundance:\t3\n");
    block(3, "BEFORE", "2\t0\t\n1\t1\t\n", "2\t2\t\nTotal abundance:\t4\n");
    block(3, "AFTER", "2\t0\t\n0\t1\t\n", "2\t1\t\nTotal abundance:\t3\n");
    block(4, "BEFORE", "2\t1\t\n0\t1\t\n", "3\t1\t\nTotal abundance:\t4\n");
    EXPECT_EQ(folder_.Read("CommunityData.txt"), expected);
    EXPECT_EQ(
        folder_.Read("EnvData.txt"),
        "Ecosystem data matrix (simulation steps and community sites in rows, 1 environmental "
        "variables in columns):\n1\t1\t-1\t\n1\t2\t1\t\n2\t1\t-1\t\n2\t2\t1\t\n3\t1\t-1\t\n"
        "3\t2\t1\t\n4\t1\t-1\t\n4\t2\t3\t\n");
    EXPECT_EQ(folder_.Read("CWM.txt"),
              "Community weighted means (CWM), (simulation steps and community sites in rows, 1 "
              "traits in columns):\n1\t1\t-1\t\n1\t2\t-1\t\n2\t1\t-1\t\n2\t2\t-1\t\n3\t1\t-1\t\n"
              "3\t2\t1\t\n4\t1\t-0.333333\t\n4\t2\t1\t\n");
    const std::string report = folder_.Read("FinalSimulatedData.txt");
    const std::string since =
        "1, when either 0 of the average maximum number of individuals per "
        "community or 0 of the specified maximum number of "
        "colonization/extinction iterations were reached):\n";
    EXPECT_TRUE(Contains(report, "OTU richness in each community (at step " + since + "0\t0\t\n"));
    EXPECT_TRUE(
        Contains(report, "colonizations in each community (after step " + since + "2\t2\t"));
    EXPECT_TRUE(Contains(report, "extinctions in each community (after step " + since + "0\t1\t"));
    EXPECT_TRUE(Contains(report, "mortality of individuals:\t0\n"));
    EXPECT_TRUE(Contains(report,
                         "trait value) at step 4, based on standardized to Z scores "
                         "according to mean and standard deviations in the trait matrix, "
                         "for 1 traits in rows and 2 community sites in columns:\n0\t1.12132"));
    EXPECT_TRUE(Contains(folder_.Read("W_Simulated.txt"), "individuals:\t1e-19\n"));
}

TEST_F(Simulation, InteractionsOfOneTwoAndThreeFactors) {
    for (const int F : {1, 2, 3}) {
        SimulationAnswers a;
        a.nSites = 4;
        a.nOTUs = a.nTraits = 2;
        a.nFactors = F;
        a.interactions = true;
        a.nPredictors = F + F * (F - 1) / 2;
        WriteWorld(folder_, 7, a, 1, 1);
        const OneRun run(a);
        const auto& E = run.world->E;
        for (int s = 0; s < a.nSites; s++) {
            const double last = E[F - 1][s];
            EXPECT_EQ(F < 2 ? 0 : E[F][s], F < 2 ? 0 : E[0][s] * last);
            EXPECT_EQ(F < 3 ? 0 : E[4][s], F < 3 ? 0 : E[1][s] * last);
            EXPECT_EQ(F < 3 ? 0 : E[5][s], 0);
        }
    }
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

TEST_F(Simulation, RunsThatComeToNothingLeaveNoFile) {
    for (const char* name : {"B.txt", "E.txt", "G.txt"}) folder_.Write(name, "2 1 4 1 3 9 7 8\n");
    const std::string run = RunOfFiles({"3", "4", "2", "2", "n"}, "2\n0\n.5\n0\n4", "n\n2\n1\ny");
    folder_.Write("A.txt", "0 0 0 0\n");
    EXPECT_TRUE(Contains(RunWhole(run).out, "\nNo trait responds to the ecosystem: "));
    folder_.Write("A.txt", "1 0 0\n");
    const ConsoleRun brief = RunWhole(run);
    EXPECT_EQ(brief.exitStatus, 0);
    EXPECT_EQ(WithoutBells(brief.err), "\nEnd of file A.txt\n");
    EXPECT_FALSE(folder_.Has("TraitData.txt") || folder_.Has("FinalSimulatedData.txt"));
    EXPECT_EQ(weight, nullptr);
    std::filesystem::create_directory(folder_.path() / "FinalSimulatedData.txt");
    folder_.Write("A.txt", "1 0 0 0\n");
    const ConsoleRun blocked = RunWhole(run);
    EXPECT_EQ(blocked.exitStatus, 1);
    EXPECT_TRUE(Contains(blocked.err, "\nFAIL TO OPEN FILE !!!\n"));
    const ConsoleRun huge =
        RunWhole(RunOfFiles({"3", "4", "2147483647", "2", "n"}, "2\n0\n.5\n0\n4", "n\n2\n1\ny"));
    EXPECT_TRUE(Contains(huge.err, "OUT OF MEMORY"));
}

TEST_F(Simulation, DrawnTraitsAreTakenDownBeforeTheEcosystemFails) {
    folder_.Write("T.txt", "1 .5 .5 1\n");
    for (const char* name : {"E.txt", "A.txt", "G.txt"}) folder_.Write(name, "1 1 1 1\n");
    const ConsoleRun run = RunWhole(
        "A\n3\n4\n2\nc\nT.txt\nn\n2\nc\nE.txt\nn\nn\nA.txt\nG.txt\n2\n0\n.5\n0\n4\n"
        "n\n2\n1\ny\n");
    EXPECT_EQ(run.exitStatus, 1);
    EXPECT_TRUE(Contains(run.out, " saved on file TraitData.txt\n\ncholdc failed"));
    EXPECT_TRUE(Contains(folder_.Read("TraitData.txt"), "Trait means (2 traits):"));
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

TEST_F(Simulation, SameSeedSameFilesAndRawDataEntryTakesThem) {
    SimulationAnswers a;
    a.nSites = 6;
    a.nOTUs = 8;
    a.nTraits = a.nFactors = a.nPredictors = 2;
    WriteWorld(folder_, 31, a, 2, 1);
    const std::string run =
        RunOfFiles({"6", "8", "2", "2", "n"}, "9\n.5\n.4\n.3\n80", "n\n2\n5\ny");
    const auto files = [&] {
        std::map<std::string, std::string> texts;
        for (const auto& entry : std::filesystem::directory_iterator(folder_.path()))
            texts[entry.path().filename()] = Masked(ReadWholeFile(entry.path()));
        return texts;
    };
    RunWhole(run);
    const auto first = files();
    EXPECT_EQ(first.size(), 4U + 13U);
    RunWhole(run);
    EXPECT_EQ(files(), first);
    const ConsoleRun entry = RunWhole(
        "N\nsim\n1\nB_Simulated.txt\n0\nW_Simulated.txt\n0\n1\nE_Simulated.txt\n8\n2\n1\n2\nf\n"
        "TraitTypes_Simulated.txt\ny\n0\n6\n1\n1\n2\n1\n2\nT\nC\nX\n");
    EXPECT_EQ(entry.exitStatus, 0);
    EXPECT_EQ(WithoutBells(entry.err), "");
    EXPECT_TRUE(folder_.Has("simFormda.txt"));
}
