#include "mxlibRes/numbers.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstdlib>
#include <vector>

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

TEST(Numbers, FactorialsAndStates) {
    EXPECT_EQ(Factorial(0), 1.0);
    EXPECT_EQ(Factorial(10), 3628800.0);
    EXPECT_EQ(Factorial(4.5), 4.5 * 3 * 2);
    EXPECT_EQ(Factorial(-3), -3.0);
    EXPECT_EQ(Factorial(171), HUGE_VAL);
    const double states[] = {1, 1.9, 0, -999, 3, -2, 0.5, -999, 1e9};
    EXPECT_EQ(CountStates(9, states), 4);  // 0, 1, 3, 1e9
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

}  // namespace
