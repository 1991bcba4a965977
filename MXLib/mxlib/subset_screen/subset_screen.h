#pragma once
/// \file
/// Screening of an exhaustive search over subsets of traits: for the congruence between a fixed
/// matrix and the columns of a subset, a bound that costs far less than the congruence itself. Only
/// subsets whose bound reaches a threshold have to be rated.
///
/// A bound is the congruence by a short route plus what rounding can make of the difference between
/// that route and the rated value: with the unit roundoff u and gamma(m) = m u / (1 - m u), the
/// error of a sum of m products is at most gamma(m) times the sum of their magnitudes (Higham 2002,
/// Accuracy and Stability of Numerical Algorithms, 3.1), and the cosine of the angle between two
/// vectors moves by at most 2 |d| / |x| when d is added to x.

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "mxlibDim/dim.h"
#include "mxlibRes/mantel_sides.h"

/// A stretch of the walk over the subsets of some of p traits in lexicographic order.
struct SubsetStretch {
    int size;             ///< of the subsets
    const int* members;   ///< traits of the first one, from 0, ascending
    std::int64_t number;  ///< of the first one
    std::int64_t count;
};

/// Keeps room of its own: one for each thread.
class SubsetScreen {
  public:
    virtual ~SubsetScreen() = default;

    /// Appends the numbers of the subsets that may reach the threshold, ascending. A subset with a
    /// trait that is not in use is passed over.
    virtual void Screen(const SubsetStretch& stretch, double threshold,
                        std::vector<std::int64_t>* numbers) = 0;
};

/// The traits of a search: c objects by p columns.
template <class Real>
struct ScreenedTraits {
    int c;
    int p;
    ConstMatrix<Real> values;
    const float* weights;  ///< above 0: in use
    int mostMembers;       ///< of a subset
};

// The screens return null where they have no bound: a missing value, fewer than three objects, a
// fixed matrix without variation. `isNarrowed`: the search narrows its values to single precision.

/// For RVcoeff (kRV) or ProcrustesCoeff (kProcrustes) with b (c x q), in the precision Real.
template <class Real>
std::unique_ptr<SubsetScreen> ScreenCongruence(int measure, const ScreenedTraits<Real>& traits,
                                               int q, ConstMatrix<Real> b, bool isNarrowed);

/// For the product of the matrix correlations of the traits' distances by `option` (6 to 9, as
/// DistanceCells has them) with one or two fixed sides. Null for the chord distance too.
template <class Real>
std::unique_ptr<SubsetScreen> ScreenCorrelation(int option, const ScreenedTraits<Real>& traits,
                                                std::span<const MantelSide* const> fixed,
                                                bool isNarrowed);
