#include "mxlibRes/products.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <limits>
#include <random>
#include <type_traits>
#include <vector>

#include "mxlibRes/totals.h"
#include "support/matrices.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

enum Form { kPlainForm, kMarksSkipped, kSelects, kAdjusts };

/// Row `a` times column j of B over present pairs, in the order of k, each term in the wider of the
/// factors' types and the sum rounded to C at every step. `skipped` counts the pairs passed over,
/// `weights` adds up the factors of B that took part.
template <class A, class B, class C>
C PlainProductCell(int p, const A* a, const Table<B>& b, int j, int* skipped, C* weights) {
    using Wide = std::common_type_t<A, B>;
    C sum = 0;
    *skipped = 0;
    *weights = 0;
    for (int k = 0; k < p; k++) {
        if (a[k] == A(-999) || b[k][j] == B(-999)) {
            ++*skipped;
            continue;
        }
        sum = C(Wide(sum) + Wide(a[k]) * Wide(b[k][j]));
        *weights += C(b[k][j]);
    }
    return sum;
}

/// Holds a product against the sum of each cell, digit by digit, on tables with zeros, missing
/// values, infinities and numbers that vanish in single precision. A single-precision result of
/// mixed factors is missing where pairs were skipped and the sum is 0; only a 1 selects a column.
template <class A, class B, class C>
void HoldAgainstCells(Form form,
                      int (*product)(int, int, int, int, ConstMatrix<A>, ConstMatrix<B>, Matrix<C>),
                      int (*selecting)(int, int, int, int, ConstMatrix<A>, ConstMatrix<B>,
                                       Matrix<C>, const int*)) {
    std::mt19937 generator(20111);
    const double odd[] = {0.0, -0.0, -999.0, kNaN, HUGE_VAL, 1e-42};
    for (int t = 0; t < 400; t++) {
        const int n = 1 + t % 4, p = int(generator() % 13), q = int(generator() % 11);
        const double share = t % 3 * 0.2;
        auto a = RandomTable<A>(n, p, -1, 1, generator, share, A(odd[generator() % 6]));
        auto b = RandomTable<B>(p, q, -1, 1, generator, share, B(odd[generator() % 6]));
        if (t % 5 == 0) b = RandomTable<B>(p, q, B(-1e-44), B(1e-44), generator);
        std::vector<int> sel(q + 1);
        for (int& s : sel) s = int(generator() % 3);
        Table<C> c(n, q), expected(n, q);
        for (const int other : {p + 1, p})  // 1 tells of sizes that do not match
            ASSERT_EQ(form < kSelects ? product(n, p, other, q, a, b, c)
                                      : selecting(n, p, other, q, a, b, c, sel.data()),
                      other != p);
        for (int i = 0; i < n; i++)
            for (int j = 0; j < q; j++) {
                if (form >= kSelects && sel[j] != 1) continue;
                int skipped;
                C weights;
                C cell = PlainProductCell<A, B, C>(p, a[i], b, j, &skipped, &weights);
                if (form == kMarksSkipped && skipped > 0 && cell == 0) cell = C(-999);
                expected[i][j] = form == kAdjusts ? cell / weights : cell;
                EXPECT_EQ(c[i][j] == 0 && std::signbit(c[i][j]),
                          expected[i][j] == 0 && std::signbit(expected[i][j]));
            }
        ExpectSame(c, expected);
        if (::testing::Test::HasFailure()) return;
    }
}

TEST(Products, EveryFormKeepsTheDigitsOfTheSumsCellByCell) {
    HoldAgainstCells<float, float, float>(kPlainForm, MatrixProdMV, nullptr);
    HoldAgainstCells<double, double, double>(kPlainForm, MatrixProd, nullptr);
    HoldAgainstCells<double, float, double>(kPlainForm, MatrixProdMV, nullptr);
    HoldAgainstCells<double, float, float>(kMarksSkipped, MatrixProdMV, nullptr);
    HoldAgainstCells<float, float, float>(kSelects, nullptr, MatrixProdSelectMV);
    HoldAgainstCells<double, float, double>(kSelects, nullptr, MatrixProdSelectMV);
    HoldAgainstCells<float, float, float>(kAdjusts, nullptr, MatrixProdSelectMV_Adjust);
    HoldAgainstCells<double, float, double>(kAdjusts, nullptr, MatrixProdSelectMV_Adjust);
}

}  // namespace
