#include "TSLIF/simulation/dynamics.h"

#include <algorithm>
#include <cmath>

#include "TSLIF/simulation/chi_square_table.h"
#include "TSLIF/simulation/preparation.h"
#include "iflibG/iflibG.h"
#include "mxlib/random_lists.h"
#include "mxlib/twister.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"

// A step costs what changed in it. What follows from the ecosystem and the crowding of a site is
// made again where they changed; a probability is made when a candidate or an individual asks for
// it. Every number takes the same operations in the same order as over full tables.

namespace {

constexpr double kAlmostNothing = 1e-19;  // stands for an exact 0 of a weight or of free space
constexpr double kUnknown = 2;            // no probability and no logarithm of one

/// What a step carries over to the next, S sites by N OTUs.
struct Assembly {
    explicit Assembly(World& w);

    World& world;
    ProgressPace pace;
    bool recording = false;
    bool full = false;  ///< the target is reached and nobody has died since
    int stepsToGo;      ///< estimate of the steps until the sites are full
    int gain = 0;       ///< of the step, individuals
    bool anyDied = false;

    ChiSquareTable table;
    ScopedVector<int> flagged;          ///< the traits that count for distances
    ScopedMatrix<double> logFilter;     ///< S x N, logarithm of the tail, or unknown
    ScopedMatrix<double> survival;      ///< S x N, probability, or unknown
    ScopedVector<double> largestBound;  ///< S, at least the largest distance of the site
    ScopedVector<double> logFree;       ///< S, weighted logarithm of the free space
    ScopedVector<bool> moved;           ///< S, the site's ecosystem changed in the step before
    ScopedVector<bool> changed;         ///< S, its community changed in the step before or in this
    ScopedMatrix<int> standing;         ///< S x N, the OTUs of the site, ascending
    ScopedVector<int> nStanding;        ///< S
    bool finite;  ///< traits and effects are numbers: what did not change has no effect

    // The tables' columns of one site
    ScopedVector<double*> E;         ///< Q
    ScopedVector<double*> expected;  ///< T
    ScopedMatrix<double> change;     ///< T x 1, of the means
    ScopedMatrix<double> effect;     ///< F x 1, of that
};

template <class T>
bool AllFinite(int rows, int cols, ConstMatrix<T> table) {
    for (int i = 0; i < rows; i++)
        if (!std::all_of(table[i], table[i] + cols, [](T x) { return std::isfinite(x); }))
            return false;
    return true;
}

Assembly::Assembly(World& w)
    : world(w),
      stepsToGo(w.answers.maxIterations),
      flagged(w.nTraitsFlagged),
      logFilter(w.answers.nSites, w.answers.nOTUs),
      survival(w.answers.nSites, w.answers.nOTUs),
      largestBound(w.answers.nSites),
      logFree(w.answers.nSites),
      moved(w.answers.nSites),
      changed(w.answers.nSites),
      standing(w.answers.nSites, w.answers.nOTUs),
      nStanding(w.answers.nSites),
      finite(AllFinite<float>(w.answers.nOTUs, w.answers.nTraits, w.B) &&
             AllFinite<double>(w.answers.nFactors, w.answers.nTraits, w.effects)),
      E(w.answers.nPredictors),
      expected(w.answers.nTraits),
      change(w.answers.nTraits, 1),
      effect(w.answers.nFactors, 1) {
    int k = 0;
    for (int t = 0; t < w.answers.nTraits; t++)
        if (w.traitFlags[t] == 1) flagged[k++] = t;
}

void ReportProgress(const World& world) {
    char text[80];
    std::snprintf(text, sizeof(text), "Iteration: %d %d Abundance: %d", world.answers.nDataSets,
                  world.dataSet, world.total);
    HandleEventInfoWhere2(text);
}

double Distance(const Assembly& now, int s, int j) {
    const World& world = now.world;
    double sum = 0;
    for (int k = 0; k < world.nTraitsFlagged; k++) {
        const int t = now.flagged[k];
        const double d = static_cast<double>(world.B[j][t]) - world.expected[t][s];
        sum += d * d;
    }
    return sum;
}

/// The distance that an OTU would have with the farther extreme of each trait. Its operations are
/// those of the distance, and rounding keeps their order: no distance of the site is above it.
double DistanceOfExtremes(const Assembly& now, int s) {
    const World& world = now.world;
    double sum = 0;
    for (int k = 0; k < world.nTraitsFlagged; k++) {
        const int t = now.flagged[k];
        const double low = world.traitMin[t] - world.expected[t][s];
        const double high = world.traitMax[t] - world.expected[t][s];
        sum += low * low > high * high ? low * low : high * high;
    }
    return sum;
}

void ForgetFilter(Assembly& now, int s) {
    const int N = now.world.answers.nOTUs;
    std::fill(now.logFilter[s], now.logFilter[s] + N, kUnknown);
}

/// The trait means that the ecosystem of the site favours, on the scale of the traits.
void ExpectMeans(Assembly& now, int s) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    for (int q = 0; q < a.nPredictors; q++) now.E[q] = &world.E[q][s];
    for (int t = 0; t < a.nTraits; t++) now.expected[t] = &world.expected[t][s];
    double** const means = now.expected;
    MatrixProdMV(a.nTraits, a.nPredictors, a.nPredictors, 1, world.responses, now.E.get(), means);
    ZStandardizationRowsMV(a.nTraits, 1, world.traitMean, world.traitSd, means, means);
    now.largestBound[s] = DistanceOfExtremes(now, s);
    ForgetFilter(now, s);
}

