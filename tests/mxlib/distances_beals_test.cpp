#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "mxlib/resemblance_lib.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "reference/plain_measures.h"
#include "support/matrices.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

}  // namespace

TEST(Distances, WorkedByHandWithAMissingValue) {
    Table<double> a{{1, 2, -999}, {4, 6, 5}, {-999, -999, 3}, {4, 6, 5}, {0, 0, 0}, {1, 2, 3}};
    Table<double> d(6, 6, 7.5);
    EucliDistMV(6, 3, a, d);
    EXPECT_EQ(d[0][1], 5);
    EXPECT_EQ(d[0][2], 0);  // no shared column
    EXPECT_EQ(d[1][2], 2);
    EXPECT_EQ(d[1][3], 0);
    EXPECT_EQ(d[1][5], std::sqrt(29.0));
    EXPECT_EQ(d[3][3], 0);
    EXPECT_EQ(d[5][0], 7.5);  // the lower half stays
    AbsValFunctionMV(6, 3, a, d);
    EXPECT_EQ(d[0][1], 7);
    EXPECT_EQ(d[1][4], 15);
    EucliDist(6, 3, a, d);
    EXPECT_EQ(d[0][1], std::sqrt(9.0 + 16 + 1004.0 * 1004));
    Table<float> single{{1, 2, -999}, {4, 6, 5}, {4, 9, 5}}, chosen(3, 3);
    const int mask[] = {0, 1, 2};
    EucliDistMVSelect(3, 3, single, chosen, mask);
    EXPECT_EQ(chosen[0][1], 4);
    EXPECT_EQ(chosen[0][2], 7);
}

// Rows are compared several at once: every place of the last, shorter round must be right.
TEST(Distances, EveryPairIsReachedAndNaNFlowsOn) {
    std::mt19937 generator(5);
    for (int n = 1; n < 11; n++) {
        Table<double> a = RandomTable(n, 6, 0.0, 9.0, generator, 0.2, -999.0);
        Table<double> d(n, n);
        EucliDistMV(n, 6, a, d);
        for (int i = 0; i < n; i++)
            for (int j = i; j < n; j++) {
                double sum = 0;
                for (int k = 0; k < 6; k++)
                    if (a[i][k] != -999 && a[j][k] != -999)
                        sum += (a[i][k] - a[j][k]) * (a[i][k] - a[j][k]);
                EXPECT_EQ(d[i][j], std::sqrt(sum)) << n << " " << i << " " << j;
            }
    }
    Table<double> broken{{1, kNaN}, {2, kNaN}}, d(2, 2);
    EucliDistMV(2, 2, broken, d);
    EXPECT_TRUE(std::isnan(d[0][1]));
}

TEST(Distances, FloatStepsAreRoundedToFloat) {
    Table<float> a{{0.1F, 3.3F}, {0.7F, 1.2F}};
    Table<double> d(2, 2);
    const float x = 0.1F - 0.7F, y = 3.3F - 1.2F;
    EucliDistMV(2, 2, a, d);
    EXPECT_EQ(d[0][1], std::sqrt(double(x * x) + double(y * y)));
    EucliDist(2, 2, a, d);
    EXPECT_EQ(d[0][1], std::sqrt(double(x) * double(x) + double(y) * double(y)));
    AbsValFunctionMV(2, 2, a, d);
    EXPECT_EQ(d[0][1], -double(x) + double(y));
}

TEST(Distances, ChordIsSquaredWithMissingValues) {
    Table<double> whole{{3, 4, 0}, {0, 0, 2}, {6, 8, 0}, {3, 0, 4}};
    Table<double> d(4, 4);
    ChordDistMV(4, 3, whole, d);
    EXPECT_NEAR(d[0][1], std::sqrt(2.0), 1e-15);
    EXPECT_NEAR(d[0][2], 0, 1e-15);
    EXPECT_NEAR(d[0][3], std::sqrt(0.64 + 0.64), 1e-15);
    whole[1][0] = -999;  // rows 0 and 3 keep all their values, and yet their distance is squared
    ChordDistMV(4, 3, whole, d);
    EXPECT_NEAR(d[0][3], 1.28, 1e-15);
    EXPECT_NEAR(d[1][3], 0 + (1 - 1) * (1 - 1), 1e-15);
    Table<double> zero{{0, 0, -999}, {1, 1, 1}};
    ChordDistMV(2, 3, zero, d);
    EXPECT_FALSE(std::isfinite(d[0][1]));
}

TEST(Distances, ProfilesAtUnitSum) {
    const double a[] = {1, 3}, b[] = {6, 2}, zero[] = {0, 0};
    EXPECT_DOUBLE_EQ(SumAbsDeviations(2, a, b, false), 0.5);
    EXPECT_DOUBLE_EQ(SumAbsDeviations(2, a, b, true), 0.25);
    EXPECT_EQ(SumAbsDeviations(2, zero, b, false), 0);
}

