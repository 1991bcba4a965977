#pragma once
/// \file
/// Sums over the OTUs: products of sparse rows, means of members, unit sums.

#include "mxlibRes/lanes.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/subset_kernels.h"

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles

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

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)
