#include "mxlibRes/numbers.h"

#include <gsl/gsl_cdf.h>
#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "mxlibRes/binomial_limits.h"

namespace {

const double kNaN = std::nan("");

TEST(Numbers, KeepTheirSignificantDigits) {
    EXPECT_EQ(RoundDigit(123456.0, 3), 123000.0);
    EXPECT_EQ(RoundDigit(-0.00123456, 3), -0.00123);
    EXPECT_EQ(RoundDigit(0.1F + 0.2F, 6), 0.3F);
    EXPECT_EQ(RoundDigit(2.5, 1), 2.0) << "exact halves go to the even digit, as printf does";
    EXPECT_TRUE(std::isnan(RoundDigit(kNaN, 4)));
    EXPECT_EQ(RoundDigit(-HUGE_VAL, 4), -HUGE_VAL);
}

TEST(Numbers, CompareWithinUnitsInTheLastPlaceOfSinglePrecision) {
    const float next = std::nextafter(1.0F, 2.0F);
    const float second = std::nextafter(next, 2.0F);
    EXPECT_TRUE(AlmostEqual2sComplement(1.0F, next, 1));
    EXPECT_FALSE(AlmostEqual2sComplement(1.0F, second, 1));
    EXPECT_TRUE(AlmostEqual2sComplement(-1.0F, -second, 2));
    EXPECT_TRUE(AlmostEqual2sComplement(0.0F, -0.0F, 1));
    // the scale runs on through zero: the two smallest numbers are two units apart
    EXPECT_FALSE(AlmostEqual2sComplement(FLT_TRUE_MIN, -FLT_TRUE_MIN, 1));
    EXPECT_TRUE(AlmostEqual2sComplement(FLT_TRUE_MIN, -FLT_TRUE_MIN, 2));
    EXPECT_FALSE(AlmostEqual2sComplement(FLT_MAX, -FLT_MAX, 4 * 1024 * 1024 - 1));
    EXPECT_FALSE(AlmostEqual2sComplement(HUGE_VALF, -HUGE_VALF, 1));
    // doubles meet at the same tolerance
    EXPECT_TRUE(AlmostEqual2sComplement(1.0, 1.0 + 1e-12, 1));
    EXPECT_FALSE(AlmostEqual2sComplement(0.05, 0.05001, 1));
    EXPECT_DEATH(AlmostEqual2sComplement(1.0F, 1.0F, 0), "maxUlps > 0");
    EXPECT_DEATH(AlmostEqual2sComplement(1.0F, 1.0F, 4 * 1024 * 1024), "maxUlps > 0");
}

TEST(Numbers, LargerOrAlmostEqual) {
    EXPECT_TRUE(IsLargerThanOrEqual(0.3, 0.3 + 1e-12, 1, false));
    EXPECT_FALSE(IsLargerThanOrEqual(0.3, 0.301, 1, false));
    EXPECT_FALSE(IsLargerThanOrEqual(-0.5, 0.3, 1, false));
    EXPECT_TRUE(IsLargerThanOrEqual(-0.5, 0.3, 1, true));
    EXPECT_TRUE(IsLargerThanOrEqual(0.3, -0.3, 1, true));
    for (const bool absolute : {false, true}) {
        EXPECT_FALSE(IsLargerThanOrEqual(kNaN, 0.3, 1, absolute));
        EXPECT_FALSE(IsLargerThanOrEqual(0.3, kNaN, 1, absolute));
        EXPECT_FALSE(IsLargerThanOrEqual(kNaN, kNaN, 1, absolute));
    }
}

TEST(Numbers, StrictToleranceAndTheSecondOfUnorderedNumbers) {
    EXPECT_FALSE(AlmostEqual_Tolerance(1.0, 1.5, 0.5));
    EXPECT_TRUE(AlmostEqual_Tolerance(1.0F, 1.5F, 0.5000001F));
    EXPECT_EQ(Fmax(2.0, 3.0), 3.0);
    EXPECT_EQ(Fmin(2.0F, 3.0F), 2.0F);
    EXPECT_EQ(Fmax(kNaN, 3.0), 3.0);
    EXPECT_TRUE(std::isnan(Fmin(3.0, kNaN)));
}

using Order = int (*)(const void*, const void*);

/// Of numbers, and of rows by their first number.
template <class T>
void ExpectOrders(Order up, Order down, Order rowsUp = nullptr, Order rowsDown = nullptr) {
    T low[] = {T(-1), 9}, middle[] = {T(2), 8}, high[] = {T(3), 7};
    std::vector<T> values = {3, -1, 2};
    std::vector<T*> rows = {high, low, middle};
    std::qsort(values.data(), 3, sizeof(T), up);
    EXPECT_EQ(values, (std::vector<T>{-1, 2, 3}));
    std::qsort(values.data(), 3, sizeof(T), down);
    EXPECT_EQ(values, (std::vector<T>{3, 2, -1}));
    if (rowsUp == nullptr) return;
    std::qsort(rows.data(), 3, sizeof(T*), rowsUp);
    EXPECT_EQ(rows, (std::vector<T*>{low, middle, high}));
    std::qsort(rows.data(), 3, sizeof(T*), rowsDown);
    EXPECT_EQ(rows, (std::vector<T*>{high, middle, low}));
}

TEST(Comparators, SortUpAndDown) {
    ExpectOrders<int>(compareInt, compareIntDecreasing);
    ExpectOrders<float>(compareFloat, compareFloatDecreasing, compare2Dfloat,
                        compare2DfloatDecreasing);
    ExpectOrders<double>(compareDouble, compareDoubleDecreasing, compare2Double,
                         compare2DoubleDecreasing);
    const double one = 1.0;
    EXPECT_EQ(compareDouble(&one, &kNaN), 0);
    EXPECT_EQ(compareDoubleDecreasing(&kNaN, &one), 0);
    const char *small = "b", *capital = "B";
    EXPECT_GT(compareStr(&small, &capital), 0);
    EXPECT_EQ(compareStr(&small, &small), 0);
}

TEST(BinomialLimits, AreThoseOfTheTails) {
    // R 4.2: binom.test(5, 100)$conf.int, binom.test(7, 20, conf.level = 0.99)$conf.int
    const ConfidenceLimits five = BinomialLimits(5, 100, 0.95);
    EXPECT_NEAR(five.lower, 0.0164318791821, 1e-12);
    EXPECT_NEAR(five.upper, 0.1128349111055, 1e-12);
    const ConfidenceLimits seven = BinomialLimits(7, 20, 0.99);
    EXPECT_NEAR(seven.lower, 0.113879763267, 1e-12);
    EXPECT_NEAR(seven.upper, 0.656568584232, 1e-12);
    EXPECT_EQ(BinomialLimits(0, 20, 0.95).lower, 0);
    EXPECT_NEAR(BinomialLimits(0, 20, 0.95).upper, 1 - std::pow(0.025, 1 / 20.0), 1e-12);
    EXPECT_NEAR(BinomialLimits(20, 20, 0.95).lower, std::pow(0.025, 1 / 20.0), 1e-12);
    EXPECT_EQ(BinomialLimits(20, 20, 0.95).upper, 1);
    for (const unsigned x : {1U, 44U, 199U}) {
        const ConfidenceLimits limits = BinomialLimits(static_cast<int>(x), 200, 0.9);
        EXPECT_NEAR(gsl_cdf_binomial_Q(x - 1, limits.lower, 200), 0.05, 1e-10);
        EXPECT_NEAR(gsl_cdf_binomial_P(x, limits.upper, 200), 0.05, 1e-10);
    }
}

}  // namespace
