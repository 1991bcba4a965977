#pragma once
/// \file
/// Resemblances between rows straight into a vector of cells above the diagonal, row after row,
/// from a table of columns, for callers that make many of them. T is float or double.

#include "mxlibDim/scoped.h"
#include "mxlibRes/kernels.h"

/// Columns of n places and kOverrun more.
template <class T>
struct ColumnTable {
    int n;
    int p;
    int stride;
    ScopedVector<T> places;
    ScopedVector<T*> columns;
};
template <class T>
ColumnTable<T> MakeColumnTable(int n, int p);

/// The cells of NominalReseNonHier by option: 6, 7 Euclidean, 8, 9 absolute, 10 chord distance, to
/// the last bit; any other leaves the cells as they are. Each of the p columns has kOverrun places
/// beyond n that can be read, `cells` as many that may be written. Only the chord distance needs
/// the room of a table of n x p, which may be null otherwise.
template <class T>
void DistanceCells(int n, int p, const T* const* columns, int option, ColumnTable<T>* room,
                   double* cells);
