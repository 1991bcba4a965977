#include "mxlibRes/standardisation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "support/matrices.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

template <class T>
class Standardisation : public ::testing::Test {};
using Types = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Standardisation, Types);

TYPED_TEST(Standardisation, RowsByHand) {
    using T = TypeParam;
    const double tolerance = 4 * double(std::numeric_limits<T>::epsilon());
    Table<T> a = {{1, 2, 3, -999}, {0, 0, 0, -999}, {3, -999, -4, 0}, {-999, -999, -999, -999}};
    Table<T> result(4, 4);

    CenterRowsMV(4, 4, a, result);
    const T third = T(1) / 3;
    ExpectNear<T>(result,
                  {{-1, 0, 1, -999},
                   {0, 0, 0, -999},
                   {3 + third, -999, -4 + third, third},
                   {-999, -999, -999, -999}},
                  tolerance);
    CenterRowsCovMV(1, 4, a, result);  // three values: divisor sqrt(2)
    ExpectNear<T>(Table<T>{{result[0][0], result[0][2], result[0][3]}},
                  {{T(-std::sqrt(0.5)), T(std::sqrt(0.5)), -999}}, tolerance);
    NormalizeRowsMV(4, 4, a, result);
    const T root = T(std::sqrt(14.0));
    ExpectNear<T>(result,
                  {{1 / root, 2 / root, 3 / root, -999},
                   {0, 0, 0, -999},
                   {T(0.6), -999, T(-0.8), 0},
                   {-999, -999, -999, -999}},
                  tolerance);
    // sum of squared deviations 2 over four columns, not over three values
    ZStandardizationRowsMV(2, 4, a, result);
    EXPECT_NEAR(result[0][0], -std::sqrt(2.0), tolerance);
    EXPECT_NEAR(result[0][2], std::sqrt(2.0), tolerance);
    EXPECT_EQ(result[0][3], T(-999));
    EXPECT_EQ(result[1][1], T(0));
    UnitSumRowsAdjMV(4, 4, result, a);
    ExpectNear<T>(result,
                  {{T(1) / 6, T(2) / 6, T(3) / 6, -999},
                   {0, 0, 0, -999},
                   {-3, -999, 4, 0},
                   {-999, -999, -999, -999}},
                  tolerance);

    Table<T> kept(1, 4, 55);
    const double mean[] = {1}, sd[] = {0.5};
    ZStandardizationRowsMV(1, 4, mean, sd, a, kept);
    ExpectSame<T>(kept, {{0, 2, 4, 55}}, "a missing source leaves the result alone");

    Table<T> single = {{5, -999}};
    CenterRowsCovMV(1, 2, single, single);
    ExpectSame<T>(single, {{T(kNaN), -999}}, "one value has no covariance scale");
}

TYPED_TEST(Standardisation, ColumnsByHand) {
    using T = TypeParam;
    const double tolerance = 4 * double(std::numeric_limits<T>::epsilon());
    Table<T> a = {{1, 7}, {2, 7}, {-999, 7}, {6, 7}};
    Table<T> result(4, 2);
    CenterColsMV(4, 2, a, result);
    ExpectSame<T>(result, {{-2, 0}, {-1, 0}, {-999, 0}, {3, 0}});
    Table<T> corr(4, 2, 55);
    CorrAdj(4, 2, corr, a);  // deviations -2, -1, 3; a missing cell is left, a constant column is 0
    const T root = T(std::sqrt(14.0));
    ExpectNear<T>(corr, {{-2 / root, 0}, {-1 / root, 0}, {55, 0}, {3 / root, 0}}, 1e-7);

    Table<T> untested = {{-999, 0}, {0, 0}};
    NormalizeCols(2, 2, untested, untested);
    ExpectSame<T>(untested, {{-1, 0}, {0, 0}}, "-999 is a number to NormalizeCols");
    Table<T> lengths = {{3, 1}, {4, 1}};
    NormalizeCols(2, 2, lengths, lengths);
    ExpectNear<T>(lengths, {{T(0.6), T(std::sqrt(0.5))}, {T(0.8), T(std::sqrt(0.5))}}, tolerance);
}

TYPED_TEST(Standardisation, OneScaleForTheWholeMatrixMakesTheVariancesSumToOne) {
    using T = TypeParam;
    Table<T> cols = {{1, -2}, {-3, -999}, {2, 2}}, rows = {{1, -1, 0}, {-999, 4, -4}};
    GowerStandardizationCols(3, 2, cols);  // squares 22 over 3 - 1
    const T c = T(1 / std::sqrt(11.0));
    ExpectNear<T>(cols, {{c, -2 * c}, {-3 * c, -999}, {2 * c, 2 * c}}, 1e-6);
    GowerStandardizationRows(2, 3, rows);  // squares 34 over 3 - 1
    const T r = T(1 / std::sqrt(17.0));
    ExpectNear<T>(rows, {{r, -r, 0}, {-999, 4 * r, -4 * r}}, 1e-6);
}

TEST(StandardisationOfFloats, ColumnForms) {
    Table<float> a = {{3, 5, -999}, {-999, 5, -999}, {-4, 5, 2}};
    Table<float> result(3, 3);
    NormalizeColsMV(3, 3, a, result);
    ExpectNear<float>(
        result, {{0.6F, 0.57735027F, -999}, {-999, 0.57735027F, -999}, {-0.8F, 0.57735027F, 1}},
        1e-7);
    RangeColsAdjMV(3, 3, result, a);
    ExpectSame<float>(result, {{1, 0, -999}, {-999, 0, -999}, {0, 0, 0}});
    // deviations 3.5 and -3.5 in three rows, not in two values
    ZStandardizationColsMV(3, 3, a, result);
    const float z = float(std::sqrt(1.5));
    ExpectNear<float>(result, {{z, 0, -999}, {-999, 0, -999}, {-z, 0, 0}}, 1e-6);
}

TEST(StandardisationPrecision, MeansInDoubleSumsAndRoundingsAsStated) {
    // in single precision 16777216 + 1 + 1 + 2 would give the mean 4194304.5, rounded: 4194304
    Table<float> big = {{16777216, 1, 1, 2}};
    Table<float> centred(1, 4);
    CenterRowsMV(1, 4, big, centred);
    EXPECT_EQ(centred[0][1], float(1 - 16777220.0 / 4));
    // proportions in single precision sum in single precision
    UnitSumRowsAdjMV(1, 4, centred, big);
    EXPECT_EQ(centred[0][0], 16777216.0F / 16777218.0F);

    Table<float> thirds = {{0}, {0}, {1}};
    Table<double> mixed(3, 1);
    CenterColsMV(3, 1, thirds, mixed);
    EXPECT_EQ(mixed[0][0], double(float(-1.0 / 3.0)));

    Table<double> a = {{0.1}, {0.7}, {2.2}}, corr(3, 1);
    CorrAdj(3, 1, corr, a);
    const double mean = 1.0;
    const double s = std::sqrt(0.9 * 0.9 + 0.3 * 0.3 + 1.2 * 1.2);
    EXPECT_EQ(corr[2][0], double(float((2.2 - mean) / s)));
}

}  // namespace
