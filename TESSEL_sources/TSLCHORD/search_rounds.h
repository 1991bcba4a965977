#pragma once
/// \file
/// The rating of a search's subsets, round after round: in a round the workers rate blocks of
/// subsets side by side, and what they find is then taken in the order of the walk. The outcome is
/// the same for any number of workers and any length of the rounds.

#include <chrono>
#include <cstdint>
#include <vector>

#include "TSLCHORD/compared_tables.h"
#include "TSLCHORD/search_frame.h"
#include "TSLGLOB/dataset.h"
#include "iflibG/iflibG.h"

/// What a worker rates with: a few subsets wait to be rated together.
struct SearchWorker {
    SubsetRater rater;
    ValuesToBeat toBeat = {};                        ///< for subsets that are only estimated
    int unsettled = 0;                               ///< estimates that lately settled nothing
    int unestimated = 0;                             ///< subsets still to rate without one
    std::unique_ptr<SubsetScreen> screen = nullptr;  ///< null: every subset is rated
    std::vector<std::int64_t> worthRating = {};      ///< room: what the screen tells
    ScopedVector<int> fromZero{nch};                 ///< room: members by their places
    ScopedVector<int> list{nch};                     ///< the subset that the walk is at
    int waiting = 0;
    TraitSubset subsets[kMostTogether] = {};
    std::int64_t numbers[kMostTogether] = {};  ///< theirs, among those of the size
    ScopedMatrix<int> members{kMostTogether, nch};
    ScopedMatrix<int> selected{kMostTogether, nch};  ///< 1 for a member
};

/// A value that may be kept.
struct FoundValue {
    std::int64_t number;
    double value;
};

class SearchRounds {
  public:
    /// `lines` receives the line of each subset as it is rated; null: none. Then, and with the
    /// structures file, there is one worker.
    SearchRounds(const SubsetSearch& search, const SearchRun& run, FILE* lines,
                 SearchOutcome* outcome);

    /// Rates the subsets of a size, but for those before the place.
    void SearchSize(int size, const SearchPlace& place);

    /// Rates a sample of the subsets of each size, about a second long in all.
    SearchEstimate Estimate();

  private:
    void RateRound(int size, std::int64_t first, std::int64_t count);
    std::vector<FoundValue> RateBlocks(int size, std::int64_t first, std::int64_t count);
    void TakeFound(int size, const FoundValue& found);
    void SearchOnRanks(int size, std::int64_t done, std::int64_t subsets);
    void TakeHelp(double seconds, std::int64_t rated);
    void TakeScreens();
    void SettleLength(double seconds);

    const SubsetSearch& search_;
    const SearchRun& run_;
    FILE* const lines_;
    SearchOutcome* const outcome_;
    const int together_ = SubsetsTogether();
    bool isAlone_ = true;  ///< one worker rates all subsets
    std::vector<SearchWorker> workers_;
    std::vector<std::vector<FoundValue>> found_;  ///< by block
    std::int64_t iterations_;
    std::int64_t iteration_ = 0;
    std::int64_t skipped_ = 0;         ///< those before the place where the search goes on
    std::int64_t length_ = together_;  ///< subsets of the next round
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    ProgressPace pace_;
};
