#include "mxlibRes/gower.h"

#include <gtest/gtest.h>

#include "support/matrices.h"

namespace {

constexpr float kNone = -999.0F;

Table<double> Gower(const std::vector<int>& types, Table<float> data, double before = 0.0) {
    Table<double> s(data.rows(), data.rows(), before);
    GowerMVOpt(data.rows(), data.cols(), types.data(), data, s, nullptr, nullptr, 1);
    return s;
}

// Mixed variables: presence of a disease, colour, height, abundance class.
TEST(Gower, MixedTypesWorkedByHand) {
    const int types[] = {1, 2, 3, 4};
    Table<float> data{{1, 3, 2.5F, 10}, {0, 3, 4.0F, 30}, {0, 1, 6.5F, 30}, {kNone, 1, 3.0F, 50}};
    Table<double> s(4, 4);
    GowerMVOpt(4, 4, types, data, s, nullptr, nullptr, 1);
    // ranks of the abundance class: 1, 2.5, 2.5, 4; ranges 4 and 3
    const Table<double> expected{{1, 2.125 / 4, 0.5 / 4, 0.875 / 3},
                                 {2.125 / 4, 1, (1 + 0.375 + 1) / 4, 1.25 / 3},
                                 {0.5 / 4, 2.375 / 4, 1, (1 + 0.125 + 0.5) / 3},
                                 {0.875 / 3, 1.25 / 3, 1.625 / 3, 1}};
    ExpectNear(s, expected, 1e-15);
    EXPECT_EQ(data[1][3], 2.5F);  // the ranks stay in the data
    const float weights[] = {2, 0.5F, 1, 0};
    GowerMVOpt(4, 4, types, data, s, nullptr, weights, 0);
    EXPECT_NEAR(s[0][1], (0.5 + 0.625) / 3.5, 1e-15);
    EXPECT_NEAR(s[1][2], 0.375 / 1.5, 1e-15);  // the double absence is left out

    // a pair without a comparable variable keeps its cell
    Table<float> absences{{0, kNone}, {0, 2}, {0, 5}};
    Table<double> kept(3, 3, 0.25);
    const int presence[] = {1, 3};
    GowerMVOpt(3, 2, presence, absences, kept, nullptr, nullptr, 0);
    ExpectSame(kept, {{1, 0.25, 0.25}, {0.25, 1, 0}, {0.25, 0, 1}});
}

TEST(Gower, RangeStartsAboveZeroAndFloatsSubtractInFloat) {
    const float negative[] = {-8, -2, kNone, -4};
    EXPECT_EQ(VariableRange(4, negative), 8.0F);  // not 6
    const Table<double> s = Gower({3}, {{-8}, {-2}, {-4}});
    EXPECT_DOUBLE_EQ(s[0][1], 1 - 6.0 / 8);
    EXPECT_DOUBLE_EQ(s[1][2], 1 - 2.0 / 8);
    ExpectSame(Gower({3}, {{3}, {3}, {3}}), Table<double>(3, 3, 1));

    const double range = double(float(100.0 - double(0.1F)));
    const double cell = Gower({3}, {{0.1F}, {0.7F}, {100}})[0][1];
    EXPECT_EQ(cell, 1 - double(0.7F - 0.1F) / range);
    EXPECT_NE(cell, 1 - (double(0.7F) - double(0.1F)) / range);  // the two can be told apart
}

TEST(Gower, PlainFormHonoursRangesAndKnowsThreeTypes) {
    const int types[] = {1, 2, 3, 4}, interval[] = {0, 0, 3, 0};
    const Table<float> kept{{0, 2, 1, 7}, {0, 2, 3, 9}, {1, 1, 5, 8}};
    Table<float> data = kept, s(3, 3);
    GowerMV(3, 4, types, data, s, nullptr, nullptr);
    ExpectNear(s, Table<float>{{1, 0.75F, 0}, {0.75F, 1, 0.5F / 3}, {0, 0.5F / 3, 1}}, 1e-7);
    // a similarity may fall below 0 when the range given is too small, even to the missing value
    const float ranges[] = {0, 0, 0.002F, 0};
    GowerMV(3, 4, interval, data, s, ranges, nullptr);
    EXPECT_FLOAT_EQ(s[0][1], kNone);
    ExpectSame(data, kept);
}

}  // namespace
