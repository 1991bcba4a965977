#include "mxlibRes/congruence.h"

#include <gsl/gsl_errno.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "mxlib/partial_matrix_correlation.h"
#include "reference/plain_congruence.h"
#include "support/matrices.h"

namespace {

// The edges of the tolerance, in both precisions.
TEST(MatrixCorrelation, PartialAndSmallSampleRules) {
    EXPECT_EQ(PartialCorrelation(0.5, 0.3, 1.0 - 0.9e-9), 0.0);
    EXPECT_NE(PartialCorrelation(0.5, 0.3, 1.0 - 1.1e-9), 0.0);
    EXPECT_EQ(PartialCorrelation(0.5F, 0.3F, 1.0F - 0.9e-6F), 0.0F);
    EXPECT_FALSE(std::isfinite(PartialCorrelation(0.5, -1.0, 0.3)));
    EXPECT_TRUE(std::isnan(SmallSampleCongruence(0.0, 0.0)));
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

// Covariables that nearly repeat one another or nearly give a leave few digits, and no estimate.
TEST(DataCongruence, EstimatesOfPartialCoefficients) {
    std::mt19937 generator(5);
    int estimated = 0;
    for (int round = 0; round < 400; round++) {
        const int n = 10 + round % 9, p = round % 4 + 1, wide = 12 + round % 23, covariables = 3;
        const int measure = round % 2 == 0 ? kProcrustes : kRV;
        auto a = RandomTable<double>(n, p, -4, 6, generator, 0, 0);
        auto b = RandomTable<double>(n, wide, 0, 9, generator, 0, 0);
        auto c = RandomTable<double>(n, covariables, -1, 1, generator, 0, 0);
        const double near = std::pow(10.0, -round % 19);
        for (int i = 0; i < n; i++) {
            if (round % 3 == 1) c[i][2] = c[i][0] + near * c[i][2];
            for (int j = 0; j < p && round % 3 == 2; j++) a[i][j] = c[i][j % 3] + near * a[i][j];
        }
        auto room = MakePartialCorrelationRoom(n, p, wide, covariables, measure);
        auto fixed = MakeFixedMatrix(b, covariables, room);
        const CovariableSet set = {covariables, nullptr, c};
        const double estimate = EstimatedPartialCorrelation(a, 1, {set}, &fixed, &room);
        if (std::isnan(estimate)) continue;
        estimated++;
        EXPECT_NEAR(estimate, PartialMatrixCorrelation(a, b, 1, {set}, &room), 1e-9) << round;
    }
    EXPECT_GT(estimated, 200);
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
