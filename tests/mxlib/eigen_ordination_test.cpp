#include <gsl/gsl_errno.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>

#include "mxlib/eigen.h"
#include "mxlib/gsl_guards.h"
#include "mxlib/ordination.h"
#include "mxlib/singular_values.h"
#include "support/matrices.h"

namespace {

const double kNaN = std::numeric_limits<double>::quiet_NaN();

class Decompositions : public testing::Test {
  protected:
    void SetUp() override { gsl_set_error_handler_off(); }
};
using Eigenanalysis = Decompositions;
using SingularValues = Decompositions;
using Ordination = Decompositions;

/// A v = e v for every pair and v v' = 1.
void ExpectEigenpairs(Table<double> a, Table<double> v, const double* e, double tolerance) {
    const int n = a.rows();
    for (int k = 0; k < n; k++)
        for (int i = 0; i < n; i++) {
            double av = 0.0, vv = 0.0;
            for (int j = 0; j < n; j++) {
                av += a[i][j] * v[k][j];
                vv += v[k][j] * v[i][j];
            }
            EXPECT_NEAR(av, e[k] * v[k][i], tolerance);
            EXPECT_NEAR(vv, i == k ? 1.0 : 0.0, 1e-13);
        }
}

TEST_F(Eigenanalysis, KnownSpectraStandDescendingWithVectorsInRows) {
    Table<double> a = {{2, -1, 0}, {-1, 2, -1}, {0, -1, 2}};
    const Table<double> before = a;
    Table<double> v(3, 3);
    double e[3];
    EXPECT_EQ(EigenHouseholderQL_GSL_D(3, a, v, e), 1);
    EXPECT_NEAR(e[0], 2 + std::sqrt(2.0), 1e-14);
    EXPECT_NEAR(e[1], 2.0, 1e-14);
    EXPECT_NEAR(e[2], 2 - std::sqrt(2.0), 1e-14);
    ExpectEigenpairs(a, v, e, 1e-13);
    ExpectSame(a, before);

    Table<float> f = {{2, 1}, {1, 2}}, vf(2, 2);
    float ef[2];
    EXPECT_EQ(EigenHouseholderQL_GSL(2, f, vf, ef), 1);
    EXPECT_FLOAT_EQ(ef[0], 3.0F);
    EXPECT_EQ(EigenHouseholderQL_GSL(0, f, vf, ef), 1);

    // negative values beyond a tenth of a percent of the trace are reported
    Table<double> slight = {{1, 0}, {0, -0.00099}}, clear = {{1, 0}, {0, -0.00101}};
    EXPECT_EQ(EigenHouseholderQL_GSL_D(2, slight, v, e), 1);
    EXPECT_EQ(EigenHouseholderQL_GSL_D(2, clear, v, e), 0);
    EXPECT_EQ(e[1], -0.00101);
}

TEST_F(Eigenanalysis, ExtremeMatricesEnd) {
    Table<double> v(3, 3);
    double e[3];
    for (const double scale : {1e300, 1e-300, 1e-310, 4e-323}) {
        Table<double> a = {
            {2 * scale, -scale, 0}, {-scale, 2 * scale, -scale}, {0, -scale, 2 * scale}};
        EigenHouseholderQL_GSL_D(3, a, v, e);
        EXPECT_NEAR(e[0] / scale, 2 + std::sqrt(2.0), scale < 1e-307 ? 0.5 : 1e-13);
    }
    Table<double> mixed = {{1, 0, 0}, {0, 5e-324, 3e-320}, {0, 3e-320, 1e-310}};
    EXPECT_EQ(EigenHouseholderQL_GSL_D(3, mixed, v, e), 1);
    EXPECT_EQ(e[0], 1.0);
    Table<double> single = {{1e308, 1, 0}, {1, 1, 1e-308}, {0, 1e-308, 1}};
    EXPECT_EQ(EigenHouseholderQL_GSL_D(3, single, v, e), 1);
    EXPECT_EQ(e[0], 1e308);
}

// One of them made all values NaN, so that no axis was kept where the library finds some.
TEST_F(Eigenanalysis, NonFiniteElementsAreLeftToTheLibrary) {
    int finite = 0;
    for (const double odd : {kNaN, HUGE_VAL, -HUGE_VAL})
        for (size_t cell = 0; cell < 9; cell++) {
            Table<double> a = {{2, -1, 0.5}, {-1, 2, -1}, {0.5, -1, 2}}, v(3, 3), e(1, 3);
            Table<double> expectedV(3, 3), expectedE(1, 3);
            a[cell / 3][cell % 3] = a[cell % 3][cell / 3] = odd;
            EXPECT_EQ(EigenHouseholderQL_GSL_D(3, a, v, e[0]), 1);
            const GslMatrix copy = MakeGslMatrix(3, 3), evec = MakeGslMatrix(3, 3);
            const GslVector eval = MakeGslVector(3);
            for (size_t i = 0; i < 9; i++)
                gsl_matrix_set(copy.get(), i / 3, i % 3, a[i / 3][i % 3]);
            gsl_eigen_symmv(copy.get(), eval.get(), evec.get(), MakeGslEigenWork(3).get());
            gsl_eigen_symmv_sort(eval.get(), evec.get(), GSL_EIGEN_SORT_VAL_DESC);
            for (size_t i = 0; i < 9; i++)
                expectedV[i % 3][i / 3] = gsl_matrix_get(evec.get(), i / 3, i % 3);
            for (size_t k = 0; k < 3; k++) expectedE[0][k] = gsl_vector_get(eval.get(), k);
            ExpectSame(v, expectedV);
            ExpectSame(e, expectedE);
            finite += std::isfinite(e[0][0]);
        }
    EXPECT_GT(finite, 0);
}

// The library has no limit to its iterations: the alarm makes a hang a failure.
TEST_F(Eigenanalysis, EndsOnAnyMatrix) {
    std::mt19937 random(4);
    std::normal_distribution<double> normal;
    const double odd[] = {kNaN,   HUGE_VAL, -HUGE_VAL, 0.0,    -0.0, 1e308,
                          -1e308, 5e-324,   1e-310,    1e-160, 1e160};
    alarm(120);
    Table<double> graded(5, 5), v5(5, 5);  // beside 0.5 the library circled on 3e-154
    graded[0][2] = graded[2][0] = 9e-80, graded[0][3] = graded[3][0] = 2e-11;
    graded[0][4] = graded[4][0] = 0.5, graded[2][2] = 3e-154;
    double e[7];
    EigenHouseholderQL_GSL_D(5, graded, v5, e);
    EXPECT_NEAR(e[0], 0.5, 1e-15);
    for (int round = 0; round < 300000; round++) {
        const int n = 1 + int(random() % 7), share = 1 + int(random() % 12);
        const double scale = std::pow(10.0, random() % 3 == 0 ? int(random() % 601) - 300 : 0);
        Table<double> a(n, n), v(n, n);
        for (int i = 0; i < n; i++)
            for (int j = 0; j <= i; j++) {
                a[i][j] = scale * (random() % share == 0 ? odd[random() % 11] : normal(random));
                if (random() % 4 == 0) a[i][j] *= std::pow(10.0, int(random() % 617) - 308);
                a[j][i] = a[i][j];
            }
        EigenHouseholderQL_GSL_D(n, a, v, e);
    }
    alarm(0);
}

/// Descending, by SingularValuesAlone.
std::vector<double> ValuesAlone(Table<double> a) {
    const int n = a.cols();
    std::vector<double> s(n);
    std::vector<double> room(3 * n);
    EXPECT_TRUE(SingularValuesAlone(a.rows(), n, a, s.data(), room.data()));
    std::sort(s.rbegin(), s.rend());
    return s;
}

TEST_F(SingularValues, AloneTheyAreThoseOfTheWholeDecomposition) {
    std::mt19937 generator(8);
    for (const auto& [m, n] : {std::pair{1, 1}, {6, 1}, {2, 2}, {7, 7}, {40, 5}, {60, 33}}) {
        for (const int rank : {n, (n + 1) / 2, 0}) {
            auto a = RandomTable<double>(m, n, -1, 1, generator);
            for (int i = 0; i < m; i++)
                for (int j = rank; j < n; j++) a[i][j] = j < n - 1 && rank > 0 ? a[i][j - rank] : 0;
            if (m > 3 && n > 3) a[1][0] = a[1][1] = a[0][0] = 0;
            Table<double> u(m, n), v(n, n);
            std::vector<double> s(n);
            ASSERT_EQ(SingValueDecomp(m, n, a, u, s.data(), v), 1);
            const std::vector<double> alone = ValuesAlone(a);
            for (int k = 0; k < n; k++) EXPECT_NEAR(alone[k], s[k], 1e-13) << m << " x " << n;
        }
    }
}

TEST_F(SingularValues, AloneTheyStandExtremeMagnitudesAndGradedColumns) {
    for (const double scale : {1e300, 1.0, 1e-300}) {
        const auto s = ValuesAlone({{3 * scale, 0}, {4 * scale, 5 * scale}, {0, 0}});
        EXPECT_NEAR(s[0] / scale, std::sqrt(45.0), 1e-13);
        EXPECT_NEAR(s[1] / scale, std::sqrt(5.0), 1e-13);
    }
    const auto graded = ValuesAlone({{1, 0, 0}, {0, 1e-170, 0}, {0, 0, 1e-8}});
    EXPECT_EQ(graded[0], 1.0);
    EXPECT_NEAR(graded[1], 1e-8, 1e-22);
    // a bidiagonal matrix with zeros inside its diagonal
    const auto split = ValuesAlone({{1, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 2, 1}, {0, 0, 0, 0}});
    double squares = 0.0;
    for (const double x : split) squares += x * x;
    EXPECT_NEAR(squares, 8.0, 1e-13);
    EXPECT_NEAR(split[3], 0.0, 1e-15);
    EXPECT_TRUE(std::isnan(ValuesAlone({{1, kNaN}, {0, 1}})[0]));
}

struct Coordinates {
    int nAxes = -1;
    bool ok = false;
    Table<float> scores{4, 4, 99.0F};
    float eval[4] = {};
};

Coordinates PrincipalCoordinates(Table<float> rese, int reseType) {
    Coordinates c;
    const int n = rese.rows();
    Table<float> evec(n, n);
    EXPECT_EQ(OrdinationLib(n, 0, nullptr, rese, evec, c.scores, &c.nAxes, c.eval, &c.ok,
                            kPrincipalCoordinates, reseType, 1),
              1);
    return c;
}

TEST_F(Ordination, PointsOnALineComeBackFromTheirDistances) {
    // points at 0, 1, 4, 7, centred at 3; the lower half is not read
    const Coordinates c =
        PrincipalCoordinates({{0, 1, 4, 7}, {-5, 0, 3, 6}, {-5, -5, 0, 3}, {-5, -5, -5, 0}}, 3);
    EXPECT_EQ(c.nAxes, 1);
    EXPECT_TRUE(c.ok);
    EXPECT_NEAR(c.eval[0], 9 + 4 + 1 + 16, 1e-5);
    const float sign = c.scores[0][0] < 0 ? 1.0F : -1.0F;
    const float expected[] = {-3, -2, 1, 4};
    for (int i = 0; i < 4; i++) EXPECT_NEAR(sign * c.scores[0][i], expected[i], 1e-5);
    EXPECT_EQ(c.scores[1][0], 99.0F);

    // cross-products of the same points
    const Coordinates p = PrincipalCoordinates(
        {{9, 6, -3, -12}, {6, 4, -2, -8}, {-3, -2, 1, 4}, {-12, -8, 4, 16}}, 1);
    EXPECT_EQ(p.nAxes, 1);
    EXPECT_NEAR(std::fabs(p.scores[0][3]), 4.0F, 1e-5);

    // a similarity enters as the root of its complement and is not squared: 0.5 for 0.75
    const Coordinates s = PrincipalCoordinates({{1, 0.75}, {0.75, 1}}, 5);
    EXPECT_EQ(s.nAxes, 1);
    EXPECT_FLOAT_EQ(s.eval[0], 0.25F);
    EXPECT_FLOAT_EQ(std::fabs(s.scores[0][0]), std::sqrt(0.125F));
}

TEST_F(Ordination, IdenticalObjectsGiveNoAxisAndNegativeValuesAreNotKept) {
    const Coordinates none = PrincipalCoordinates({{0, 0, 0}, {0, 0, 0}, {0, 0, 0}}, 3);
    EXPECT_EQ(none.nAxes, 0);
    EXPECT_EQ(none.scores[0][0], 99.0F);
    // no triangle has sides 1, 1, 3
    const Coordinates c = PrincipalCoordinates({{0, 1, 1}, {1, 0, 3}, {1, 3, 0}}, 3);
    EXPECT_EQ(c.nAxes, 1);
    EXPECT_FALSE(c.ok);
    EXPECT_NEAR(c.eval[0], 4.5, 1e-5);
    EXPECT_NEAR(c.eval[2], -5.0 / 6.0, 1e-5);
}

}  // namespace
