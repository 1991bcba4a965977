#pragma once
/// \file
/// Inner loops for what is computed for every subset of traits. Each sum has one order, that of the
/// plain routine; what runs side by side are sums of different objects. Both versions of a loop,
/// for this processor and for any, give the same digits.

#include "mxlibRes/kernels.h"

/// Side of a square tile of cells.
inline constexpr int kTileSide = 8;
inline constexpr int kTileCells = kTileSide * kTileSide;

/// Rows whose sums run side by side.
inline constexpr int kSliceRows = 4;

/// Most sums in one pass over the cells.
inline constexpr int kMostChains = 8;

/// Loops over numbers of type T.
template <class T>
struct TypedSubsetKernels {
    /// Distances between n objects described by p columns into the cells above the diagonal, row
    /// after row. Differences, and their squares, in T; sums double, column after column.
    void (*euclidean)(int n, int p, const T* const* columns, double* cells);
    void (*absolute)(int n, int p, const T* const* columns, double* cells);

    /// Rows in slices of kSliceRows: for each the sum over its entries e, ascending, of weights[e]
    /// times table row at[e], into row[...] of `rows`. The entries of a slice, start[i] to
    /// start[i + 1], take turns between its rows. Both tables have `width` places in a row, a
    /// multiple of 8.
    void (*sparseRows)(int slices, const std::ptrdiff_t* start, const int* at, const T* weights,
                       const int* row, const T* table, int width, T* rows);

    /// mean[i] = sum over the members m, in their order, of s[m][i] / size, each quotient a float
    /// and the sum a T; a missing s adds nothing. For i from 0 to n - 1.
    void (*memberMeans)(int n, int size, const int* members, const float* const* s, T* mean);
    /// n rows of p columns to unit sum, the columns `stride` places apart; missing values stay, and
    /// so does a row that sums to 0.
    void (*unitSums)(int n, int p, int stride, T* columns);
};

struct SubsetKernels {
    /// Sums over m cells in their order of x[c], for up to kMostChains chains c, and whether some
    /// cell is missing.
    void (*sums)(int chains, std::ptrdiff_t m, const double* const* x, double* sums,
                 bool* hasMissing);
    /// Sums of x[c] - meanX[c] times y[c] - meanY[c].
    void (*products)(int chains, std::ptrdiff_t m, const double* const* x, const double* meanX,
                     const double* const* y, const double* meanY, double* sums);

    /// Products between n objects described by p columns into the cells above the diagonal, row
    /// after row; their sums in float, column after column.
    void (*objectProducts)(int n, int p, const float* const* columns, double* cells);

    /// Whether, in places from to to - 1 of a row of similarities, an object of `type` has a
    /// similarity of 1 within one unit in the last place.
    bool (*sameAsOne)(int from, int to, const float* row, const int* types, int type);

    /// to = from + layer over m cells, a multiple of kTileCells; the form with counts passes over
    /// missing cells of the layer and counts the others.
    void (*addLayer)(std::ptrdiff_t m, const double* from, const float* layer, double* to);
    void (*addLayerMV)(std::ptrdiff_t m, const double* from, const float* counts,
                       const float* layer, double* to, float* toCounts);
    /// The matrix of (sums + layer) / count from its tiles on and above the diagonal, tile row
    /// after tile row, both halves of it; a row has `tiles` times kTileSide places. The form with
    /// counts adds to them the present cells of the layer and gives -999 where none is present.
    void (*averages)(int tiles, const double* sums, const float* layer, float count, float* s);
    void (*averagesMV)(int tiles, const double* sums, const float* counts, const float* layer,
                       float* s);

    TypedSubsetKernels<float> ofFloat;
    TypedSubsetKernels<double> ofDouble;
};

/// As for Kernels.
const SubsetKernels& SubsetKernelsOfRegisters(int bytes);
inline const SubsetKernels& SubsetKernelsOfProcessor() {
    return SubsetKernelsOfRegisters(BytesOfRegisters());
}

template <class T>
const TypedSubsetKernels<T>& KernelsOf(const SubsetKernels& kernels) {
    if constexpr (sizeof(T) == sizeof(float))
        return kernels.ofFloat;
    else
        return kernels.ofDouble;
}
