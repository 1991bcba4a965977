#include "mxlibRes/ranks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "nrutilMX/nrutilMX.h"

namespace {

template <class T>
class Ranks : public ::testing::Test {};
using Types = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Ranks, Types);

TYPED_TEST(Ranks, AgreeWithCountingTheSmallerAndTheEqual) {
    using T = TypeParam;
    std::mt19937 generator(11);
    std::vector<T> source(300), ranks(300);
    for (T& x : source) x = generator() % 9 == 0 ? T(-999) : T(generator() % 40) / 4;
    RankVectorAdjMV(300, source.data(), ranks.data());
    const double missing = double(std::count(source.begin(), source.end(), T(-999)));
    for (int i = 0; i < 300; i++) {
        double below = 0, equal = 0;
        for (const T other : source) {
            below += other < source[i];
            equal += other == source[i];
        }
        EXPECT_EQ(ranks[i], source[i] == T(-999) ? T(-999) : T(below + (equal + 1) / 2 - missing));
    }
    // a value below -999 stands before the missing ones: 1 - 1
    std::vector<T> low = {-2000, -999, 4};
    RankVectorAdjMV(3, low.data(), low.data());
    EXPECT_EQ(low, (std::vector<T>{0, -999, 2}));
    RankVectorAdjMV(0, source.data(), low.data());
    EXPECT_EQ(low[0], T(0));
}

TYPED_TEST(Ranks, SortMovesTheCompanionAlongAndNaNStaysInside) {
    using T = TypeParam;
    std::mt19937 generator(23);
    for (int t = 0; t < 400; t++) {
        const int n = t < 399 ? t % 70 : 1000;
        const bool withNaN = t % 2 == 1;
        std::vector<T> arr(n + 1), brr(n + 1);
        for (int k = 1; k <= n; k++) {
            arr[k] = withNaN && generator() % 3 == 0 ? T(NAN) : T(generator() % 20) - 3;
            brr[k] = T(k);
        }
        const std::vector<T> before = arr;
        sort2(static_cast<unsigned long>(n), arr.data(), brr.data());
        EXPECT_TRUE(withNaN || std::is_sorted(arr.begin() + 1, arr.end())) << n;
        for (int k = 1; k <= n; k++)
            EXPECT_TRUE(before[int(brr[k])] == arr[k] || std::isnan(arr[k]));
        std::sort(brr.begin() + 1, brr.end());
        for (int k = 1; k <= n; k++) EXPECT_EQ(brr[k], T(k));
    }
}

TYPED_TEST(Ranks, MidranksOfASortedArray) {
    using T = TypeParam;
    std::vector<T> w = {-1, 2, 2, 2, 5, 8, 8};
    T ties = 77;
    crank(6, w.data(), &ties);
    EXPECT_EQ(w, (std::vector<T>{-1, 2, 2, 2, 4, 5.5, 5.5}));
    EXPECT_EQ(ties, T(24 + 6));
    crank(0, w.data(), &ties);
    EXPECT_EQ(ties, T(0));
}

}  // namespace
