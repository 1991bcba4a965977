#include "reference/plain_simulation.h"

#include <gsl/gsl_cdf.h>
#include <gsl/gsl_rng.h>

#include <algorithm>
#include <cmath>

#include "mxlib/random_lists.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

constexpr int kTableSize = 10000;
constexpr double kAlmostNothing = 1e-19;  // stands for an exact 0 of a weight or of free space

struct Assembly {
    explicit Assembly(World& w)
        : world(w),
          distances(w.answers.nSites, w.answers.nOTUs),
          survival(w.answers.nSites, w.answers.nOTUs),
          table(kTableSize),
          siteMeans(w.answers.nSites, w.answers.nTraits),
          meansBefore(w.answers.nTraits, w.answers.nSites),
          change(w.answers.nTraits, w.answers.nSites),
          effect(w.answers.nFactors, w.answers.nSites),
          stepsToGo(w.answers.maxIterations) {}

    World& world;
    ScopedMatrix<double> distances;
    ScopedMatrix<double> survival;
    ScopedVector<double> table;
    double tableStep = 0;
    double tableEnd = 0;
    ScopedMatrix<double> siteMeans;
    ScopedMatrix<double> meansBefore;
    ScopedMatrix<double> change;
    ScopedMatrix<double> effect;
    bool recording = false;
    int stepsToGo;
    int gain = 0;
    bool anyDied = false;
    bool full = false;
};

void ExpectMeans(World& world) {
    const SimulationAnswers& a = world.answers;
    MatrixProdMV(a.nTraits, a.nPredictors, a.nPredictors, a.nSites, world.responses, world.E,
                 world.expected);
    ZStandardizationRowsMV(a.nTraits, a.nSites, world.traitMean, world.traitSd, world.expected,
                           world.expected);
}

void MeasureDistances(Assembly& now) {
    const World& world = now.world;
    for (int s = 0; s < world.answers.nSites; s++)
        for (int j = 0; j < world.answers.nOTUs; j++) {
            double sum = 0;
            for (int t = 0; t < world.answers.nTraits; t++) {
                if (world.traitFlags[t] != 1) continue;
                const double d = static_cast<double>(world.B[j][t]) - world.expected[t][s];
                sum += d * d;
            }
            now.distances[s][j] = sum;
        }
}

void RenewTable(Assembly& now) {
    World& world = now.world;
    const double max = MatrixMax(world.answers.nSites, world.answers.nOTUs, now.distances);
    if (world.step > 1 && !(max > now.tableEnd)) return;
    now.tableEnd = 5 * max;
    now.tableStep = now.tableEnd / kTableSize;
    double x = 0;
    for (int k = 0; k < kTableSize; k++) {
        now.table[k] = gsl_cdf_chisq_Q(x, world.nTraitsFlagged);
        x += now.tableStep;
    }
    world.chiSquareCalls += kTableSize;
}

void FilterOTUs(Assembly& now) {
    for (int s = 0; s < now.world.answers.nSites; s++)
        for (int j = 0; j < now.world.answers.nOTUs; j++) {
            const double place = std::floor(now.distances[s][j] / now.tableStep);
            // A place past the table, or none at all, is that of its last entry.
            now.survival[s][j] =
                now.table[place < kTableSize ? static_cast<int>(place) : kTableSize - 1];
        }
}

void WeighByDensity(Assembly& now) {
    World& world = now.world;
    double& w = world.answers.densityWeight;
    for (int j = 0; j < world.answers.nOTUs; j++)
        for (int s = 0; s < world.answers.nSites; s++) {
            double f = 1.0 - static_cast<double>(world.abundance[s]) / world.answers.maxIndividuals;
            if (f == 0) f = kAlmostNothing;
            if (w == 0) w = kAlmostNothing;
            now.survival[s][j] =
                std::exp((1.0 - w) * std::log(now.survival[s][j]) + w * std::log(f));
        }
}

void StartRecording(Assembly& now) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    if (now.recording ||
        !(world.total > a.threshold * world.target || world.step > a.threshold * a.maxIterations))
        return;
    now.recording = true;
    world.onset = world.step;
    for (int s = 0; s < a.nSites; s++)
        world.richness[s] = static_cast<int>(
            std::count_if(world.W[s], world.W[s] + a.nOTUs, [](double n) { return n > 0; }));
}

void AddIndividuals(World& world, int s, int j, int count) {
    const int S = world.answers.nSites;
    world.W[s][j] += count;
    world.W[S][j] += count;
    world.abundance[s] += count;
    world.total += count;
}

