#include "mxlibRes/subset_kernels.h"

#include <cmath>

#include "mxlibRes/kernels.h"
#include "mxlibRes/lanes.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"

namespace {

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles ahead

/// One by one, which compilers understand better than a conversion of the whole.
INLINE_BODY void Widen(const HalfLanes& x, Lanes* wide) {
    *wide = Lanes{static_cast<double>(x[0]), static_cast<double>(x[1]), static_cast<double>(x[2]),
                  static_cast<double>(x[3])};
}

INLINE_BODY void Root(Lanes* x) {
    const Lanes& y = *x;
    *x = Lanes{std::sqrt(y[0]), std::sqrt(y[1]), std::sqrt(y[2]), std::sqrt(y[3])};
}

// ---- sums over cells, four chains in the lanes of one vector

/// Turns four vectors of cells, one vector per chain, into one vector of chains per cell.
INLINE_BODY void TurnCells(const Lanes* v, Lanes* cell) {
    const Lanes a = __builtin_shufflevector(v[0], v[1], 0, 4, 2, 6);
    const Lanes b = __builtin_shufflevector(v[0], v[1], 1, 5, 3, 7);
    const Lanes c = __builtin_shufflevector(v[2], v[3], 0, 4, 2, 6);
    const Lanes d = __builtin_shufflevector(v[2], v[3], 1, 5, 3, 7);
    cell[0] = __builtin_shufflevector(a, c, 0, 1, 4, 5);
    cell[1] = __builtin_shufflevector(b, d, 0, 1, 4, 5);
    cell[2] = __builtin_shufflevector(a, c, 2, 3, 6, 7);
    cell[3] = __builtin_shufflevector(b, d, 2, 3, 6, 7);
}

/// 4 G chains at once.
template <int G, bool kProducts>
INLINE_BODY void SumChains(long m, const double* const* x, const double* const* y, double* sums) {
    Lanes sum[G] = {};
    long k = 0;
    for (; k + kLanes <= m; k += kLanes) {
        UNROLL
        for (int g = 0; g < G; g++) {
            Lanes terms[kLanes], cell[kLanes], v;
            UNROLL
            for (int c = 0; c < kLanes; c++) {
                Load(x[g * kLanes + c] + k, terms[c]);
                if constexpr (kProducts) terms[c] *= Load(y[g * kLanes + c] + k, v);
            }
            TurnCells(terms, cell);
            UNROLL
            for (int c = 0; c < kLanes; c++) sum[g] += cell[c];
        }
    }
    for (int c = 0; c < G * kLanes; c++) {
        double s = sum[c / kLanes][c % kLanes];
        for (long j = k; j < m; j++) s += kProducts ? x[c][j] * y[c][j] : x[c][j];
        sums[c] = s;
    }
}

/// Chains that fill no vector are the first one again.
INLINE_BODY void ChainsBody(int chains, long m, const double* const* x, const double* const* y,
                            double* sums) {
    const double* ofX[kMostChains];
    const double* ofY[kMostChains];
    double result[kMostChains];
    if (chains < 1) return;
    for (int c = 0; c < kMostChains; c++) {
        ofX[c] = x[c < chains ? c : 0];
        if (y != nullptr) ofY[c] = y[c < chains ? c : 0];
    }
    if (chains <= kLanes) {
        if (y != nullptr)
            SumChains<1, true>(m, ofX, ofY, result);
        else
            SumChains<1, false>(m, ofX, ofY, result);
    } else {
        if (y != nullptr)
            SumChains<2, true>(m, ofX, ofY, result);
        else
            SumChains<2, false>(m, ofX, ofY, result);
    }
    for (int c = 0; c < chains; c++) sums[c] = result[c];
}

INLINE_BODY bool DeviationsBody(long m, double mean, const double* cells, double* deviations) {
    LongLanes missing{};
    long k = 0;
    for (; k + kLanes <= m; k += kLanes) {
        Lanes v;
        Load(cells + k, v);
        missing |= v == double{kMissing};
        Store(v - mean, deviations + k);
    }
    bool any = (missing[0] | missing[1] | missing[2] | missing[3]) != 0;
    for (; k < m; k++) {
        any = any || IsMissing(cells[k]);
        deviations[k] = cells[k] - mean;
    }
    return any;
}

// ---- distances

INLINE_BODY void Magnitude(Lanes* x) {
    LongLanes bits;
    Store(Load(x, bits) & 0x7fffffffffffffffLL, x);
}
INLINE_BODY void Magnitude(FloatLanes* x) {
    IntLanes bits;
    Store(Load(x, bits) & 0x7fffffff, x);
}

template <bool kSquared, class Vector>
INLINE_BODY void SquareOrMagnitude(Vector* difference) {
    if (kSquared)
        *difference *= *difference;
    else
        Magnitude(difference);
}

/// Adds eight magnitudes of differences in T, or their squares in T, to double sums.
template <bool kSquared>
INLINE_BODY void AddDifferences(double x, const double* y, Lanes* sum) {
    UNROLL
    for (int v = 0; v < 2; v++) {
        Lanes others;
        Lanes term = x - Load(y + v * kLanes, others);
        SquareOrMagnitude<kSquared>(&term);
        sum[v] += term;
    }
}
template <bool kSquared>
INLINE_BODY void AddDifferences(float x, const float* y, Lanes* sum) {
    FloatLanes others;
    FloatLanes difference = x - Load(y, others);
    SquareOrMagnitude<kSquared>(&difference);
    Lanes low, high;
    Widen(__builtin_shufflevector(difference, difference, 0, 1, 2, 3), &low);
    Widen(__builtin_shufflevector(difference, difference, 4, 5, 6, 7), &high);
    sum[0] += low;
    sum[1] += high;
}

/// 4 V cells of a row, between object i and those from j on.
template <bool kSquared, int V, class T>
INLINE_BODY void DistancesOfBlock(int p, const T* const* columns, int i, int j, double* cells) {
    Lanes sum[V] = {};
    for (int k = 0; k < p; k++) {
        const T x = columns[k][i];
        const T* others = columns[k] + j;
        UNROLL
        for (int v = 0; v < V; v += 2) AddDifferences<kSquared>(x, others + v * kLanes, sum + v);
    }
    UNROLL
    for (int v = 0; v < V; v++) {
        if (kSquared) Root(sum + v);
        Store(sum[v], cells + v * kLanes);
    }
}

/// What the last block of a row writes past its end is written again by the next row.
template <bool kSquared, class T>
INLINE_BODY void DistancesBody(int n, int p, const T* const* columns, double* cells) {
    for (int i = 0; i + 1 < n; i++) {
        int j = i + 1;
        for (; j + 2 * kLanes < n; j += 4 * kLanes)
            DistancesOfBlock<kSquared, 4>(p, columns, i, j, cells + (j - i - 1));
        if (j < n) DistancesOfBlock<kSquared, 2>(p, columns, i, j, cells + (j - i - 1));
        cells += n - 1 - i;
    }
}

/// What the last vector of a row writes past its end is written again by the next row.
INLINE_BODY void ProductsBody(int n, int p, const float* const* columns, double* cells) {
    for (int i = 0; i + 1 < n; i++) {
        for (int j = i + 1; j < n; j += kFloatLanes) {
            FloatLanes sum{}, y;
            for (int k = 0; k < p; k++) sum += columns[k][i] * Load(columns[k] + j, y);
            Lanes wide;
            Widen(__builtin_shufflevector(sum, sum, 0, 1, 2, 3), &wide);
            Store(wide, cells + (j - i - 1));
            Widen(__builtin_shufflevector(sum, sum, 4, 5, 6, 7), &wide);
            Store(wide, cells + (j - i - 1) + kLanes);
        }
        cells += n - 1 - i;
    }
}

// ---- sums over OTUs

/// V vectors of each row of a slice.
template <int V, class T>
INLINE_BODY void SparseSlicePart(int entries, const int* at, const T* weights, const T* table,
                                 int width, const int* row, T* rows) {
    using Vector = typename LanesOf<T>::Type;
    constexpr int kWidth = LanesOf<T>::kWidth;
    Vector sum[kSliceRows * V] = {};
    for (int e = 0; e < entries; e++, at += kSliceRows, weights += kSliceRows) {
        UNROLL
        for (int s = 0; s < kSliceRows * V; s++) {
            Vector v;
            const T* from = table + static_cast<long>(at[s / V]) * width + s % V * kWidth;
            sum[s] += weights[s / V] * Load(from, v);
        }
    }
    UNROLL
    for (int s = 0; s < kSliceRows * V; s++)
        Store(sum[s], rows + static_cast<long>(row[s / V]) * width + s % V * kWidth);
}

template <class T>
INLINE_BODY void SparseRowsBody(int slices, const long* start, const int* at, const T* weights,
                                const int* row, const T* table, int width, T* rows) {
    constexpr int kWidth = LanesOf<T>::kWidth;
    for (int i = 0; i < slices; i++) {
        const auto entries = static_cast<int>((start[i + 1] - start[i]) / kSliceRows);
        const int* ofAt = at + start[i];
        const T* of = weights + start[i];
        const int* ofRow = row + i * kSliceRows;
        int c = 0;
        for (; c + 2 * kWidth <= width; c += 2 * kWidth)
            SparseSlicePart<2>(entries, ofAt, of, table + c, width, ofRow, rows + c);
        if (c < width) SparseSlicePart<1>(entries, ofAt, of, table + c, width, ofRow, rows + c);
    }
}

INLINE_BODY void AddQuotients(const FloatLanes& quotients, FloatLanes* sum) {
    *sum += quotients;
}
INLINE_BODY void AddQuotients(const FloatLanes& quotients, Lanes* sum) {
    Lanes wide;
    Widen(__builtin_shufflevector(quotients, quotients, 0, 1, 2, 3), &wide);
    sum[0] += wide;
    Widen(__builtin_shufflevector(quotients, quotients, 4, 5, 6, 7), &wide);
    sum[1] += wide;
}

/// 8 V means, from place i on.
template <int V, class T>
INLINE_BODY void MemberMeansPart(int i, int size, const int* members, const float* const* s,
                                 T* mean) {
    using Vector = typename LanesOf<T>::Type;
    constexpr int kPerFloats = kFloatLanes / LanesOf<T>::kWidth;
    constexpr float kNone = kMissing;
    const float divisor = static_cast<float>(size);
    Vector sum[V * kPerFloats] = {};
    for (int a = 0; a < size; a++) {
        const float* row = s[members[a]] + i;
        UNROLL
        for (int v = 0; v < V; v++) {
            FloatLanes x;
            Load(row + v * kFloatLanes, x);
            x = x == kNone ? FloatLanes{} : x;
            AddQuotients(x / divisor, sum + v * kPerFloats);
        }
    }
    UNROLL
    for (int v = 0; v < V * kPerFloats; v++) Store(sum[v], mean + i + v * LanesOf<T>::kWidth);
}

template <class T>
INLINE_BODY void MemberMeansBody(int n, int size, const int* members, const float* const* s,
                                 T* mean) {
    int i = 0;
    for (; i + 4 * kFloatLanes <= n; i += 4 * kFloatLanes)
        MemberMeansPart<4>(i, size, members, s, mean);
    for (; i + kFloatLanes <= n; i += kFloatLanes) MemberMeansPart<1>(i, size, members, s, mean);
    if (i < n && n >= kFloatLanes) {  // some are made a second time
        MemberMeansPart<1>(n - kFloatLanes, size, members, s, mean);
        return;
    }
    for (; i < n; i++) {
        T sum = 0;
        for (int a = 0; a < size; a++) {
            const float x = s[members[a]][i];
            if (!IsMissing(x)) sum += static_cast<T>(x / static_cast<float>(size));
        }
        mean[i] = sum;
    }
}

template <class T>
INLINE_BODY void UnitSumsBody(int n, int p, int stride, T* columns) {
    using Vector = typename LanesOf<T>::Type;
    constexpr T kNone = kMissing;
    constexpr int kWidth = LanesOf<T>::kWidth;
    for (int i = 0; i < n; i += kWidth) {
        Vector total{}, x;
        for (int j = 0; j < p; j++) {
            Load(columns + static_cast<long>(j) * stride + i, x);
            total += x == kNone ? Vector{} : x;
        }
        total = total == 0 ? Vector{} + 1 : total;
        for (int j = 0; j < p; j++) {
            T* place = columns + static_cast<long>(j) * stride + i;
            Load(place, x);
            Store(x == kNone ? x : x / total, place);
        }
    }
}

INLINE_BODY bool SameAsOneBody(int from, int to, const float* row, const int* types, int type) {
    IntLanes same{};
    int j = from;
    for (; j + kFloatLanes <= to; j += kFloatLanes) {
        FloatLanes x;
        IntLanes t;
        Load(row + j, x);
        Load(types + j, t);
        same |= (x >= kAlmostOneFrom) & (x <= kAlmostOneTo) & (t == type);
    }
    int any = 0;
    for (int l = 0; l < kFloatLanes; l++) any |= same[l];
    for (; j < to; j++) any |= IsAlmostOne(row[j]) && types[j] == type;
    return any != 0;
}

// ---- averages of layers

/// Four sums after the layer's next cells.
template <bool kMV>
INLINE_BODY void PlusLayer(const double* sums, const float* layer, Lanes* sum) {
    constexpr float kNone = kMissing;
    HalfLanes x;
    Load(layer, x);
    if (kMV) x = x == kNone ? HalfLanes{} : x;
    Lanes before;
    Widen(x, sum);
    *sum += Load(sums, before);
}

INLINE_BODY void PlusPresent(const float* counts, const float* layer, FloatLanes* count) {
    constexpr float kNone = kMissing;
    FloatLanes x;
    Load(layer, x);
    *count = Load(counts, *count) + (x == kNone ? FloatLanes{} : FloatLanes{} + 1);
}

template <bool kMV>
INLINE_BODY void AddLayerBody(long m, const double* from, const float* counts, const float* layer,
                              double* to, float* toCounts) {
    for (long c = 0; c < m; c += kFloatLanes) {
        Lanes sum;
        PlusLayer<kMV>(from + c, layer + c, &sum);
        Store(sum, to + c);
        PlusLayer<kMV>(from + c + kLanes, layer + c + kLanes, &sum);
        Store(sum, to + c + kLanes);
        if (kMV) {
            FloatLanes count;
            PlusPresent(counts + c, layer + c, &count);
            Store(count, toCounts + c);
        }
    }
}

/// Eight averages.
template <bool kMV>
INLINE_BODY void AverageLine(const double* sums, const float* counts, float count,
                             const float* layer, FloatLanes* average) {
    Lanes low, high;
    PlusLayer<kMV>(sums, layer, &low);
    PlusLayer<kMV>(sums + kLanes, layer + kLanes, &high);
    const HalfLanes lowFloats = __builtin_convertvector(low, HalfLanes);
    const HalfLanes highFloats = __builtin_convertvector(high, HalfLanes);
    *average = __builtin_shufflevector(lowFloats, highFloats, 0, 1, 2, 3, 4, 5, 6, 7);
    if (kMV) {
        FloatLanes divisor;
        PlusPresent(counts, layer, &divisor);
        constexpr float kNone = kMissing;
        *average = divisor > 0 ? *average / divisor : FloatLanes{} + kNone;
    } else {
        *average /= count;
    }
}

INLINE_BODY void TurnTile(FloatLanes* v) {
    FloatLanes a[kTileSide], b[kTileSide];
    UNROLL
    for (int r = 0; r < kTileSide; r += 2) {
        a[r] = __builtin_shufflevector(v[r], v[r + 1], 0, 8, 1, 9, 4, 12, 5, 13);
        a[r + 1] = __builtin_shufflevector(v[r], v[r + 1], 2, 10, 3, 11, 6, 14, 7, 15);
    }
    UNROLL
    for (int r = 0; r < kTileSide; r += 4) UNROLL
    for (int h = 0; h < 2; h++) {
        b[r + 2 * h] = __builtin_shufflevector(a[r + h], a[r + 2 + h], 0, 1, 8, 9, 4, 5, 12, 13);
        b[r + 2 * h + 1] =
            __builtin_shufflevector(a[r + h], a[r + 2 + h], 2, 3, 10, 11, 6, 7, 14, 15);
    }
    UNROLL
    for (int r = 0; r < 4; r++) {
        v[r] = __builtin_shufflevector(b[r], b[r + 4], 0, 1, 2, 3, 8, 9, 10, 11);
        v[r + 4] = __builtin_shufflevector(b[r], b[r + 4], 4, 5, 6, 7, 12, 13, 14, 15);
    }
}

template <bool kMV>
INLINE_BODY void AveragesBody(int tiles, const double* sums, const float* counts, float count,
                              const float* layer, float* s) {
    const long stride = static_cast<long>(tiles) * kTileSide;
    for (int i = 0; i < tiles; i++)
        for (int j = i; j < tiles; j++) {
            FloatLanes line[kTileSide];
            float* above = s + i * kTileSide * stride + j * kTileSide;
            UNROLL
            for (int r = 0; r < kTileSide; r++) {
                const int c = r * kTileSide;
                AverageLine<kMV>(sums + c, kMV ? counts + c : nullptr, count, layer + c, line + r);
                Store(line[r], above + r * stride);
            }
            sums += kTileCells;
            layer += kTileCells;
            if (kMV) counts += kTileCells;
            if (i == j) continue;
            TurnTile(line);
            float* below = s + j * kTileSide * stride + i * kTileSide;
            UNROLL
            for (int r = 0; r < kTileSide; r++) Store(line[r], below + r * stride);
        }
}

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)

