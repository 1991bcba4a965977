#pragma once
/// \file
/// Products of one matrix W of few non-zero cells with many matrices U. T, of W and of the result,
/// is float or double.

#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

/// W (n x m) by its present non-zero cells. Rows of about the same number of cells make up slices
/// of kSliceRows, the shorter rows of a slice filled up with cells of 0.
template <class T>
struct SparseRows {
    int n;
    int m;
    int K;
    ConstMatrix<T> w;  ///< stays the caller's, for factors that are not finite
    bool isFinite;
    int slices;
    ScopedVector<int> row;  ///< of W, for each place of each slice; n and more where there is none
    ScopedVector<std::ptrdiff_t>
        start;  ///< cells of slice i: start[i] to start[i + 1], rows taking turns
    ScopedVector<int> at;
    ScopedVector<T> weights;
    int width;               ///< places of a row of the next two
    ScopedVector<T> table;   ///< room: the other factor
    ScopedVector<T> places;  ///< the product
    ScopedVector<T*> x;      ///< its rows
};

/// Makes W ready for factors of K columns.
template <class T>
SparseRows<T> MakeSparseRows(int n, int m, int K, ConstMatrix<T> w);

/// The product of W and u (m x K) as MatrixProdMV gives it, to the last bit: its rows (n x K),
/// which hold until the next call. Unless null `columns` receives its K columns of n places too.
/// Allocates nothing.
template <class T>
T* const* SparseProduct(ConstMatrix<float> u, SparseRows<T>* rows, T* const* columns);
