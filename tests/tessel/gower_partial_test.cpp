#include "TSLRESE/gower_partial.h"

#include <gtest/gtest.h>

#include "TSLGLOB/settings.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/gower.h"
#include "support/matrices.h"

namespace {

constexpr float kNone = -999.0F;

struct GowerPartial : testing::Test {
    void TearDown() override { countDoubleAbsence = 1; }
};

}  // namespace

TEST_F(GowerPartial, EachTypeAndFlag) {
    const Table<float> none(3, 3, kNone);
    const struct {
        int type;
        std::vector<float> values;
        float range, weight;
        int flag;
        Table<float> expected;
    } rows[] = {
        {1, {0, 0, 1}, 0, 2, 1, {{2, 2, 0}, {2, 2, 0}, {0, 0, 2}}},
        {1, {0, 0, 1}, 0, -3, 0, {{kNone, kNone, 0}, {kNone, kNone, 0}, {0, 0, 1}}},
        {1, {1, 1, 1}, 0, 1, 2, none},
        {2,
         {4, kNone, 4},
         0,
         .5F,
         1,
         {{.5F, kNone, .5F}, {kNone, kNone, kNone}, {.5F, kNone, .5F}}},
        {3, {1, 2, 5}, 8, 1, 1, {{1, .875F, .5F}, {.875F, 1, .625F}, {.5F, .625F, 1}}},
        {3, {1, 2, 5}, 0, 1, 1, {{1, .75F, 0}, {.75F, 1, .25F}, {0, .25F, 1}}},
        {3, {6, 6, 6}, 0, 1, 1, {{1, 1, 1}, {1, 1, 1}, {1, 1, 1}}},
        {4, {30, 10, 30}, 20, 1, 1, {{1, 0, 1}, {0, 1, 0}, {1, 0, 1}}},  // range of ranks: 1.5
        {5, {1, 1, 1}, 1, 1, 1, none},
        {3, {1, 2, 5}, 0, 0, 1, none},
    };
    for (const auto& row : rows) {
        Table<float> pairs(3, 3);
        std::vector<float> values = row.values;
        GowerMVPartial_dAbsences(3, row.type, values.data(), pairs, row.range, row.weight,
                                 row.flag);
        ExpectSame(pairs, row.expected);
        EXPECT_EQ(values, row.type == 4 ? (std::vector<float>{2.5F, 1, 2.5F}) : row.values);
    }
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
