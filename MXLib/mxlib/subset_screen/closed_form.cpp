#include "mxlib/subset_screen/closed_form.h"

#include <cmath>
#include <functional>
#include <limits>

#include "mxlib/subset_screen/stretch_walk.h"

namespace {

constexpr double kNoVariation = 1e-60;

/// Sums over the first members.
struct Sums {
    double linear[2] = {0.0, 0.0};
    double pairs = 0.0;
    double magnitude = 0.0;
    double leastWith = 0.0;    ///< least element of `with` among the traits behind the last member
    std::vector<double> with;  ///< by trait: what it adds to the pairs by its pairs with them
};

class ClosedFormModel {
  public:
    ClosedFormModel(ClosedForm form, int mostMembers) : form_(std::move(form)) {
        sums_.resize(static_cast<size_t>(mostMembers) + 1);
        for (Sums& sums : sums_) sums.with.assign(static_cast<size_t>(form_.p), 0.0);
        if (form_.isPositive && form_.sides == 1) FindExtremes(mostMembers);
    }

    /// The square of the least congruence, signed; of a product the product.
    double BarOf(int size, double threshold) const {
        const double error = form_.error[static_cast<size_t>(size)];
        if (form_.sides == 1) {
            const double least = threshold - error;
            return least * std::fabs(least) * (least > 0.0 ? 1.0 - 1e-12 : 1.0 + 1e-12);
        }
        const double least = threshold - 2.0 * error - error * error;
        return least * (least > 0.0 ? 1.0 - 1e-12 : 1.0 + 1e-12);
    }

    void Take(int depth, int trait) {
        const Sums& from = sums_[static_cast<size_t>(depth)];
        Sums& to = sums_[static_cast<size_t>(depth) + 1];
        for (int s = 0; s < form_.sides; s++)
            to.linear[s] = from.linear[s] + form_.linear[s][trait];
        to.pairs = from.pairs + from.with[static_cast<size_t>(trait)] + form_.pairs[trait][trait];
        to.magnitude = from.magnitude + form_.magnitude[trait];
        const double* row = form_.pairs[trait];
        to.leastWith = std::numeric_limits<double>::max();
        for (auto k = static_cast<size_t>(trait) + 1; k < to.with.size(); k++) {
            to.with[k] = from.with[k] + 2.0 * row[k];
            to.leastWith = std::min(to.leastWith, to.with[k]);
        }
    }

    void Find(int depth, int from, int to, double bar, char* reaches) const {
        const Sums& sums = sums_[static_cast<size_t>(depth)];
        const int last = form_.sides - 1;
        const double* with = sums.with.data();
        const double* first = form_.linear[0];
        const double* second = form_.linear[last];
        for (int k = from; k < to; k++) {
            const double a = sums.linear[0] + first[k];
            const double b = last == 0 ? std::fabs(a) : sums.linear[1] + second[k];
            const double pairs = sums.pairs + with[k] + form_.pairs[k][k];
            const double magnitude = sums.magnitude + form_.magnitude[k];
            const bool isBelow = a * b < bar * pairs && pairs > kNoVariation &&
                                 magnitude * magnitude <= kMostCancelled * pairs;
            reaches[k - from] = isBelow ? 0 : 1;
        }
    }

    /// Positive elements: the greatest sum of the others over the least sum of pairs.
    bool IsHopeless(int depth, int next, int rest, double bar) const {
        if (greatest_.empty() || bar <= 0.0 || next >= form_.p) return false;
        const Sums& sums = sums_[static_cast<size_t>(depth)];
        const size_t at = static_cast<size_t>(next) * columns_ + static_cast<size_t>(rest);
        const double most = sums.linear[0] + greatest_[at];
        const double pairs = sums.pairs + least_[at] + rest * sums.leastWith;
        return pairs > kNoVariation && most * most < bar * pairs;
    }

  private:
    /// By first trait and number of members: the greatest sum of so many elements of `linear` from
    /// that trait on, and the least of so many on the diagonal of `pairs` with as many pairs beside
    /// it.
    void FindExtremes(int mostMembers) {
        const int p = form_.p;
        columns_ = static_cast<size_t>(mostMembers) + 1;
        greatest_.assign(static_cast<size_t>(p) * columns_, 0.0);
        least_ = greatest_;
        for (int next = 0; next < p; next++) {
            std::vector<double> linear(form_.linear[0] + next, form_.linear[0] + p), diagonal;
            double leastPair = std::numeric_limits<double>::max();
            for (int j = next; j < p; j++) {
                diagonal.push_back(form_.pairs[j][j]);
                for (int k = j + 1; k < p; k++) leastPair = std::min(leastPair, form_.pairs[j][k]);
            }
            std::sort(linear.begin(), linear.end(), std::greater<>());
            std::sort(diagonal.begin(), diagonal.end());
            double sum = 0.0, squares = 0.0;
            for (size_t m = 1; m < columns_ && m <= linear.size(); m++) {
                sum += linear[m - 1];
                squares += diagonal[m - 1];
                const auto others = static_cast<double>(m * (m - 1));
                greatest_[static_cast<size_t>(next) * columns_ + m] = sum * (1.0 + 1e-12);
                least_[static_cast<size_t>(next) * columns_ + m] =
                    (squares + (m > 1 ? others * leastPair : 0.0)) * (1.0 - 1e-12);
            }
        }
    }

    ClosedForm form_;
    std::vector<Sums> sums_;  ///< by number of members
    size_t columns_ = 0;
    std::vector<double> greatest_, least_;
};

}  // namespace

std::unique_ptr<SubsetScreen> ScreenByClosedForm(ClosedForm form, int mostMembers,
                                                 const float* weights) {
    const int p = form.p;
    return std::make_unique<ScreenByModel<ClosedFormModel>>(
        p, mostMembers, weights, ClosedFormModel(std::move(form), mostMembers));
}
