#include "mxlibRes/crossproducts.h"

#include <gtest/gtest.h>

#include <cmath>

#include "mxlibRes/totals.h"
#include "reference/longley.h"

namespace {

constexpr int kYears = 16;

/// The first four variables of Longley, a row for each.
Table<double> Longley() {
    Table<double> years = LongleyFactors(), variables(4, kYears);
    for (int j = 0; j < 4; j++)
        for (int k = 0; k < kYears; k++) variables[j][k] = years[k][j];
    return variables;
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
            EXPECT_DOUBLE_EQ(Covariance2VecMV(kYears, a[i], a[j]), c[i][j]);
        }
    }
    EXPECT_NEAR(c[0][0], 116.457625, 1e-12);
    EXPECT_NEAR(c[0][1], 1063604.11541667, 1e-7);

    UpperToLowerMatrix(4, c);
    Correlation(4, c, r);
    for (int i = 0; i < 4; i++)
        for (int j = i; j < 4; j++) EXPECT_NEAR(r[i][j], kCorrelations[i][j], 5e-15);
}

TEST(CrossProducts, WithGapsEachPairUsesItsOwnCompletePositions) {
    Table<double> a = Longley(), common(4, kYears - 2), r(4, 4), c(4, 4), x(4, 4);
    a[2][0] = a[3][5] = -999;
    CorrelationMV(4, kYears, a, r);
    CovarianceMV(4, kYears, a, c);
    CrossProductMV(4, kYears, a, x);
    // the first two variables are complete, whatever is missing elsewhere
    EXPECT_NEAR(r[0][1], kCorrelations[0][1], 5e-15);
    EXPECT_NEAR(c[0][1], 1063604.11541667, 1e-7);
    // the last two share all years but the first and the sixth
    for (int k = 0, to = 0; k < kYears; k++)
        if (k != 0 && k != 5) {
            for (int j = 0; j < 4; j++) common[j][to] = a[j][k];
            to++;
        }
    EXPECT_DOUBLE_EQ(x[2][3], CrossProduct2VecMV(kYears - 2, common[2], common[3]));
    EXPECT_DOUBLE_EQ(c[2][3], Covariance2VecMV(kYears - 2, common[2], common[3]));
    EXPECT_DOUBLE_EQ(r[2][3], Correlation2VecMV(kYears - 2, common[2], common[3]));
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
