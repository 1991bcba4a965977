#include "TSLCHORD/search_rounds.h"

#include <algorithm>
#include <cinttypes>
#include <cmath>
#include <cstring>
#include <functional>
#include <queue>
#include <string>
#include <utility>

#include "TSLCHORD/subset_counts.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlib/subsets.h"
#include "mxlibPar/ranks.h"
#include "mxlibPar/side_by_side.h"

namespace {

using Clock = std::chrono::steady_clock;

/// Subsets of a round when nothing is known of what their values have to beat.
constexpr std::int64_t kFirstScreened = 256;

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

/// Whether an estimate shows that the subset waiting is not kept. Where it lately did not, as at
/// the beginning of a search, only one of some subsets is estimated.
bool IsSettled(const SubsetSearch& search, SearchWorker* worker) {
    constexpr int kPatience = 2;
    constexpr int kMostUnestimated = 30;
    if (!worker->rater.estimate || worker->unestimated-- > 0) return false;
    const double estimate = worker->rater.estimate(worker->subsets[0]);
    const bool settled = !MayBeKeptByEstimate(search, estimate, worker->toBeat);
    worker->unsettled = settled ? 0 : worker->unsettled + 1;
    worker->unestimated =
        worker->unsettled > kPatience ? std::min(worker->unsettled, kMostUnestimated) : 0;
    return settled;
}

/// Rates those that wait, but for what cannot be kept, and hands them on by take(lane, value).
template <class Take>
void RateWaiting(const SubsetSearch& search, SearchWorker* worker, const Take& take) {
    const int count = std::exchange(worker->waiting, 0);
    double values[kMostTogether] = {};
    if (count == 0) return;
    if (IsSettled(search, worker)) return;
    if (!worker->rater.rate({worker->subsets, worker->subsets + count}, values)) return;
    for (int lane = 0; lane < count; lane++) take(lane, values[lane]);
}

/// What a value has to reach to be kept, as far as a block of subsets knows: what the search has
/// kept before its round, and what the block itself has found.
class LeastValue {
  public:
    LeastValue(const SubsetSearch& search, const ValuesToBeat& toBeat)
        : isBySign_(search.keeping == Keeping::bySign), toBeat_(toBeat) {}

    void Take(double value) {
        if (!isBySign_) return;
        toBeat_.best = std::max(toBeat_.best, value);
        found_.push(value);
        if (found_.size() > static_cast<size_t>(nKeepTrack) + 1) found_.pop();
        if (found_.size() > static_cast<size_t>(nKeepTrack))
            toBeat_.ranked = std::max(toBeat_.ranked, found_.top());
    }

    double operator()() const {
        return isBySign_ ? std::min(toBeat_.best, toBeat_.ranked)
                         : std::min({toBeat_.best, toBeat_.ranked, toBeat_.whileRating});
    }

  private:
    bool isBySign_;
    ValuesToBeat toBeat_;
    std::priority_queue<double, std::vector<double>, std::greater<>> found_;
};

/// Rates those of `count` subsets of the size from number `first` on that the screen finds worth
/// it, stretch by stretch: leastValue() tells what they have to reach.
template <class Least, class Take>
void RateScreened(const SubsetSearch& search, int size, std::int64_t first, std::int64_t count,
                  int together, SearchWorker* worker, const Least& leastValue, const Take& take) {
    constexpr std::int64_t kLongest = 1 << 20;
    constexpr size_t kMany = 64;  // then others are better rated first
    std::int64_t length = kFirstScreened;
    const std::int64_t end = first + count;
    for (std::int64_t from = first; from < end; from += length) {
        if (from > first)
            length = worker->worthRating.size() > kMany ? std::max(length / 2, kFirstScreened)
                                                        : std::min(length * 2, kLongest);
        length = std::min(length, end - from);
        SubsetOfNumber(nch, size, from, worker->list);
        for (int j = 0; j < size; j++) worker->fromZero[j] = worker->list[j] - 1;
        worker->worthRating.clear();
        worker->screen->Screen({size, worker->fromZero, from, length}, leastValue(),
                               &worker->worthRating);
        for (const std::int64_t number : worker->worthRating) {
            SubsetOfNumber(nch, size, number, worker->list);
            MakeSubset(size, number, worker);
            if (worker->waiting == together) RateWaiting(search, worker, take);
        }
        RateWaiting(search, worker, take);
    }
}

/// Rates `count` subsets of the size from number `first` on.
template <class Take>
void RateBlock(const SubsetSearch& search, int size, std::int64_t first, std::int64_t count,
               int together, SearchWorker* worker, const Take& take) {
    SubsetOfNumber(nch, size, first, worker->list);
    for (std::int64_t number = first; number < first + count; number++) {
        if (number > first) NextSubset(nch, size, worker->list);
        MakeSubset(size, number, worker);
        if (worker->waiting == together) RateWaiting(search, worker, take);
    }
    RateWaiting(search, worker, take);
}

}  // namespace