// NOLINTBEGIN(bugprone-macro-parentheses): an attribute takes none
#define TYPED_KERNELS(TARGET, T, NAME)                                                            \
    TARGET void Euclidean##NAME(int n, int p, const T* const* columns, double* cells) {           \
        DistancesBody<true>(n, p, columns, cells);                                                \
    }                                                                                             \
    TARGET void Absolute##NAME(int n, int p, const T* const* columns, double* cells) {            \
        DistancesBody<false>(n, p, columns, cells);                                               \
    }                                                                                             \
    TARGET void SparseRows##NAME(int slices, const long* start, const int* at, const T* weights,  \
                                 const int* row, const T* table, int width, T* rows) {            \
        SparseRowsBody(slices, start, at, weights, row, table, width, rows);                      \
    }                                                                                             \
    TARGET void MemberMeans##NAME(int n, int size, const int* members, const float* const* s,     \
                                  T* mean) {                                                      \
        MemberMeansBody(n, size, members, s, mean);                                               \
    }                                                                                             \
    TARGET void UnitSums##NAME(int n, int p, int stride, T* columns) {                            \
        UnitSumsBody(n, p, stride, columns);                                                      \
    }                                                                                             \
    constexpr TypedSubsetKernels<T> k##NAME = {Euclidean##NAME, Absolute##NAME, SparseRows##NAME, \
                                               MemberMeans##NAME, UnitSums##NAME};

