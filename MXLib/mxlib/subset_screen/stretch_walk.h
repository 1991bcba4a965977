#pragma once
/// \file
/// The walk over a stretch of subsets by their common beginnings, for screens.

#include <algorithm>
#include <vector>

#include "mxlib/subset_screen/subset_screen.h"

/// gamma(m) for single and double precision.
inline double RoundingOf(double m, float) {
    return m * 0x1p-24 / (1.0 - m * 0x1p-24);
}
inline double RoundingOf(double m, double) {
    return m * 0x1p-53 / (1.0 - m * 0x1p-53);
}

/// A part of the error bounds that covers what is not followed up: sums of bounds, squares of
/// roundoffs.
inline constexpr double kAmple = 1.1;

/// By n and k; what does not fit is the greatest number.
class BinomialTable {
  public:
    BinomialTable(int n, int k) : columns_(k + 1), cells_(static_cast<size_t>(n + 1) * (k + 1)) {
        for (int i = 0; i <= n; i++)
            for (int j = 0; j <= k; j++) {
                if (j == 0 || i == 0)
                    Cell(i, j) = j == 0 ? 1 : 0;
                else if (__builtin_add_overflow(Cell(i - 1, j - 1), Cell(i - 1, j), &Cell(i, j)))
                    Cell(i, j) = INT64_MAX;
            }
    }
    std::int64_t operator()(int n, int k) const {
        return cells_[static_cast<size_t>(n) * columns_ + k];
    }

  private:
    std::int64_t& Cell(int n, int k) { return cells_[static_cast<size_t>(n) * columns_ + k]; }
    size_t columns_;
    std::vector<std::int64_t> cells_;
};

/// A Model keeps sums for each depth, the number of members taken:
///   Take(depth, trait)                    takes a trait behind `depth` members
///   Find(depth, from, to, bar, reaches)   reaches[k - from] = whether the members with trait k may
///                                         reach the bar
///   IsHopeless(depth, next, rest, bar)    no `rest` traits from `next` on make them reach it
///   BarOf(size, threshold)                the bar of a size
template <class Model>
class ScreenByModel final : public SubsetScreen {
  public:
    ScreenByModel(int p, int mostMembers, const float* weights, Model model)
        : p_(p), binomials_(p, mostMembers), model_(std::move(model)), reaches_(p), members_(p) {
        for (int k = 0; k < p; k++) isInUse_.push_back(weights[k] > 0.0F ? 1 : 0);
    }

    void Screen(const SubsetStretch& stretch, double threshold,
                std::vector<std::int64_t>* numbers) override {
        bar_ = model_.BarOf(stretch.size, threshold);
        std::copy_n(stretch.members, stretch.size, members_.data());
        number_ = stretch.number;
        end_ = stretch.number + stretch.count;
        const int last = stretch.size - 1;
        int taken = TakeFrom(0, last);
        while (number_ < end_) {
            const int from = members_[last];
            const auto run = static_cast<int>(std::min<std::int64_t>(p_ - from, end_ - number_));
            if (taken == last) {
                model_.Find(last, from, from + run, bar_, reaches_.data());
                for (int k = 0; k < run; k++)
                    if (reaches_[k] != 0 && isInUse_[from + k] != 0)
                        numbers->push_back(number_ + k);
            }
            number_ += run;
            if (!NextBeginning(last, last, &taken)) return;
        }
    }

  private:
    /// Takes the members from depth on, up to one that is not in use; the depth reached.
    int TakeFrom(int depth, int last) {
        for (; depth < last; depth++) {
            if (isInUse_[members_[depth]] == 0) return depth;
            model_.Take(depth, members_[depth]);
        }
        return last;
    }

    /// Goes on to the next beginning of `last` members that is worth a look, the first `depth` of
    /// which may change; false behind the last one.
    bool NextBeginning(int depth, int last, int* taken) {
        int j = depth - 1;
        while (true) {
            while (j >= 0 && members_[j] >= p_ - 1 - last + j) j--;
            if (j < 0) return false;
            members_[j]++;
            for (int i = j + 1; i <= last; i++) members_[i] = members_[i - 1] + 1;
            *taken = std::min(*taken, j);
            if (*taken < j) return true;  // a beginning that a stretch started with
            for (; *taken < last; ++*taken) {
                const int depthNow = *taken;
                const int trait = members_[depthNow];
                const int rest = last - depthNow;
                bool skips = isInUse_[trait] == 0;
                if (!skips) {
                    model_.Take(depthNow, trait);
                    skips = model_.IsHopeless(depthNow + 1, trait + 1, rest, bar_);
                }
                if (!skips) continue;
                number_ += std::min(binomials_(p_ - trait - 1, rest), end_ - number_);
                if (number_ == end_) return false;
                break;
            }
            if (*taken == last) return true;
            j = *taken;
        }
    }

    int p_;
    BinomialTable binomials_;
    Model model_;
    std::vector<char> isInUse_;
    std::vector<char> reaches_;
    std::vector<int> members_;
    std::int64_t number_ = 0;  ///< of the subset at hand
    std::int64_t end_ = 0;
    double bar_ = 0.0;
};
