#pragma once
/// \file
/// Beals smoothing (Beals 1984, Advances in Ecological Research 14, 1-55).

#include "mxlibDim/dim.h"

/// n x n joint (option 2: sums of products; 1: sums of the performances of i where j occurs; 0:
/// counts of joint occurrences) or conditional values between the n OTUs (columns) of w (c rows).
/// Communities with a missing value of either OTU are passed over. Options 0 and 1 divide each row
/// by its diagonal where that is above 0; the diagonal then becomes 1. Rows go to unit sum with
/// option 2 or `unitSum`.
void ConditionalProb(int c, int n, ConstMatrix<double> w, Matrix<double> m, int option,
                     bool unitSum);

/// z (c x n) = the performances of `a` (rows at unit sum) smoothed by the conditional values of
/// `d`, missing ones adding nothing. Without includeTarget an OTU does not predict itself: `odds`
/// then uses m / (1 - m), a missing performance is a number, and an OTU that holds the whole of a
/// community has 0 there.
void BealsSmoothing(int c, int n, ConstMatrix<double> a, ConstMatrix<double> d, Matrix<double> z,
                    bool includeTarget, int option, bool odds);
