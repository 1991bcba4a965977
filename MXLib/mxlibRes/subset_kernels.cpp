#include "mxlibRes/subset_kernels.h"

#include "mxlibRes/lanes.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"

namespace {

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles ahead

// ---- sums over cells, each chain in a lane

/// Turns vectors of cells, one vector per chain, into one vector of chains per cell.
INLINE_BODY void TurnCells(const Registers<16>::Doubles* v, Registers<16>::Doubles* cell) {
    Shuffle<0, 2>(v[0], v[1], cell);
    Shuffle<1, 3>(v[0], v[1], cell + 1);
}
[[maybe_unused]] INLINE_BODY void TurnCells(const Registers<32>::Doubles* v,
                                            Registers<32>::Doubles* cell) {
    Registers<32>::Doubles even[2], odd[2];
    UNROLL
    for (int h = 0; h < 2; h++) {
        Shuffle<0, 4, 2, 6>(v[2 * h], v[2 * h + 1], even + h);
        Shuffle<1, 5, 3, 7>(v[2 * h], v[2 * h + 1], odd + h);
    }
    Shuffle<0, 1, 4, 5>(even[0], even[1], cell);
    Shuffle<0, 1, 4, 5>(odd[0], odd[1], cell + 1);
    Shuffle<2, 3, 6, 7>(even[0], even[1], cell + 2);
    Shuffle<2, 3, 6, 7>(odd[0], odd[1], cell + 3);
}

/// What the cells of kChains chains are, a vector of cells after the other.
template <int kChains>
struct Chains {
    const double* x[kChains];
    const double* y[kChains];
    double meanX[kChains];
    double meanY[kChains];

