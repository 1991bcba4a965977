// Are the probabilities of the permutation test uniform where nothing is tied to anything? Traits,
// phylogeny, communities and ecological variables are drawn anew and independently for each seed.
// The types of OTUs follow from their traits, so that the rows of B, U, Q, Sb and Sf belong to the
// OTUs and can be exchanged against the columns of W: each statistic that is compared with
// permutations of itself has uniform probabilities, exactly.
//
//   p_value_uniformity [data sets [iterations [first seed]]]
//
// Prints, for each statistic, the Kolmogorov-Smirnov distance to the uniform distribution on 1 / N
// ... 1 and the chi-square of 10 bins, each with its probability, and the share of probabilities at
// or below 0.05. Two are not compared with permutations of themselves: under Procrustes and RV
// r(XZ.T) of the data shows r(XY.T), which the run rejects, and the matrix correlation r(BF) with
// dissimilarities has its sign changed in the data alone, which matters to one-tailed tests unless
// its distribution is symmetric.

#include <gsl/gsl_cdf.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <numeric>
#include <random>
#include <vector>

#include "mxlib/perm_test/statistics.h"
#include "mxlib/random_lists.h"
#include "mxlibRes/congruence.h"
#include "reference/perm_test_data.h"
#include "silence.h"

namespace {

const char* const kNames[kReported] = {
    "r(XE)",   "r(TE)",   "r(XE.T)", "r(RE)",    "r(XE.TR)", "r(TZ)",  "r(TY)", "r(XZ)",
    "r(XY)",   "r(XZ.T)", "r(XY.T)", "r(BF)",    "r(FE)",    "r(PE)",  "r(PT)", "r(PX)",
    "r(PX.T)", "r(TE.P)", "r(XE.P)", "r(XE.TP)", "r(PE.T)",  "r(PE.X)"};

struct Scenario {
    const char* name;
    int opt_ro;
    bool twoTailed;
    bool nested;  ///< OTUs are permuted within 3 groups
    int share;    ///< of the iterations, one in so many
};

const Scenario kScenarios[] = {{"Mantel, two-tailed", kMantel, true, false, 1},
                               {"Mantel, one-tailed", kMantel, false, false, 1},
                               {"Mantel, two-tailed, within groups", kMantel, true, true, 1},
                               {"Procrustes", kProcrustes, true, false, 2},
                               {"RV", kRV, true, false, 2}};

/// Types by thirds of the first trait; taxa as the types; the OTUs in random order in W.
std::unique_ptr<PermTestData> UnrelatedData(const Scenario& scenario, unsigned seed) {
    auto data = RandomPermTestData({30, 25, 4, 2, 3, 3, 0.3}, seed, scenario.opt_ro);
    auto& in = data->record;
    std::mt19937 random(seed + 1000000);
    std::vector<int> order(in.nOTUs);
    std::iota(order.begin(), order.end(), 0);
    std::shuffle(order.begin(), order.end(), random);
    std::vector<double> row(in.nOTUs);
    for (int i = 0; i < in.nCommunities; i++) {
        for (int k = 0; k < in.nOTUs; k++) row[k] = in.W[i][order[k]];
        std::copy(row.begin(), row.end(), in.W[i]);
    }
    std::sort(order.begin(), order.end(), [&](int a, int b) { return in.B[a][0] < in.B[b][0]; });
    for (int place = 0; place < in.nOTUs; place++)
        data->typeLabels[order[place]] = place * in.nTypes / in.nOTUs + 1;
    data->taxonLabels = data->typeLabels;
    for (int k = 0; k < in.nOTUs; k++) data->nesting[k] = k % 3 + 1;
    in.twoTailedTestMantel = scenario.twoTailed;
    in.optRestrictPermutNullModel = scenario.nested ? 1 : 0;
    DeriveFromTables(data.get());
    return data;
}

/// Upper tail of Kolmogorov's distribution for a distance d of n values.
double KolmogorovTail(double d, int n) {
    const double root = std::sqrt(double(n));
    const double x = (root + 0.12 + 0.11 / root) * d;
    if (x < 0.2) return 1.0;
    double tail = 0.0;
    for (int k = 1; k <= 100; k++)
        tail += (k % 2 == 1 ? 2.0 : -2.0) * std::exp(-2.0 * k * k * x * x);
    return std::clamp(tail, 0.0, 1.0);
}

void PrintUniformity(const char* name, const std::vector<double>& probabilities, int iterations) {
    const int n = int(probabilities.size());
    std::vector<int> counts(iterations + 1);
    for (double p : probabilities)
        counts[std::clamp(int(std::lround(p * iterations)), 1, iterations)]++;
    double distance = 0.0;
    double chiSquare = 0.0;
    int below = 0;
    int small = 0;
    std::vector<int> bins(10);
    for (int k = 1; k <= iterations; k++) {
        below += counts[k];
        distance = std::max(distance, std::fabs(double(below) / n - double(k) / iterations));
        bins[(k - 1) * 10 / iterations] += counts[k];
        if (k * 20 <= iterations) small = below;
    }
    for (int count : bins) chiSquare += std::pow(count - n / 10.0, 2) / (n / 10.0);
    std::printf("%-9s  KS %.4f  P %.4f   chi2 %6.2f  P %.4f   P <= 0.05: %.3f\n", name, distance,
                KolmogorovTail(distance, n), chiSquare, gsl_cdf_chisq_Q(chiSquare, 9.0),
                double(small) / n);
}

void TestScenario(const Scenario& scenario, int sets, int iterations, int first) {
    std::vector<std::vector<double>> probabilities(kReported);
    {
        const Silence silence;
        for (int seed = first; seed < first + sets; seed++) {
            auto data = UnrelatedData(scenario, unsigned(seed));
            data->record.nIterations = iterations;
            InitRndNumberGenerator(unsigned(seed));
            PermTest_FunctionalPhyl_Correl(&data->record);
            for (int k = 0; k < kReported; k++)
                probabilities[k].push_back(data->record.*kReportedStatistics[k].probability);
        }
    }
    std::printf("\n%s: %d data sets, %d iterations\n", scenario.name, sets, iterations);
    for (int k = 0; k < kReported; k++) PrintUniformity(kNames[k], probabilities[k], iterations);
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    const int sets = argc > 1 ? std::atoi(argv[1]) : 500;
    const int iterations = argc > 2 ? std::atoi(argv[2]) : 400;
    const int first = argc > 3 ? std::atoi(argv[3]) : 1;
    if (sets < 1 || iterations < 40 || iterations % 40 != 0) {
        std::fputs("p_value_uniformity [data sets [iterations, a multiple of 40 [first seed]]]\n",
                   stderr);
        return 2;
    }
    for (const Scenario& scenario : kScenarios)
        TestScenario(scenario, sets, iterations / scenario.share, first);
}
