#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "mxlibRes/products.h"
#include "mxlibRes/totals.h"
#include "support/matrices.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

TEST(Totals, PassOverMissingValuesInTheElementType) {
    // 2^24 + 1 has no place in single precision: a sum in float stays at 2^24.
    Table<float> a = {{16777216, 1, 1}, {-999, 2.5F, -999}, {-999, -999, -999}};
    Table<double> b = {{16777216, 1, 1}, {-999, 2.5, -999}, {-999, -999, -999.5}};
    float rows[3], cols[3];
    double rowsD[3], colsD[3];
    RowTotalsMV(3, 3, a, rows);
    ColTotalsMV(3, 3, a, cols);
    RowTotalsMV(3, 3, b, rowsD);
    ColTotalsMV(3, 3, b, colsD);
    EXPECT_EQ(rows[0], 16777216.0F);
    EXPECT_EQ(rows[1], 2.5F);
    EXPECT_EQ(rows[2], 0.0F);
    EXPECT_EQ(cols[1], 3.5F);
    EXPECT_EQ(rowsD[0], 16777218.0);
    EXPECT_EQ(rowsD[2], -999.5);
    EXPECT_EQ(colsD[2], -998.5);
    EXPECT_EQ(MatrixTotalMV(3, 3, b), 16777218.0 + 2.5 - 999.5);
    EXPECT_EQ(MatrixTotalMV(0, 3, b), 0.0);
}

TEST(Totals, MeanAndStandardDeviation) {
    double mean, sd;
    const float known[] = {2, 4, 4, 4, 5, 5, 7, 9};  // population variance 4
    MeanStDev(8, known, &mean, &sd);
    EXPECT_EQ(mean, 5.0);
    EXPECT_DOUBLE_EQ(sd, std::sqrt(32.0 / 7.0));
    const float wide[] = {4097, 0};  // 4097^2 = 16785409 rounds to 16785408 in single precision
    MeanStDev(2, wide, &mean, &sd);
    EXPECT_EQ(sd, std::sqrt(16785408.0 - 16785409.0 / 2));

    const double gaps[] = {1, -999, 2, 6, -999};
    EXPECT_DOUBLE_EQ(SumOfSquaresDev(5, gaps), 14.0);
    EXPECT_TRUE(std::isnan(SumOfSquaresDev(1, gaps + 1)));
    EXPECT_TRUE(std::isnan(SumOfSquaresDev(0, gaps)));
}

TEST(Totals, TransposeScaleAddAndMirror) {
    Table<double> a = {{1, 2, -999}, {4, 5, 6}};
    Table<double> b(3, 2);
    TransposeMatrix(2, 3, a, b);
    ExpectSame(b, {{1, 4}, {2, 5}, {-999, 6}});
    EXPECT_EQ(ScalarMatrixProd(2, 3, -2.0, a, a), 0);
    ExpectSame(a, {{-2, -4, -999}, {-8, -10, -12}});

    Table<float> square = {{1, 2, 3}, {4, 5, 6}, {7, 8, 9}};
    TransposeSqMatrix(3, square, square);
    ExpectSame(square, {{1, 4, 7}, {2, 5, 8}, {3, 6, 9}});
    UpperToLowerMatrix(3, square);
    ExpectSame(square, {{1, 4, 7}, {4, 5, 8}, {7, 8, 9}});

    Table<double> sum(2, 3, 0.5);
    EXPECT_EQ(MatrixSum(2, 3, 3, 2, a, b, sum, 1), 1);
    ExpectSame(sum, Table<double>(2, 3, 0.5));
    EXPECT_EQ(MatrixSum(2, 3, 2, 3, a, a, sum, -1), 0);
    ExpectSame(sum, Table<double>(2, 3, 0.0));
}

enum Form { kPlainForm, kMarksSkipped, kSelects, kAdjusts };

