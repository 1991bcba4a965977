#include <cmath>
#include <limits>
#include <utility>

#include "mxlib/subset_screen/closed_form.h"
#include "mxlib/subset_screen/root_sums.h"
#include "mxlib/subset_screen/stretch_walk.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/missing.h"

namespace {

/// More would be too much room for what a screen saves.
constexpr double kMostCells = 6e7;

/// The deviations of the fixed cells from their mean, at unit length.
template <class T>
void TakeFixed(const MantelSide& side, T* unit) {
    const double length = std::sqrt(side.squares);
    for (std::ptrdiff_t c = 0; c < side.nCells; c++)
        unit[c] = static_cast<T>((side.cells[c] - side.mean) / length);
}

/// What trait k adds to the cells: the differences of its values in the precision of the search,
/// squared or not.
template <class T, class Real>
void CellsOfTrait(const ScreenedTraits<Real>& traits, int k, bool isSquared, T* cells) {
    for (int i = 0; i < traits.c; i++)
        for (int j = i + 1; j < traits.c; j++) {
            const Real difference = traits.values[i][k] - traits.values[j][k];
            const Real cell = isSquared ? difference * difference : std::fabs(difference);
            *cells++ = static_cast<T>(cell);
        }
}

double NarrowingError(bool isNarrowed) {
    return isNarrowed ? 3.0 * kAmple * 0x1p-24 : 0.0;
}

/// Absolute differences: the distances are sums over the members, and so are their products with a
/// fixed side; the squares of their deviations are a sum over the pairs.
template <class Real>
std::unique_ptr<SubsetScreen> ScreenAbsolute(const ScreenedTraits<Real>& traits,
                                             std::span<const MantelSide* const> fixed,
                                             bool isNarrowed) {
    const int p = traits.p;
    const std::ptrdiff_t m = fixed[0]->nCells;
    const auto sides = static_cast<int>(fixed.size());
    ScopedMatrix<double> cells(p, m);
    ScopedMatrix<double> unit(sides, m);
    for (int s = 0; s < sides; s++) TakeFixed(*fixed[static_cast<size_t>(s)], unit[s]);
    ClosedForm form{p,
                    sides,
                    ScopedMatrix<double>(sides, p),
                    ScopedMatrix<double>(p, p),
                    ScopedVector<double>(p),
                    false,
                    {}};
    for (int k = 0; k < p; k++) {
        CellsOfTrait(traits, k, false, cells[k]);
        double sum = 0.0, squares = 0.0;
        for (std::ptrdiff_t c = 0; c < m; c++) {
            sum += cells[k][c];
            squares += cells[k][c] * cells[k][c];
        }
        form.magnitude[k] = std::sqrt(squares);
        for (std::ptrdiff_t c = 0; c < m; c++) cells[k][c] -= sum / static_cast<double>(m);
        for (int s = 0; s < sides; s++)
            for (std::ptrdiff_t c = 0; c < m; c++) form.linear[s][k] += cells[k][c] * unit[s][c];
        for (int j = 0; j <= k; j++) {
            double product = 0.0;
            for (std::ptrdiff_t c = 0; c < m; c++) product += cells[j][c] * cells[k][c];
            form.pairs[j][k] = form.pairs[k][j] = product;
        }
    }
    for (int size = 0; size <= traits.mostMembers; size++)
        form.error.push_back(
            16.0 * kMostCancelled *
                RoundingOf(static_cast<double>(m) + static_cast<double>(size) * size, double()) +
            NarrowingError(isNarrowed));
    return ScreenByClosedForm(std::move(form), traits.mostMembers, traits.weights);
}

/// Euclidean distances: squares add up, in single precision, and their sum over the cells is known
/// for each trait. Let d be the distances and d + e those that are taken here: |e| is at most
/// gamma(size) / 2 + 2 u times d in each cell.
class RootModel {
  public:
    template <class Real>
    RootModel(const ScreenedTraits<Real>& traits, std::span<const MantelSide* const> fixed,
              bool isNarrowed)
        : m_(fixed[0]->nCells),
          room_((m_ + kRootSumCells - 1) / kRootSumCells * kRootSumCells),
          sides_(static_cast<int>(fixed.size())),
          narrowing_(NarrowingError(isNarrowed)),
          cells_(traits.p, room_),
          squares_(traits.p),
          unit_(2, room_),
          sums_(traits.mostMembers + 1, room_),
          sumsOfSquares_(traits.mostMembers + 1) {
        for (int s = 0; s < sides_; s++) TakeFixed(*fixed[static_cast<size_t>(s)], unit_[s]);
        for (int k = 0; k < traits.p; k++) {
            CellsOfTrait(traits, k, true, cells_[k]);
            for (std::ptrdiff_t c = 0; c < m_; c++)
                squares_[k] += static_cast<double>(cells_[k][c]);
        }
    }