    /// Chains that are not there are the first one again.
    INLINE_BODY Chains(int chains, const double* const* ofX, const double* ofMeanX,
                       const double* const* ofY, const double* ofMeanY) {
        for (int c = 0; c < kChains; c++) {
            const int from = c < chains ? c : 0;
            x[c] = ofX[from];
            if (ofY == nullptr) continue;
            y[c] = ofY[from];
            meanX[c] = ofMeanX[from];
            meanY[c] = ofMeanY[from];
        }
    }
};

/// The terms are the cells themselves; `missing` gathers, by chain, which are.
template <class R, int kChains>
INLINE_BODY void SumChains(int chains, std::ptrdiff_t m, const double* const* x, double* sums,
                           bool* hasMissing) {
    constexpr int kWidth = R::kDoubles;
    const Chains<kChains> of(chains, x, nullptr, nullptr, nullptr);
    typename R::Doubles sum[kChains / kWidth] = {};
    decltype(sum[0] == sum[0]) missing[kChains] = {};
    std::ptrdiff_t k = 0;
    for (; k + kWidth <= m; k += kWidth) {
        UNROLL
        for (int g = 0; g < kChains / kWidth; g++) {
            typename R::Doubles terms[kWidth], cell[kWidth];
            UNROLL
            for (int c = 0; c < kWidth; c++) {
                Load(of.x[g * kWidth + c] + k, terms[c]);
                missing[g * kWidth + c] |= terms[c] == double{kMissing};
            }
            TurnCells(terms, cell);
            UNROLL
            for (int c = 0; c < kWidth; c++) sum[g] += cell[c];
        }
    }
    for (int c = 0; c < chains; c++) {
        double s = sum[c / kWidth][c % kWidth];
        bool any = false;
        for (int l = 0; l < kWidth; l++) any = any || missing[c][l] != 0;
        for (std::ptrdiff_t j = k; j < m; j++) {
            s += of.x[c][j];
            any = any || IsMissing(of.x[c][j]);
        }
        sums[c] = s;
        hasMissing[c] = any;
    }
}

template <class R, int kChains>
INLINE_BODY void MultiplyChains(int chains, std::ptrdiff_t m, const double* const* x,
                                const double* meanX, const double* const* y, const double* meanY,
                                double* sums) {
    constexpr int kWidth = R::kDoubles;
    const Chains<kChains> of(chains, x, meanX, y, meanY);
    typename R::Doubles sum[kChains / kWidth] = {};
    std::ptrdiff_t k = 0;
    for (; k + kWidth <= m; k += kWidth) {
        UNROLL
        for (int g = 0; g < kChains / kWidth; g++) {
            typename R::Doubles terms[kWidth], cell[kWidth], v;
            UNROLL
            for (int c = 0; c < kWidth; c++) {
                const int chain = g * kWidth + c;
                terms[c] = Load(of.x[chain] + k, v) - of.meanX[chain];
                terms[c] *= Load(of.y[chain] + k, v) - of.meanY[chain];
            }
            TurnCells(terms, cell);
            UNROLL
            for (int c = 0; c < kWidth; c++) sum[g] += cell[c];
        }
    }
    for (int c = 0; c < chains; c++) {
        double s = sum[c / kWidth][c % kWidth];
        for (std::ptrdiff_t j = k; j < m; j++)
            s += (of.x[c][j] - of.meanX[c]) * (of.y[c][j] - of.meanY[c]);
        sums[c] = s;
    }
}

template <class R>
INLINE_BODY void SumsBody(int chains, std::ptrdiff_t m, const double* const* x, double* sums,
                          bool* hasMissing) {
    if (chains > kMostChains / 2)
        SumChains<R, kMostChains>(chains, m, x, sums, hasMissing);
    else if (chains > 0)
        SumChains<R, kMostChains / 2>(chains, m, x, sums, hasMissing);
}

template <class R>
INLINE_BODY void ProductsBody(int chains, std::ptrdiff_t m, const double* const* x,
                              const double* meanX, const double* const* y, const double* meanY,
                              double* sums) {
    if (chains > kMostChains / 2)
        MultiplyChains<R, kMostChains>(chains, m, x, meanX, y, meanY, sums);
    else if (chains > 0)
        MultiplyChains<R, kMostChains / 2>(chains, m, x, meanX, y, meanY, sums);
}

// ---- distances

INLINE_BODY long long MagnitudeBits(double) {
    return 0x7fffffffffffffffLL;
}
INLINE_BODY int MagnitudeBits(float) {
    return 0x7fffffff;
}

template <bool kSquared, class Vector>
INLINE_BODY void SquareOrMagnitude(Vector* difference) {
    if constexpr (kSquared) {
        *difference *= *difference;
    } else {
        decltype(*difference == *difference) bits;
        Store(Load(difference, bits) & MagnitudeBits((*difference)[0]), difference);
    }
}

/// Adds magnitudes of R::kFloats differences in T, or their squares in T, to double sums.
template <bool kSquared, class R>
INLINE_BODY void AddDifferences(double x, const double* y, typename R::Doubles* sum) {
    UNROLL
    for (int v = 0; v < 2; v++) {
        typename R::Doubles others;
        typename R::Doubles term = x - Load(y + v * R::kDoubles, others);
        SquareOrMagnitude<kSquared>(&term);
        sum[v] += term;
    }
}
template <bool kSquared, class R>
INLINE_BODY void AddDifferences(float x, const float* y, typename R::Doubles* sum) {
    typename R::Floats others;
    typename R::Floats difference = x - Load(y, others);
    SquareOrMagnitude<kSquared>(&difference);
    typename R::Doubles terms[2];
    WidenBoth(difference, terms);
    sum[0] += terms[0];
    sum[1] += terms[1];
}

/// kCells cells of a row, between object i and those from j on.
template <bool kSquared, class R, int kCells, class T>
INLINE_BODY void DistancesOfBlock(int p, const T* const* columns, int i, int j, double* cells) {
    constexpr int kVectors = kCells / R::kDoubles;
    typename R::Doubles sum[kVectors] = {};
    for (int k = 0; k < p; k++) {
        const T x = columns[k][i];
        const T* others = columns[k] + j;
        UNROLL
        for (int v = 0; v < kVectors; v += 2)
            AddDifferences<kSquared, R>(x, others + v * R::kDoubles, sum + v);
    }
    UNROLL
    for (int v = 0; v < kVectors; v++) {
        if (kSquared) Root(sum + v);
        Store(sum[v], cells + v * R::kDoubles);
    }
}

/// What the last block of a row writes past its end is written again by the next row.
template <bool kSquared, class R, class T>
INLINE_BODY void DistancesBody(int n, int p, const T* const* columns, double* cells) {
    for (int i = 0; i + 1 < n; i++) {
        int j = i + 1;
        for (; j + 8 < n; j += 16)
            DistancesOfBlock<kSquared, R, 16>(p, columns, i, j, cells + (j - i - 1));
        if (j < n)
            DistancesOfBlock<kSquared, AtMost32<R>, 8>(p, columns, i, j, cells + (j - i - 1));
        cells += n - 1 - i;
    }
}

/// kCells products, between object i and those from j on.
template <class R, int kCells>
INLINE_BODY void ProductsOfBlock(int p, const float* const* columns, int i, int j, double* cells) {
    constexpr int kVectors = kCells / R::kFloats;
    typename R::Floats sum[kVectors] = {};
    for (int k = 0; k < p; k++) {
        const float x = columns[k][i];
        const float* others = columns[k] + j;
        UNROLL
        for (int v = 0; v < kVectors; v++) {
            typename R::Floats y;
            sum[v] += x * Load(others + v * R::kFloats, y);
        }
    }
    UNROLL
    for (int v = 0; v < kVectors; v++) {
        typename R::Doubles wide[2];
        WidenBoth(sum[v], wide);
        Store(wide[0], cells + v * R::kFloats);
        Store(wide[1], cells + v * R::kFloats + R::kDoubles);
    }
}

/// What the last block of a row writes past its end is written again by the next row.
template <class R>
INLINE_BODY void ObjectProductsBody(int n, int p, const float* const* columns, double* cells) {
    for (int i = 0; i + 1 < n; i++) {
        int j = i + 1;
        for (; j + 8 < n; j += 16) ProductsOfBlock<R, 16>(p, columns, i, j, cells + (j - i - 1));
        if (j < n) ProductsOfBlock<AtMost32<R>, 8>(p, columns, i, j, cells + (j - i - 1));
        cells += n - 1 - i;
    }
}

// ---- sums over OTUs

/// V vectors of each row of a slice.
template <int V, class R, class T>
INLINE_BODY void SparseSlicePart(int entries, const int* at, const T* weights, const T* table,
                                 int width, const int* row, T* rows) {
    using Vector = LanesOf<R, T>;
    constexpr int kWidth = kCountOf<Vector, T>;
    Vector sum[kSliceRows * V] = {};
    for (int e = 0; e < entries; e++, at += kSliceRows, weights += kSliceRows) {
        UNROLL
        for (int s = 0; s < kSliceRows * V; s++) {
            Vector v;
            const T* from = table + static_cast<std::ptrdiff_t>(at[s / V]) * width + s % V * kWidth;
            sum[s] += weights[s / V] * Load(from, v);
        }
    }
    UNROLL
    for (int s = 0; s < kSliceRows * V; s++)
        Store(sum[s], rows + static_cast<std::ptrdiff_t>(row[s / V]) * width + s % V * kWidth);
}

template <class R, class T>
INLINE_BODY void SparseRowsBody(int slices, const std::ptrdiff_t* start, const int* at,
                                const T* weights, const int* row, const T* table, int width,
                                T* rows) {
    constexpr int kWidth = kCountOf<LanesOf<R, T>, T>;
    for (int i = 0; i < slices; i++) {
        const auto entries = static_cast<int>((start[i + 1] - start[i]) / kSliceRows);
        const int* ofAt = at + start[i];
        const T* of = weights + start[i];
        const int* ofRow = row + i * kSliceRows;
        int c = 0;
        for (; c + 2 * kWidth <= width; c += 2 * kWidth)
            SparseSlicePart<2, R>(entries, ofAt, of, table + c, width, ofRow, rows + c);
        if (c < width) SparseSlicePart<1, R>(entries, ofAt, of, table + c, width, ofRow, rows + c);
    }
}

template <class Floats>
INLINE_BODY void AddQuotients(const Floats& quotients, Floats* sum) {
    *sum += quotients;
}
template <class Floats, class Doubles>
INLINE_BODY void AddQuotients(const Floats& quotients, Doubles* sum) {
    Doubles wide[2];
    WidenBoth(quotients, wide);
    sum[0] += wide[0];
    sum[1] += wide[1];
}

/// Means that go with V vectors of similarities, from place i on.
template <int V, class R, class T>
INLINE_BODY void MemberMeansPart(int i, int size, const int* members, const float* const* s,
                                 T* mean) {
    using Vector = LanesOf<R, T>;
    constexpr int kWidth = kCountOf<Vector, T>;
    constexpr int kPerFloats = R::kFloats / kWidth;
    constexpr float kNone = kMissing;
    const float divisor = static_cast<float>(size);
    Vector sum[V * kPerFloats] = {};
    for (int a = 0; a < size; a++) {
        const float* row = s[members[a]] + i;
        UNROLL
        for (int v = 0; v < V; v++) {
            typename R::Floats x;
            Load(row + v * R::kFloats, x);
            x = x == kNone ? decltype(x){} : x;
            AddQuotients(x / divisor, sum + v * kPerFloats);
        }
    }
    UNROLL
    for (int v = 0; v < V * kPerFloats; v++) Store(sum[v], mean + i + v * kWidth);
}

template <class R, class T>
INLINE_BODY void MemberMeansBody(int n, int size, const int* members, const float* const* s,
                                 T* mean) {
    constexpr int kWidth = R::kFloats;
    int i = 0;
    for (; i + 4 * kWidth <= n; i += 4 * kWidth) MemberMeansPart<4, R>(i, size, members, s, mean);
    for (; i + kWidth <= n; i += kWidth) MemberMeansPart<1, R>(i, size, members, s, mean);
    if (i < n && n >= kWidth) {  // some are made a second time
        MemberMeansPart<1, R>(n - kWidth, size, members, s, mean);
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

template <class R, class T>
INLINE_BODY void UnitSumsBody(int n, int p, int stride, T* columns) {
    using Vector = LanesOf<R, T>;
    constexpr T kNone = kMissing;
    for (int i = 0; i < n; i += kCountOf<Vector, T>) {
        Vector total{}, x;
        for (int j = 0; j < p; j++) {
            Load(columns + static_cast<std::ptrdiff_t>(j) * stride + i, x);
            total += x == kNone ? Vector{} : x;
        }
        total = total == 0 ? Vector{} + 1 : total;
        for (int j = 0; j < p; j++) {
            T* place = columns + static_cast<std::ptrdiff_t>(j) * stride + i;
            Load(place, x);
            Store(x == kNone ? x : x / total, place);
        }
    }
}

template <class R>
INLINE_BODY bool SameAsOneBody(int from, int to, const float* row, const int* types, int type) {
    typename R::Floats x;
    decltype(x == x) same{}, t;
    int j = from;
    for (; j + R::kFloats <= to; j += R::kFloats) {
        Load(row + j, x);
        Load(types + j, t);
        same |= (x >= kAlmostOneFrom) & (x <= kAlmostOneTo) & (t == type);
    }
    int any = 0;
    for (int l = 0; l < R::kFloats; l++) any |= same[l];
    for (; j < to; j++) any |= IsAlmostOne(row[j]) && types[j] == type;
    return any != 0;
}

// ---- averages of layers

/// One vector of sums after the layer's next cells.
template <bool kMV, class R>
INLINE_BODY void PlusLayer(const double* sums, const float* layer, typename R::Doubles* sum) {
    constexpr float kNone = kMissing;
    typename R::Halves x;
    Load(layer, x);
    if (kMV) x = x == kNone ? decltype(x){} : x;
    typename R::Doubles before;
    Widen(x, sum);
    *sum += Load(sums, before);
}

template <class Floats>
INLINE_BODY void PlusPresent(const float* counts, const float* layer, Floats* count) {
    constexpr float kNone = kMissing;
    Floats x;
    Load(layer, x);
    *count = Load(counts, *count) + (x == kNone ? Floats{} : Floats{} + 1);
}

template <bool kMV, class R>
INLINE_BODY void AddLayerBody(std::ptrdiff_t m, const double* from, const float* counts,
                              const float* layer, double* to, float* toCounts) {
    for (std::ptrdiff_t c = 0; c < m; c += R::kFloats) {
        typename R::Doubles sum;
        PlusLayer<kMV, R>(from + c, layer + c, &sum);
        Store(sum, to + c);
        PlusLayer<kMV, R>(from + c + R::kDoubles, layer + c + R::kDoubles, &sum);
        Store(sum, to + c + R::kDoubles);
        if (kMV) {
            typename R::Floats count;
            PlusPresent(counts + c, layer + c, &count);
            Store(count, toCounts + c);
        }
    }
}

/// One vector of averages.
template <bool kMV, class R>
INLINE_BODY void AverageLine(const double* sums, const float* counts, float count,
                             const float* layer, typename R::Floats* average) {
    using Floats = typename R::Floats;
    typename R::Doubles low, high;
    PlusLayer<kMV, R>(sums, layer, &low);
    PlusLayer<kMV, R>(sums + R::kDoubles, layer + R::kDoubles, &high);
    Join(__builtin_convertvector(low, typename R::Halves),
         __builtin_convertvector(high, typename R::Halves), average);
    if (kMV) {
        Floats divisor;
        PlusPresent(counts, layer, &divisor);
        constexpr float kNone = kMissing;
        *average = divisor > 0 ? *average / divisor : Floats{} + kNone;
    } else {
        *average /= count;
    }
}

/// Turns as many vectors as a vector has floats.
INLINE_BODY void TurnFloats(Registers<16>::Floats* v) {
    Registers<16>::Floats a[4];
    UNROLL
    for (int h = 0; h < 2; h++) {
        Shuffle<0, 4, 1, 5>(v[2 * h], v[2 * h + 1], a + h);
        Shuffle<2, 6, 3, 7>(v[2 * h], v[2 * h + 1], a + 2 + h);
    }
    UNROLL
    for (int h = 0; h < 2; h++) {
        Shuffle<0, 1, 4, 5>(a[2 * h], a[2 * h + 1], v + 2 * h);
        Shuffle<2, 3, 6, 7>(a[2 * h], a[2 * h + 1], v + 2 * h + 1);
    }
}
[[maybe_unused]] INLINE_BODY void TurnFloats(Registers<32>::Floats* v) {
    Registers<32>::Floats a[8], b[8];
    UNROLL
    for (int r = 0; r < 8; r += 2) {
        Shuffle<0, 8, 1, 9, 4, 12, 5, 13>(v[r], v[r + 1], a + r);
        Shuffle<2, 10, 3, 11, 6, 14, 7, 15>(v[r], v[r + 1], a + r + 1);
    }
    UNROLL
    for (int s = 0; s < 4; s++) {
        const int r = s / 2 * 4 + s % 2;  // 0, 1, 4, 5
        const int to = s / 2 * 4 + s % 2 * 2;
        Shuffle<0, 1, 8, 9, 4, 5, 12, 13>(a[r], a[r + 2], b + to);
        Shuffle<2, 3, 10, 11, 6, 7, 14, 15>(a[r], a[r + 2], b + to + 1);
    }
    UNROLL
    for (int r = 0; r < 4; r++) {
        Shuffle<0, 1, 2, 3, 8, 9, 10, 11>(b[r], b[r + 4], v + r);
        Shuffle<4, 5, 6, 7, 12, 13, 14, 15>(b[r], b[r + 4], v + r + 4);
    }
}

/// One tile of averages, and unless `below` is null the same turned.
template <bool kMV, class R>
INLINE_BODY void AveragesOfTile(const double* sums, const float* counts, float count,
                                const float* layer, std::ptrdiff_t stride, float* above,
                                float* below) {
    constexpr int kPart = R::kFloats;
    for (int i = 0; i < kTileSide; i += kPart)
        for (int j = 0; j < kTileSide; j += kPart) {
            typename R::Floats line[kPart] = {};
            UNROLL
            for (int r = 0; r < kPart; r++) {
                const int c = (i + r) * kTileSide + j;
                AverageLine<kMV, R>(sums + c, kMV ? counts + c : nullptr, count, layer + c,
                                    line + r);
                Store(line[r], above + (i + r) * stride + j);
            }
            if (below == nullptr) continue;
            TurnFloats(line);
            UNROLL
            for (int r = 0; r < kPart; r++) Store(line[r], below + (j + r) * stride + i);
        }
}

template <bool kMV, class R>
INLINE_BODY void AveragesBody(int tiles, const double* sums, const float* counts, float count,
                              const float* layer, float* s) {
    const std::ptrdiff_t stride = static_cast<std::ptrdiff_t>(tiles) * kTileSide;
    for (int i = 0; i < tiles; i++)
        for (int j = i; j < tiles; j++) {
            float* above = s + i * kTileSide * stride + j * kTileSide;
            float* below = i == j ? nullptr : s + j * kTileSide * stride + i * kTileSide;
            AveragesOfTile<kMV, R>(sums, counts, count, layer, stride, above, below);
            sums += kTileCells;
            layer += kTileCells;
            if (kMV) counts += kTileCells;
        }
}

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)

// NOLINTBEGIN(bugprone-macro-parentheses): an attribute takes none
#define TYPED_KERNELS(TARGET, R, T, NAME)                                                         \
    TARGET void Euclidean##NAME(int n, int p, const T* const* columns, double* cells) {           \
        DistancesBody<true, R>(n, p, columns, cells);                                             \
    }                                                                                             \
    TARGET void Absolute##NAME(int n, int p, const T* const* columns, double* cells) {            \
        DistancesBody<false, AtMost32<R>>(n, p, columns, cells);                                  \
    }                                                                                             \
    TARGET void SparseRows##NAME(int slices, const std::ptrdiff_t* start, const int* at,          \
                                 const T* weights, const int* row, const T* table, int width,     \
                                 T* rows) {                                                       \
        SparseRowsBody<AtMost32<R>>(slices, start, at, weights, row, table, width, rows);         \
    }                                                                                             \
    TARGET void MemberMeans##NAME(int n, int size, const int* members, const float* const* s,     \
                                  T* mean) {                                                      \
        MemberMeansBody<AtMost32<R>>(n, size, members, s, mean);                                  \
    }                                                                                             \
    TARGET void UnitSums##NAME(int n, int p, int stride, T* columns) {                            \
        UnitSumsBody<AtMost32<R>>(n, p, stride, columns);                                         \
    }                                                                                             \
    constexpr TypedSubsetKernels<T> k##NAME = {Euclidean##NAME, Absolute##NAME, SparseRows##NAME, \
                                               MemberMeans##NAME, UnitSums##NAME};

