#include "mxlibRes/kernels.h"

#include <cmath>

#include "mxlibRes/lanes.h"

namespace {

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles ahead

/// Lanes of a sum, whatever the registers.
constexpr int kSumLanes = 8;

/// The vectors that make up kCount places.
template <class R, int kCount>
struct Places {
    static constexpr int kVectors = kCount / R::kDoubles;
    typename R::Doubles vector[kVectors] = {};
};

template <class R, int kCount>
INLINE_BODY void StorePlaces(const Places<R, kCount>& places, double* to) {
    UNROLL
    for (int i = 0; i < places.kVectors; i++) Store(places.vector[i], to + i * R::kDoubles);
}

template <class R>
INLINE_BODY double SumOfLanes(const Places<R, kSumLanes>& sum) {
    double x[kSumLanes];
    StorePlaces(sum, x);
    return ((x[0] + x[1]) + (x[2] + x[3])) + ((x[4] + x[5]) + (x[6] + x[7]));
}

template <class Doubles>
INLINE_BODY void AddTerm(bool squared, double x, const double* y, Doubles* sum) {
    Doubles others;
    const Doubles difference = x - Load(y, others);
    if (squared) {
        *sum += difference * difference;
    } else {
        *sum += difference < 0 ? -difference : difference;
    }
}

/// kCount pairs at once, each summed column after column.
template <class R, int kCount>
INLINE_BODY void PairsOfBlock(bool squared, int p, const double* ofOne, const double* ofOthers,
                              int stride, double* cells) {
    Places<R, kCount> sum;
    for (int t = 0; t < p; t++, ofOne += stride, ofOthers += stride) {
        const double x = *ofOne;
        UNROLL
        for (int v = 0; v < sum.kVectors; v++)
            AddTerm(squared, x, ofOthers + v * R::kDoubles, sum.vector + v);
    }
    UNROLL
    for (int v = 0; v < sum.kVectors; v++)
        if (squared) Root(sum.vector + v);
    StorePlaces(sum, cells);
}

/// What the last block of a row writes past its end is written again by the next row.
template <class R>
INLINE_BODY void DistancesBody(bool squared, int n, int p, const double* columns, int stride,
                               double* cells) {
    for (int i = 0; i + 1 < n; i++) {
        const int length = n - 1 - i;
        const double* one = columns + i;
        const double* others = one + 1;
        int j = 0;
        for (; j + 8 < length; j += 16)
            PairsOfBlock<R, 16>(squared, p, one, others + j, stride, cells + j);
        if (j < length) PairsOfBlock<R, 8>(squared, p, one, others + j, stride, cells + j);
        cells += length;
    }
}

template <class R>
INLINE_BODY double SumBody(std::ptrdiff_t m, const double* x) {
    Places<R, kSumLanes> sum;
    typename R::Doubles v;
    std::ptrdiff_t k = 0;
    for (; k + kSumLanes <= m; k += kSumLanes) {
        UNROLL
        for (int i = 0; i < sum.kVectors; i++) sum.vector[i] += Load(x + k + i * R::kDoubles, v);
    }
    double total = SumOfLanes(sum);
    for (; k < m; k++) total += x[k];
    return total;
}

template <class R>
INLINE_BODY double DotBody(std::ptrdiff_t m, const double* x, const double* y) {
    Places<R, kSumLanes> sum;
    typename R::Doubles v, w;
    std::ptrdiff_t k = 0;
    for (; k + kSumLanes <= m; k += kSumLanes) {
        UNROLL
        for (std::ptrdiff_t i = 0, at = k; i < sum.kVectors; i++, at += R::kDoubles)
            sum.vector[i] += Load(x + at, v) * Load(y + at, w);
    }
    double total = SumOfLanes(sum);
    for (; k < m; k++) total += x[k] * y[k];
    return total;
}

template <class R>
INLINE_BODY double CentreBody(std::ptrdiff_t m, double mean, double* x) {
    Places<R, kSumLanes> sum;
    typename R::Doubles v;
    std::ptrdiff_t k = 0;
    for (; k + kSumLanes <= m; k += kSumLanes) {
        UNROLL
        for (std::ptrdiff_t i = 0, at = k; i < sum.kVectors; i++, at += R::kDoubles) {
            Load(x + at, v);
            v -= mean;
            Store(v, x + at);
            sum.vector[i] += v * v;
        }
    }
    double total = SumOfLanes(sum);
    for (; k < m; k++) {
        x[k] -= mean;
        total += x[k] * x[k];
    }
    return total;
}

/// CentreBody and DotBody for kOthers vectors y at once.
template <class R, int kOthers>
INLINE_BODY void CentreWith(std::ptrdiff_t m, double mean, double* x, const double* const* y,
                            double* sums) {
    Places<R, kSumLanes> sum[1 + kOthers];
    const double* other[kOthers];  // the compiler must not think that they change with x
    for (int o = 0; o < kOthers; o++) other[o] = y[o];
    typename R::Doubles v, w;
    std::ptrdiff_t k = 0;
    for (; k + kSumLanes <= m; k += kSumLanes) {
        UNROLL
        for (int i = 0; i < sum[0].kVectors; i++) {
            const std::ptrdiff_t at = k + i * R::kDoubles;
            Load(x + at, v);
            v -= mean;
            Store(v, x + at);
            sum[0].vector[i] += v * v;
            UNROLL
            for (int o = 0; o < kOthers; o++) sum[1 + o].vector[i] += v * Load(other[o] + at, w);
        }
    }
    double total[1 + kOthers];
    for (int o = 0; o <= kOthers; o++) total[o] = SumOfLanes(sum[o]);
    for (; k < m; k++) {
        x[k] -= mean;
        total[0] += x[k] * x[k];
        for (int o = 0; o < kOthers; o++) total[1 + o] += x[k] * other[o][k];
    }
    for (int o = 0; o <= kOthers; o++) sums[o] = total[o];
}

/// As many others in the first pass as there are registers for.
template <class R>
INLINE_BODY void CentreAndDotsBody(std::ptrdiff_t m, double mean, double* x, int others,
                                   const double* const* y, double* sums) {
    constexpr int kMost = R::kBytes < 32 ? 2 : 4;
    int done = kMost;
    if (others == 0) {
        sums[0] = CentreBody<R>(m, mean, x);
    } else if (others == 1) {
        CentreWith<R, 1>(m, mean, x, y, sums);
    } else if (others == 2 || kMost == 2) {
        CentreWith<R, 2>(m, mean, x, y, sums);
    } else if (others == 3) {
        CentreWith<R, 3>(m, mean, x, y, sums);
    } else {
        CentreWith<R, kMost>(m, mean, x, y, sums);
    }
    for (; done < others; done++) sums[1 + done] = DotBody<R>(m, x, y[done]);
}

/// kCount places of the row.
template <class R, int kCount>
INLINE_BODY void WeightedPlaces(int entries, const int* at, const double* weights,
                                const double* table, int width, double* row) {
    Places<R, kCount> sum;
    typename R::Doubles v;
    for (int e = 0; e < entries; e++) {
        const double w = weights[e];
        const double* from = table + static_cast<std::ptrdiff_t>(at[e]) * width;
        UNROLL
        for (int i = 0; i < sum.kVectors; i++) sum.vector[i] += w * Load(from + i * R::kDoubles, v);
    }
    StorePlaces(sum, row);
}

template <class R>
INLINE_BODY void WeightedRowsBody(int entries, const int* at, const double* weights,
                                  const double* table, int width, double* row) {
    int c = 0;
    for (; c + 16 <= width; c += 16)
        WeightedPlaces<R, 16>(entries, at, weights, table + c, width, row + c);
    for (; c < width; c += 4)
        WeightedPlaces<AtMost32<R>, 4>(entries, at, weights, table + c, width, row + c);
}

/// Products of A vectors of columns of a, from i on, with B columns of b, from j on.
template <class R, int A, int B>
INLINE_BODY void ProductsOfBlock(bool turned, int n, const double* const* a, int i,
                                 const double* const* b, int j, double* const* c) {
    typename R::Doubles sum[A * B] = {};
    for (int k = 0; k < n; k++) {
        typename R::Doubles x[A];
        UNROLL
        for (int s = 0; s < A; s++) Load(a[k] + i + s * R::kDoubles, x[s]);
        const double* y = b[k] + j;
        UNROLL
        for (int s = 0; s < A * B; s++) sum[s] += x[s / B] * y[s % B];
    }
    for (int s = 0; s < A * B; s++)
        for (int l = 0; l < R::kDoubles; l++) {
            const int column = i + s / B * R::kDoubles + l;
            (turned ? c[j + s % B][column] : c[column][j + s % B]) = sum[s][l];
        }
}

template <class R, int A>
INLINE_BODY void ProductsOfStrip(bool turned, int n, const double* const* a, int i, int p2,
                                 const double* const* b, double* const* c) {
    int j = 0;
    for (; j + 4 <= p2; j += 4) ProductsOfBlock<R, A, 4>(turned, n, a, i, b, j, c);
    for (; j < p2; j++) ProductsOfBlock<R, A, 1>(turned, n, a, i, b, j, c);
}

template <class R>
INLINE_BODY void ColumnProductsBody(bool turned, int n, int p1, const double* const* a, int p2,
                                    const double* const* b, double* const* c) {
    int i = 0;
    for (; i + 2 * R::kDoubles <= p1; i += 2 * R::kDoubles)
        ProductsOfStrip<R, 2>(turned, n, a, i, p2, b, c);
    for (; i + R::kDoubles <= p1; i += R::kDoubles)
        ProductsOfStrip<R, 1>(turned, n, a, i, p2, b, c);
    using Rest = AtMost32<R>;
    for (; i + Rest::kDoubles <= p1; i += Rest::kDoubles)
        ProductsOfStrip<Rest, 1>(turned, n, a, i, p2, b, c);
    for (; i < p1; i++)
        for (int j = 0; j < p2; j++) {
            double sum = 0.0;
            for (int k = 0; k < n; k++) sum += a[k][i] * b[k][j];
            (turned ? c[j][i] : c[i][j]) = sum;
        }
}

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)