/// The largest distance among the sites that can have one above `limit`; not below 0.
double LargestDistance(const Assembly& now, double limit) {
    double largest = 0;
    for (int s = 0; s < now.world.answers.nSites; s++) {
        if (now.largestBound[s] <= limit) continue;
        for (int j = 0; j < now.world.answers.nOTUs; j++)
            largest = std::max(largest, Distance(now, s, j));
    }
    return largest;
}

/// A table for the distances of the step, when one is beyond the table's end.
void FitTable(Assembly& now) {
    World& world = now.world;
    const bool isFirst = world.step == 1;
    const double largest = LargestDistance(now, isFirst ? -1.0 : now.table.end);
    if (!isFirst && !(largest > now.table.end)) return;
    RenewTable(largest, world.nTraitsFlagged, &now.table);
    world.chiSquareCalls += kChiSquareEntries;
    for (int s = 0; s < world.answers.nSites; s++) {
        ForgetFilter(now, s);
        now.changed[s] = true;
    }
}

/// The free space of the site where the step before left it.
void MeasureFreeSpace(Assembly& now, int s) {
    const SimulationAnswers& a = now.world.answers;
    double f = 1.0 - static_cast<double>(now.world.abundance[s]) / a.maxIndividuals;
    if (f == 0) f = kAlmostNothing;
    now.logFree[s] = a.densityWeight * std::log(f);
    std::fill(now.survival[s], now.survival[s] + a.nOTUs, kUnknown);
}

/// Expectations, distances and free space of the sites where the step before changed them.
void FilterSites(Assembly& now) {
    const int S = now.world.answers.nSites;
    for (int s = 0; s < S; s++)
        if (now.moved[s]) ExpectMeans(now, s);
    FitTable(now);
    for (int s = 0; s < S; s++) {
        if (now.moved[s] || now.changed[s]) MeasureFreeSpace(now, s);
        now.moved[s] = now.changed[s] = false;
    }
}

/// Probability of survival: the geometric mean of filter and free space. Without free space it is
/// no number and survives no comparison.
double Survival(Assembly& now, int s, int j) {
    double& p = now.survival[s][j];
    if (p == kUnknown) {
        double& filter = now.logFilter[s][j];
        if (filter == kUnknown) filter = LogTail(Distance(now, s, j), &now.table);
        p = std::exp((1.0 - now.world.answers.densityWeight) * filter + now.logFree[s]);
    }
    return p;
}

void StartRecording(Assembly& now) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    const bool isReached =
        world.total > a.threshold * world.target || world.step > a.threshold * a.maxIterations;
    if (now.recording || !isReached) return;
    now.recording = true;
    world.onset = world.step;
    std::copy(now.nStanding.get(), now.nStanding + a.nSites, world.richness.get());
}

void AddIndividuals(Assembly& now, int s, int j, int count) {
    World& world = now.world;
    world.W[s][j] += count;
    world.W[world.answers.nSites][j] += count;
    world.abundance[s] += count;
    world.total += count;
    now.gain += count;
    now.changed[s] = true;
}

void SettleNewOTU(Assembly& now, int s, int j) {
    int* const first = now.standing[s];
    int* const last = first + now.nStanding[s]++;
    int* const place = std::upper_bound(first, last, j);
    std::copy_backward(place, last, last + 1);
    *place = j;
    if (now.recording) now.world.colonizations[s]++;
}

/// Whether the dispersal lets the candidate try: the weight is the chance of an OTU of the site,
/// the rest that of an immigrant.
bool IsAccepted(const World& world, int s, int j) {
    const double u = DrawUniform(r);
    return world.W[s][j] > 0 ? world.answers.dispersalWeight > u
                             : u > world.answers.dispersalWeight;
}

/// One attempt per site, while there is room for individuals at all.
void Colonize(Assembly& now) {
    World& world = now.world;
    const auto N = static_cast<std::uint32_t>(world.answers.nOTUs);
    for (int s = 0; s < world.answers.nSites && world.total < world.target; s++) {
        const int j = static_cast<int>(DrawBelow(r, N));
        if (IsAccepted(world, s, j) && Survival(now, s, j) > DrawUniform(r)) {
            AddIndividuals(now, s, j, 1);
            if (world.W[s][j] == 1) SettleNewOTU(now, s, j);
        }
        now.full = world.total == world.target;
    }
}

