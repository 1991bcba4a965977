#pragma once
/// \file
/// Averages of layers of similarities, tile by tile.

#include "mxlibRes/lanes.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/subset_kernels.h"

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles

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
