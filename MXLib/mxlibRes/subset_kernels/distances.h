#pragma once
/// \file
/// Distances and products between objects, those of one object with several others side by side.

#include "mxlibRes/lanes.h"

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles

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
        if (j < n) ProductsOfBlock<R, 8>(p, columns, i, j, cells + (j - i - 1));
        cells += n - 1 - i;
    }
}

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)
