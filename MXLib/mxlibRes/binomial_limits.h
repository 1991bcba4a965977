#pragma once
/// \file
/// Confidence limits of a proportion.

struct ConfidenceLimits {
    double lower;
    double upper;
};

/// The exact limits of Clopper and Pearson (1934, Biometrika 26) for `successes` among `trials`
/// (one at least): the proportions at which so many, or fewer, have the probability
/// (1 - level) / 2, and so many, or more, have it. 0 and `trials` successes have the limits 0
/// and 1.
ConfidenceLimits BinomialLimits(int successes, int trials, double level);
