#include "mxlibRes/kernels.h"

#include <cmath>

namespace {

// Vectors of four doubles, which the compiler splits where registers are narrower. Each function
// below exists once as a body and is compiled for the plain and for the wide registers: the same
// operations in the same order, hence the same digits.
typedef double Lanes __attribute__((vector_size(32)));
typedef double LooseLanes __attribute__((vector_size(32), aligned(8), may_alias));

#define INLINE_BODY [[gnu::always_inline]] inline

INLINE_BODY double SumOfLanes(const Lanes& a, const Lanes& b) {
    return ((a[0] + a[1]) + (a[2] + a[3])) + ((b[0] + b[1]) + (b[2] + b[3]));
}

INLINE_BODY void AddTerm(bool squared, double x, const LooseLanes& y, Lanes* sum) {
    const Lanes difference = x - y;
    if (squared) {
        *sum += difference * difference;
    } else {
        *sum += difference < 0 ? -difference : difference;
    }
}

/// Four vectors of pairs at once, each summed column after column.
INLINE_BODY void PairsOfBlock(bool squared, int p, const double* ofOne, const double* ofOthers,
                              int stride, double* cells) {
    Lanes s0{}, s1{}, s2{}, s3{};
    for (int t = 0; t < p; t++, ofOne += stride, ofOthers += stride) {
        const double x = *ofOne;
        const LooseLanes* y = reinterpret_cast<const LooseLanes*>(ofOthers);
        AddTerm(squared, x, y[0], &s0);
        AddTerm(squared, x, y[1], &s1);
        AddTerm(squared, x, y[2], &s2);
        AddTerm(squared, x, y[3], &s3);
    }
    LooseLanes* out = reinterpret_cast<LooseLanes*>(cells);
    out[0] = s0;
    out[1] = s1;
    out[2] = s2;
    out[3] = s3;
}

/// What the last block of a row writes past its end is written again by the next row.
INLINE_BODY void DistancesBody(bool squared, int n, int p, const double* columns, int stride,
                               double* cells) {
    for (int i = 0; i + 1 < n; i++) {
        const int length = n - 1 - i;
        for (int j = 0; j < length; j += kOverrun)
            PairsOfBlock(squared, p, columns + i, columns + i + 1 + j, stride, cells + j);
        if (squared)
            for (int j = 0; j < length; j++) cells[j] = std::sqrt(cells[j]);
        cells += length;
    }
}

INLINE_BODY double SumBody(int m, const double* x) {
    Lanes s0{}, s1{};
    int k = 0;
    for (; k + 8 <= m; k += 8) {
        const LooseLanes* v = reinterpret_cast<const LooseLanes*>(x + k);
        s0 += v[0];
        s1 += v[1];
    }
    double sum = SumOfLanes(s0, s1);
    for (; k < m; k++) sum += x[k];
    return sum;
}

INLINE_BODY double DotBody(int m, const double* x, const double* y) {
    Lanes s0{}, s1{};
    int k = 0;
    for (; k + 8 <= m; k += 8) {
        const LooseLanes* v = reinterpret_cast<const LooseLanes*>(x + k);
        const LooseLanes* w = reinterpret_cast<const LooseLanes*>(y + k);
        s0 += v[0] * w[0];
        s1 += v[1] * w[1];
    }
    double sum = SumOfLanes(s0, s1);
    for (; k < m; k++) sum += x[k] * y[k];
    return sum;
}

INLINE_BODY double CentreBody(int m, double mean, double* x) {
    Lanes s0{}, s1{};
    int k = 0;
    for (; k + 8 <= m; k += 8) {
        LooseLanes* v = reinterpret_cast<LooseLanes*>(x + k);
        const Lanes c0 = v[0] - mean;
        const Lanes c1 = v[1] - mean;
        v[0] = c0;
        v[1] = c1;
        s0 += c0 * c0;
        s1 += c1 * c1;
    }
    double sum = SumOfLanes(s0, s1);
    for (; k < m; k++) {
        x[k] -= mean;
        sum += x[k] * x[k];
    }
    return sum;
}

INLINE_BODY void WeightedRowsBody(int entries, const int* at, const double* weights,
                                  const double* table, int width, double* row) {
    int c = 0;
    for (; c + 16 <= width; c += 16) {
        Lanes s0{}, s1{}, s2{}, s3{};
        for (int e = 0; e < entries; e++) {
            const double w = weights[e];
            const LooseLanes* v =
                reinterpret_cast<const LooseLanes*>(table + static_cast<long>(at[e]) * width + c);
            s0 += w * v[0];
            s1 += w * v[1];
            s2 += w * v[2];
            s3 += w * v[3];
        }
        LooseLanes* out = reinterpret_cast<LooseLanes*>(row + c);
        out[0] = s0;
        out[1] = s1;
        out[2] = s2;
        out[3] = s3;
    }
    for (; c < width; c += 4) {
        Lanes s{};
        for (int e = 0; e < entries; e++)
            s += weights[e] *
                 *reinterpret_cast<const LooseLanes*>(table + static_cast<long>(at[e]) * width + c);
        *reinterpret_cast<LooseLanes*>(row + c) = s;
    }
}

#define KERNELS(TARGET)                                                                     \
    TARGET void Euclidean(int n, int p, const double* columns, int stride, double* cells) { \
        DistancesBody(true, n, p, columns, stride, cells);                                  \
    }                                                                                       \
    TARGET void Absolute(int n, int p, const double* columns, int stride, double* cells) {  \
        DistancesBody(false, n, p, columns, stride, cells);                                 \
    }                                                                                       \
    TARGET double Sum(int m, const double* x) {                                             \
        return SumBody(m, x);                                                               \
    }                                                                                       \
    TARGET double Dot(int m, const double* x, const double* y) {                            \
        return DotBody(m, x, y);                                                            \
    }                                                                                       \
    TARGET double Centre(int m, double mean, double* x) {                                   \
        return CentreBody(m, mean, x);                                                      \
    }                                                                                       \
    TARGET void WeightedRows(int entries, const int* at, const double* weights,             \
                             const double* table, int width, double* row) {                 \
        WeightedRowsBody(entries, at, weights, table, width, row);                          \
    }                                                                                       \
    constexpr Kernels kKernels = {Euclidean, Absolute, Sum, Dot, Centre, WeightedRows};

namespace plain {
KERNELS()
}
#if defined(__x86_64__)
namespace wide {
KERNELS([[gnu::target("avx2")]])
}
#endif

}  // namespace

const Kernels& KernelsOfProcessor() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) return wide::kKernels;
#endif
    return plain::kKernels;
}

const Kernels& KernelsOfAnyProcessor() {
    return plain::kKernels;
}
