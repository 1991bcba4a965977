#pragma once
/// \file
/// Scope guards over dim* and free*: what a routine acquires for itself is released on every
/// way out of it, errors included. A guard converts to the pointer that the routines take, and
/// can be moved, so that a routine may return a record of guards.

#include <utility>

#include "mxlibDim/dim.h"

/// n zeroed elements, owned by the scope.
template <class T>
class ScopedVector {
  public:
    explicit ScopedVector(std::ptrdiff_t n) : data_(static_cast<T*>(dim1D(sizeof(T), n))) {}
    ~ScopedVector() { free1D(data_); }
    ScopedVector(ScopedVector&& other) noexcept : data_(std::exchange(other.data_, nullptr)) {}
    ScopedVector(const ScopedVector&) = delete;
    ScopedVector& operator=(const ScopedVector&) = delete;
    operator T*() const { return data_; }
    T* get() const { return data_; }
    T* release() { return std::exchange(data_, nullptr); }  ///< to a new owner

  private:
    T* data_;
};

/// A zeroed matrix of row pointers, owned by the scope.
template <class T>
class ScopedMatrix {
  public:
    ScopedMatrix(int rows, std::ptrdiff_t cols)
        : rows_(rows), data_(reinterpret_cast<T**>(dim2D(sizeof(T), rows, cols))) {}
    ~ScopedMatrix() { free2D(data_, rows_); }
    ScopedMatrix(ScopedMatrix&& other) noexcept
        : rows_(other.rows_), data_(std::exchange(other.data_, nullptr)) {}
    ScopedMatrix(const ScopedMatrix&) = delete;
    ScopedMatrix& operator=(const ScopedMatrix&) = delete;
    operator T**() const { return data_; }
    T** get() const { return data_; }
    T** release() { return std::exchange(data_, nullptr); }  ///< to a new owner

  private:
    int rows_;
    T** data_;
};

/// A zeroed cube, owned by the scope.
template <class T>
class ScopedCube {
  public:
    ScopedCube(int d1, int d2, int d3)
        : d1_(d1), d2_(d2), data_(reinterpret_cast<T***>(dim3D(sizeof(T), d1, d2, d3))) {}
    ~ScopedCube() { free3D(data_, d1_, d2_); }
    ScopedCube(ScopedCube&& other) noexcept
        : d1_(other.d1_), d2_(other.d2_), data_(std::exchange(other.data_, nullptr)) {}
    ScopedCube(const ScopedCube&) = delete;
    ScopedCube& operator=(const ScopedCube&) = delete;
    operator T***() const { return data_; }
    T*** get() const { return data_; }

  private:
    int d1_;
    int d2_;
    T*** data_;
};
