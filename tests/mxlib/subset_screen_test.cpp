#include "mxlib/subset_screen/subset_screen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "mxlibRes/congruence_kernels.h"
#include "mxlibRes/distances.h"
#include "support/matrices.h"

namespace {

constexpr int kTraits = 9;

/// Values for every subset of a size in lexicographic order, rated by the routines of the search.
template <class Real>
std::vector<double> RateAll(int c, int size, Table<Real>& traits, int q, Table<Real>& b,
                            int measure, int option, bool product) {
    std::vector<double> values;
    std::vector<int> chosen(kTraits, 0);
    std::fill_n(chosen.begin(), size, 1);
    CongruenceSide<Real> x = MakeCongruenceSide<Real>(measure, c, kTraits);
    CongruenceSide<Real> y = MakeCongruenceSide<Real>(measure, c, q);
    CongruenceScratch<Real> scratch = MakeCongruenceScratch<Real>(measure, c, q, kTraits);
    do {
        if (measure != kMantel) {
            Table<Real> subset(c, kTraits);
            for (int i = 0; i < c; i++)
                for (int k = 0; k < kTraits; k++) subset[i][k] = chosen[k] ? traits[i][k] : Real(0);
            SetCongruenceSide<Real>(subset, &x);
            SetCongruenceSide<Real>(b, &y);
            values.push_back(Congruence(x, y, &scratch));
            continue;
        }
        const auto sideOf = [&](Table<Real>& table, const std::vector<int>& members, int opt) {
            ColumnTable<Real> columns = MakeColumnTable<Real>(c, table.cols());
            std::vector<const Real*> of;
            for (int k = 0; k < table.cols(); k++) {
                for (int i = 0; i < c; i++) columns.columns[k][i] = table[i][k];
                if (members[k]) of.push_back(columns.columns[k]);
            }
            MantelSide side = MakeMantelSide(c);
            DistanceCells<Real>(c, int(of.size()), of.data(), opt, nullptr, side.cells);
            CompleteMantelSide(&side);
            return side;
        };
        const MantelSide t = sideOf(traits, chosen, option);
        const MantelSide e = sideOf(b, std::vector<int>(q, 1), kEuclidean);
        std::vector<int> first(q, 0);
        first[0] = 1;
        const MantelSide e2 = sideOf(b, first, kAbsolute);
        const MantelPair pairs[] = {{&e, &t}, {&e2, &t}};
        double r[2];
        CorrelateMantelSides(0, nullptr, 2, pairs, r);
        values.push_back(product ? double(float(r[0]) * float(r[1])) : r[0]);
    } while (std::prev_permutation(chosen.begin(), chosen.end()));
    return values;
}

template <class Real>
std::unique_ptr<SubsetScreen> MakeScreen(int c, Table<Real>& traits, const float* weights, int q,
                                         Table<Real>& b, int measure, int option, bool product) {
    const ScreenedTraits<Real> of{c, kTraits, traits, weights, kTraits};
    if (measure != kMantel) return ScreenCongruence<Real>(measure, of, q, b, false);
    MantelSide sides[] = {MakeMantelSide(c), MakeMantelSide(c)};
    for (int s = 0; s < 2; s++) {
        ColumnTable<Real> columns = MakeColumnTable<Real>(c, q);
        for (int k = 0; k < q; k++)
            for (int i = 0; i < c; i++) columns.columns[k][i] = b[i][k];
        DistanceCells<Real>(c, s == 0 ? q : 1, columns.columns, s == 0 ? kEuclidean : kAbsolute,
                            nullptr, sides[s].cells);
        CompleteMantelSide(&sides[s]);
    }
    const MantelSide* fixed[] = {&sides[0], &sides[1]};
    return ScreenCorrelation<Real>(option, of, {fixed, product ? 2U : 1U}, product);
}

/// Subsets screened out, of those that do not reach the threshold by more than 0.001.
template <class Real>
void HoldAgainstAll(int c, Table<Real>& traits, int q, Table<Real>& b, std::mt19937& random,
                    long* below, long* settled) {
    const bool withUnused = random() % 3 == 0;
    std::vector<float> weights(kTraits, 1.0F);
    if (withUnused) weights[random() % kTraits] = 0.0F;
    const struct {
        int measure, option;
        bool product;
    } kinds[] = {{kRV, 0, false},
                 {kProcrustes, 0, false},
                 {kMantel, kEuclidean, false},
                 {kMantel, kRelativeAbsolute, false},
                 {kMantel, kEuclidean, true},
                 {kMantel, kAbsolute, true}};
    for (const auto& kind : kinds) {
        const auto screen = MakeScreen<Real>(c, traits, weights.data(), q, b, kind.measure,
                                             kind.option, kind.product);
        ASSERT_NE(screen, nullptr);
        for (int size = 1; size <= kTraits; size++) {
            const std::vector<double> values =
                RateAll<Real>(c, size, traits, q, b, kind.measure, kind.option, kind.product);
            std::vector<double> sorted = values;
            std::sort(sorted.begin(), sorted.end());
            const double threshold = sorted[random() % sorted.size()];
            std::vector<std::int64_t> numbers;
            std::vector<int> chosen(kTraits, 0);
            std::fill_n(chosen.begin(), size, 1);
            std::vector<char> hasUnused;
            std::int64_t stretchEnd = 0;
            for (size_t n = 0; n < values.size(); n++) {  // stretches of any length
                std::vector<int> members;
                bool unused = false;
                for (int k = 0; k < kTraits; k++)
                    if (chosen[k]) {
                        members.push_back(k);
                        unused = unused || weights[k] == 0.0F;
                    }
                hasUnused.push_back(unused);
                if (std::int64_t(n) == stretchEnd) {
                    const std::int64_t count = std::min<std::int64_t>(
                        1 + std::int64_t(random() % 40), std::int64_t(values.size() - n));
                    screen->Screen({size, members.data(), stretchEnd, count}, threshold, &numbers);
                    stretchEnd += count;
                }
                std::prev_permutation(chosen.begin(), chosen.end());
            }
            ASSERT_TRUE(std::is_sorted(numbers.begin(), numbers.end()));
            for (size_t n = 0; n < values.size(); n++) {
                const bool found =
                    std::binary_search(numbers.begin(), numbers.end(), std::int64_t(n));
                if (hasUnused[n])
                    EXPECT_FALSE(found);
                else if (values[n] >= threshold)
                    ASSERT_TRUE(found) << kind.measure << ' ' << kind.option << ' ' << size << ' '
                                       << values[n] - threshold;
                else if (values[n] < threshold - 0.001) {
                    ++*below;
                    *settled += found ? 0 : 1;
                }
            }
        }
    }
}

}  // namespace

