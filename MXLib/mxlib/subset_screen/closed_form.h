#pragma once
/// \file
/// Congruences that are a sum over the members divided by the root of a sum over their pairs: RV
/// and, with distances that add up over the traits, the matrix correlation.

#include <memory>
#include <vector>

#include "mxlib/subset_screen/subset_screen.h"
#include "mxlibDim/scoped.h"

/// Of p traits, S being a subset: the congruence with side s is the sum of linear[s][k] over k in
/// S, divided by the root of the sum of pairs[j][k] over j and k in S.
struct ClosedForm {
    int p;
    int sides;                    ///< 1, or 2: their product
    ScopedMatrix<double> linear;  ///< sides x p
    ScopedMatrix<double> pairs;   ///< p x p
    ScopedVector<double>
        magnitude;              ///< the root is at most their sum, and near it if little cancels
    bool isPositive;            ///< no element is below 0
    std::vector<double> error;  ///< by size: of a congruence, where not much cancels
};

/// What may cancel: the squared sum of the magnitudes over the sum of pairs. Beyond, every subset
/// has to be rated.
inline constexpr double kMostCancelled = 1e4;

std::unique_ptr<SubsetScreen> ScreenByClosedForm(ClosedForm form, int mostMembers,
                                                 const float* weights);
