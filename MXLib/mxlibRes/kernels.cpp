#include "mxlibRes/kernels.h"

#include <cmath>

#include "mxlibRes/lanes.h"

namespace {

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles ahead

INLINE_BODY double SumOfLanes(const Lanes& a, const Lanes& b) {
    return ((a[0] + a[1]) + (a[2] + a[3])) + ((b[0] + b[1]) + (b[2] + b[3]));
}

INLINE_BODY void AddTerm(bool squared, double x, const double* y, Lanes* sum) {
    Lanes others;
    const Lanes difference = x - Load(y, others);
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
        AddTerm(squared, x, ofOthers, &s0);
        AddTerm(squared, x, ofOthers + kLanes, &s1);
        AddTerm(squared, x, ofOthers + 2 * kLanes, &s2);
        AddTerm(squared, x, ofOthers + 3 * kLanes, &s3);
    }
    Store(s0, cells);
    Store(s1, cells + kLanes);
    Store(s2, cells + 2 * kLanes);
    Store(s3, cells + 3 * kLanes);
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

INLINE_BODY double SumBody(long m, const double* x) {
    Lanes s0{}, s1{}, v;
    long k = 0;
    for (; k + 2 * kLanes <= m; k += 2 * kLanes) {
        s0 += Load(x + k, v);
        s1 += Load(x + k + kLanes, v);
    }
    double sum = SumOfLanes(s0, s1);
    for (; k < m; k++) sum += x[k];
    return sum;
}

INLINE_BODY double DotBody(long m, const double* x, const double* y) {
    Lanes s0{}, s1{}, v, w;
    long k = 0;
    for (; k + 2 * kLanes <= m; k += 2 * kLanes) {
        s0 += Load(x + k, v) * Load(y + k, w);
        s1 += Load(x + k + kLanes, v) * Load(y + k + kLanes, w);
    }
    double sum = SumOfLanes(s0, s1);
    for (; k < m; k++) sum += x[k] * y[k];
    return sum;
}

INLINE_BODY double CentreBody(long m, double mean, double* x) {
    Lanes s0{}, s1{}, v;
    long k = 0;
    for (; k + 2 * kLanes <= m; k += 2 * kLanes) {
        const Lanes c0 = Load(x + k, v) - mean;
        const Lanes c1 = Load(x + k + kLanes, v) - mean;
        Store(c0, x + k);
        Store(c1, x + k + kLanes);
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
    for (; c + 4 * kLanes <= width; c += 4 * kLanes) {
        Lanes s0{}, s1{}, s2{}, s3{}, v;
        for (int e = 0; e < entries; e++) {
            const double w = weights[e];
            const double* from = table + static_cast<long>(at[e]) * width + c;
            s0 += w * Load(from, v);
            s1 += w * Load(from + kLanes, v);
            s2 += w * Load(from + 2 * kLanes, v);
            s3 += w * Load(from + 3 * kLanes, v);
        }
        Store(s0, row + c);
        Store(s1, row + c + kLanes);
        Store(s2, row + c + 2 * kLanes);
        Store(s3, row + c + 3 * kLanes);
    }
    for (; c < width; c += kLanes) {
        Lanes s{}, v;
        for (int e = 0; e < entries; e++)
            s += weights[e] * Load(table + static_cast<long>(at[e]) * width + c, v);
        Store(s, row + c);
    }
}

/// Products of 4 A columns of a, from i on, with B columns of b, from j on.
template <int A, int B>
INLINE_BODY void ProductsOfBlock(bool turned, int n, const double* const* a, int i,
                                 const double* const* b, int j, double* const* c) {
    Lanes sum[A][B] = {};
    for (int k = 0; k < n; k++) {
        const double* x = a[k] + i;
        const double* y = b[k] + j;
        for (int s = 0; s < A; s++) {
            Lanes v;
            Load(x + s * kLanes, v);
            for (int t = 0; t < B; t++) sum[s][t] += v * y[t];
        }
    }
    for (int s = 0; s < A; s++)
        for (int t = 0; t < B; t++)
            for (int l = 0; l < kLanes; l++) {
                const int column = i + s * kLanes + l;
                (turned ? c[j + t][column] : c[column][j + t]) = sum[s][t][l];
            }
}

template <int A>
INLINE_BODY void ProductsOfStrip(bool turned, int n, const double* const* a, int i, int p2,
                                 const double* const* b, double* const* c) {
    int j = 0;
    for (; j + 4 <= p2; j += 4) ProductsOfBlock<A, 4>(turned, n, a, i, b, j, c);
    for (; j < p2; j++) ProductsOfBlock<A, 1>(turned, n, a, i, b, j, c);
}

INLINE_BODY void ColumnProductsBody(bool turned, int n, int p1, const double* const* a, int p2,
                                    const double* const* b, double* const* c) {
    int i = 0;
    for (; i + 2 * kLanes <= p1; i += 2 * kLanes) ProductsOfStrip<2>(turned, n, a, i, p2, b, c);
    for (; i + kLanes <= p1; i += kLanes) ProductsOfStrip<1>(turned, n, a, i, p2, b, c);
    for (; i < p1; i++)
        for (int j = 0; j < p2; j++) {
            double sum = 0.0;
            for (int k = 0; k < n; k++) sum += a[k][i] * b[k][j];
            (turned ? c[j][i] : c[i][j]) = sum;
        }
}

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)

// NOLINTBEGIN(bugprone-macro-parentheses): an attribute takes none
#define KERNELS(TARGET)                                                                            \
    TARGET void Euclidean(int n, int p, const double* columns, int stride, double* cells) {        \
        DistancesBody(true, n, p, columns, stride, cells);                                         \
    }                                                                                              \
    TARGET void Absolute(int n, int p, const double* columns, int stride, double* cells) {         \
        DistancesBody(false, n, p, columns, stride, cells);                                        \
    }                                                                                              \
    TARGET double Sum(long m, const double* x) {                                                   \
        return SumBody(m, x);                                                                      \
    }                                                                                              \
    TARGET double Dot(long m, const double* x, const double* y) {                                  \
        return DotBody(m, x, y);                                                                   \
    }                                                                                              \
    TARGET double Centre(long m, double mean, double* x) {                                         \
        return CentreBody(m, mean, x);                                                             \
    }                                                                                              \
    TARGET void WeightedRows(int entries, const int* at, const double* weights,                    \
                             const double* table, int width, double* row) {                        \
        WeightedRowsBody(entries, at, weights, table, width, row);                                 \
    }                                                                                              \
    TARGET void ColumnProducts(int n, int p1, const double* const* a, int p2,                      \
                               const double* const* b, double* const* c) {                         \
        ColumnProductsBody(false, n, p1, a, p2, b, c);                                             \
    }                                                                                              \
    TARGET void ColumnProductsTurned(int n, int p1, const double* const* a, int p2,                \
                                     const double* const* b, double* const* c) {                   \
        ColumnProductsBody(true, n, p1, a, p2, b, c);                                              \
    }                                                                                              \
    constexpr Kernels                                                                              \
        kKernels = {Euclidean,           Absolute, Sum, Dot, Centre, WeightedRows, ColumnProducts, \
                    ColumnProductsTurned};
// NOLINTEND(bugprone-macro-parentheses)

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
