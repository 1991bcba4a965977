#pragma once
/// \file
/// Rounding, tolerant comparison and other helpers on single numbers; comparators for qsort.

/// `x` kept to `digits` significant digits: printed with "%.*g" and read back.
float RoundDigit(float x, int digits);
double RoundDigit(double x, int digits);

/// Whether a and b lie within maxUlps units in the last place of single precision (Dawson, 2005,
/// Comparing floating point numbers). The double form narrows both to single precision first, on
/// purpose: double results compare at that tolerance. Aborts unless 0 < maxUlps < 4 * 1024 * 1024.
bool AlmostEqual2sComplement(float a, float b, int maxUlps);
bool AlmostEqual2sComplement(double a, double b, int maxUlps);

/// AlmostEqual2sComplement(x, 1, 1), and the two numbers that bound it.
inline constexpr float kAlmostOneFrom = 0x1.fffffep-1F;
inline constexpr float kAlmostOneTo = 0x1.000002p+0F;
template <class S>
bool IsAlmostOne(S x) {
    const float narrow = static_cast<float>(x);
    return narrow >= kAlmostOneFrom && narrow <= kAlmostOneTo;
}

/// True when a is greater than b or almost equal to it; with `absolute` by their magnitudes.
/// Anything against NaN is false.
bool IsLargerThanOrEqual(double a, double b, int maxUlps, bool absolute);

/// True when `tolerance` is strictly greater than |a - b|.
bool AlmostEqual_Tolerance(float a, float b, float tolerance);
bool AlmostEqual_Tolerance(double a, double b, double tolerance);

/// The larger or smaller of two; b for equal or unordered arguments.
float Fmax(float a, float b);
double Fmax(double a, double b);
float Fmin(float a, float b);
double Fmin(double a, double b);

/// 1 for 0, otherwise x times every integer from trunc(x) - 1 down to 2; below 3 x itself.
double Factorial(double x);

/// Number of distinct non-negative integer values among the truncated values; a missing value does
/// not count.
int CountStates(int n, const double* values);

/// Comparators for qsort: negative, 0, positive; 0 for equal or unordered numbers. The 2Double and
/// 2Dfloat forms compare the first element of the row that each table entry points to.
int compareInt(const void* a, const void* b);
int compareIntDecreasing(const void* a, const void* b);
int compareFloat(const void* a, const void* b);
int compareFloatDecreasing(const void* a, const void* b);
int compareDouble(const void* a, const void* b);
int compareDoubleDecreasing(const void* a, const void* b);
int compare2Dfloat(const void* a, const void* b);
int compare2DfloatDecreasing(const void* a, const void* b);
int compare2Double(const void* a, const void* b);
int compare2DoubleDecreasing(const void* a, const void* b);
int compareStr(const void* a, const void* b);