    double BarOf(int size, double threshold) {
        size_ = size;
        return threshold;
    }

    void Take(int depth, int trait) {
        const float* from = sums_[depth];
        const float* more = cells_[trait];
        float* to = sums_[depth + 1];
        for (std::ptrdiff_t c = 0; c < room_; c++) to[c] = from[c] + more[c];
        sumsOfSquares_[depth + 1] = sumsOfSquares_[depth] + squares_[trait];
    }

    void Find(int depth, int from, int to, double bar, char* reaches) const {
        for (int k = from; k < to; k++) reaches[k - from] = MostOf(depth, k) < bar ? 0 : 1;
    }

    bool IsHopeless(int, int, int, double) const { return false; }

  private:
    /// The congruence at the most.
    double MostOf(int depth, int trait) const {
        double sums[3];
        RootSums(room_, sums_[depth], cells_[trait], unit_[0], sides_ > 1 ? unit_[1] : nullptr,
                 sums);
        const double squares = sumsOfSquares_[depth] + squares_[trait];
        const double deviations = squares - sums[0] * sums[0] / static_cast<double>(m_);
        if (!(deviations > squares / kMostCancelled) ||
            !(deviations > 1e-24 * static_cast<double>(m_)))
            return HUGE_VAL;
        const double cancelled = squares / deviations;
        const double ofCells = RoundingOf(size_, float()) / 2.0 + 2.0 * 0x1p-24;
        const double ofSums = RoundingOf(kRootSumChain + 4, float());
        const double ofNumerator = (2.0 * ofCells + 3.0 * 0x1p-24 + ofSums) * std::sqrt(cancelled);
        const double ofRoot = (ofCells + ofSums) * cancelled +
                              8.0 * RoundingOf(static_cast<double>(m_), double()) * cancelled;
        double product = 1.0;
        double error = 0.0;
        for (int s = 0; s < sides_; s++) {
            const double r = sums[s + 1] / std::sqrt(deviations);
            const double ofThis = kAmple * (ofNumerator + std::fabs(r) * ofRoot);
            error = error * std::fabs(r) + std::fabs(product) * ofThis + error * ofThis;
            product *= r;
        }
        return product + error + narrowing_;
    }

    std::ptrdiff_t m_;
    std::ptrdiff_t room_;  ///< cells with those beyond the last, which are 0
    int sides_;
    double narrowing_;
    ScopedMatrix<float> cells_;           ///< by trait: squared differences
    ScopedVector<double> squares_;        ///< their sums
    ScopedMatrix<float> unit_;            ///< fixed sides
    ScopedMatrix<float> sums_;            ///< by number of members: sums of cells
    ScopedVector<double> sumsOfSquares_;  ///< and of squares_
    int size_ = 0;
};

}  // namespace

template <class Real>
std::unique_ptr<SubsetScreen> ScreenCorrelation(int option, const ScreenedTraits<Real>& traits,
                                                std::span<const MantelSide* const> fixed,
                                                bool isNarrowed) {
    if (traits.c < 3 || HasMissing<Real>(traits.c, traits.p, traits.values)) return nullptr;
    for (int i = 0; i < traits.c; i++)
        for (int k = 0; k < traits.p; k++)
            if (!std::isfinite(traits.values[i][k])) return nullptr;
    for (const MantelSide* side : fixed)
        if (side->hasMissing || !(side->squares > std::numeric_limits<float>::min()) ||
            !std::isfinite(side->squares))
            return nullptr;
    if (static_cast<double>(fixed[0]->nCells) * (traits.p + traits.mostMembers) > kMostCells)
        return nullptr;
    if (option == kAbsolute || option == kRelativeAbsolute)
        return ScreenAbsolute(traits, fixed, isNarrowed);
    if (option != kEuclidean && option != kRelativeEuclidean) return nullptr;
    return std::make_unique<ScreenByModel<RootModel>>(traits.p, traits.mostMembers, traits.weights,
                                                      RootModel(traits, fixed, isNarrowed));
}

template std::unique_ptr<SubsetScreen> ScreenCorrelation<float>(int, const ScreenedTraits<float>&,
                                                                std::span<const MantelSide* const>,
                                                                bool);
template std::unique_ptr<SubsetScreen> ScreenCorrelation<double>(int, const ScreenedTraits<double>&,
                                                                 std::span<const MantelSide* const>,
                                                                 bool);
