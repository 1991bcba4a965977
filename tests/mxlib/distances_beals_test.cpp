#include <gtest/gtest.h>

#include <cmath>

#include "mxlib/resemblance_lib.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "reference/plain_measures.h"
#include "support/matrices.h"

namespace {

TEST(Distances, WorkedByHandWithAMissingValue) {
    Table<double> a{{1, 2, -999}, {4, 6, 5}, {-999, -999, 3}}, d(3, 3, 7.5);
    EucliDistMV(3, 3, a, d);
    ExpectSame(d, {{0, 5, 0}, {7.5, 0, 2}, {7.5, 7.5, 0}});  // 0: no shared column
    AbsValFunctionMV(3, 3, a, d);
    ExpectSame(d, {{0, 7, 0}, {7.5, 0, 2}, {7.5, 7.5, 0}});
    EucliDist(3, 3, a, d);
    EXPECT_EQ(d[0][1], std::sqrt(9.0 + 16 + 1004.0 * 1004));
    Table<float> single{{1, 2, -999}, {4, 6, 5}, {4, 9, 5}}, chosen(3, 3);
    const int mask[] = {0, 1, 2};
    EucliDistMVSelect(3, 3, single, chosen, mask);
    EXPECT_EQ(chosen[0][1], 4);
    EXPECT_EQ(chosen[0][2], 7);
}

// Rows of complete data are compared several at once: every place of the last, shorter round must
// be right.
TEST(Distances, EveryPairIsReachedAndNaNFlowsOn) {
    std::mt19937 generator(5);
    for (int t = 0; t < 24; t++) {
        const int n = 1 + t / 2;
        Table<double> a = RandomTable(n, 6, 0.0, 9.0, generator, t % 2 * 0.2, -999.0);
        Table<double> d(n, n), plain(n, n);
        if (n == 10) a[0][5] = std::nan("");
        EucliDistMV(n, 6, a, d);
        for (int i = 0; i < n; i++)
            for (int j = i + 1; j < n; j++) {
                for (int k = 0; k < 6; k++)
                    if (a[i][k] != -999 && a[j][k] != -999)
                        plain[i][j] += (a[i][k] - a[j][k]) * (a[i][k] - a[j][k]);
                plain[i][j] = std::sqrt(plain[i][j]);
            }
        ExpectSame(d, plain);
    }
}

TEST(Distances, ChordIsSquaredWithMissingValues) {
    // rows 0 and 2 keep all their values, and yet their distance is squared
    Table<double> a{{3, 4, 0}, {-999, 0, 2}, {3, 0, 4}}, d(3, 3);
    ChordDistMV(3, 3, a, d);
    EXPECT_NEAR(d[0][2], 1.28, 1e-15);
    EXPECT_NEAR(d[1][2], 0, 1e-15);  // alike in the columns that they share
    Table<double> zero{{0, 0, -999}, {1, 1, 1}};
    ChordDistMV(2, 3, zero, d);
    EXPECT_FALSE(std::isfinite(d[0][1]));
    const double p[] = {1, 3}, q[] = {6, 2}, none[] = {0, 0};
    EXPECT_DOUBLE_EQ(SumAbsDeviations(2, p, q, false), 0.5);
    EXPECT_DOUBLE_EQ(SumAbsDeviations(2, p, q, true), 0.25);
    EXPECT_EQ(SumAbsDeviations(2, none, q, false), 0);
}

TEST(Resemblance, OptionsReachTheirMeasures) {
    Table<double> a{{3, 4}, {6, 0}, {6, 8}};
    const int measures[] = {1, 0, 0, 1, 0, 17, 3, 0, 2, 0, 18, 1};
    const auto distance = [](int option) {
        return option < 8 ? 5.0 : option < 10 ? 7.0 : std::sqrt(0.8);
    };
    for (int option = 0; option <= 11; option++) {
        Table<double> d(3, 3, 7);
        NominalReseNonHier(3, 2, a, d, option);
        EXPECT_NEAR(d[0][1], option < 6 || option > 10 ? 7.0 : distance(option), 1e-15) << option;
        EXPECT_EQ(d[1][0], 7.0) << "the lower half stays";
        const int measure = TranslateReseOpt_TESSEL_POLYAX(option);
        EXPECT_EQ(measure, measures[option]);
        if (measure == 1 || measure == 17) continue;
        Table<double> whole(3, 3, 7);
        EXPECT_EQ(ResemblanceLib(3, 2, a, whole, 1, measure, 0, nullptr, 0, 0, 0, false), 1);
        EXPECT_NEAR(whole[1][0], measure == 0 ? 7.0 : distance(option), 1e-15);
        EXPECT_EQ(whole[0][1], whole[1][0]);
    }
}

// Three communities, counts of joint occurrence by eye: OTU 0 in two, with OTU 1 in one of them.
TEST(Beals, WorkedByHand) {
    Table<double> w{{2, 1, 0}, {4, 0, 0}, {0, 3, 5}}, m(3, 3), z(3, 3);
    const Table<double> expected[] = {
        {{1, 0.5, 0}, {0.5, 1, 0.5}, {0, 1, 1}},
        {{1, 2.0 / 6, 0}, {1.0 / 4, 1, 3.0 / 4}, {0, 1, 1}},
        {{20.0 / 22, 2.0 / 22, 0}, {2.0 / 27, 10.0 / 27, 15.0 / 27}, {0, 15.0 / 40, 25.0 / 40}}};
    for (int option = 0; option < 3; option++) {
        ConditionalProb(3, 3, w, m, option, false);
        ExpectNear(m, expected[option], 1e-15);
    }
    BealsSmoothing(3, 3, w, w, z, false, 0, false);
    EXPECT_NEAR(z[0][0], (1.0 / 3) / (1 - 2.0 / 3) * 0.5, 1e-15);
    EXPECT_EQ(z[1][0], 0);  // the OTU holds the whole community
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
    // A conditional value of 1 has infinite odds (here the square of OTU 0 underflows): they also
    // reach the community without that OTU, as 0 times infinity.
    Table<double> performances{{0, 2, 5}, {6, 1, 3}}, joint{{1e-170, 1e10, 0}, {0, 2, 3}};
    Table<double> z(2, 3), plain(2, 3);
    BealsSmoothing(2, 3, performances, joint, z, false, 2, true);
    PlainBealsWithoutTarget(2, 3, performances, joint, plain, 2, true);
    ExpectSame(z, plain);
    EXPECT_TRUE(std::isnan(z[0][1]));
    EXPECT_TRUE(std::isinf(z[1][1]));
}

}  // namespace
