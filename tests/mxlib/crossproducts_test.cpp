#include "mxlibRes/crossproducts.h"

#include <gtest/gtest.h>

#include <cmath>

#include "mxlibRes/totals.h"
#include "support/matrices.h"

namespace {

constexpr int kYears = 16;

// Longley (1967), by variable: price deflator, gross national product, unemployed, armed forces
Table<double> Longley() {
    return {{83, 88.5, 88.2, 89.5, 96.2, 98.1, 99, 100, 101.2, 104.6, 108.4, 110.8, 112.6, 114.2,
             115.7, 116.9},
            {234.289, 259.426, 258.054, 284.599, 328.975, 346.999, 365.385, 363.112, 397.469,
             419.180, 442.769, 444.546, 482.704, 502.601, 518.173, 554.894},
            {235.6, 232.5, 368.2, 335.1, 209.9, 193.2, 187, 357.8, 290.4, 282.2, 293.6, 468.1,
             381.3, 393.1, 480.6, 400.7},
            {159, 145.6, 161.6, 165, 309.9, 359.4, 354.7, 335, 304.8, 285.7, 279.8, 263.7, 255.2,
             251.4, 257.2, 282.7}};
}

// computed by R 4.2, cor() and cov()
const double kCorrelations[4][4] = {{1, 0.991589178024782, 0.620633392559097, 0.464744187600675},
                                    {0, 1, 0.604260939889558, 0.446436791892627},
                                    {0, 0, 1, -0.177420629501878},
                                    {0, 0, 0, 1}};

TEST(CrossProducts, LongleyCorrelationsAndCovariances) {
    Table<double> a = Longley();
    Table<double> r(4, 4, 77), c(4, 4, 77);
    CorrelationMV(4, kYears, a, r);
    CovarianceMV(4, kYears, a, c);
    for (int i = 0; i < 4; i++) {
        for (int j = 0; j < i; j++) EXPECT_EQ(r[i][j], 77.0) << "below the diagonal nothing moves";
        for (int j = i; j < 4; j++) {
            EXPECT_NEAR(r[i][j], kCorrelations[i][j], 5e-15);
            EXPECT_NEAR(Correlation2VecMV(kYears, a[i], a[j]), kCorrelations[i][j], 5e-15);
            EXPECT_NEAR(Covariance2VecMV(kYears, a[i], a[j]), c[i][j], 1e-11);
        }
    }
    EXPECT_NEAR(c[0][0], 116.457625, 1e-12);
    EXPECT_NEAR(c[0][1], 1063.60411541667, 1e-10);
    EXPECT_NEAR(c[1][1], 9879.35365932917, 1e-10);

    UpperToLowerMatrix(4, c);
    Correlation(4, c, r);
    for (int i = 0; i < 4; i++)
        for (int j = i; j < 4; j++) EXPECT_NEAR(r[i][j], kCorrelations[i][j], 5e-15);
}

TEST(CrossProducts, WithGapsEachPairUsesItsOwnCompletePositions) {
    Table<double> a = Longley();
    a[2][0] = a[3][5] = -999;
    Table<double> r(4, 4), c(4, 4), x(4, 4);
    CorrelationMV(4, kYears, a, r);
    CovarianceMV(4, kYears, a, c);
    CrossProductMV(4, kYears, a, x);
    // the first two variables are complete, whatever is missing elsewhere
    EXPECT_NEAR(r[0][1], kCorrelations[0][1], 5e-15);
    EXPECT_NEAR(c[0][1], 1063.60411541667, 1e-10);
    // the last two over the 14 years other than the first and the sixth, by the textbook formulas
    double m = 0, sx = 0, sy = 0, sxx = 0, syy = 0, sxy = 0;
    for (int k = 0; k < kYears; k++) {
        if (k == 0 || k == 5) continue;
        m++;
        sx += a[2][k];
        sy += a[3][k];
        sxx += a[2][k] * a[2][k];
        syy += a[3][k] * a[3][k];
        sxy += a[2][k] * a[3][k];
    }
    EXPECT_NEAR(x[2][3], sxy, 1e-9);
    EXPECT_NEAR(c[2][3], (sxy - sx * sy / m) / (m - 1), 1e-9);
    EXPECT_NEAR(r[2][3], (m * sxy - sx * sy) / std::sqrt((m * sxx - sx * sx) * (m * syy - sy * sy)),
                1e-13);
}

TEST(CrossProducts, TooFewPositions) {
    const double x[] = {1, -999, 3}, y[] = {-999, 5, 4};
    EXPECT_EQ(CrossProduct2VecMV(3, x, y), 12.0);
    EXPECT_EQ(CrossProduct2VecMV(0, x, y), 0.0);
    EXPECT_EQ(Covariance2VecMV(0, x, y), 0.0);
    EXPECT_EQ(Covariance2VecMV(2, x, y), 0.0) << "no common position";
    EXPECT_TRUE(std::isnan(Covariance2VecMV(3, x, y))) << "one common position";
    EXPECT_EQ(Correlation2VecMV(0, x, y), 0.0);
    EXPECT_EQ(Correlation2VecMV(2, x, y), 0.0);
}

TEST(CrossProducts, ConstantRowsDependOnTheCompletenessOfTheTable) {
    Table<double> complete = {{2, 2, 2}, {1, 2, 4}};
    Table<double> r(2, 2, 77);
    CorrelationMV(2, 3, complete, r);
    EXPECT_EQ(r[0][0], 0.0);
    EXPECT_EQ(r[0][1], 0.0);
    EXPECT_NEAR(r[1][1], 1.0, 1e-15);
    Table<double> gaps = {{2, 2, 2}, {1, 2, -999}};
    CorrelationMV(2, 3, gaps, r);
    EXPECT_TRUE(std::isnan(r[0][0]));
    EXPECT_TRUE(std::isnan(r[0][1]));

    // from a matrix with a zero on the diagonal, one result above 1 and one below -1
    Table<double> c = {{0, 1, 1, 1}, {1, 1, 3, -3}, {1, 3, 4, 0}, {1, -3, 0, 4}};
    Table<double> fromC(4, 4, 77);
    Correlation(4, c, fromC);
    ExpectSame(fromC, {{1, 0, 0, 0}, {77, 1, 1, -1}, {77, 77, 1, 0}, {77, 77, 77, 1}});
}

TEST(CrossProducts, SinglePrecisionProductsInDoubleSums) {
    // 4097^2 rounds to 16785408 in single precision; the 1 beside it would be lost in a float sum
    Table<float> a = {{4097, 1, -999}, {4097, 1, 0}, {0, 3, 1}, {1, 0, 0}, {0, 1, 0}};
    Table<double> c(5, 5, 77);
    CrossProduct(5, 3, a, c);
    EXPECT_EQ(c[1][1], 16785409.0);
    EXPECT_EQ(c[0][1], 16785409.0);
    EXPECT_EQ(c[0][2], -996.0) << "-999 is a number here";
    EXPECT_EQ(c[0][4], 1.0);
    EXPECT_EQ(c[3][4], 0.0);
    EXPECT_EQ(c[4][0], 77.0);
}

}  // namespace
