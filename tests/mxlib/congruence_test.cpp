#include "mxlibRes/congruence.h"

#include <gsl/gsl_errno.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "mxlib/partial_matrix_correlation.h"
#include "mxlibRes/congruence_kernels.h"
#include "reference/plain_congruence.h"
#include "support/matrices.h"

namespace {

class CongruenceTest : public testing::Test {
  protected:
    void SetUp() override { gsl_set_error_handler_off(); }
    Table<double> a{{2.31, 5.1, 1.5},  {0.7, 6.2, -0.6}, {1.9, 4.9, 0.2},
                    {4.42, 7.75, 0.9}, {3.3, 8.1, -1.1}, {0.25, 5.05, 2.4}};
    Table<double> b{{10.2, 0.31}, {11.7, 0.52}, {9.1, 0.77},
                    {15.3, 0.12}, {14.8, 0.45}, {8.2, 0.93}};
    Table<double> c{{1, 0.2, 7}, {3, 0.1, 3}, {2, 0.9, 5}, {5, 0.4, 2}, {4, 0.8, 9}, {4.5, 0.3, 1}};
};
using MatrixCorrelation = CongruenceTest;
using DataCongruence = CongruenceTest;
using PartialCongruence = CongruenceTest;

Table<double> Distances(const Table<double>& x) {
    Table<double> d(x.rows(), x.rows(), 1e6);  // below the diagonal: never read
    for (int i = 0; i < x.rows(); i++)
        for (int j = i + 1; j < x.rows(); j++) {
            double sum = 0.0;
            for (int k = 0; k < x.cols(); k++) sum += std::pow(x[i][k] - x[j][k], 2);
            d[i][j] = std::sqrt(sum);
        }
    return d;
}

/// scale * x * rotation by `angle` of the first two columns + shift
Table<double> Moved(const Table<double>& x, double scale, double angle, double shift) {
    Table<double> y = x;
    for (int i = 0; i < x.rows(); i++) {
        y[i][0] = std::cos(angle) * x[i][0] - std::sin(angle) * x[i][1];
        y[i][1] = std::sin(angle) * x[i][0] + std::cos(angle) * x[i][1];
        for (int j = 0; j < x.cols(); j++) y[i][j] = scale * y[i][j] + shift;
    }
    return y;
}

TEST_F(MatrixCorrelation, AgreesWithTheMantelStatisticOfR) {
    Table<double> da = Distances(a);
    Table<double> db = Distances(b);
    EXPECT_NEAR(MatrixCorr(6, da, db), 0.843084150744691, 1e-14);
    Table<double> first(6, 1);
    for (int i = 0; i < 6; i++) first[i][0] = a[i][0];
    Table<double> dc = Distances(first);
    EXPECT_NEAR(
        PartialCorrelation(MatrixCorr(6, da, db), MatrixCorr(6, da, dc), MatrixCorr(6, db, dc)),
        0.764308086552839, 1e-13);
}

TEST_F(MatrixCorrelation, MissingCellsDropOutAndFlatSidesGiveZero) {
    Table<float> f = {{0, 1, 2}, {0, 0, -999}, {0, 0, 0}};
    Table<double> d = {{0, 5, 3}, {0, 0, 8}, {0, 0, 0}};
    EXPECT_DOUBLE_EQ(MatrixCorr(3, f, d), -1.0);
    Table<double> flat(3, 3, 2.5);
    EXPECT_EQ(MatrixCorr(3, flat, d), 0.0);
    EXPECT_EQ(MatrixCorr(3, d, flat), 0.0);
    EXPECT_EQ(MatrixCorr(1, d, d), 0.0);
    Table<double> none(3, 3, -999.0);
    EXPECT_EQ(MatrixCorr(3, none, d), 0.0);
}

TEST_F(MatrixCorrelation, PartialAndSmallSampleRules) {
    EXPECT_EQ(PartialCorrelation(0.5, 1.0, 0.3), 0.0);
    EXPECT_EQ(PartialCorrelation(0.5, 0.3, 1.0 - 0.9e-9), 0.0);
    EXPECT_NE(PartialCorrelation(0.5, 0.3, 1.0 - 1.1e-9), 0.0);
    EXPECT_EQ(PartialCorrelation(0.5F, 0.3F, 1.0F - 0.9e-6F), 0.0F);
    EXPECT_FALSE(std::isfinite(PartialCorrelation(0.5, -1.0, 0.3)));
    EXPECT_NEAR(PartialCorrelation(0.8, 0.6, 0.5), 0.5 / (std::sqrt(0.75) * 0.8), 1e-15);
    EXPECT_DOUBLE_EQ(SmallSampleCongruence(2.0, 5.0), 0.4);
    EXPECT_TRUE(std::isnan(SmallSampleCongruence(0.0, 0.0)));
}

TEST_F(MatrixCorrelation, BetaDivergenceTakesAllNearestNeighbours) {
    Table<double> d1 = {{0, 1, 1, 2}, {9, 0, 3, 0.5}, {9, 9, 0, 4}, {9, 9, 9, 0}};
    Table<double> d2 = {{0, 10, 20, 40}, {9, 0, 5, 7}, {9, 9, 0, 6}, {9, 9, 9, 0}};
    double out[4];
    EXPECT_TRUE(BetaDivergence(4, d1, d2, out));
    EXPECT_EQ(out[0], 15.0);
    EXPECT_EQ(out[1], 7.0);
    EXPECT_EQ(out[2], 20.0);
    EXPECT_EQ(out[3], 7.0);
    EXPECT_EQ(d1[3][1], 0.5);
    EXPECT_TRUE(BetaDivergence(1, d1, d2, out));
    EXPECT_TRUE(std::isnan(out[0]));
}

TEST_F(DataCongruence, AgreesWithProcrustesAndRVOfR) {
    EXPECT_NEAR(ProcrustesCoeff(6, 3, 2, a, b), 0.824639031754089, 1e-14);
    EXPECT_NEAR(ProcrustesCoeff(6, 2, 3, b, a), 0.824639031754089, 1e-14);
    EXPECT_NEAR(RVcoeff(6, 3, 2, a, b), 0.886187452073066, 1e-14);
}

TEST_F(DataCongruence, StaysUnderRotationShiftAndScaleAndIsOneWithItself) {
    Table<double> moved = Moved(a, 3.7, 0.6, -12.5);
    EXPECT_NEAR(ProcrustesCoeff(6, 3, 2, moved, b), ProcrustesCoeff(6, 3, 2, a, b), 1e-13);
    EXPECT_NEAR(RVcoeff(6, 3, 2, moved, b), RVcoeff(6, 3, 2, a, b), 1e-13);
    EXPECT_NEAR(ProcrustesCoeff(6, 3, 3, a, moved), 1.0, 1e-13);
    EXPECT_NEAR(RVcoeff(6, 3, 3, a, moved), 1.0, 1e-13);
    Table<double> lowRank = a;
    for (int i = 0; i < 6; i++) lowRank[i][2] = lowRank[i][0] - lowRank[i][1];
    EXPECT_NEAR(ProcrustesCoeff(6, 3, 3, lowRank, lowRank), 1.0, 1e-13);
}

TEST_F(DataCongruence, ShortRoutesAgreeWithTheDefinitions) {
    std::mt19937 generator(11);
    for (const auto& [n, p1, p2] : {std::tuple{30, 5, 12},
                                    {30, 12, 5},
                                    {30, 7, 7},
                                    {30, 1, 9},
                                    {12, 4, 40},
                                    {12, 40, 33},
                                    {9, 9, 8},
                                    {30, 0, 3}}) {
        for (const double missing : {0.0, 0.05}) {
            auto x = RandomTable<double>(n, p1, -4, 6, generator, missing, -999.0);
            auto y = RandomTable<double>(n, p2, 0, 900, generator, missing, -999.0);
            EXPECT_NEAR(ProcrustesCoeff(n, p1, p2, x, y), PlainProcrustes(n, p1, p2, x, y), 1e-12);
            auto xf = RandomTable<float>(n, p1, -4, 6, generator, missing, -999.0F);
            auto yf = RandomTable<float>(n, p2, 0, 9, generator, missing, -999.0F);
            EXPECT_EQ(ProcrustesCoeff(n, p1, p2, xf, yf), PlainProcrustes(n, p1, p2, xf, yf));
            if (p1 == 0) {
                EXPECT_TRUE(std::isnan(RVcoeff(n, p1, p2, x, y)));
                continue;
            }
            EXPECT_NEAR(RVcoeff(n, p1, p2, x, y), PlainRV(n, p1, p2, x, y), 1e-12);
            EXPECT_NEAR(RVcoeff(n, p1, p2, xf, yf), PlainRV(n, p1, p2, xf, yf), 1e-12);
        }
    }
}

TEST_F(DataCongruence, ACentredValueThatHappensToBeMinus999IsMissing) {
    Table<double> x = {{0}, {999}, {1998}, {999}};  // mean 999
    Table<double> y = {{1}, {2}, {4}, {8}};
    EXPECT_NEAR(RVcoeff(4, 1, 1, x, y), PlainRV(4, 1, 1, x, y), 1e-14);
    EXPECT_NEAR(ProcrustesCoeff(4, 1, 1, x, y), PlainProcrustes(4, 1, 1, x, y), 1e-14);
    // one deviation of 999 is left: the coefficients differ from those of the same shape elsewhere
    Table<double> other = {{0}, {99}, {198}, {99}};
    EXPECT_GT(std::fabs(ProcrustesCoeff(4, 1, 1, x, y) - ProcrustesCoeff(4, 1, 1, other, y)), 0.01);
}

TEST_F(DataCongruence, WithoutVariationOrFinitenessTheResultIsNaN) {
    Table<double> flat(6, 1, 3.0);
    EXPECT_TRUE(std::isnan(RVcoeff(6, 1, 3, flat, a)));
    EXPECT_TRUE(std::isnan(ProcrustesCoeff(6, 1, 3, flat, a)));
    a[2][1] = std::numeric_limits<double>::infinity();
    EXPECT_TRUE(std::isnan(RVcoeff(6, 2, 3, b, a)));
    EXPECT_TRUE(std::isnan(ProcrustesCoeff(6, 2, 3, b, a)));
}

TEST_F(DataCongruence, SidesAndScratchServeManyComparisons) {
    std::mt19937 generator(5);
    for (const int measure : {kProcrustes, kRV}) {
        auto wide = MakeCongruenceSide<double>(measure, 20, 25);
        auto narrow = MakeCongruenceSide<double>(measure, 20, 4);
        auto single = MakeCongruenceSide<double>(measure, 20, 1);
        auto scratch = MakeCongruenceScratch<double>(measure, 20, 4, 25);
        for (int round = 0; round < 3; round++) {
            auto x = RandomTable<double>(20, 25, 0, 1, generator, round == 1 ? 0.1 : 0, -999.0);
            auto y = RandomTable<double>(20, 4, 0, 1, generator);
            auto z = RandomTable<double>(20, 1, 0, 1, generator);
            SetCongruenceSide<double>(x, &wide);
            SetCongruenceSide<double>(y, &narrow);
            SetCongruenceSide<double>(z, &single);
            const auto expect = [&](int p1, Table<double>& s, int p2, Table<double>& t) {
                return measure == kRV ? PlainRV(20, p1, p2, s, t)
                                      : PlainProcrustes(20, p1, p2, s, t);
            };
            EXPECT_NEAR(Congruence(wide, narrow, &scratch), expect(25, x, 4, y), 1e-12);
            EXPECT_NEAR(Congruence(single, narrow, &scratch), expect(1, z, 4, y), 1e-12);
            EXPECT_NEAR(Congruence(wide, single, &scratch), expect(25, x, 1, z), 1e-12);
        }
    }
}

TEST_F(PartialCongruence, AgreesWithResidualsOnPrincipalComponentsInR) {
    const int use[] = {1, 1, 1};
    EXPECT_NEAR(PartialMatrixCorrelation(6, 3, 2, a, b, kProcrustes, 2.0, {{3, use, c}}),
                0.828728309876992, 1e-12);
    EXPECT_NEAR(PartialMatrixCorrelation(6, 3, 2, a, b, kRV, 2.0, {{3, nullptr, c}}),
                0.897842811402267, 1e-12);
    // the same columns from two sets, with a column that is not chosen between them
    Table<double> first = {{1, 50}, {3, -7}, {2, 2}, {5, 9}, {4, 1}, {4.5, 0}};
    Table<double> rest(6, 2);
    for (int i = 0; i < 6; i++) rest[i][0] = c[i][1], rest[i][1] = c[i][2];
    const int onlyFirst[] = {1, 0};
    EXPECT_NEAR(PartialMatrixCorrelation(6, 3, 2, a, b, kRV, 2.0,
                                         {{2, onlyFirst, first}, {2, nullptr, rest}}),
                0.897842811402267, 1e-12);
}

TEST_F(PartialCongruence, WithoutCovariablesNothingOrOnlyTheMeanIsRemoved) {
    EXPECT_TRUE(std::isnan(PartialMatrixCorrelation(6, 3, 2, a, b, kRV, 2.0, {})));
    const int none[] = {0, 0, 0};
    EXPECT_NEAR(PartialMatrixCorrelation(6, 3, 2, a, b, kRV, 2.0, {{3, none, c}}),
                RVcoeff(6, 3, 2, a, b), 1e-14);
}

}  // namespace