/// Mortality among the individuals of an OTU. Each death is one test less.
void TestIndividuals(Assembly& now, int s, int j, double risk) {
    World& world = now.world;
    for (int i = 1;; i++) {
        if (risk > DrawUniform(r)) {
            AddIndividuals(now, s, j, -1);
            now.full = false;
            now.anyDied = true;
        }
        if (!(world.W[s][j] > i)) return;
    }
}

void DieAtSite(Assembly& now, int s, double riskPerStep) {
    World& world = now.world;
    int* const standing = now.standing[s];
    int left = 0;
    for (int k = 0; k < now.nStanding[s]; k++) {
        const int j = standing[k];
        TestIndividuals(now, s, j, (1.0 - Survival(now, s, j)) * riskPerStep);
        if (world.W[s][j] > 0) {
            standing[left++] = j;
        } else {
            world.shares[s][j] = 0;
            if (now.recording) world.extinctions[s]++;
        }
    }
    now.nStanding[s] = left;
}

/// The risk of an individual spreads over the steps until the sites are full.
void Die(Assembly& now) {
    const World& world = now.world;
    const int I = world.answers.maxIterations;
    const bool fills = now.stepsToGo >= 1 && now.stepsToGo < I - world.step;
    const double riskPerStep = 1.0 / (fills ? world.step + now.stepsToGo : I);
    for (int s = 0; s < world.answers.nSites; s++) DieAtSite(now, s, riskPerStep);
    if (now.gain > 0) now.stepsToGo = (world.target - world.total) / now.gain;
}

/// Shares of the OTUs at the site and its trait means; `change` is what the means gained.
void AverageTraits(Assembly& now, int s) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    const double individuals = world.abundance[s] == 0 ? 1.0 : world.abundance[s];
    for (int t = 0; t < a.nTraits; t++) now.change[t][0] = -world.means[t][s];
    for (int t = 0; t < a.nTraits; t++) world.means[t][s] = 0;
    const int n = now.finite ? now.nStanding[s] : a.nOTUs;
    for (int k = 0; k < n; k++) {
        const int j = now.finite ? now.standing[s][k] : k;
        const double share = world.shares[s][j] = world.W[s][j] / individuals;
        for (int t = 0; t < a.nTraits; t++)
            if (!IsMissing(world.B[j][t]))
                world.means[t][s] += share * static_cast<double>(world.B[j][t]);
    }
    for (int t = 0; t < a.nTraits; t++) now.change[t][0] += world.means[t][s];
}

/// The change of the means moves the factors of the site.
void FeedBack(Assembly& now, int s) {
    World& world = now.world;
    const SimulationAnswers& a = world.answers;
    MatrixProdMV(a.nFactors, a.nTraits, a.nTraits, 1, world.effects, now.change.get(),
                 now.effect.get());
    for (int f = 0; f < a.nFactors; f++) {
        const double before = world.E[f][s];
        world.E[f][s] = before + now.effect[f][0];
        if (!(world.E[f][s] == before)) now.moved[s] = true;
    }
    FormInteractions(world, s, s + 1);
}

/// In the first two steps all sites count as changed: the means and the effects begin.
void FollowChanges(Assembly& now) {
    const bool all = now.world.step <= 2 || !now.finite;
    for (int s = 0; s < now.world.answers.nSites; s++) {
        if (!all && !now.changed[s]) continue;
        AverageTraits(now, s);
        if (now.world.step > 1) FeedBack(now, s);
    }
}

void PrintFilter(Assembly& now, const StepFiles& files) {
    const SimulationAnswers& a = now.world.answers;
    ScopedMatrix<double> distances(a.nSites, a.nOTUs);
    for (int s = 0; s < a.nSites; s++)
        for (int j = 0; j < a.nOTUs; j++) {
            distances[s][j] = Distance(now, s, j);
            Survival(now, s, j);
        }
    PrintStepFilter(files, now.world, distances, now.survival);
}

void Step(Assembly& now, const StepFiles* files) {
    World& world = now.world;
    now.gain = 0;
    now.anyDied = false;
    if (now.pace.IsDue()) ReportProgress(world);
    FilterSites(now);
    StartRecording(now);
    Colonize(now);
    if (files != nullptr) PrintStepCommunities(*files, world, Mortality::kBefore);
    Die(now);
    if (files != nullptr) {
        if (now.anyDied) PrintStepCommunities(*files, world, Mortality::kAfter);
        PrintFilter(now, *files);
    }
    FollowChanges(now);
    if (files != nullptr) PrintStepMeans(*files, world);
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

void SettleDensityWeight(SimulationAnswers* answers) {
    if (answers->densityWeight == 0) answers->densityWeight = kAlmostNothing;
}

void AssembleCommunities(World& world, const StepFiles* files) {
    SettleDensityWeight(&world.answers);
    Assembly now(world);
    const int S = world.answers.nSites;
    std::fill(now.moved.get(), now.moved + S, true);
    world.step = 0;
    do {
        world.step++;
        Step(now, files);
    } while (!now.full && world.step < world.answers.maxIterations);
    MeasureExtrapolation(world);
}
