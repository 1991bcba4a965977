// Where a routine rounds to single precision and where it does not, as it is stated.

#include <gtest/gtest.h>

#include <cmath>

#include "mxlibRes/distances.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"
#include "support/matrices.h"

namespace {

// 2^24 + 1 has no place in single precision, and neither has 4097^2 = 16785409.
TEST(Precision, OfSums) {
    Table<float> big = {{16777216, 1, 1, 2}}, result(1, 4);
    RowTotalsMV(1, 4, big, result[0]);
    EXPECT_EQ(result[0][0], 16777218.0F) << "a sum in float stays at 2^24 but for the last";
    UnitSumRowsAdjMV(1, 4, result, big);
    EXPECT_EQ(result[0][0], 16777216.0F / 16777218.0F);
    CenterRowsMV(1, 4, big, result);  // the mean is summed in double
    EXPECT_EQ(result[0][1], float(1 - 16777220.0 / 4));
    double mean, sd;
    const float wide[] = {4097, 0};
    MeanStDev(2, wide, &mean, &sd);
    EXPECT_EQ(sd, std::sqrt(16785408.0 - 16785409.0 / 2));
    Table<float> thirds = {{0}, {0}, {1}};
    Table<double> centred(3, 1), a = {{0.1}, {0.7}, {2.2}}, corr(3, 1);
    CenterColsMV(3, 1, thirds, centred);
    EXPECT_EQ(centred[0][0], double(float(-1.0 / 3.0)));
    CorrAdj(3, 1, corr, a);
    EXPECT_EQ(corr[2][0],
              double(float((2.2 - 1.0) / std::sqrt(0.9 * 0.9 + 0.3 * 0.3 + 1.2 * 1.2))));
}

TEST(Precision, OfDifferences) {
    Table<float> a = {{0.1F, 3.3F}, {0.7F, 1.2F}}, heights = {{0.1F}, {0.7F}, {100}};
    Table<double> d(2, 2), s(3, 3);
    const float x = 0.1F - 0.7F, y = 3.3F - 1.2F;
    EucliDistMV(2, 2, a, d);
    EXPECT_EQ(d[0][1], std::sqrt(double(x * x) + double(y * y)));
    EucliDist(2, 2, a, d);
    EXPECT_EQ(d[0][1], std::sqrt(double(x) * double(x) + double(y) * double(y)));
    AbsValFunctionMV(2, 2, a, d);
    EXPECT_EQ(d[0][1], -double(x) + double(y));
    const int interval = kIntervalVariable;
    GowerMVOpt(3, 1, &interval, heights, s, nullptr, nullptr, 1);
    EXPECT_EQ(s[0][1], 1 - double(0.7F - 0.1F) / double(float(100.0 - double(0.1F))));
}

}  // namespace