bool IsAccepted(const World& world, int s, int j) {
    const double u = gsl_rng_uniform(r);
    return world.W[s][j] > 0 ? world.answers.dispersalWeight > u
                             : u > world.answers.dispersalWeight;
}

void Colonize(Assembly& now) {
    World& world = now.world;
    for (int s = 0; s < world.answers.nSites; s++) {
        if (world.total >= world.target) continue;
        const int j = static_cast<int>(gsl_rng_uniform_int(r, world.answers.nOTUs));
        if (IsAccepted(world, s, j) && now.survival[s][j] > gsl_rng_uniform(r)) {
            AddIndividuals(world, s, j, 1);
            now.gain++;
            if (now.recording && world.W[s][j] == 1) world.colonizations[s]++;
        }
        now.full = world.total == world.target;
    }
}

void TestIndividuals(Assembly& now, int s, int j, int horizon) {
    World& world = now.world;
    const double risk = (1.0 - now.survival[s][j]) * (1.0 / horizon);
    for (int i = 1;; i++) {
        if (risk > gsl_rng_uniform(r)) {
            AddIndividuals(world, s, j, -1);
            now.gain--;
            now.full = false;
            now.anyDied = true;
            if (now.recording && world.W[s][j] == 0) world.extinctions[s]++;
        }
        if (!(world.W[s][j] > i)) return;
    }
}

void Die(Assembly& now) {
    World& world = now.world;
    const int I = world.answers.maxIterations;
    const bool fills = now.stepsToGo >= 1 && now.stepsToGo < I - world.step;
    const int horizon = fills ? world.step + now.stepsToGo : I;
    for (int s = 0; s < world.answers.nSites; s++) {
        if (world.abundance[s] <= 0) continue;
        for (int j = 0; j < world.answers.nOTUs; j++)
            if (world.W[s][j] > 0) TestIndividuals(now, s, j, horizon);
    }
    if (now.gain > 0) now.stepsToGo = (world.target - world.total) / now.gain;
}

void AverageTraits(Assembly& now) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    UnitSumRowsAdjMV(a.nSites, a.nOTUs, world.shares, world.W);
    MatrixProdMV(a.nSites, a.nOTUs, a.nOTUs, a.nTraits, world.shares, world.B, now.siteMeans);
    TransposeMatrix(a.nSites, a.nTraits, now.siteMeans, world.means);
}

void FeedBack(Assembly& now) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    if (world.step > 1) {
        MatrixSum(a.nTraits, a.nSites, a.nTraits, a.nSites, world.means, now.meansBefore,
                  now.change, -1);
        MatrixProdMV(a.nFactors, a.nTraits, a.nTraits, a.nSites, world.effects, now.change,
                     now.effect);
        MatrixSum(a.nFactors, a.nSites, a.nFactors, a.nSites, world.E, now.effect, world.E, 1);
    }
    CopyMatrix(a.nTraits, a.nSites, world.means, now.meansBefore);
    if (!HasInteractionRows(a)) return;
    const int F = a.nFactors;
    for (int i = 0; i < F; i++)
        for (int j = i + 1; j < F; j++)
            for (int s = 0; s < a.nSites; s++) world.E[F + i][s] = world.E[i][s] * world.E[j][s];
}

void Step(Assembly& now, const StepWatcher& watch) {
    World& world = now.world;
    now.gain = 0;
    now.anyDied = false;
    ExpectMeans(world);
    MeasureDistances(now);
    RenewTable(now);
    FilterOTUs(now);
    WeighByDensity(now);
    StartRecording(now);
    Colonize(now);
    watch(StepPoint::kBeforeMortality, now.distances, now.survival);
    Die(now);
    if (now.anyDied) watch(StepPoint::kAfterMortality, now.distances, now.survival);
    watch(StepPoint::kFilter, now.distances, now.survival);
    AverageTraits(now);
    watch(StepPoint::kMeans, now.distances, now.survival);
    FeedBack(now);
}

/// Above the largest and below the smallest trait alike the amount is taken from the largest.
/// Entries between keep what an earlier data set left.
void MeasureExtrapolation(World& world) {
    for (int t = 0; t < world.answers.nTraits; t++)
        for (int s = 0; s < world.answers.nSites; s++) {
            const double c = world.expected[t][s];
            if (c > world.traitMax[t] || c < world.traitMin[t])
                world.beyond[t][s] = c - world.traitMax[t];
        }
}

}  // namespace

void PlainAssembleCommunities(World& world, const StepWatcher& watch) {
    Assembly now(world);
    world.step = 0;
    do {
        world.step++;
        Step(now, watch);
    } while (!now.full && world.step < world.answers.maxIterations);
    MeasureExtrapolation(world);
}