TEST(Resemblance, OptionsReachTheirMeasures) {
    Table<double> a{{3, 4}, {6, 0}, {6, 8}};
    const Table<double> euclidean{{0, 5, 5}, {7, 0, 8}, {7, 7, 0}};
    const Table<double> absolute{{0, 7, 7}, {7, 0, 8}, {7, 7, 0}};
    for (int option = 0; option <= 11; option++) {
        Table<double> d(3, 3, 7);
        NominalReseNonHier(3, 2, a, d, option);
        if (option == 6 || option == 7) ExpectSame(d, euclidean);
        if (option == 8 || option == 9) ExpectSame(d, absolute);
        if (option == 10) {
            EXPECT_NEAR(d[0][1], std::sqrt(0.16 + 0.64), 1e-15);
        }
        if (option < 6 || option > 10) ExpectSame(d, Table<double>(3, 3, 7));
    }
    const int measures[] = {1, 0, 0, 1, 0, 17, 3, 0, 2, 0, 18, 1};
    for (int option = 0; option <= 11; option++)
        EXPECT_EQ(TranslateReseOpt_TESSEL_POLYAX(option), measures[option]);
    Table<double> d(3, 3, 7);
    const auto fill = [&](int measure) {
        return ResemblanceLib(3, 2, a, d, 1, measure, 0, nullptr, 0, 0, 0, false);
    };
    EXPECT_EQ(fill(0), 1);
    ExpectSame(d, Table<double>(3, 3, 7));
    fill(2);
    ExpectSame(d, Table<double>{{0, 7, 7}, {7, 0, 8}, {7, 8, 0}});
    fill(3);
    ExpectSame(d, Table<double>{{0, 5, 5}, {5, 0, 8}, {5, 8, 0}});
    fill(18);
    EXPECT_NEAR(d[2][1], std::sqrt(0.16 + 0.64), 1e-15);
    EXPECT_EQ(d[2][1], d[1][2]);
}

// Three communities, counts of joint occurrence by eye: OTU 0 in two, with OTU 1 in one of them.
TEST(Beals, WorkedByHand) {
    Table<double> w{{2, 1, 0}, {4, 0, 0}, {0, 3, 5}};
    Table<double> m(3, 3);
    ConditionalProb(3, 3, w, m, 0, false);
    ExpectSame(m, Table<double>{{1, 0.5, 0}, {0.5, 1, 0.5}, {0, 1, 1}});
    ConditionalProb(3, 3, w, m, 1, false);
    ExpectNear(m, Table<double>{{1, 2.0 / 6, 0}, {1.0 / 4, 1, 3.0 / 4}, {0, 1, 1}}, 1e-15);
    ConditionalProb(3, 3, w, m, 2, false);
    ExpectNear(
        m,
        Table<double>{
            {20.0 / 22, 2.0 / 22, 0}, {2.0 / 27, 10.0 / 27, 15.0 / 27}, {0, 15.0 / 40, 25.0 / 40}},
        1e-15);
    Table<double> z(3, 3);
    BealsSmoothing(3, 3, w, w, z, true, 0, false);
    EXPECT_NEAR(z[0][0], 2.0 / 3 + 0.5 / 3, 1e-15);
    EXPECT_NEAR(z[2][0], 3.0 / 8 * 0.5, 1e-15);
    BealsSmoothing(3, 3, w, w, z, false, 0, false);
    EXPECT_NEAR(z[0][0], (1.0 / 3) / (1 - 2.0 / 3) * 0.5, 1e-15);
    EXPECT_EQ(z[1][0], 0);  // the OTU holds the whole community
    EXPECT_NEAR(z[1][1], 0.5, 1e-15);
}

TEST(Beals, LeavingOutZerosChangesNoDigit) {
    std::mt19937 generator(11);
    for (const double other : {0.0, -999.0}) {
        Table<double> w = RandomTable(9, 14, 0.0, 5.0, generator, 0.7, 0.0);
        w[2][3] = other;
        w[7][0] = other;
        for (int option : {0, 1, 2})
            for (bool flag : {false, true}) {
                Table<double> m(14, 14), plainM(14, 14), z(9, 14), plainZ(9, 14);
                ConditionalProb(9, 14, w, m, option, flag);
                PlainConditionalProb(9, 14, w, plainM, option, flag);
                ExpectSame(m, plainM);
                BealsSmoothing(9, 14, w, w, z, false, option, flag);
                PlainBealsWithoutTarget(9, 14, w, w, plainZ, option, flag);
                ExpectSame(z, plainZ);
            }
    }
}

// A conditional value of 1 has infinite odds (here the square of OTU 0 underflows): they also reach
// the community without that OTU, as 0 times infinity.
TEST(Beals, InfiniteOddsFlowOn) {
    Table<double> performances{{0, 2, 5}, {6, 1, 3}}, joint{{1e-170, 1e10, 0}, {0, 2, 3}};
    Table<double> z(2, 3), plain(2, 3);
    BealsSmoothing(2, 3, performances, joint, z, false, 2, true);
    PlainBealsWithoutTarget(2, 3, performances, joint, plain, 2, true);
    ExpectSame(z, plain);
    EXPECT_TRUE(std::isnan(z[0][1]));
    EXPECT_TRUE(std::isinf(z[1][1]));
}