// No subset that reaches the threshold may be lost, and hardly one that is well below it be rated:
// smooth, tied, doubled, constant and badly scaled traits, fixed matrices narrow and wide.
TEST(SubsetScreen, KeepsEverySubsetThatReachesTheThreshold) {
    std::mt19937 random(5);
    long below = 0, settled = 0;
    for (int round = 0; round < 24; round++) {
        const int c = 4 + int(random() % 30);
        const int q = round % 4 == 0 ? 40 : 1 + int(random() % 5);
        Table<double> traits = RandomTable<double>(c, kTraits, -1.0, 1.0, random);
        Table<double> b = RandomTable<double>(c, q, 0.0, 1.0, random);
        for (int i = 0; i < c; i++) {
            traits[i][0] += b[i][0];
            if (round % 3 == 1) traits[i][3] = traits[i][2];
            if (round % 3 == 2) traits[i][4] = double(random() % 2);
            if (round % 5 == 1) traits[i][5] = 0.25;
            if (round % 5 == 2) traits[i][6] = traits[i][6] * 1e-4 + 1000.0;
        }
        HoldAgainstAll<double>(c, traits, q, b, random, &below, &settled);
        Table<float> narrowTraits(c, kTraits), narrowB(c, q);
        for (int i = 0; i < c; i++) {
            for (int k = 0; k < kTraits; k++) narrowTraits[i][k] = float(traits[i][k]);
            for (int k = 0; k < q; k++) narrowB[i][k] = float(b[i][k]);
        }
        HoldAgainstAll<float>(c, narrowTraits, q, narrowB, random, &below, &settled);
    }
    EXPECT_GT(double(settled), 0.95 * double(below));
    Table<double> missing(5, kTraits, -999.0), b(5, 2, 1.0);
    const std::vector<float> weights(kTraits, 1.0F);
    EXPECT_EQ(MakeScreen<double>(5, missing, weights.data(), 2, b, kRV, 0, false), nullptr);
    EXPECT_EQ(MakeScreen<double>(5, missing, weights.data(), 2, b, kMantel, kEuclidean, false),
              nullptr);
}