SearchRounds::SearchRounds(const SubsetSearch& search, const SearchRun& run, FILE* lines,
                           SearchOutcome* outcome)
    : search_(search),
      run_(run),
      lines_(lines),
      outcome_(outcome),
      iterations_(CountSubsetsOfSizes64(nch, nMinTraitsChRank, nMaxTraitsChRank)) {
    workers_.push_back({search.raterOf(0)});
    if (lines_ != nullptr) workers_[0].rater.estimate = nullptr;
}

void SearchRounds::SearchSize(int size, const SearchPlace& place) {
    const std::int64_t subsets = CountSubsets64(nch, size);
    const std::int64_t done =
        size < place.size ? subsets : (size > place.size ? 0 : std::min(place.number, subsets));
    if (done > 0 && progressHook != nullptr) progressHook(done);
    iteration_ += done;
    skipped_ += done;
    // Until some of a size are kept, a screen finds all of it worth rating.
    if (workers_[0].screen) length_ = kFirstScreened;
    if (Ranks() > 1 && lines_ == nullptr && saveStruct != 'y') {
        SearchOnRanks(size, done, subsets);
        return;
    }
    for (std::int64_t first = done; first < subsets;) {
        const std::int64_t count = std::min(length_, subsets - first);
        if (pace_.IsDue(count)) ReportProgress(iteration_ + 1, iterations_, size, count);
        const Clock::time_point start = Clock::now();
        RateRound(size, first, count);
        SettleLength(SecondsSince(start));
        first += count;
        iteration_ += count;
        if (run_.between) run_.between({size, first}, *outcome_);
        if (isAlone_) TakeHelp(SecondsSince(start_), iteration_ - skipped_);
    }
}

SearchEstimate SearchRounds::Estimate() {
    constexpr double kSecondsOfSample = 1.0;
    constexpr double kGolden = 0.6180339887498949;  // its multiples spread evenly
    SearchEstimate estimate{iterations_, 0, 0.0};
    const int sizes = nMaxTraitsChRank - nMinTraitsChRank + 1;
    RateRound(nMinTraitsChRank, 0, 1);  // screens are made behind a first rating
    TakeHelp(run_.aloneFor, 1);
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++) {
        const std::int64_t subsets = CountSubsets64(nch, size);
        if (workers_[0].screen) length_ = kFirstScreened;
        std::int64_t sampled = 0;
        double seconds = 0.0;
        double at = 0.0;
        while (sampled < subsets && seconds < kSecondsOfSample / sizes) {
            const std::int64_t count = std::min(length_, subsets - sampled);
            const auto first = static_cast<std::int64_t>(at * static_cast<double>(subsets - count));
            const Clock::time_point start = Clock::now();
            RateRound(size, first, count);
            const double ofRound = SecondsSince(start);
            SettleLength(ofRound);
            seconds += ofRound;
            sampled += count;
            at = std::fmod(at + kGolden, 1.0);
        }
        estimate.sampled += sampled;
        estimate.seconds += seconds / static_cast<double>(sampled) * static_cast<double>(subsets);
    }
    return estimate;
}

/// Rounds so long that the workers seldom wait for one another, and so short that the progress line
/// and an interruption do not wait long.
void SearchRounds::SettleLength(double seconds) {
    constexpr double kShort = 0.02;
    constexpr double kLong = 0.08;
    constexpr std::int64_t kMost = 1 << 30;
    if (seconds < kShort) length_ = std::min(2 * length_, kMost);
    if (seconds > kLong) length_ = std::max(length_ / 2, std::int64_t{together_});
}

/// A search that would soon be over is left to one worker.
void SearchRounds::TakeHelp(double seconds, std::int64_t rated) {
    if (lines_ != nullptr || saveStruct == 'y' || seconds < run_.aloneFor) return;
    const auto left = static_cast<double>(iterations_ - iteration_);
    if (seconds / static_cast<double>(rated) * left < run_.aloneFor) return;
    isAlone_ = false;
    const int workers = WorkersFor(Threads());
    for (int worker = 1; worker < workers; worker++) workers_.push_back({search_.raterOf(worker)});
    if (run_.screens) TakeScreens();
}

