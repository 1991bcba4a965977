#pragma once
/// \file
/// Matrices for tests: written out row by row, passed to the routines as row pointers.

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

#include "mxlibDim/dim.h"

template <class T>
class Table {
  public:
    Table(int rows, int cols, T value = T()) : cells_(rows, std::vector<T>(cols, value)) {
        Point();
    }
    Table(std::initializer_list<std::vector<T>> rows) : cells_(rows) { Point(); }
    Table(const Table& other) : cells_(other.cells_) { Point(); }
    Table& operator=(const Table& other) {
        cells_ = other.cells_;
        Point();
        return *this;
    }
    operator T**() { return pointers_.data(); }
    T* operator[](int i) { return pointers_[i]; }
    const T* operator[](int i) const { return cells_[i].data(); }
    int rows() const { return int(cells_.size()); }
    int cols() const { return cells_.empty() ? 0 : int(cells_[0].size()); }

  private:
    void Point() {
        pointers_.clear();
        for (auto& row : cells_) pointers_.push_back(row.data());
    }
    std::vector<std::vector<T>> cells_;
    std::vector<T*> pointers_;
};

/// Rows x cols numbers between low and high, a share of them replaced by `other`.
template <class T>
Table<T> RandomTable(int rows, int cols, T low, T high, std::mt19937& generator, double share = 0.0,
                     T other = T()) {
    std::uniform_real_distribution<double> number(low, high), chance(0.0, 1.0);
    Table<T> table(rows, cols);
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++) {
            const T x = T(number(generator));
            table[i][j] = chance(generator) < share ? other : x;
        }
    return table;
}

/// Equal to the last bit; NaN equals NaN.
template <class T>
void ExpectSame(const Table<T>& a, const Table<T>& b, const std::string& what = "") {
    ASSERT_EQ(a.rows(), b.rows()) << what;
    ASSERT_EQ(a.cols(), b.cols()) << what;
    for (int i = 0; i < a.rows(); i++)
        for (int j = 0; j < a.cols(); j++)
            EXPECT_TRUE(a[i][j] == b[i][j] || (std::isnan(a[i][j]) && std::isnan(b[i][j])))
                << what << " [" << i << "][" << j << "] " << a[i][j] << " against " << b[i][j];
}

template <class T>
void ExpectNear(const Table<T>& a, const Table<T>& b, double tolerance,
                const std::string& what = "") {
    ASSERT_EQ(a.rows(), b.rows()) << what;
    ASSERT_EQ(a.cols(), b.cols()) << what;
    for (int i = 0; i < a.rows(); i++)
        for (int j = 0; j < a.cols(); j++)
            EXPECT_NEAR(a[i][j], b[i][j], tolerance) << what << " [" << i << "][" << j << "]";
}
