#include "mxlibRes/kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

namespace {

std::vector<double> RandomNumbers(int n, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::vector<double> x(static_cast<size_t>(n));
    for (double& value : x) value = normal(random);
    return x;
}

/// Sums are compared to the last bit: the results of a session must not depend on the processor.
TEST(Kernels, WideRegistersChangeNoDigit) {
    const Kernels& wide = KernelsOfProcessor();
    const Kernels& plain = KernelsOfAnyProcessor();
    for (const int m : {0, 1, 7, 8, 31, 1000}) {
        const std::vector<double> x = RandomNumbers(m, 1);
        const std::vector<double> y = RandomNumbers(m, 2);
        EXPECT_EQ(wide.sum(m, x.data()), plain.sum(m, x.data()));
        EXPECT_EQ(wide.dot(m, x.data(), y.data()), plain.dot(m, x.data(), y.data()));
        std::vector<double> centred = x;
        std::vector<double> centredToo = x;
        EXPECT_EQ(wide.centre(m, 0.3, centred.data()), plain.centre(m, 0.3, centredToo.data()));
        EXPECT_EQ(centred, centredToo);
    }
}

/// Distances and weighted rows have the digits of the plain loops too.
TEST(Kernels, ColumnsAndWeightedRowsAreSummedInTheirOrder) {
    constexpr int kColumns = 5;
    const int at[kColumns] = {4, 0, 3, 0, 1};
    const double weights[kColumns] = {0.1, 2.5, -1.5, 0.7, 3.1};
    for (const Kernels* kernels : {&KernelsOfProcessor(), &KernelsOfAnyProcessor()})
        for (const int n : {2, 3, 17, 40}) {
            const int stride = n + kOverrun;
            const std::vector<double> x = RandomNumbers(kColumns * stride, 3);
            std::vector<double> euclidean(static_cast<size_t>(n * (n - 1) / 2 + kOverrun));
            std::vector<double> absolute = euclidean;
            kernels->euclidean(n, kColumns, x.data(), stride, euclidean.data());
            kernels->absolute(n, kColumns, x.data(), stride, absolute.data());
            size_t cell = 0;
            for (int i = 0; i < n; i++)
                for (int j = i + 1; j < n; j++, cell++) {
                    double squares = 0.0, sum = 0.0;
                    for (int t = 0; t < kColumns; t++) {
                        const double d = x[size_t(t * stride + i)] - x[size_t(t * stride + j)];
                        squares += d * d;
                        sum += std::fabs(d);
                    }
                    EXPECT_EQ(euclidean[cell], std::sqrt(squares));
                    EXPECT_EQ(absolute[cell], sum);
                }
            constexpr int kWidth = 28;
            const std::vector<double> table = RandomNumbers(kColumns * kWidth, 4);
            double row[kWidth];
            kernels->weightedRows(kColumns, at, weights, table.data(), kWidth, row);
            for (int c = 0; c < kWidth; c++) {
                double sum = 0.0;
                for (int e = 0; e < kColumns; e++)
                    sum += weights[e] * table[size_t(at[e] * kWidth + c)];
                EXPECT_EQ(row[c], sum);
            }
        }
}

TEST(Kernels, ColumnProductsAreSummedInTheirOrder) {
    constexpr int kRows = 9;
    for (const Kernels* kernels : {&KernelsOfProcessor(), &KernelsOfAnyProcessor()})
        for (const int p : {1, 4, 15, 22}) {
            constexpr int kNarrow = 6;
            std::vector<std::vector<double>> values;
            std::vector<double*> a, b, c, turned;
            for (unsigned i = 0; i < kRows; i++) {
                a.push_back(values.emplace_back(RandomNumbers(p, 2 * i)).data());
                b.push_back(values.emplace_back(RandomNumbers(kNarrow, 2 * i + 1)).data());
            }
            for (int i = 0; i < p; i++)
                c.push_back(values.emplace_back(RandomNumbers(kNarrow, 0)).data());
            for (int j = 0; j < kNarrow; j++)
                turned.push_back(values.emplace_back(RandomNumbers(p, 0)).data());
            kernels->columnProducts(kRows, p, a.data(), kNarrow, b.data(), c.data());
            kernels->columnProductsTurned(kRows, p, a.data(), kNarrow, b.data(), turned.data());
            for (int i = 0; i < p; i++)
                for (int j = 0; j < kNarrow; j++) {
                    double sum = 0.0;
                    for (int k = 0; k < kRows; k++) sum += a[k][i] * b[k][j];
                    EXPECT_EQ(c[i][j], sum);
                    EXPECT_EQ(turned[j][i], sum);
                }
        }
}

}  // namespace
