#include "mxlibRes/congruence.h"

#include <gsl/gsl_errno.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "reference/plain_congruence.h"
#include "support/matrices.h"

namespace {

TEST(MatrixCorrelation, MissingCellsDropOutAndFlatSidesGiveZero) {
    Table<float> f = {{0, 1, 2}, {0, 0, -999}, {0, 0, 0}};
    Table<double> d = {{0, 5, 3}, {0, 0, 8}, {0, 0, 0}}, flat(3, 3, 2.5), none(3, 3, -999.0);
    EXPECT_DOUBLE_EQ(MatrixCorr(3, f, d), -1.0);
    EXPECT_EQ(MatrixCorr(3, flat, d), 0.0);
    EXPECT_EQ(MatrixCorr(3, d, flat), 0.0);
    EXPECT_EQ(MatrixCorr(1, d, d), 0.0);
    EXPECT_EQ(MatrixCorr(3, none, d), 0.0);
}

TEST(MatrixCorrelation, PartialAndSmallSampleRules) {
    EXPECT_EQ(PartialCorrelation(0.5, 1.0, 0.3), 0.0);
    EXPECT_EQ(PartialCorrelation(0.5, 0.3, 1.0 - 0.9e-9), 0.0);
    EXPECT_NE(PartialCorrelation(0.5, 0.3, 1.0 - 1.1e-9), 0.0);
    EXPECT_EQ(PartialCorrelation(0.5F, 0.3F, 1.0F - 0.9e-6F), 0.0F);
    EXPECT_FALSE(std::isfinite(PartialCorrelation(0.5, -1.0, 0.3)));
    EXPECT_NEAR(PartialCorrelation(0.8, 0.6, 0.5), 0.5 / (std::sqrt(0.75) * 0.8), 1e-15);
    EXPECT_DOUBLE_EQ(SmallSampleCongruence(2.0, 5.0), 0.4);
    EXPECT_TRUE(std::isnan(SmallSampleCongruence(0.0, 0.0)));
}

TEST(MatrixCorrelation, BetaDivergenceTakesAllNearestNeighbours) {
    Table<double> d1 = {{0, 1, 1, 2}, {9, 0, 3, 0.5}, {9, 9, 0, 4}, {9, 9, 9, 0}};
    Table<double> d2 = {{0, 10, 20, 40}, {9, 0, 5, 7}, {9, 9, 0, 6}, {9, 9, 9, 0}};
    std::vector<double> out(4);
    EXPECT_TRUE(BetaDivergence(4, d1, d2, out.data()));
    EXPECT_EQ(out, (std::vector<double>{15, 7, 20, 7}));
    EXPECT_EQ(d1[3][1], 0.5);
    EXPECT_TRUE(BetaDivergence(1, d1, d2, out.data()));
    EXPECT_TRUE(std::isnan(out[0]));
}

TEST(DataCongruence, ShortRoutesAgreeWithTheDefinitions) {
    gsl_set_error_handler_off();
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

TEST(DataCongruence, WithoutVariationOrFinitenessTheResultIsNaN) {
    gsl_set_error_handler_off();
    Table<double> a{{2.31, 5.1}, {0.7, 6.2}, {1.9, 4.9}, {4.42, 7.75}}, flat(4, 1, 3.0);
    EXPECT_TRUE(std::isnan(RVcoeff(4, 1, 2, flat, a)));
    EXPECT_TRUE(std::isnan(ProcrustesCoeff(4, 1, 2, flat, a)));
    Table<double> odd = a;
    odd[2][1] = HUGE_VAL;
    EXPECT_TRUE(std::isnan(RVcoeff(4, 2, 2, a, odd)));
    EXPECT_TRUE(std::isnan(ProcrustesCoeff(4, 2, 2, a, odd)));
}

}  // namespace