#define SUBSET_KERNELS(TARGET)                                                                     \
    TYPED_KERNELS(TARGET, float, Float)                                                            \
    TYPED_KERNELS(TARGET, double, Double)                                                          \
    TARGET void Chains(int chains, long m, const double* const* x, const double* const* y,         \
                       double* sums) {                                                             \
        ChainsBody(chains, m, x, y, sums);                                                         \
    }                                                                                              \
    TARGET bool Deviations(long m, double mean, const double* cells, double* deviations) {         \
        return DeviationsBody(m, mean, cells, deviations);                                         \
    }                                                                                              \
    TARGET void Products(int n, int p, const float* const* columns, double* cells) {               \
        ProductsBody(n, p, columns, cells);                                                        \
    }                                                                                              \
    TARGET bool SameAsOne(int from, int to, const float* row, const int* types, int type) {        \
        return SameAsOneBody(from, to, row, types, type);                                          \
    }                                                                                              \
    TARGET void AddLayer(long m, const double* from, const float* layer, double* to) {             \
        AddLayerBody<false>(m, from, nullptr, layer, to, nullptr);                                 \
    }                                                                                              \
    TARGET void AddLayerMV(long m, const double* from, const float* counts, const float* layer,    \
                           double* to, float* toCounts) {                                          \
        AddLayerBody<true>(m, from, counts, layer, to, toCounts);                                  \
    }                                                                                              \
    TARGET void Averages(int tiles, const double* sums, const float* layer, float count,           \
                         float* s) {                                                               \
        AveragesBody<false>(tiles, sums, nullptr, count, layer, s);                                \
    }                                                                                              \
    TARGET void AveragesMV(int tiles, const double* sums, const float* counts, const float* layer, \
                           float* s) {                                                             \
        AveragesBody<true>(tiles, sums, counts, 0.0F, layer, s);                                   \
    }                                                                                              \
    constexpr SubsetKernels kKernels = {Chains,     Deviations, Products,   SameAsOne, AddLayer,   \
                                        AddLayerMV, Averages,   AveragesMV, kFloat,    kDouble};
// NOLINTEND(bugprone-macro-parentheses)

namespace plain {
SUBSET_KERNELS()
}
#if defined(__x86_64__)
namespace wide {
SUBSET_KERNELS([[gnu::target("avx2")]])
}
#endif

}  // namespace

const SubsetKernels& SubsetKernelsOfProcessor() {
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2")) return wide::kKernels;
#endif
    return plain::kKernels;
}

const SubsetKernels& SubsetKernelsOfAnyProcessor() {
    return plain::kKernels;
}
