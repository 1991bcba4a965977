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
    World& world;
    SimulationAnswers& a = world.answers;
    const int S = a.nSites, N = a.nOTUs, T = a.nTraits, F = a.nFactors;
    ScopedMatrix<double> distances{S, N}, survival{S, N}, effect{F, S};
    ScopedMatrix<double> siteMeans{S, T}, meansBefore{T, S}, change{T, S};
    ScopedVector<double> table{kTableSize};
    double tableStep = 0, tableEnd = 0;
    int stepsToGo = a.maxIterations, gain = 0;
    bool recording = false, anyDied = false, full = false;

    void ExpectMeans() {
        MatrixProdMV(T, a.nPredictors, a.nPredictors, S, world.responses, world.E, world.expected);
        ZStandardizationRowsMV(T, S, world.traitMean, world.traitSd, world.expected,
                               world.expected);
    }

    void MeasureDistances() {
        for (int s = 0; s < S; s++)
            for (int j = 0; j < N; j++) {
                double sum = 0;
                for (int t = 0; t < T; t++) {
                    if (world.traitFlags[t] != 1) continue;
                    const double d = static_cast<double>(world.B[j][t]) - world.expected[t][s];
                    sum += d * d;
                }
                distances[s][j] = sum;
            }
    }

    void RenewTable() {
        const double max = MatrixMax(S, N, distances);
        if (world.step > 1 && !(max > tableEnd)) return;
        tableEnd = 5 * max;
        tableStep = tableEnd / kTableSize;
        double x = 0;
        for (int k = 0; k < kTableSize; k++) {
            table[k] = gsl_cdf_chisq_Q(x, world.nTraitsFlagged);
            x += tableStep;
        }
        world.chiSquareCalls += kTableSize;
    }

    void FilterOTUs() {
        for (int s = 0; s < S; s++)
            for (int j = 0; j < N; j++) {
                const double place = std::floor(distances[s][j] / tableStep);
                // A place past the table, or none at all, is that of its last entry.
                survival[s][j] =
                    table[place < kTableSize ? static_cast<int>(place) : kTableSize - 1];
            }
    }

    void WeighByDensity() {
        double& w = a.densityWeight;
        for (int j = 0; j < N; j++)
            for (int s = 0; s < S; s++) {
                double f = 1.0 - static_cast<double>(world.abundance[s]) / a.maxIndividuals;
                if (f == 0) f = kAlmostNothing;
                if (w == 0) w = kAlmostNothing;
                survival[s][j] = std::exp((1.0 - w) * std::log(survival[s][j]) + w * std::log(f));
            }
    }

    void StartRecording() {
        if (recording || !(world.total > a.threshold * world.target ||
                           world.step > a.threshold * a.maxIterations))
            return;
        recording = true;
        world.onset = world.step;
        for (int s = 0; s < S; s++)
            world.richness[s] = static_cast<int>(
                std::count_if(world.W[s], world.W[s] + N, [](double n) { return n > 0; }));
    }

    void AddIndividuals(int s, int j, int count) {
        world.W[s][j] += count;
        world.W[S][j] += count;
        world.abundance[s] += count;
        world.total += count;
    }

    bool IsAccepted(int s, int j) {
        const double u = gsl_rng_uniform(r);
        return world.W[s][j] > 0 ? a.dispersalWeight > u : u > a.dispersalWeight;
    }

    void Colonize() {
        for (int s = 0; s < S; s++) {
            if (world.total >= world.target) continue;
            const int j = static_cast<int>(gsl_rng_uniform_int(r, N));
            if (IsAccepted(s, j) && survival[s][j] > gsl_rng_uniform(r)) {
                AddIndividuals(s, j, 1);
                gain++;
                if (recording && world.W[s][j] == 1) world.colonizations[s]++;
            }
            full = world.total == world.target;
        }
    }

    void TestIndividuals(int s, int j, int horizon) {
        const double risk = (1.0 - survival[s][j]) * (1.0 / horizon);
        for (int i = 1;; i++) {
            if (risk > gsl_rng_uniform(r)) {
                AddIndividuals(s, j, -1);
                gain--;
                full = false;
                anyDied = true;
                if (recording && world.W[s][j] == 0) world.extinctions[s]++;
            }
            if (!(world.W[s][j] > i)) return;
        }
    }

    void Die() {
        const int I = a.maxIterations;
        const bool fills = stepsToGo >= 1 && stepsToGo < I - world.step;
        const int horizon = fills ? world.step + stepsToGo : I;
        for (int s = 0; s < S; s++) {
            if (world.abundance[s] <= 0) continue;
            for (int j = 0; j < N; j++)
                if (world.W[s][j] > 0) TestIndividuals(s, j, horizon);
        }
        if (gain > 0) stepsToGo = (world.target - world.total) / gain;
    }

    void AverageTraits() {
        UnitSumRowsAdjMV(S, N, world.shares, world.W);
        MatrixProdMV(S, N, N, T, world.shares, world.B, siteMeans);
        TransposeMatrix(S, T, siteMeans, world.means);
    }

    void FeedBack() {
        if (world.step > 1) {
            MatrixSum(T, S, T, S, world.means, meansBefore, change, -1);
            MatrixProdMV(F, T, T, S, world.effects, change, effect);
            MatrixSum(F, S, F, S, world.E, effect, world.E, 1);
        }
        CopyMatrix(T, S, world.means, meansBefore);
        if (!HasInteractionRows(a)) return;
        for (int i = 0; i < F; i++)
            for (int j = i + 1; j < F; j++)
                for (int s = 0; s < S; s++) world.E[F + i][s] = world.E[i][s] * world.E[j][s];
    }

    void Step(const StepWatcher& watch) {
        gain = 0;
        anyDied = false;
        ExpectMeans();
        MeasureDistances();
        RenewTable();
        FilterOTUs();
        WeighByDensity();
        StartRecording();
        Colonize();
        watch(StepPoint::kBeforeMortality, distances, survival);
        Die();
        if (anyDied) watch(StepPoint::kAfterMortality, distances, survival);
        watch(StepPoint::kFilter, distances, survival);
        AverageTraits();
        watch(StepPoint::kMeans, distances, survival);
        FeedBack();
    }

    /// Above the largest and below the smallest trait alike the amount is taken from the largest.
    /// Entries between keep what an earlier data set left.
    void MeasureExtrapolation() {
        for (int t = 0; t < T; t++)
            for (int s = 0; s < S; s++) {
                const double c = world.expected[t][s];
                if (c > world.traitMax[t] || c < world.traitMin[t])
                    world.beyond[t][s] = c - world.traitMax[t];
            }
    }
};

}  // namespace

void PlainAssembleCommunities(World& world, const StepWatcher& watch) {
    Assembly now{world};
    world.step = 0;
    do {
        world.step++;
        now.Step(watch);
    } while (!now.full && world.step < world.answers.maxIterations);
    now.MeasureExtrapolation();
}