#define SUBSET_KERNELS(TARGET, R)                                                                  \
    TYPED_KERNELS(TARGET, R, float, Float)                                                         \
    TYPED_KERNELS(TARGET, R, double, Double)                                                       \
    TARGET void Sums(int chains, std::ptrdiff_t m, const double* const* x, double* sums,           \
                     bool* hasMissing) {                                                           \
        SumsBody<AtMost32<R>>(chains, m, x, sums, hasMissing);                                     \
    }                                                                                              \
    TARGET void Products(int chains, std::ptrdiff_t m, const double* const* x,                     \
                         const double* meanX, const double* const* y, const double* meanY,         \
                         double* sums) {                                                           \
        ProductsBody<AtMost32<R>>(chains, m, x, meanX, y, meanY, sums);                            \
    }                                                                                              \
    TARGET void ObjectProducts(int n, int p, const float* const* columns, double* cells) {         \
        ObjectProductsBody<R>(n, p, columns, cells);                                               \
    }                                                                                              \
    TARGET bool SameAsOne(int from, int to, const float* row, const int* types, int type) {        \
        return SameAsOneBody<AtMost32<R>>(from, to, row, types, type);                             \
    }                                                                                              \
    TARGET void AddLayer(std::ptrdiff_t m, const double* from, const float* layer, double* to) {   \
        AddLayerBody<false, AtMost32<R>>(m, from, nullptr, layer, to, nullptr);                    \
    }                                                                                              \
    TARGET void AddLayerMV(std::ptrdiff_t m, const double* from, const float* counts,              \
                           const float* layer, double* to, float* toCounts) {                      \
        AddLayerBody<true, AtMost32<R>>(m, from, counts, layer, to, toCounts);                     \
    }                                                                                              \
    TARGET void Averages(int tiles, const double* sums, const float* layer, float count,           \
                         float* s) {                                                               \
        AveragesBody<false, AtMost32<R>>(tiles, sums, nullptr, count, layer, s);                   \
    }                                                                                              \
    TARGET void AveragesMV(int tiles, const double* sums, const float* counts, const float* layer, \
                           float* s) {                                                             \
        AveragesBody<true, AtMost32<R>>(tiles, sums, counts, 0.0F, layer, s);                      \
    }                                                                                              \
    constexpr SubsetKernels kKernels = {Sums,       Products, ObjectProducts, SameAsOne, AddLayer, \
                                        AddLayerMV, Averages, AveragesMV,     kFloat,    kDouble};
// NOLINTEND(bugprone-macro-parentheses)

namespace plain {
SUBSET_KERNELS(, PlainRegisters)
}
#if defined(__x86_64__)
namespace wide {
SUBSET_KERNELS([[gnu::target("avx2")]], WideRegisters)
}
namespace widest {
SUBSET_KERNELS([[gnu::target("avx512f,avx512vl,avx512dq")]], WidestRegisters)
}
#endif

}  // namespace

const SubsetKernels& SubsetKernelsOfRegisters([[maybe_unused]] int bytes) {
#if defined(__x86_64__)
    if (bytes == 64) return widest::kKernels;
    if (bytes == 32) return wide::kKernels;
#endif
    return plain::kKernels;
}
