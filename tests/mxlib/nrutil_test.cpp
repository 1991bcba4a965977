#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <vector>

#include "nrutilMX/nrutilMX.h"
#include "support/console.h"
#include "support/matrices.h"

namespace {

/// Solves a x = b by way of the arrays that count from 1; a becomes its inverse, b the solutions.
std::string Solve(Table<double>& a, Table<double>& b) {
    const int n = a.rows(), m = b.cols();
    Table<double> a1(n + 1, n + 1), b1(n + 1, m + 1);
    Convertn_n1(n, n, a, a1);
    Convertn_n1(n, m, b, b1);
    const ConsoleRun run = WithConsole("", [&](FILE*) { gaussj(a1, n, b1, m); });
    Convertn1_n(n, n, a1, a);
    Convertn1_n(n, m, b1, b);
    return run.err;
}

TEST(GaussJordan, InverseOfTheHilbertMatrix) {
    Table<double> a(4, 4);
    Table<double> b = {{25.0 / 12, 1}, {77.0 / 60, 0}, {57.0 / 60, 0}, {319.0 / 420, 0}};
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++) a[3 - i][j] = 1.0 / (i + j + 1);  // upside down: rows change
    for (int i = 0; i < 2; i++)
        for (int j = 0; j < 2; j++) std::swap(b[i][j], b[3 - i][j]);
    EXPECT_EQ(Solve(a, b), "");
    ExpectNear(a,
               {{-140, 240, -120, 16},
                {1680, -2700, 1200, -120},
                {-4200, 6480, -2700, 240},
                {2800, -4200, 1680, -140}},
               1e-8);
    ExpectNear(b, {{1, 16}, {1, -120}, {1, 240}, {1, -140}}, 1e-9);
}

TEST(GaussJordan, SingularMatricesAreReportedAndDoNotStop) {
    Table<double> zero(1, 1), right(1, 1, 1.0);
    EXPECT_EQ(Solve(zero, right), "gaussj: Singular Matrix-2");
    EXPECT_EQ(right[0][0], HUGE_VAL);
    Table<double> collinear = {{1, 2, 3}, {2, 4, 6}, {1, 1, 1}}, b(3, 1, 1.0);
    EXPECT_EQ(Solve(collinear, b).find("gaussj: Singular Matrix-2"), 0U);
    EXPECT_FALSE(std::isfinite(b[0][0]));
    // nothing compares with NaN, so the first column is taken for the pivot again
    Table<double> nan(3, 3, std::nan("")), c(3, 1, 1.0);
    EXPECT_EQ(Solve(nan, c).find("gaussj: Singular Matrix-1"), 0U);
    Table<double> alone = {{0, 0, 0}, {0, 0, 4}, {0, 2, 0}};
    gaussj(alone, 2, nullptr, 0);  // no right-hand side
    ExpectSame(alone, {{0, 0, 0}, {0, 0, 0.5}, {0, 0.25, 0}});
}

template <class T>
class Sorting : public ::testing::Test {};
using Types = ::testing::Types<float, double>;
TYPED_TEST_SUITE(Sorting, Types);

TYPED_TEST(Sorting, SortMovesTheCompanionAlongAndNaNStaysInside) {
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

}  // namespace
