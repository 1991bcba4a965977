#include "mxlibRes/numbers.h"

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <set>

#include "mxlibDim/standard_streams.h"

namespace {

template <class T>
T RoundToDigits(T x, int digits) {
    char text[512];
    std::snprintf(text, sizeof text, "%.*g", digits, static_cast<double>(x));
    return static_cast<T>(std::strtod(text, nullptr));
}

/// The bits of a float as an integer that is ordered like the numbers.
std::int64_t OrderedBits(float x) {
    std::int32_t bits = 0;
    static_assert(sizeof bits == sizeof x);
    std::memcpy(&bits, &x, sizeof x);
    constexpr std::int64_t kSignBit = -0x80000000LL;
    return bits < 0 ? kSignBit - bits : bits;
}

template <class T>
int CompareNumbers(T a, T b) {
    return (a > b) - (a < b);
}

template <class T>
T Pointed(const void* element) {
    return *static_cast<const T*>(element);
}

template <class T>
int Compare(const void* a, const void* b) {
    return CompareNumbers(Pointed<T>(a), Pointed<T>(b));
}

template <class T>
int CompareRows(const void* a, const void* b) {
    return CompareNumbers(Pointed<const T*>(a)[0], Pointed<const T*>(b)[0]);
}

}  // namespace

float RoundDigit(float x, int digits) {
    return RoundToDigits(x, digits);
}

double RoundDigit(double x, int digits) {
    return RoundToDigits(x, digits);
}

bool AlmostEqual2sComplement(float a, float b, int maxUlps) {
    if (maxUlps <= 0 || maxUlps >= 4 * 1024 * 1024) {
        std::fputs("assertion failed: maxUlps > 0 && maxUlps < 4 * 1024 * 1024\n", ErrorStream());
        std::abort();
    }
    return std::llabs(OrderedBits(a) - OrderedBits(b)) <= maxUlps;
}

bool AlmostEqual2sComplement(double a, double b, int maxUlps) {
    return AlmostEqual2sComplement(static_cast<float>(a), static_cast<float>(b), maxUlps);
}

bool IsLargerThanOrEqual(double a, double b, int maxUlps, bool absolute) {
    if (std::isnan(a) || std::isnan(b)) return false;
    if (absolute) {
        a = std::fabs(a);
        b = std::fabs(b);
    }
    return AlmostEqual2sComplement(a, b, maxUlps) || a > b;
}

bool AlmostEqual_Tolerance(float a, float b, float tolerance) {
    return tolerance > std::fabs(a - b);
}

bool AlmostEqual_Tolerance(double a, double b, double tolerance) {
    return tolerance > std::fabs(a - b);
}

float Fmax(float a, float b) {
    return a > b ? a : b;
}

double Fmax(double a, double b) {
    return a > b ? a : b;
}

float Fmin(float a, float b) {
    return a < b ? a : b;
}

double Fmin(double a, double b) {
    return a < b ? a : b;
}

double Factorial(double x) {
    if (x == 0.0) return 1.0;
    double product = x;
    // Once infinite the product stays so.
    for (double factor = std::trunc(x) - 1.0; factor >= 2.0 && std::isfinite(product); factor--)
        product *= factor;
    return product;
}

int CountStates(int n, const double* values) {
    std::set<double> states;
    for (int i = 0; i < n; i++) {
        const double state = std::trunc(values[i]);
        if (state >= 0.0) states.insert(state);
    }
    return static_cast<int>(states.size());
}

int compareInt(const void* a, const void* b) {
    return Compare<int>(a, b);
}

int compareIntDecreasing(const void* a, const void* b) {
    return Compare<int>(b, a);
}

int compareFloat(const void* a, const void* b) {
    return Compare<float>(a, b);
}

int compareFloatDecreasing(const void* a, const void* b) {
    return Compare<float>(b, a);
}

int compareDouble(const void* a, const void* b) {
    return Compare<double>(a, b);
}

int compareDoubleDecreasing(const void* a, const void* b) {
    return Compare<double>(b, a);
}

int compare2Dfloat(const void* a, const void* b) {
    return CompareRows<float>(a, b);
}

int compare2DfloatDecreasing(const void* a, const void* b) {
    return CompareRows<float>(b, a);
}

int compare2Double(const void* a, const void* b) {
    return CompareRows<double>(a, b);
}

int compare2DoubleDecreasing(const void* a, const void* b) {
    return CompareRows<double>(b, a);
}

int compareStr(const void* a, const void* b) {
    return std::strcmp(Pointed<const char*>(a), Pointed<const char*>(b));
}
