#include <gsl/gsl_errno.h>
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <random>

#include "mxLinearModels/component_regression.h"
#include "mxLinearModels/mxLinearModels.h"
#include "reference/plain_congruence.h"
#include "support/matrices.h"

namespace {

/// Longley (1967): employment in sixteen years, by price deflator, gross national product,
/// unemployed, armed forces, population, year; the certified values of the NIST statistical
/// reference datasets.
TEST(Regression, LongleyComesOutAsCertified) {
    Table<double> Y(16, 2, 3.0), X(16, 6);  // the second response is constant
    std::ifstream table(TESSEL_TEST_DATA "/longley.txt");
    for (int i = 0; i < 16; i++) {
        table >> Y[i][0];
        for (int f = 0; f < 6; f++) table >> X[i][f];
    }
    Table<double> B(6, 2), Yhat(16, 2);
    double b0[2], r2[2], ss[2];
    EXPECT_EQ(regression(16, 2, 6, Y, X, B, b0, Yhat, r2, ss, false, nullptr, 0, false), 1);
    const double certified[] = {15.0618722713733,  -0.0358191792925910, -2.02022980381683,
                                -1.03322686717359, -0.0511041056535807, 1829.15146461355};
    for (int f = 0; f < 6; f++) EXPECT_NEAR(B[f][0] / certified[f], 1.0, 1e-7) << f;
    EXPECT_NEAR(b0[0] / -3482258.63459582, 1.0, 1e-7);
    EXPECT_NEAR(r2[0], 0.995479004577296, 1e-9);
    double residuals = 0.0;
    for (int i = 0; i < 16; i++) residuals += std::pow(Y[i][0] - Yhat[i][0], 2);
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
