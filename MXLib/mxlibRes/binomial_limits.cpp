#include "mxlibRes/binomial_limits.h"

#include <gsl/gsl_cdf.h>

ConfidenceLimits BinomialLimits(int successes, int trials, double level) {
    const double tail = (1 - level) / 2;
    const double x = successes;
    const double rest = trials - x;
    return {successes == 0 ? 0.0 : gsl_cdf_beta_Pinv(tail, x, rest + 1),
            successes == trials ? 1.0 : gsl_cdf_beta_Qinv(tail, x + 1, rest)};
}