// NOLINTBEGIN(bugprone-macro-parentheses): an attribute takes none
#define KERNELS(TARGET, R)                                                                  \
    TARGET void Euclidean(int n, int p, const double* columns, int stride, double* cells) { \
        DistancesBody<R>(true, n, p, columns, stride, cells);                               \
    }                                                                                       \
    TARGET void Absolute(int n, int p, const double* columns, int stride, double* cells) {  \
        DistancesBody<R>(false, n, p, columns, stride, cells);                              \
    }                                                                                       \
    TARGET double Sum(std::ptrdiff_t m, const double* x) {                                  \
        return SumBody<R>(m, x);                                                            \
    }                                                                                       \
    TARGET double Dot(std::ptrdiff_t m, const double* x, const double* y) {                 \
        return DotBody<R>(m, x, y);                                                         \
    }                                                                                       \
    TARGET double Centre(std::ptrdiff_t m, double mean, double* x) {                        \
        return CentreBody<R>(m, mean, x);                                                   \
    }                                                                                       \
    TARGET void CentreAndDots(std::ptrdiff_t m, double mean, double* x, int others,         \
                              const double* const* y, double* sums) {                       \
        CentreAndDotsBody<R>(m, mean, x, others, y, sums);                                  \
    }                                                                                       \
    TARGET void WeightedRows(int entries, const int* at, const double* weights,             \
                             const double* table, int width, double* row) {                 \
        WeightedRowsBody<R>(entries, at, weights, table, width, row);                       \
    }                                                                                       \
    TARGET void ColumnProducts(int n, int p1, const double* const* a, int p2,               \
                               const double* const* b, double* const* c) {                  \
        ColumnProductsBody<R>(false, n, p1, a, p2, b, c);                                   \
    }                                                                                       \
    TARGET void ColumnProductsTurned(int n, int p1, const double* const* a, int p2,         \
                                     const double* const* b, double* const* c) {            \
        ColumnProductsBody<R>(true, n, p1, a, p2, b, c);                                    \
    }                                                                                       \
    constexpr Kernels kKernels = {Euclidean,    Absolute,       Sum,                        \
                                  Dot,          Centre,         CentreAndDots,              \
                                  WeightedRows, ColumnProducts, ColumnProductsTurned};
// NOLINTEND(bugprone-macro-parentheses)

namespace plain {
KERNELS(, PlainRegisters)
}
#if defined(__x86_64__)
namespace wide {
KERNELS([[gnu::target("avx2")]], WideRegisters)
}
namespace widest {
KERNELS([[gnu::target("avx512f,avx512vl,avx512dq")]], WidestRegisters)
}
#endif

}  // namespace

int BytesOfRegisters() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
        __builtin_cpu_supports("avx512dq"))
        return 64;
    if (__builtin_cpu_supports("avx2")) return 32;
#endif
    return 16;
}

const Kernels& KernelsOfRegisters([[maybe_unused]] int bytes) {
#if defined(__x86_64__)
    if (bytes == 64) return widest::kKernels;
    if (bytes == 32) return wide::kKernels;
#endif
    return plain::kKernels;
}
