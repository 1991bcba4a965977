// What the search of trait subsets computes for every subset has, bit for bit, the digits of the
// plain routines of the library.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "TSLCHORD/ranked_list.h"
#include "TSLGLOB/dataset.h"
#include "TSLRESE/gower_partial.h"
#include "TSLRESE/similarity_layers.h"
#include "mxlib/belonging.h"
#include "mxlib/fuzzy_types.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/distance_cells.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/mantel_sides.h"
#include "mxlibRes/products.h"
#include "mxlibRes/ranks.h"
#include "mxlibRes/sparse_rows.h"
#include "mxlibRes/subset_kernels.h"
#include "mxlibRes/totals.h"
#include "support/matrices.h"

namespace {

constexpr int kSizes[] = {1, 2, 3, 8, 9, 31, 70};
constexpr double kShares[] = {0.0, 0.1};  // of missing values
const double kInfinity = std::numeric_limits<double>::infinity();

template <class T>
Table<T> RandomCells(int n, int p, std::mt19937& random, double share, T other) {
    Table<T> a = RandomTable<T>(n, p, T(-3), T(3), random, share, other);
    for (int i = 0; i + 1 < n; i += 3)  // ties
        for (int k = 0; k < p; k++) a[i + 1][k] = a[i][k];
    return a;
}

template <class T>
void ExpectSameDistances(int n, int p, std::mt19937& random, double share, T other) {
    const Table<T> a = RandomCells<T>(n, p, random, share, other);
    ColumnTable<T> columns = MakeColumnTable<T>(n, p), room = MakeColumnTable<T>(n, p);
    for (int i = 0; i < n; i++)
        for (int k = 0; k < p; k++) columns.columns[k][i] = a[i][k];
    for (const int option : {5, 6, 7, 8, 9, 10}) {
        Table<double> d(n, n, 7.0), cells(1, CountCellsAbove(n) + kOverrun, 7.0), plain = cells;
        NominalReseNonHier(n, p, Table<T>(a), d, option);
        CellsAbove<double>(n, d, plain[0]);
        DistanceCells<T>(n, p, columns.columns, option, &room, cells[0]);
        for (int c = CountCellsAbove(n); c < cells.cols(); c++) cells[0][c] = 7.0;
        ExpectSame(cells, plain, "option " + std::to_string(option) + " n " + std::to_string(n));
    }
}

TEST(SubsetPrimitives, DistanceCells) {
    std::mt19937 random(1);
    for (const int n : kSizes)
        for (const int p : {0, 1, 3, 8})
            for (const double share : {0.0, 0.1, 0.9}) {
                ExpectSameDistances<float>(n, p, random, share, -999.0F);
                ExpectSameDistances<double>(n, p, random, share, -999.0);
                ExpectSameDistances<double>(n, p, random, share, 0.0);
                ExpectSameDistances<double>(n, p, random, share / 4, kInfinity);
            }
}

TEST(SubsetPrimitives, MantelSides) {
    constexpr int kSides = 10, kMoving = 7;
    std::mt19937 random(2);
    for (const int n : kSizes)
        for (const double share : kShares) {
            std::vector<Table<double>> d;
            std::vector<MantelSide> sides;
            for (int s = 0; s < kSides; s++) {
                d.push_back(RandomCells<double>(n, n, random, s % 3 == 1 ? share : 0.0, -999.0));
                if (s == 4) d[4] = Table<double>(n, n, 0.1);  // does not vary
                sides.push_back(MakeMantelSide(n));
                CellsAbove<double>(n, d[s], sides[s].cells);
                if (s >= kMoving) CompleteMantelSide(&sides[s]);
            }
            for (int nMoving = 1; nMoving <= kMoving; nMoving++) {
                std::vector<MantelSide*> moving;
                std::vector<MantelPair> pairs;
                std::vector<int> a, b;
                for (int s = 0; s < nMoving; s++) {
                    moving.push_back(&sides[s]);
                    for (const int other : {kMoving, kMoving + 1, (s + 1) % nMoving}) {
                        a.push_back(s);
                        b.push_back(other);
                        pairs.push_back({&sides[s], &sides[other]});
                    }
                }
                std::vector<double> r(pairs.size());
                CorrelateMantelSides(nMoving, moving.data(), int(pairs.size()), pairs.data(),
                                     r.data());
                for (size_t i = 0; i < r.size(); i++)
                    EXPECT_EQ(r[i], MatrixCorr(n, d[a[i]].operator double**(),
                                               d[b[i]].operator double**()))
                        << n << " objects, pair " << i << " of " << nMoving << " moving sides";
            }
        }
}

/// Data of OTUs with identical ones, ranked, binary and nominal traits.
constexpr int kTypes[] = {3, 1, 2, 3, 4, 1};
constexpr int kTraits = 6;
Table<float> TraitData(int n, double share, std::mt19937& random) {
    Table<float> data = RandomTable<float>(n, kTraits, 0.0F, 6.0F, random, share, -999.0F);
    for (int i = 0; i < n; i++)
        for (int k = 0; k < kTraits; k++)
            if (data[i][k] != -999.0F)
                data[i][k] = kTypes[k] == 1 ? float(data[i][k] > 3.0F) : std::floor(data[i][k]);
    return data;
}

template <class U>
void ExpectSameBelonging(int n, int K, const Table<float>& s, const int* partition,
                         FuzzyTypes<U>* types) {
    Table<float> raw = s;
    Table<U> u(n, K, 5), plain(n, K, 6);
    FuzzyBelonging(n, K, raw, partition, plain, false);
    BelongingToTypes<U>(s.rows() == 0 ? nullptr : raw.operator float**(), types, u);
    ExpectSame(u, plain, std::to_string(n) + " OTUs in types " + std::to_string(K));
}

/// All subsets of all sizes in the order of the search, then some out of order.
TEST(SubsetPrimitives, SimilarityLayersAndFuzzyTypes) {
    std::mt19937 random(3);
    const float ranges[kTraits] = {0, 0, 0, 4, 0, 0};
    const float weights[kTraits] = {1, 1, 0.5F, 1, 1, 1};
    std::vector<std::vector<int>> subsets;
    for (int size = 1; size <= kTraits; size++)
        for (int set = (1 << kTraits) - 1; set >= 0; set--) {
            std::vector<int> members;
            for (int k = 0; k < kTraits; k++)
                if ((set >> (kTraits - 1 - k)) & 1) members.push_back(k);
            if (int(members.size()) == size) subsets.push_back(members);
        }
    for (const auto& odd : {std::vector<int>{}, {0, 2, 3}, {5}, {0, 2, 3, 4}, {0, 2}, {1, 2, 3}})
        subsets.push_back(odd);
    for (const int n : kSizes)
        for (const double share : {0.0, 0.05, 0.5}) {
            Table<float> data = TraitData(n, share, random);
            if (share == 0.05)
                for (int i = 0; i < n; i++) data[i][0] = float(i);  // begins complete
            ScopedCube<float> cube(n, n, kTraits);
            gower_similarityPartial(kTraits, data, n, cube, kTypes, ranges, weights);
            const SimilarityLayers layers =
                MakeSimilarityLayers(kTraits, data, n, n, kTypes, ranges, weights);
            LayerAverages averages = MakeLayerAverages(layers, kTraits);
            std::vector<int> partition;
            for (int i = 0; i < n; i++) partition.push_back(int(random() % 3) * 2 + 1);
            partition[0] = 1;
            FuzzyTypes<float> types = MakeFuzzyTypes<float>(n, 3, partition.data());
            FuzzyTypes<double> wide = MakeFuzzyTypes<double>(n, 2, partition.data());
            FuzzyTypes<float> each = MakeFuzzyTypes<float>(n, n, nullptr);
            for (const auto& members : subsets) {
                int include[kTraits] = {};
                for (const int k : members) include[k] = 1;
                Table<float> s(n, n), fast(n, n);
                gower_similarityAverage(kTraits, n, cube, s, include);
                UpperToLowerMatrix(n, s);
                float* const* rows = AverageLayers(int(members.size()), members.data(), &averages);
                for (int i = 0; i < n; i++) std::copy_n(rows[i], n, fast[i]);
                ExpectSame(fast, s, "similarities of " + std::to_string(n));
                ExpectSameBelonging(n, 3, s, partition.data(), &types);
                ExpectSameBelonging(n, 2, s, partition.data(), &wide);
                ExpectSameBelonging(n, n, s, nullptr, &each);
            }
        }
}

template <class T>
void ExpectSameProduct(int n, int m, int K, double share, double oddW, double oddU,
                       std::mt19937& random) {
    Table<T> w = RandomTable<T>(n, m, T(0), T(9), random, 0.6, T(0));
    Table<float> u = RandomTable<float>(m, K, -1.0F, 1.0F, random, share, float(oddU));
    w[0][m / 2] = T(oddW);
    w[n - 1][0] = T(-999);
    SparseRows<T> rows = MakeSparseRows<T>(n, m, K, w.operator T**());
    ColumnTable<T> columns = MakeColumnTable<T>(n, K);
    for (int time = 0; time < 2; time++) {
        Table<T> x(n, K), plain(n, K), turned(n, K);
        MatrixProdMV(n, m, m, K, w.operator T**(), u.operator float**(), plain.operator T**());
        T* const* fast = SparseProduct<T>(u.operator float**(), &rows, columns.columns);
        for (int i = 0; i < n; i++)
            for (int g = 0; g < K; g++) {
                x[i][g] = fast[i][g];
                turned[i][g] = columns.columns[g][i];
            }
        ExpectSame(x, plain, "product");
        ExpectSame(turned, plain, "product by columns");
        u[m - 1][K - 1] = 0.5F;
    }
}

TEST(SubsetPrimitives, SparseProducts) {
    std::mt19937 random(4);
    for (const int n : kSizes)
        for (const int K : {1, 2, 8, 13, 45})
            for (const double share : kShares)
                for (const double oddU : {-999.0, 0.0, -0.0, kInfinity, std::nan("")})
                    for (const double oddW : {0.0, kInfinity}) {
                        ExpectSameProduct<float>(n, n + 4, K, share, oddW, oddU, random);
                        ExpectSameProduct<double>(n, n + 4, K, share, oddW, oddU, random);
                    }
}

TEST(SubsetPrimitives, RankedListIsThatOfSortingAllPlaces) {
    std::mt19937 random(5);
    nch = 1;
    for (int distinct = 20; distinct < 1000000; distinct += distinct / 2) {
        RankedList list;
        std::vector<double> values(list.places, 0.0), groups = values, order = values;
        for (int subset = 1; subset <= 400; subset++) {
            const double value = 1.0 + double(random() % unsigned(distinct));
            EnterRankedList({1, &nch, &nch}, value, subset, Keeping::bySign, &list);
            if (value > values[0]) {
                values[0] = value;
                groups[0] = subset;
                RankVector(list.places, values.data(), order.data());
                const std::vector<double> from = values, ofGroups = groups;
                for (int place = 0; place < list.places; place++) {
                    values[place] = from[size_t(order[place]) - 1];
                    groups[place] = ofGroups[size_t(order[place]) - 1];
                }
            }
            const int* kept = Kept(list).groups;
            ASSERT_TRUE(std::equal(groups.begin(), groups.end(), kept))
                << distinct << " " << subset;
        }
    }
}

}  // namespace
