#include "mxlibRes/kernels.h"

#include <gtest/gtest.h>

#include <algorithm>
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

/// The bytes of registers that this processor can be told to use.
std::vector<int> Widths() {
    std::vector<int> widths;
    for (int bytes = 16; bytes <= BytesOfRegisters(); bytes *= 2) widths.push_back(bytes);
    return widths;
}

/// The sums, and the loops over subsets of traits, for every kind of processor; the last bit
/// counts: the results of a session must not depend on the processor.
TEST(Kernels, WideRegistersChangeNoDigit) {
    constexpr int kTiles = 5, kSide = kTiles * kTileSide, kMembers[] = {3, 0, 17};
    constexpr int kMembersOfRow[] = {4, 0, 3, 0, 1};
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
    for (const int bytes : Widths()) {
        const Kernels* k = &KernelsOfRegisters(bytes);
        std::vector<double> d(9000);
        std::vector<double*> cells;
        int at = 0;
        for (const int m : {0, 1, 7, 8, 31, 1000}) {
            d[at++] = k->sum(m, x.data());
            d[at++] = k->dot(m, x.data(), x.data() + 1000);
            std::copy_n(x.data(), m, &d[at]);
            d[at + m] = k->centre(m, 0.3, &d[at]);
            at += m + 1;
        }
        k->euclidean(40, 5, x.data(), 40 + kOverrun, &d[2000]);
        k->absolute(40, 5, x.data(), 40 + kOverrun, &d[3000]);
        k->weightedRows(5, kMembersOfRow, x.data(), x.data() + 5, 28, &d[4000]);
        for (int c = 0; c < 30; c++) cells.push_back(&d[4100 + 22 * c]);
        k->columnProducts(9, 22, chains.data(), 6, chains.data() + 9, cells.data());
        k->columnProductsTurned(9, 22, chains.data(), 6, chains.data() + 9, &cells[22]);
        results.push_back(d);
    }
    for (const auto& result : results) EXPECT_EQ(result, results[0]);
    results.clear();
    for (const int bytes : Widths()) {
        const SubsetKernels* k = &SubsetKernelsOfRegisters(bytes);
        std::vector<double> d(8000), sums(8);
        std::vector<float> s(kSide * kSide), means(kSide);
        k->products(7, 103, chains.data(), x.data(), chains.data() + 8, x.data() + 8, sums.data());
        bool missing[3];
        k->sums(3, 103, chains.data(), d.data() + 7900, missing);
        k->ofDouble.euclidean(29, 3, chains.data(), d.data());
        k->ofDouble.absolute(29, 3, chains.data(), d.data() + 500);
        k->ofFloat.euclidean(29, 3, rows.data(), d.data() + 1000);
        k->ofFloat.absolute(29, 3, rows.data(), d.data() + 1500);
        k->objectProducts(29, 3, rows.data(), d.data() + 2500);
        k->ofDouble.memberMeans(29, 3, kMembers, rows.data(), d.data() + 2000);
        k->ofFloat.memberMeans(29, 3, kMembers, rows.data(), means.data());
        k->ofFloat.unitSums(8, 2, 8, means.data());
        k->addLayer(kCells, x.data(), narrow.data() + kCells, d.data() + 3000);
        k->averages(kTiles, x.data(), narrow.data(), 3.0F, s.data());
        for (const auto* floats : {&s, &means}) d.insert(d.end(), floats->begin(), floats->end());
        d.insert(d.end(), sums.begin(), sums.end());
        results.push_back(d);
    }
    for (const auto& result : results) EXPECT_EQ(result, results[0]);
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
