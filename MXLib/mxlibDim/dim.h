#pragma once
/// \file
/// Zero-filled arrays. A matrix is a table of row pointers, each row allocated by itself, so that
/// rows can be exchanged by swapping pointers and tables can be ragged. Neither a vector nor a
/// matrix carries its size: every routine takes `int` sizes, rows first. What counts cells, and so
/// grows with a product of sizes, is a std::ptrdiff_t: 46,341 rows squared are beyond an int, and
/// beyond the long of Windows.
///
/// A size of zero or less gives an empty block or table, which the free* routines release like any
/// other. An allocation that fails raises kOutOfMemory.

#include <cstddef>

/// A matrix that a routine reads, and one whose elements it writes.
template <class T>
using ConstMatrix = const T* const*;
template <class T>
using Matrix = T* const*;

void* dim1D(int size, std::ptrdiff_t n);                ///< n zeroed elements of `size` bytes
void** dim2D(int size, int rows, std::ptrdiff_t cols);  ///< table of zeroed rows
void*** dim3D(int size, int d1, int d2, int d3);        ///< d1 tables of d2 rows of d3 elements

char* dim1Dchar(int n);
char** dim2Dchar(int rows, int cols);
char*** dim3Dchar(int d1, int d2, int d3);
int* dim1Dint(int n);
int** dim2Dint(int rows, int cols);
int*** dim3Dint(int d1, int d2, int d3);
float* dim1Dfloat(int n);
float** dim2Dfloat(int rows, int cols);
float*** dim3Dfloat(int d1, int d2, int d3);
double* dim1Double(int n);
double** dim2Double(int rows, int cols);
double*** dim3Double(int d1, int d2, int d3);

/// Release what dim1D, dim2D and dim3D gave, with the leading sizes of the allocation. A null
/// pointer is left alone, and so is a null row.
void free1D(void* block);
void free2D(void* table, int rows);
void free3D(void* tables, int d1, int d2);

/// Exchanges entries i and j of a pointer table.
template <class T>
void swap(T** table, int i, int j) {
    T* kept = table[i];
    table[i] = table[j];
    table[j] = kept;
}

/// Releases and nulls the rows from `begin` up to `end` of a table, which may be null.
template <class T>
void ReleaseRows(T** table, int begin, int end) {
    for (int i = begin; table != nullptr && i < end; i++) {
        free1D(table[i]);
        table[i] = nullptr;
    }
}
