#include "mxlibRes/kernels.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "mxlibRes/mantel_sides.h"
#include "mxlibRes/subset_kernels.h"

namespace {

std::vector<double> RandomNumbers(int n, unsigned seed) {
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::vector<double> x(static_cast<size_t>(n));
    for (double& value : x) value = normal(random);
    return x;
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

/// The sums, and the loops over subsets of traits, for every kind of processor; the last bit
/// counts: the results of a session must not depend on the processor.
TEST(Kernels, WideRegistersChangeNoDigit) {
    constexpr int kTiles = 5, kSide = kTiles * kTileSide, kMembers[] = {3, 0, 17};
    constexpr int kCells = kTiles * (kTiles + 1) / 2 * kTileCells;
    const std::vector<double> x = RandomNumbers(4 * kCells, 1);
    const std::vector<float> narrow(x.begin(), x.end());
    std::vector<const double*> chains;
    std::vector<const float*> rows;
    for (int c = 0; c < kSide; c++) {
        chains.push_back(x.data() + 31 * c);
        rows.push_back(narrow.data() + 31 * c);
    }
    std::vector<std::vector<double>> results;
    for (const Kernels* k : {&KernelsOfProcessor(), &KernelsOfAnyProcessor()}) {
        results.emplace_back();
        for (const int m : {0, 1, 7, 8, 31, 1000}) {
            std::vector<double> centred(x.begin(), x.begin() + m);
            for (const double sum : {k->sum(m, x.data()), k->dot(m, x.data(), x.data() + 1000),
                                     k->centre(m, 0.3, centred.data())})
                results.back().push_back(sum);
            results.back().insert(results.back().end(), centred.begin(), centred.end());
        }
    }
    EXPECT_EQ(results[0], results[1]);
    results.clear();
    for (const SubsetKernels* k : {&SubsetKernelsOfProcessor(), &SubsetKernelsOfAnyProcessor()}) {
        std::vector<double> d(8000), sums(8);
        std::vector<float> s(kSide * kSide), means(kSide);
        k->chains(7, 103, chains.data(), chains.data() + 8, sums.data());
        k->ofDouble.euclidean(29, 3, chains.data(), d.data());
        k->ofDouble.absolute(29, 3, chains.data(), d.data() + 500);
        k->ofFloat.euclidean(29, 3, rows.data(), d.data() + 1000);
        k->ofFloat.absolute(29, 3, rows.data(), d.data() + 1500);
        k->products(29, 3, rows.data(), d.data() + 2500);
        k->ofDouble.memberMeans(29, 3, kMembers, rows.data(), d.data() + 2000);
        k->ofFloat.memberMeans(29, 3, kMembers, rows.data(), means.data());
        k->ofFloat.unitSums(8, 2, 8, means.data());
        k->addLayer(kCells, x.data(), narrow.data() + kCells, d.data() + 3000);
        k->averages(kTiles, x.data(), narrow.data(), 3.0F, s.data());
        for (const auto* floats : {&s, &means}) d.insert(d.end(), floats->begin(), floats->end());
        d.insert(d.end(), sums.begin(), sums.end());
        results.push_back(d);
    }
    EXPECT_EQ(results[0], results[1]);
}

// 46,341 objects squared are beyond an int: rooms for their pairs came out empty.
TEST(Sizes, OfPairsGoBeyondAnInt) {
    EXPECT_EQ(CountCellsAbove(46342), 1073767311);
    EXPECT_EQ(CountCellsAbove(100000), 4999950000);
    constexpr long kMany = 3L << 30;
    const ScopedVector<char> vector(kMany);
    const ScopedMatrix<char> matrix(1, kMany);
    vector[kMany - 1] = matrix[0][kMany - 1] = 7;
    EXPECT_EQ(vector[kMany - 1] + vector[kMany / 2] + matrix[0][kMany / 2], 7);
}

}  // namespace
