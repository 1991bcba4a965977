#include <gsl/gsl_errno.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "mxLinearModels/component_regression.h"
#include "mxLinearModels/mxLinearModels.h"
#include "reference/plain_congruence.h"
#include "support/matrices.h"

namespace {

/// Longley (1967): sixteen years by price deflator, gross national product, unemployed, armed
/// forces, population, year; the certified values of the NIST statistical reference datasets.
TEST(Regression, LongleyComesOutAsCertified) {
    const double y[] = {60323, 61122, 60171, 61187, 63221, 63639, 64989, 63761,
                        66019, 67857, 68169, 66513, 68655, 69564, 69331, 70551};
    Table<double> Y(16, 2, 3.0);  // the second response is constant
    for (int i = 0; i < 16; i++) Y[i][0] = y[i];
    Table<double> X = {
        {83.0, 234289, 2356, 1590, 107608, 1947},  {88.5, 259426, 2325, 1456, 108632, 1948},
        {88.2, 258054, 3682, 1616, 109773, 1949},  {89.5, 284599, 3351, 1650, 110929, 1950},
        {96.2, 328975, 2099, 3099, 112075, 1951},  {98.1, 346999, 1932, 3594, 113270, 1952},
        {99.0, 365385, 1870, 3547, 115094, 1953},  {100.0, 363112, 3578, 3350, 116219, 1954},
        {101.2, 397469, 2904, 3048, 117388, 1955}, {104.6, 419180, 2822, 2857, 118734, 1956},
        {108.4, 442769, 2936, 2798, 120445, 1957}, {110.8, 444546, 4681, 2637, 121950, 1958},
        {112.6, 482704, 3813, 2552, 123366, 1959}, {114.2, 502601, 3931, 2514, 125368, 1960},
        {115.7, 518173, 4806, 2572, 127852, 1961}, {116.9, 554894, 4007, 2827, 130081, 1962}};
    Table<double> B(6, 2), Yhat(16, 2);
    double b0[2], r2[2], ss[2];
    EXPECT_EQ(regression(16, 2, 6, Y, X, B, b0, Yhat, r2, ss, false, nullptr, 0, false), 1);
    const double certified[] = {15.0618722713733,  -0.0358191792925910, -2.02022980381683,
                                -1.03322686717359, -0.0511041056535807, 1829.15146461355};
    for (int f = 0; f < 6; f++) EXPECT_NEAR(B[f][0] / certified[f], 1.0, 1e-7) << f;
    EXPECT_NEAR(b0[0] / -3482258.63459582, 1.0, 1e-7);
    EXPECT_NEAR(r2[0], 0.995479004577296, 1e-9);
    double residuals = 0.0;
    for (int i = 0; i < 16; i++) residuals += std::pow(y[i] - Yhat[i][0], 2);
    EXPECT_NEAR(residuals / 836424.055505915, 1.0, 1e-9);
    EXPECT_NEAR(residuals / ss[0], 1 - r2[0], 1e-9);
    EXPECT_TRUE(std::isnan(r2[1]));
    EXPECT_EQ(ss[1], 0.0);
    for (int i = 0; i < 16; i++) EXPECT_EQ(Yhat[i][1], b0[1]);
}

TEST(Residuals, OfMatricesTouchOnlyCellsAboveTheDiagonal) {
    Table<double> a = {{9, 1, 2, 3}, {9, 9, 4, 9}, {9, 9, 9, 9}, {9, 9, 9, 9}};
    Table<double> b = {{9, 3, 5, 7}, {9, 9, 13, 20.1}, {9, 9, 9, 20.1}, {9, 9, 9, 9}};
    a[1][3] = a[2][3] = 2.5;
    Table<double> R(4, 4, 77.0);
    ResidualsMatrixRegression(4, a, b, R);
    // cells in row order: x = 1 2 3 4 2.5 2.5 with mean 2.5, Sxx = 5
    const double y = static_cast<double>(20.1F);
    const double mean = (3 + 5 + 7 + 13 + 2 * y) / 6;
    const double slope = (-1.5 * 3 - 0.5 * 5 + 0.5 * 7 + 1.5 * 13) / 5;
    EXPECT_NEAR(R[0][1], 3 - mean + 1.5 * slope, 1e-12);
    EXPECT_NEAR(R[1][2], 13 - mean - 1.5 * slope, 1e-12);
    EXPECT_NEAR(R[2][3], y - mean, 1e-12);
    EXPECT_EQ(R[0][0], 77.0);
    EXPECT_EQ(R[2][1], 77.0);
}

TEST(Residuals, OnSelectedColumnsAndOnNone) {
    Table<double> Y = {{1, 7}, {4, 7}, {4, 7}, {7, 7}};
    Table<double> X = {{5, 1}, {-2, 2}, {8, 2}, {1, 3}};
    Table<double> R(4, 2, 1.0);
    const int second[] = {0, 1};
    Regression_ResidualsSelect(4, 2, 2, Y, X, R, second);
    ExpectNear(R, Table<double>(4, 2), 1e-14);
    const int none[] = {0, 2};
    Regression_ResidualsSelect(4, 2, 2, Y, X, R, none);
    ExpectNear(R, {{-3, 0}, {0, 0}, {0, 0}, {3, 0}}, 1e-14);
}

TEST(ComponentRegression, SharedComponentsGiveTheResidualsOfTheSeparateSteps) {
    gsl_set_error_handler_off();
    std::mt19937 generator(3);
    for (const int opt : {1, 2})
        for (const double overfit : {0.5, 2.0, 5.0, 40.0})
            for (const double missing : {0.0, 0.1}) {
                auto X = RandomTable<double>(12, 7, 0, 10, generator, missing, -999.0);
                for (int i = 0; i < 12; i++) X[i][6] = X[i][0];
                auto Y = RandomTable<double>(12, 3, 0, 10, generator);
                Table<double> R(12, 3), plain(12, 3);
                PCA_Regression_ResidualsSelect(12, 3, 7, Y, X, R, nullptr, opt, overfit);
                PlainComponentResiduals(12, 3, 7, Y, X, plain, opt, overfit);
                ExpectNear(R, plain, 1e-12);
            }
}

}  // namespace
