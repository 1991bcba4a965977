#include "mxlibRes/binomial_limits.h"

#include <gsl/gsl_cdf.h>
#include <gtest/gtest.h>

#include <cmath>

TEST(BinomialLimits, AreThoseOfTheTails) {
    // R 4.2: binom.test(5, 100)$conf.int, binom.test(7, 20, conf.level = 0.99)$conf.int
    const ConfidenceLimits five = BinomialLimits(5, 100, 0.95);
    EXPECT_NEAR(five.lower, 0.0164318791821, 1e-12);
    EXPECT_NEAR(five.upper, 0.1128349111055, 1e-12);
    const ConfidenceLimits seven = BinomialLimits(7, 20, 0.99);
    EXPECT_NEAR(seven.lower, 0.113879763267, 1e-12);
    EXPECT_NEAR(seven.upper, 0.656568584232, 1e-12);
    EXPECT_EQ(BinomialLimits(0, 20, 0.95).lower, 0);
    EXPECT_NEAR(BinomialLimits(0, 20, 0.95).upper, 1 - std::pow(0.025, 1 / 20.0), 1e-12);
    EXPECT_NEAR(BinomialLimits(20, 20, 0.95).lower, std::pow(0.025, 1 / 20.0), 1e-12);
    EXPECT_EQ(BinomialLimits(20, 20, 0.95).upper, 1);
    for (const unsigned x : {1U, 44U, 199U}) {
        const ConfidenceLimits limits = BinomialLimits(static_cast<int>(x), 200, 0.9);
        EXPECT_NEAR(gsl_cdf_binomial_Q(x - 1, limits.lower, 200), 0.05, 1e-10);
        EXPECT_NEAR(gsl_cdf_binomial_P(x, limits.upper, 200), 0.05, 1e-10);
    }
}
