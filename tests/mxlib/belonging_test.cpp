#include "mxlib/belonging.h"

#include <gtest/gtest.h>

#include <cmath>

#include "reference/plain_measures.h"
#include "support/matrices.h"

namespace {

TEST(Groups, CountLabelsAndReorder) {
    const int labels[] = {7, 2, 7, 11, 2, 3}, mask[] = {1, 0, 1, 1, 2, 0};
    int count = 0;
    std::vector<int> distinct(6, -5);
    CountGroupsNew(6, labels, &count, distinct.data());
    EXPECT_EQ(distinct, (std::vector<int>{2, 3, 7, 11, -5, -5}));
    EXPECT_EQ(count, 4);
    CountGroupsSelect(6, labels, mask, &count, distinct.data());  // only a 1 selects
    EXPECT_EQ(count, 2);
    EXPECT_EQ(distinct, (std::vector<int>{7, 11, 7, 11, -5, -5}));
    CountGroups(0, labels, &count, distinct.data());
    EXPECT_EQ(count, 0);

    const int order[] = {3, 1, 2};
    std::vector<int> a = {10, 20, 30}, b = {1, 2, 3};
    std::vector<float> c = {0.5F, 1.5F, 2.5F}, d = {7, 8, 9};
    ReorderVectors(3, order, a.data(), b.data(), c.data(), d.data());
    EXPECT_EQ(a, (std::vector<int>{30, 10, 20}));
    EXPECT_EQ(b, (std::vector<int>{3, 1, 2}));
    EXPECT_EQ(c, (std::vector<float>{2.5F, 0.5F, 1.5F}));
    EXPECT_EQ(d, (std::vector<float>{9, 7, 8}));
    EXPECT_TRUE(HasQualitTrait(3, b.data()));
    EXPECT_FALSE(HasQualitTrait(1, b.data()));
}

// OTUs 0 and 2 are identical and of one type: that type has one member less in every mean. OTU 3 is
// identical to OTU 1 but of another type.
TEST(Belonging, FuzzyWorkedByHand) {
    const int partition[] = {5, 2, 5, 5};
    Table<double> s{{1, 0.4, 1, 0.2}, {0, 1, 0.4, 1}, {0, 0, 1, 0.2}, {0, 0, 0, 1}}, u(4, 2, 9);
    EXPECT_TRUE(FuzzyBelonging(4, 2, s, partition, u, false));
    ExpectNear(u, {{0.4, 0.6}, {1 / 1.7, 0.7 / 1.7}, {0.4, 0.6}, {1 / 1.6, 0.6 / 1.6}}, 1e-15);
    EXPECT_EQ(s[2][1], 0.4);  // mirrored
    // dissimilarities: an OTU equal (1 - 1) to all keeps a row of zeros
    Table<float> d{{1, 1, 1}, {0, 0.25F, 0.5F}, {0, 0, 0}}, v(3, 3);
    const int own[] = {1, 2, 3};
    FuzzyBelonging(3, 3, d, own, v, true);
    ExpectNear(v, {{0, 0, 0}, {0, 0.6F, 0.4F}, {0, 1 / 3.0F, 2 / 3.0F}}, 1e-7);
}

TEST(Belonging, SameDigitsAsThePlainDefinition) {
    std::mt19937 generator(23);
    const int n = 24;
    for (int K : {1, 3, 8}) {
        Table<float> s = RandomTable(n, n, 0.0F, 1.0F, generator, 0.3, 1.0F);
        std::vector<int> partition(n);
        for (int i = 0; i < n; i++) {
            partition[i] = 40 - 3 * (i < K ? i : int(generator() % K));
            s[i][i] = 1;
            for (int j = 0; j < i; j++) {
                if (generator() % 20 == 0) s[j][i] = -999;
                if (generator() % 20 == 0) s[j][i] = std::nextafter(1.0F, 0.0F);
                s[i][j] = s[j][i];
            }
        }
        for (bool dissimilarity : {false, true}) {
            Table<float> u(n, K), plain(n, K);
            FuzzyBelonging(n, K, s, partition.data(), u, dissimilarity);
            PlainFuzzyBelonging(n, K, s, partition.data(), plain, dissimilarity);
            ExpectSame(u, plain);
        }
    }
}

TEST(Pooling, TotalsAndPartition) {
    const Table<float> kept{{2, 0}, {4, 3}, {0, 5}};
    const int richness[] = {2, 2};
    const struct {
        int option;
        Table<float> data;
        std::vector<float> totals;
    } cases[] = {{1, kept, {6, 8}},
                 {3, {{3, 0}, {3, 4}, {0, 4}}, {6, 8}},
                 {2, {{-1, 0}, {1, -1}, {0, 1}}, {0, 0}}};
    for (const auto& c : cases) {
        Table<float> data = kept;
        std::vector<float> totals(2);
        DataPartitionL(3, 2, richness, c.option, data, totals.data());
        ExpectSame(data, c.data);
        EXPECT_EQ(totals, c.totals);
    }
}

TEST(Pooling, GroupMeans) {
    Table<float> a{{1, 2, 3}, {4, 5, 6}, {7, 8, 0}}, result(2, 2, 9);
    const int rows[] = {1, 1, 2}, cols[] = {2, 1, 2}, loose[] = {1, 0, 3};
    ConcentrateGroups(3, 3, a, result, 2, rows, 2, cols, 2);
    ExpectSame(result, {{3.5F, 3.5F}, {8, 3.5F}});
    ConcentrateGroups(3, 3, a, result, 2, rows, 2, cols, 1);  // grand total 36 against 18.5
    ExpectNear(result, {{126 / 18.5F, 126 / 18.5F}, {288 / 18.5F, 126 / 18.5F}}, 1e-5);
    ConcentrateGroups(3, 3, a, result, 2, loose, 2, cols, 2);  // labels that are no group
    EXPECT_EQ(result[0][0], 2);
    EXPECT_TRUE(std::isnan(result[1][0]));
}

}  // namespace
