#pragma once
/// \file
/// Sums over cells, each chain of additions in a lane of its own.

#include "mxlibRes/lanes.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/subset_kernels.h"

// NOLINTBEGIN(bugprone-implicit-widening-of-multiplication-result): lanes and tiles

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

// NOLINTEND(bugprone-implicit-widening-of-multiplication-result)
