// Measures by their shorter routes against the plain definitions, to the last digit.

#include <gtest/gtest.h>

#include <cmath>

#include "mxlib/belonging.h"
#include "mxlib/resemblance_lib.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/rao.h"
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

// OTUs without performance are left out of the sum only where they add exactly nothing.
TEST(Rao, ShortSumHasTheDigitsOfTheWholeSum) {
    std::mt19937 generator(3);
    const int n = 30;
    for (const float odd : {0.5F, -999.0F, 1.5F, -0.5F, HUGE_VALF}) {
        Table<float> s = RandomTable(n, n, 0.0F, 1.0F, generator, 0.05, -999.0F);
        s[4][20] = odd;
        for (int i = 0; i < n; i++)
            for (int j = 0; j < i; j++) s[i][j] = s[j][i];
        Table<double> w = RandomTable(6, n, 0.0, 40.0, generator, 0.6, 0.0);
        w[1][2] = -999;
        w[3][20] = 0;
        for (int i = 0; i < n; i++) w[5][i] = 0;
        for (bool dissimilarity : {false, true})
            for (bool root : {false, true}) {
                Table<double> plain(1, 6), single(1, 6), together(1, 6);
                int otus[n];
                double proportions[n];
                for (int c = 0; c < 6; c++) {
                    plain[0][c] = PlainRao<float>(n, w[c], s, dissimilarity, root);
                    single[0][c] = RaoIndex(n, w[c], s, dissimilarity, root);
                }
                RaoIndexRows(6, n, w, s, dissimilarity, root, otus, proportions, together[0]);
                ExpectSame(single, plain);
                ExpectSame(together, plain);
                for (int c = 0; c < 6; c++) single[0][c] = RaoIndex(n, w[c], s, dissimilarity);
                RaoIndexRows(6, n, w, s, dissimilarity, otus, proportions, together[0]);
                ExpectSame(together, single);
            }
    }
}

// Rows of complete data are compared several at once: every place of the last, shorter round must
// be right.
TEST(Distances, EveryPairIsReachedAndNaNFlowsOn) {
    std::mt19937 generator(5);
    for (int t = 0; t < 24; t++) {
        const int n = 1 + t / 2;
        Table<double> a = RandomTable(n, 6, 0.0, 9.0, generator, t % 2 * 0.2, -999.0);
        Table<double> d(n, n), plain(n, n);
        if (n == 10) a[0][5] = std::nan("");
        EucliDistMV(n, 6, a, d);
        for (int i = 0; i < n; i++)
            for (int j = i + 1; j < n; j++) {
                for (int k = 0; k < 6; k++)
                    if (a[i][k] != -999 && a[j][k] != -999)
                        plain[i][j] += (a[i][k] - a[j][k]) * (a[i][k] - a[j][k]);
                plain[i][j] = std::sqrt(plain[i][j]);
            }
        ExpectSame(d, plain);
    }
}

TEST(Resemblance, OptionsReachTheirMeasures) {
    Table<double> a{{3, 4}, {6, 0}, {6, 8}};
    const int measures[] = {1, 0, 0, 1, 0, 17, 3, 0, 2, 0, 18, 1};
    const auto distance = [](int option) {
        return option < 8 ? 5.0 : option < 10 ? 7.0 : std::sqrt(0.8);
    };
    for (int option = 0; option <= 11; option++) {
        Table<double> d(3, 3, 7);
        NominalReseNonHier(3, 2, a, d, option);
        EXPECT_NEAR(d[0][1], option < 6 || option > 10 ? 7.0 : distance(option), 1e-15) << option;
        EXPECT_EQ(d[1][0], 7.0) << "the lower half stays";
        const int measure = TranslateReseOpt_TESSEL_POLYAX(option);
        EXPECT_EQ(measure, measures[option]);
        if (measure == 1 || measure == 17) continue;
        Table<double> whole(3, 3, 7);
        EXPECT_EQ(ResemblanceLib(3, 2, a, whole, 1, measure, 0, nullptr, 0, 0, 0, false), 1);
        EXPECT_NEAR(whole[1][0], measure == 0 ? 7.0 : distance(option), 1e-15);
        EXPECT_EQ(whole[0][1], whole[1][0]);
    }
}

TEST(Beals, LeavingOutZerosChangesNoDigit) {
    std::mt19937 generator(11);
    for (const double other : {0.0, -999.0}) {
        Table<double> w = RandomTable(9, 14, 0.0, 5.0, generator, 0.7, 0.0);
        w[2][3] = other;
        w[7][0] = other;
        for (int option : {0, 1, 2})
            for (bool flag : {false, true}) {
                Table<double> m(14, 14), plainM(14, 14), z(9, 14), plainZ(9, 14);
                ConditionalProb(9, 14, w, m, option, flag);
                PlainConditionalProb(9, 14, w, plainM, option, flag);
                ExpectSame(m, plainM);
                BealsSmoothing(9, 14, w, w, z, false, option, flag);
                PlainBealsWithoutTarget(9, 14, w, w, plainZ, option, flag);
                ExpectSame(z, plainZ);
            }
    }
    // A conditional value of 1 has infinite odds (here the square of OTU 0 underflows): they also
    // reach the community without that OTU, as 0 times infinity.
    Table<double> performances{{0, 2, 5}, {6, 1, 3}}, joint{{1e-170, 1e10, 0}, {0, 2, 3}};
    Table<double> z(2, 3), plain(2, 3);
    BealsSmoothing(2, 3, performances, joint, z, false, 2, true);
    PlainBealsWithoutTarget(2, 3, performances, joint, plain, 2, true);
    ExpectSame(z, plain);
    EXPECT_TRUE(std::isnan(z[0][1]));
    EXPECT_TRUE(std::isinf(z[1][1]));
}

}  // namespace