void SearchRounds::TakeScreens() {
    for (SearchWorker& worker : workers_)
        if (worker.rater.makeScreen) worker.screen = worker.rater.makeScreen();
    if (workers_[0].screen) length_ = std::min(length_, kFirstScreened);
}

void SearchRounds::RateRound(int size, std::int64_t first, std::int64_t count) {
    if (workers_.size() == 1) {
        SearchWorker& worker = workers_[0];
        worker.toBeat = ToBeat(search_, size, *outcome_);
        const auto take = [&](int lane, double value) {
            const TraitSubset& subset = worker.subsets[lane];
            if (lines_ != nullptr) {
                worker.rater.printRating(lines_, lane, value);
                PrintLabels(lines_, subset);
                if (search_.printBehindLabels) search_.printBehindLabels(lines_);
                std::fprintf(lines_, "\n");
            }
            TakeRating(search_, subset, value, outcome_);
            worker.toBeat = ToBeat(search_, size, *outcome_);
        };
        const auto leastValue = [&] {
            return LeastValue(search_, ToBeat(search_, size, *outcome_))();
        };
        if (worker.screen)
            RateScreened(search_, size, first, count, together_, &worker, leastValue, take);
        else
            RateBlock(search_, size, first, count, together_, &worker, take);
        return;
    }
    for (const FoundValue& found : RateBlocks(size, first, count)) TakeFound(size, found);
}

std::vector<FoundValue> SearchRounds::RateBlocks(int size, std::int64_t first, std::int64_t count) {
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
        worker.toBeat = toBeat;
        const std::int64_t begin = count * block / blocks;
        const std::int64_t end = count * (block + 1) / blocks;
        LeastValue leastValue(search_, toBeat);
        const auto take = [&](int lane, double value) {
            if (!MayBeKept(search_, value, toBeat)) return;
            found.push_back({worker.numbers[lane], value});
            leastValue.Take(value);
        };
        if (worker.screen)
            RateScreened(search_, size, first + begin, end - begin, together_, &worker, leastValue,
                         take);
        else
            RateBlock(search_, size, first + begin, end - begin, together_, &worker, take);
    });
    std::vector<FoundValue> all;
    for (std::int64_t block = 0; block < blocks; block++) {
        const std::vector<FoundValue>& found = found_[static_cast<size_t>(block)];
        all.insert(all.end(), found.begin(), found.end());
    }
    return all;
}

void SearchRounds::TakeFound(int size, const FoundValue& found) {
    int* members = workers_[0].list;
    SubsetOfNumber(nch, size, found.number, members);
    TakeRating(search_, {size, members, nullptr}, found.value, outcome_);
}

/// What the ranks know of the values to beat is what they have found themselves, rank 0 what all
/// have found up to there: either is less than a search on one rank would know, so that no value is
/// missed.
void SearchRounds::SearchOnRanks(int size, std::int64_t done, std::int64_t subsets) {
    const auto work = [&](const WorkStretch& stretch) {
        std::string bytes;
        const std::int64_t end = done + stretch.first + stretch.count;
        for (std::int64_t first = done + stretch.first; first < end;) {
            const std::int64_t count = std::min(length_, end - first);
            const Clock::time_point start = Clock::now();
            const std::vector<FoundValue> found = RateBlocks(size, first, count);
            SettleLength(SecondsSince(start));
            first += count;
            bytes.append(reinterpret_cast<const char*>(found.data()),
                         found.size() * sizeof(FoundValue));
            if (!IsFirstRank())
                for (const FoundValue& value : found) TakeFound(size, value);
            if (isAlone_) TakeHelp(run_.aloneFor, 1);
        }
        return bytes;
    };
    const auto take = [&](const WorkStretch& stretch, const std::string& bytes) {
        std::vector<FoundValue> found(bytes.size() / sizeof(FoundValue));
        std::memcpy(found.data(), bytes.data(), bytes.size());
        for (const FoundValue& value : found) TakeFound(size, value);
        iteration_ += stretch.count;
        if (pace_.IsDue(stretch.count))
            ReportProgress(iteration_, iterations_, size, stretch.count);
        if (run_.between) run_.between({size, done + stretch.first + stretch.count}, *outcome_);
    };
    HandOut(subsets - done, work, take);
}
