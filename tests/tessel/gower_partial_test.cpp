#include "TSLRESE/gower_partial.h"

#include <gtest/gtest.h>

#include "TSLGLOB/settings.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/gower.h"
#include "support/matrices.h"

namespace {

constexpr float kNone = -999.0F;

class GowerPartial : public testing::Test {
  protected:
    void TearDown() override { countDoubleAbsence = 1; }
};

}  // namespace

TEST_F(GowerPartial, EachTypeAndFlag) {
    Table<float> pairs(3, 3);
    const auto compare = [&](int type, std::vector<float> values, float range, float weight,
                             int flag) {
        GowerMVPartial_dAbsences(3, type, values.data(), pairs, range, weight, flag);
        return values;
    };
    compare(1, {0, 0, 1}, 0, 2, 1);
    ExpectSame(pairs, Table<float>{{2, 2, 0}, {2, 2, 0}, {0, 0, 2}});
    compare(1, {0, 0, 1}, 0, -3, 0);
    ExpectSame(pairs, Table<float>{{kNone, kNone, 0}, {kNone, kNone, 0}, {0, 0, 1}});
    compare(1, {1, 1, 1}, 0, 1, 2);
    ExpectSame(pairs, Table<float>(3, 3, kNone));
    compare(2, {4, kNone, 4}, 0, 0.5F, 1);
    ExpectSame(pairs,
               Table<float>{{0.5F, kNone, 0.5F}, {kNone, kNone, kNone}, {0.5F, kNone, 0.5F}});
    compare(3, {1, 2, 5}, 8, 1, 1);  // a range that is given is kept
    ExpectSame(pairs, Table<float>{{1, 0.875F, 0.5F}, {0.875F, 1, 0.625F}, {0.5F, 0.625F, 1}});
    compare(3, {1, 2, 5}, 0, 1, 1);
    EXPECT_EQ(pairs[0][2], 0);
    EXPECT_EQ(pairs[1][2], 0.25F);
    compare(3, {6, 6, 6}, 0, 1, 1);
    ExpectSame(pairs, Table<float>(3, 3, 1));
    EXPECT_EQ(compare(4, {30, 10, 30}, 20, 1, 1), (std::vector<float>{2.5F, 1, 2.5F}));
    ExpectSame(pairs, Table<float>{{1, 0, 1}, {0, 1, 0}, {1, 0, 1}});  // range of the ranks: 1.5
    compare(5, {1, 1, 1}, 1, 1, 1);
    ExpectSame(pairs, Table<float>(3, 3, kNone));
    compare(3, {1, 2, 5}, 0, 0, 1);
    ExpectSame(pairs, Table<float>(3, 3, kNone));
}

TEST_F(GowerPartial, AveragesOfSubsets) {
    const int types[] = {3, 1, 2};
    const float ranges[] = {4, 0, 0}, weights[] = {1, 0.5F, 0};
    Table<float> data{{1, 0, 1}, {3, 0, 1}, {5, 1, kNone}, {kNone, 0, 2}};
    countDoubleAbsence = 0;
    ScopedCube<float> cube(4, 4, 3);
    Table<float> s(4, 4, 7);
    const float ones[] = {1, 1, 1};
    gower_similarityPartial(3, data, 4, cube, types, ranges, ones);
    const auto average = [&](std::vector<int> include) {
        gower_similarityAverage(3, 4, cube, s, include.data());
    };
    average({1, 1, 1});
    ExpectSame(s, Table<float>{{1, 0.75F, 0, 0}, {7, 1, 0.25F, 0}, {7, 7, 1, 0}, {7, 7, 7, 1}});
    average({0, 1, 2});  // only entries of 1 take part
    ExpectSame(s, Table<float>{{1, kNone, 0, kNone}, {7, 1, 0, kNone}, {7, 7, 1, 0}, {7, 7, 7, 1}});
    average({0, 0, 0});
    EXPECT_EQ(s[0][1], kNone);
    EXPECT_EQ(s[0][0], 1);

    countDoubleAbsence = 1;
    ScopedCube<double> weighted(4, 4, 3);
    gower_similarityPartial(3, data, 4, weighted, types, ranges, weights);
    EXPECT_EQ(weighted[0][1][1], 0.5);
    EXPECT_EQ(weighted[0][1][2], kNone);
    gower_similarityAverage(3, 4, weighted, s, weights);
    EXPECT_FLOAT_EQ(s[0][1], (0.5F + 0.5F) / 1.5F);
    EXPECT_FLOAT_EQ(s[2][3], 0);
    EXPECT_FLOAT_EQ(s[0][3], 1);
}

TEST_F(GowerPartial, AgreesWithTheDirectRoute) {
    std::mt19937 generator(31);
    std::uniform_int_distribution<int> state(0, 5);
    const int n = 15, types[] = {1, 2, 3, 4, 3};
    const float ranges[5] = {}, weights[] = {1, 0.5F, 2, 1, 0.25F};
    Table<float> data = RandomTable(n, 5, -3.0F, 8.0F, generator, 0.1, kNone);
    for (int i = 0; i < n; i++)
        for (int k : {0, 1, 3})
            if (data[i][k] != kNone)
                data[i][k] = float(k == 0 ? state(generator) % 2 : state(generator));
    const Table<float> kept = data;
    for (int flag : {0, 1}) {
        countDoubleAbsence = flag;
        ScopedCube<double> cube(n, n, 5);
        Table<float> partial(n, n);
        data = kept;
        gower_similarityPartial(5, data, n, cube, types, ranges, weights);
        gower_similarityAverage(5, n, cube, partial, weights);
        ExpectSame(data, kept);  // ranks stay out of the caller's matrix
        Table<double> direct(n, n, kNone);
        GowerMVOpt(n, 5, types, data, direct, nullptr, weights, flag);
        for (int i = 0; i < n; i++)
            for (int j = i; j < n; j++) EXPECT_NEAR(partial[i][j], direct[i][j], 2e-7);
    }
}
