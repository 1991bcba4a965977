#include "mxlibRes/rao.h"

#include <gtest/gtest.h>

#include <cmath>

#include "reference/plain_measures.h"
#include "support/matrices.h"

namespace {

TEST(Rao, SmallCommunitiesByHand) {
    Table<float> s{{1, 0.36F}, {0.9F, 1}};
    const double equal[] = {3, 3}, single[] = {0, 8}, empty[] = {0, 0};
    EXPECT_NEAR(RaoIndex(2, equal, s, false, false), 0.5 * 0.64, 1e-7);
    EXPECT_EQ(s[1][0], 0.36F);  // mirrored, and in the caller's matrix
    EXPECT_NEAR(RaoIndex(2, equal, s, false), 0.5 * 0.8, 1e-7);
    EXPECT_EQ(RaoIndex(2, single, s, false, true), 0);
    EXPECT_EQ(RaoIndex(2, empty, s, false, true), 0);
    EXPECT_EQ(RaoIndex(0, empty, s, false, true), 0);
    // without resemblances Gini-Simpson: 1 - 0.5^2 - 3 * (1/6)^2
    const double p[] = {3, 1, 1, 1};
    float* const* none = nullptr;
    EXPECT_NEAR(RaoIndex(4, p, none, false, false), 1 - 0.25 - 3 / 36.0, 1e-15);
    // the diagonal of dissimilarities counts
    Table<double> d{{0.5, 0.25}, {7, 0}};
    EXPECT_DOUBLE_EQ(RaoIndex(2, equal, d, true, false), 0.25 * 0.5 + 0.5 * 0.25);
    // a missing pair drops out, the proportions stay
    Table<float> gaps{{1, -999, 0.5F}, {0, 1, 0.25F}, {0, 0, 1}};
    const double q[] = {1, 1, 2}, missing[] = {1, -999, 3};
    EXPECT_DOUBLE_EQ(RaoIndex(3, q, gaps, false, false), 2 * (0.125 * 0.5 + 0.125 * 0.75));
    EXPECT_DOUBLE_EQ(RaoIndex(3, missing, gaps, false, false), 2 * (0.25 * 0.75 * 0.5));
    EXPECT_EQ(RaoIndex(3, missing, gaps, false), 0);  // this total takes -999 for a number
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
            }
    }
}

}  // namespace
