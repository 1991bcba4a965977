#include "mxlibRes/distance_cells.h"

#include <cmath>

#include "mxlibRes/distances.h"
#include "mxlibRes/mantel_sides.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/subset_kernels.h"

namespace {

template <class T>
bool HasMissing(int n, const T* column) {
    int missing = 0;
    for (int i = 0; i < n; i++) missing |= static_cast<int>(IsMissing(column[i]));
    return missing != 0;
}

template <class T>
bool HasMissingColumn(int n, int p, const T* const* columns) {
    for (int k = 0; k < p; k++)
        if (HasMissing(n, columns[k])) return true;
    return false;
}

/// Over the columns present in both objects.
template <class T, class Term>
void ComparePresent(int n, int p, const T* const* columns, Term term, double* cells) {
    for (int i = 0; i < n; i++)
        for (int j = i + 1; j < n; j++) {
            double sum = 0.0;
            for (int k = 0; k < p; k++) {
                const T x = columns[k][i];
                const T y = columns[k][j];
                if (!IsMissing(x) && !IsMissing(y)) sum += term(x, y);
            }
            *cells++ = sum;
        }
}

template <class T>
void EuclideanCells(int n, int p, const T* const* columns, double* cells) {
    if (!HasMissingColumn(n, p, columns)) {
        KernelsOf<T>(SubsetKernelsOfProcessor()).euclidean(n, p, columns, cells);
        return;
    }
    ComparePresent(
        n, p, columns, [](T x, T y) { return static_cast<double>((x - y) * (x - y)); }, cells);
    for (std::ptrdiff_t c = 0; c < CountCellsAbove(n); c++) cells[c] = std::sqrt(cells[c]);
}

template <class T>
void AbsoluteCells(int n, int p, const T* const* columns, double* cells) {
    if (!HasMissingColumn(n, p, columns)) {
        KernelsOf<T>(SubsetKernelsOfProcessor()).absolute(n, p, columns, cells);
        return;
    }
    ComparePresent(
        n, p, columns, [](T x, T y) { return std::fabs(static_cast<double>(x - y)); }, cells);
}

/// The objects at unit length, as NormalizeRowsMV makes them.
template <class T>
void UnitLengthObjects(int n, int p, const T* const* columns, ColumnTable<T>* unit) {
    constexpr int kObjects = 64;
    double scale[kObjects];
    for (int from = 0; from < n; from += kObjects) {
        const int count = n - from < kObjects ? n - from : kObjects;
        for (int i = 0; i < count; i++) scale[i] = 0.0;
        for (int k = 0; k < p; k++) {
            const T* x = columns[k] + from;
            for (int i = 0; i < count; i++)
                scale[i] += IsMissing(x[i]) ? 0.0 : static_cast<double>(x[i] * x[i]);
        }
        for (int i = 0; i < count; i++) scale[i] = scale[i] > 0 ? std::sqrt(scale[i]) : 1.0;
        for (int k = 0; k < p; k++) {
            const T* x = columns[k] + from;
            T* y = unit->columns[k] + from;
            for (int i = 0; i < count; i++)
                y[i] =
                    IsMissing(x[i]) ? x[i] : static_cast<T>(static_cast<double>(x[i]) / scale[i]);
        }
    }
}

}  // namespace

template <class T>
ColumnTable<T> MakeColumnTable(int n, int p) {
    const int stride = n + kOverrun;
    ColumnTable<T> table{n, p, stride, ScopedVector<T>(static_cast<std::ptrdiff_t>(p) * stride),
                         ScopedVector<T*>(p)};
    for (int k = 0; k < p; k++)
        table.columns[k] = table.places.get() + static_cast<std::ptrdiff_t>(k) * stride;
    return table;
}

template <class T>
void DistanceCells(int n, int p, const T* const* columns, int option, ColumnTable<T>* room,
                   double* cells) {
    switch (option) {
        case kEuclidean:
        case kRelativeEuclidean:
            EuclideanCells(n, p, columns, cells);
            break;
        case kAbsolute:
        case kRelativeAbsolute:
            AbsoluteCells(n, p, columns, cells);
            break;
        case kChord:
            UnitLengthObjects(n, p, columns, room);
            EuclideanCells<T>(n, p, room->columns, cells);
            break;
        default:
            break;
    }
}

template ColumnTable<float> MakeColumnTable<float>(int, int);
template ColumnTable<double> MakeColumnTable<double>(int, int);
template void DistanceCells<float>(int, int, const float* const*, int, ColumnTable<float>*,
                                   double*);
template void DistanceCells<double>(int, int, const double* const*, int, ColumnTable<double>*,
                                    double*);
