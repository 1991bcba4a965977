#include "mxlibDim/dim.h"

#include <cstdlib>

#include "mxlibDim/failure.h"

void* dim1D(int size, std::ptrdiff_t n) {
    const std::size_t count = n > 0 ? static_cast<std::size_t>(n) : 1;
    void* block = std::calloc(count, static_cast<std::size_t>(size));
    if (block == nullptr) RaiseError(kOutOfMemory);
    return block;
}

void** dim2D(int size, int rows, std::ptrdiff_t cols) {
    void** table = static_cast<void**>(dim1D(sizeof(void*), rows));
    try {
        for (int i = 0; i < rows; i++) table[i] = dim1D(size, cols);
    } catch (...) {
        free2D(table, rows);
        throw;
    }
    return table;
}

void*** dim3D(int size, int d1, int d2, int d3) {
    void*** tables = static_cast<void***>(dim1D(sizeof(void**), d1));
    try {
        for (int i = 0; i < d1; i++) tables[i] = dim2D(size, d2, d3);
    } catch (...) {
        for (int i = 0; i < d1; i++)
            if (tables[i] != nullptr) free2D(tables[i], d2);
        free1D(tables);
        throw;
    }
    return tables;
}

namespace {

template <class T>
T* Block(int n) {
    return static_cast<T*>(dim1D(sizeof(T), n));
}

template <class T>
T** Table(int rows, int cols) {
    return reinterpret_cast<T**>(dim2D(sizeof(T), rows, cols));
}

template <class T>
T*** Tables(int d1, int d2, int d3) {
    return reinterpret_cast<T***>(dim3D(sizeof(T), d1, d2, d3));
}

}  // namespace

char* dim1Dchar(int n) {
    return Block<char>(n);
}
char** dim2Dchar(int rows, int cols) {
    return Table<char>(rows, cols);
}
char*** dim3Dchar(int d1, int d2, int d3) {
    return Tables<char>(d1, d2, d3);
}
int* dim1Dint(int n) {
    return Block<int>(n);
}
int** dim2Dint(int rows, int cols) {
    return Table<int>(rows, cols);
}
int*** dim3Dint(int d1, int d2, int d3) {
    return Tables<int>(d1, d2, d3);
}
float* dim1Dfloat(int n) {
    return Block<float>(n);
}
float** dim2Dfloat(int rows, int cols) {
    return Table<float>(rows, cols);
}
float*** dim3Dfloat(int d1, int d2, int d3) {
    return Tables<float>(d1, d2, d3);
}
double* dim1Double(int n) {
    return Block<double>(n);
}
double** dim2Double(int rows, int cols) {
    return Table<double>(rows, cols);
}
double*** dim3Double(int d1, int d2, int d3) {
    return Tables<double>(d1, d2, d3);
}

void free1D(void* block) {
    std::free(block);
}

void free2D(void* table, int rows) {
    if (table == nullptr) return;
    void** entries = static_cast<void**>(table);
    for (int i = 0; i < rows; i++) std::free(entries[i]);
    std::free(table);
}

void free3D(void* tables, int d1, int d2) {
    if (tables == nullptr) return;
    void** entries = static_cast<void**>(tables);
    for (int i = 0; i < d1; i++) free2D(entries[i], d2);
    std::free(tables);
}
