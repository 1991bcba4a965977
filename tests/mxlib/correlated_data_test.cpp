#include "mxlib/correlated_data.h"

#include <gsl/gsl_randist.h>
#include <gtest/gtest.h>

#include <cmath>

#include "mxlib/random_lists.h"
#include "mxlibDim/scoped.h"
#include "support/console.h"

namespace {

template <class T>
ScopedMatrix<T> Square(int p, T offDiagonal, T diagonal = 1) {
    ScopedMatrix<T> m(p, p);
    for (int i = 0; i < p; i++)
        for (int j = 0; j < p; j++) m[i][j] = i == j ? diagonal : offDiagonal;
    return m;
}

}  // namespace

TEST(CorrelatedData, IdentityGivesTheDeviatesRowByRow) {
    ScopedMatrix<float> out(4, 3);
    for (const int dist : {static_cast<int>('u'), static_cast<int>('n'), 1, 5, 7, 8}) {
        InitRndNumberGenerator(5);
        EXPECT_EQ(CorrToData_New(4, 3, Square<float>(3, 0), out, dist), 1);
        InitRndNumberGenerator(5);
        for (int i = 0; i < 4; i++)
            for (int j = 0; j < 3; j++) {
                const double z = dist == 1   ? gsl_rng_uniform(r) - 0.5
                                 : dist == 5 ? gsl_ran_lognormal(r, 0.0, 1.0)
                                 : dist == 7 ? -std::log1p(-gsl_rng_uniform(r))
                                 : dist == 8 ? std::pow(-std::log1p(-gsl_rng_uniform(r)), 3)
                                             : gsl_ran_gaussian(r, 1.0);
                EXPECT_FLOAT_EQ(out[i][j], static_cast<float>(z)) << dist;
            }
    }
}

TEST(CorrelatedData, ColumnsHaveTheCovariance) {
    constexpr int n = 40000;
    ScopedMatrix<double> R(2, 2);
    R[0][0] = 4.0;
    R[0][1] = R[1][0] = -1.2;
    R[1][1] = 1.0;
    ScopedMatrix<double> out(n, 2);
    InitRndNumberGenerator(11);
    CorrToData_New(n, 2, R, out, 'n');
    double products[2][2] = {};
    for (int s = 0; s < n; s++)
        for (int i = 0; i < 2; i++)
            for (int j = 0; j < 2; j++) products[i][j] += out[s][i] * out[s][j] / n;
    for (int i = 0; i < 2; i++)
        for (int j = 0; j < 2; j++) EXPECT_NEAR(products[i][j], R[i][j], 0.06);
}
