#include <algorithm>
#include <cmath>
#include <memory>
#include <sstream>

#include "TSLIF/simulation/chi_square_table.h"
#include "TSLIF/simulation/dynamics.h"
#include "TSLIF/simulation/preparation.h"
#include "in_process.h"
#include "mxlib/random_lists.h"
#include "reference/plain_simulation.h"

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

/// Small worlds of many kinds by their number.
void SetAnswers(int k, SimulationAnswers& a) {
    constexpr double kProportions[] = {0.0, 0.37, 1.0};
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
}

/// A run of one data set in the working directory, by either version.
struct OneRun {
    explicit OneRun(int k) {
        SetAnswers(k, answers);
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

/// What the steps left, to the bit.
std::string StateOf(const World& w) {
    const int S = w.answers.nSites, N = w.answers.nOTUs, T = w.answers.nTraits;
    std::string state = Bytes(w.W.get(), S + 1, N) + Bytes(w.shares.get(), S, N) +
                        Bytes(w.E.get(), w.answers.nPredictors, S);
    for (double** table : {w.expected.get(), w.beyond.get(), w.means.get()})
        state += Bytes(table, T, S);
    for (const int* counts :
         {w.abundance.get(), w.richness.get(), w.colonizations.get(), w.extinctions.get()})
        for (int s = 0; s < S; s++) state += " " + std::to_string(counts[s]);
    for (const long long count : std::vector<long long>{w.total, w.onset, w.step, w.chiSquareCalls})
        state += " " + std::to_string(count);
    return state;
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
    int renewals = 0;
    int filled = 0;
    int losses = 0;
    for (int k = 0; k < 60; k++) {
        SCOPED_TRACE(k);
        SimulationAnswers a;
        SetAnswers(k, a);
        WriteWorld(folder_, 100 + 4 * k, a, 0.4 * (k % 5 + 1), 3 * (k % 4));
        if (k % 13 == 12) folder_.Write("G.txt", "inf 0 0 0 0 0 0 0 0");
        if (k % 17 == 16) folder_.Write("B.txt", "-999 nan " + Numbers(k, 40, 4));
        const bool files = k % 3 == 0;
        OneRun plain(k);
        std::unique_ptr<StepFiles> steps(files ? new StepFiles : nullptr);
        WithConsole("", [&](FILE*) {
            PlainAssembleCommunities(*plain.world, [&](StepPoint point, auto d, auto p) {
                if (files) PrintPoint(*steps, *plain.world, point, d, p);
            });
        });
        if (files) FinishSteps(*steps);
        const std::string written = TakeStepFiles(folder_);
        const double nextDraw = gsl_rng_uniform(r);
        OneRun fast(k);
        steps.reset(files ? new StepFiles : nullptr);
        WithConsole("", [&](FILE*) { AssembleCommunities(*fast.world, steps.get()); });
        if (files) FinishSteps(*steps);
        EXPECT_EQ(gsl_rng_uniform(r), nextDraw);
        EXPECT_TRUE(StateOf(*fast.world) == StateOf(*plain.world));
        EXPECT_EQ(fast.answers.densityWeight, plain.answers.densityWeight);
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
