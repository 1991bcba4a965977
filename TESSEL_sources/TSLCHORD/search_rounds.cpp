#include "TSLCHORD/search_rounds.h"

#include <algorithm>
#include <cinttypes>
#include <utility>

#include "TSLCHORD/subset_counts.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlib/subsets.h"
#include "mxlibPar/side_by_side.h"

namespace {

using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point time) {
    return std::chrono::duration<double>(Clock::now() - time).count();
}

void ReportProgress(std::int64_t iteration, std::int64_t iterations, int size, std::int64_t steps) {
    char text[80];
    std::snprintf(text, sizeof text, "Iteration: %" PRId64 " of %" PRId64 ", Traits: %d", iteration,
                  iterations, size);
    HandleEventInfoWhere2(text, steps);
}

/// Makes the tables of the subset that the walk is at, but for one with a trait that is not in use.
void MakeSubset(int size, std::int64_t number, SearchWorker* worker) {
    const int lane = worker->waiting;
    int* selected = worker->selected[lane];
    std::fill_n(selected, nch, 0);
    for (int j = 0; j < size; j++) {
        const int trait = worker->list[j] - 1;
        if (!(weight[trait] > 0.0F)) return;
        selected[trait] = 1;
    }
    std::copy_n(worker->list.get(), size, worker->members[lane]);
    worker->subsets[lane] = {size, worker->members[lane], selected};
    worker->numbers[lane] = number;
    worker->rater.make(worker->subsets[lane], lane);
    worker->waiting++;
}

/// Rates those that wait and hands them on by take(lane, value).
template <class Take>
void RateWaiting(SearchWorker* worker, const Take& take) {
    const int count = std::exchange(worker->waiting, 0);
    double values[kMostTogether] = {};
    if (count == 0 || !worker->rater.rate({worker->subsets, worker->subsets + count}, values))
        return;
    for (int lane = 0; lane < count; lane++) take(lane, values[lane]);
}

/// Rates `count` subsets of the size from number `first` on.
template <class Take>
void RateBlock(int size, std::int64_t first, std::int64_t count, int together, SearchWorker* worker,
               const Take& take) {
    SubsetOfNumber(nch, size, first, worker->list);
    for (std::int64_t number = first; number < first + count; number++) {
        if (number > first) NextSubset(nch, size, worker->list);
        MakeSubset(size, number, worker);
        if (worker->waiting == together) RateWaiting(worker, take);
    }
    RateWaiting(worker, take);
}

}  // namespace

SearchRounds::SearchRounds(const SubsetSearch& search, const SearchRun& run, FILE* lines,
                           SearchOutcome* outcome)
    : search_(search),
      run_(run),
      lines_(lines),
      outcome_(outcome),
      iterations_(
          static_cast<std::int64_t>(CountSubsetsOfSizes(nch, nMinTraitsChRank, nMaxTraitsChRank))) {
    workers_.push_back({search.raterOf(0)});
}

void SearchRounds::SearchSize(int size) {
    const std::int64_t subsets = CountSubsets64(nch, size);
    for (std::int64_t first = 0; first < subsets;) {
        const std::int64_t count = std::min(length_, subsets - first);
        if (pace_.IsDue(count)) ReportProgress(iteration_ + 1, iterations_, size, count);
        const Clock::time_point start = Clock::now();
        RateRound(size, first, count);
        SettleLength(SecondsSince(start));
        first += count;
        iteration_ += count;
        if (workers_.size() == 1) TakeHelpers();
    }
}

/// Rounds so long that the workers seldom wait for one another, and so short that the progress line
/// and an interruption do not wait long.
void SearchRounds::SettleLength(double seconds) {
    constexpr double kShort = 0.02;
    constexpr double kLong = 0.08;
    constexpr std::int64_t kMost = 1 << 24;
    if (seconds < kShort) length_ = std::min(2 * length_, kMost);
    if (seconds > kLong) length_ = std::max(length_ / 2, std::int64_t{together_});
}

/// A search that would soon be over is left to one worker.
void SearchRounds::TakeHelpers() {
    const double seconds = SecondsSince(start_);
    if (lines_ != nullptr || saveStruct == 'y' || seconds < run_.aloneFor) return;
    const auto rated = static_cast<double>(iteration_);
    if (seconds / rated * (static_cast<double>(iterations_) - rated) < run_.aloneFor) return;
    const int workers = WorkersFor(Threads());
    for (int worker = 1; worker < workers; worker++) workers_.push_back({search_.raterOf(worker)});
}

void SearchRounds::RateRound(int size, std::int64_t first, std::int64_t count) {
    if (workers_.size() == 1) {
        SearchWorker& worker = workers_[0];
        RateBlock(size, first, count, together_, &worker, [&](int lane, double value) {
            const TraitSubset& subset = worker.subsets[lane];
            if (lines_ != nullptr) {
                worker.rater.printRating(lines_, lane, value);
                PrintLabels(lines_, subset);
                if (search_.printBehindLabels) search_.printBehindLabels(lines_);
                std::fprintf(lines_, "\n");
            }
            TakeRating(search_, subset, value, outcome_);
        });
        return;
    }
    // A block begins without the sums that subsets share with those before them.
    constexpr std::int64_t kShortestBlock = 8;
    constexpr std::int64_t kBlocksOfWorker = 16;
    const auto workers = static_cast<std::int64_t>(workers_.size());
    const std::int64_t blocks =
        std::clamp(count / kShortestBlock, std::int64_t{1}, kBlocksOfWorker * workers);
    found_.resize(std::max(found_.size(), static_cast<size_t>(blocks)));
    const ValuesToBeat toBeat = ToBeat(search_, size, *outcome_);
    RunSideBySide(static_cast<int>(blocks), static_cast<int>(workers), [&](int block, int k) {
        SearchWorker& worker = workers_[static_cast<size_t>(k)];
        std::vector<FoundValue>& found = found_[static_cast<size_t>(block)];
        found.clear();
        const std::int64_t begin = count * block / blocks;
        const std::int64_t end = count * (block + 1) / blocks;
        RateBlock(size, first + begin, end - begin, together_, &worker,
                  [&](int lane, double value) {
                      if (MayBeKept(search_, value, toBeat))
                          found.push_back({worker.numbers[lane], value});
                  });
    });
    SearchWorker& room = workers_[0];
    for (std::int64_t block = 0; block < blocks; block++)
        for (const FoundValue& found : found_[static_cast<size_t>(block)]) {
            SubsetOfNumber(nch, size, found.number, room.list);
            TakeRating(search_, {size, room.list, nullptr}, found.value, outcome_);
        }
}
