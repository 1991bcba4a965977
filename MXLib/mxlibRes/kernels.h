#pragma once
/// \file
/// Inner loops for what is computed in every permutation. Sums run in a fixed number of lanes, so
/// that the digits are the same whatever width of vector registers the processor has.

#include <cstddef>

/// Loops over columns read this many places past the end of each, and loops over cells write as
/// many past the last cell: buffers have that much more room.
inline constexpr int kOverrun = 16;

struct Kernels {
    /// Distances between n objects, described by p columns of `stride` places, into the cells above
    /// the diagonal, row after row; each is summed column after column.
    void (*euclidean)(int n, int p, const double* columns, int stride, double* cells);
    void (*absolute)(int n, int p, const double* columns, int stride, double* cells);

    double (*sum)(std::ptrdiff_t m, const double* x);
    double (*dot)(std::ptrdiff_t m, const double* x, const double* y);
    /// Subtracts the mean; the result is the sum of squares of what remains.
    double (*centre)(std::ptrdiff_t m, double mean, double* x);
    /// The same, and the products of what remains with y[0] to y[others - 1], at most 4, in one
    /// pass: sums[0] is the sum of squares, sums[1 + i] the dot with y[i].
    void (*centreAndDots)(std::ptrdiff_t m, double mean, double* x, int others,
                          const double* const* y, double* sums);

    /// row = the sum over the entries e, ascending, of weights[e] times table row at[e]; `width` is
    /// a multiple of 4.
    void (*weightedRows)(int entries, const int* at, const double* weights, const double* table,
                         int width, double* row);

    /// Products between p1 columns of a and p2 columns of b over n rows, each summed row after row,
    /// into c: c[i][j] of column i of a and column j of b. Quickest with the wider matrix as a.
    void (*columnProducts)(int n, int p1, const double* const* a, int p2, const double* const* b,
                           double* const* c);
    /// The same into c[j][i].
    void (*columnProductsTurned)(int n, int p1, const double* const* a, int p2,
                                 const double* const* b, double* const* c);
};

/// Bytes of the widest vector registers that the loops use on this processor: 16, which every
/// processor has, 32 or 64.
int BytesOfRegisters();

/// The loops for registers of so many bytes, which the processor must have.
const Kernels& KernelsOfRegisters(int bytes);
inline const Kernels& KernelsOfProcessor() {
    return KernelsOfRegisters(BytesOfRegisters());
}

/// Sum of weights[e] times row[at[e]].
inline double GatheredDot(int entries, const int* at, const double* weights, const double* row) {
    double s0 = 0.0, s1 = 0.0, s2 = 0.0, s3 = 0.0;
    int e = 0;
    for (; e + 4 <= entries; e += 4) {
        s0 += weights[e] * row[at[e]];
        s1 += weights[e + 1] * row[at[e + 1]];
        s2 += weights[e + 2] * row[at[e + 2]];
        s3 += weights[e + 3] * row[at[e + 3]];
    }
    for (; e < entries; e++) s0 += weights[e] * row[at[e]];
    return (s0 + s1) + (s2 + s3);
}