/// Row `a` times column j of B over present pairs, in the order of k, each term in the wider of the
/// factors' types and the sum rounded to C at every step. `skipped` counts the pairs passed over,
/// `weights` adds up the factors of B that took part.
template <class A, class B, class C>
C PlainProductCell(int p, const A* a, const Table<B>& b, int j, int* skipped, C* weights) {
    using Wide = std::common_type_t<A, B>;
    C sum = 0;
    *skipped = 0;
    *weights = 0;
    for (int k = 0; k < p; k++) {
        if (a[k] == A(-999) || b[k][j] == B(-999)) {
            ++*skipped;
            continue;
        }
        sum = C(Wide(sum) + Wide(a[k]) * Wide(b[k][j]));
        *weights += C(b[k][j]);
    }
    return sum;
}

/// Holds a product against the sum of each cell, digit by digit, on tables with zeros, missing
/// values, infinities and numbers that vanish in single precision. A single-precision result of
/// mixed factors is missing where pairs were skipped and the sum is 0; only a 1 selects a column.
template <class A, class B, class C>
void HoldAgainstCells(Form form,
                      int (*product)(int, int, int, int, ConstMatrix<A>, ConstMatrix<B>, Matrix<C>),
                      int (*selecting)(int, int, int, int, ConstMatrix<A>, ConstMatrix<B>,
                                       Matrix<C>, const int*)) {
    std::mt19937 generator(20111);
    const double odd[] = {0.0, -0.0, -999.0, kNaN, HUGE_VAL, 1e-42};
    for (int t = 0; t < 400; t++) {
        const int n = 1 + t % 4, p = int(generator() % 13), q = int(generator() % 11);
        const double share = t % 3 * 0.2;
        auto a = RandomTable<A>(n, p, -1, 1, generator, share, A(odd[generator() % 6]));
        auto b = RandomTable<B>(p, q, -1, 1, generator, share, B(odd[generator() % 6]));
        if (t % 5 == 0) b = RandomTable<B>(p, q, B(-1e-44), B(1e-44), generator);
        std::vector<int> sel(q + 1);
        for (int& s : sel) s = int(generator() % 3);
        Table<C> c(n, q), expected(n, q);
        for (const int other : {p + 1, p})  // 1 tells of sizes that do not match
            ASSERT_EQ(form < kSelects ? product(n, p, other, q, a, b, c)
                                      : selecting(n, p, other, q, a, b, c, sel.data()),
                      other != p);
        for (int i = 0; i < n; i++)
            for (int j = 0; j < q; j++) {
                if (form >= kSelects && sel[j] != 1) continue;
                int skipped;
                C weights;
                C cell = PlainProductCell<A, B, C>(p, a[i], b, j, &skipped, &weights);
                if (form == kMarksSkipped && skipped > 0 && cell == 0) cell = C(-999);
                expected[i][j] = form == kAdjusts ? cell / weights : cell;
                EXPECT_EQ(c[i][j] == 0 && std::signbit(c[i][j]),
                          expected[i][j] == 0 && std::signbit(expected[i][j]));
            }
        ExpectSame(c, expected);
        if (::testing::Test::HasFailure()) return;
    }
}

TEST(Products, EveryFormKeepsTheDigitsOfTheSumsCellByCell) {
    HoldAgainstCells<float, float, float>(kPlainForm, MatrixProdMV, nullptr);
    HoldAgainstCells<double, double, double>(kPlainForm, MatrixProd, nullptr);
    HoldAgainstCells<double, float, double>(kPlainForm, MatrixProdMV, nullptr);
    HoldAgainstCells<double, float, float>(kMarksSkipped, MatrixProdMV, nullptr);
    HoldAgainstCells<float, float, float>(kSelects, nullptr, MatrixProdSelectMV);
    HoldAgainstCells<double, float, double>(kSelects, nullptr, MatrixProdSelectMV);
    HoldAgainstCells<float, float, float>(kAdjusts, nullptr, MatrixProdSelectMV_Adjust);
    HoldAgainstCells<double, float, double>(kAdjusts, nullptr, MatrixProdSelectMV_Adjust);
}

}  // namespace
