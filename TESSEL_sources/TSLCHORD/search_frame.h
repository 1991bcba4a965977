#pragma once
/// \file
/// What all searches share: the walk over the subsets in lexicographic order, size after size, the
/// keeping of the best, and the results file. A search tells what it does its own way.

#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <span>

#include "TSLCHORD/ranked_list.h"
#include "mxlib/subset_screen/subset_screen.h"

/// One line (or block) of the results file's head.
using HeaderLine = void (*)(FILE* results);

/// What a search keeps while it runs.
struct SearchOutcome {
    SearchOutcome();
    KeptSubsets best;        ///< by size less 1
    RankedList ranked;       ///< of all sizes
    RankedList whileRating;  ///< the same, entered by the rating itself (Keeping::enteredBySign)
};

/// Far more than an estimate misses of a coefficient.
inline constexpr double kMarginOfEstimate = 1e-6;

/// What rates subsets, with tables and room of its own.
struct SubsetRater {
    /// Makes the tables of a subset, in its lane.
    std::function<void(const TraitSubset&, int lane)> make = nullptr;
    /// The values of the subsets made, lane after lane; false where subsets cannot be rated.
    std::function<bool(std::span<const TraitSubset>, double* values)> rate = nullptr;
    /// The value of the subset made, in a search that makes one at a time, by a quicker way that
    /// may miss what kMarginOfEstimate tells; NaN where it cannot say. Then only subsets that may
    /// be kept are rated. Empty: there is no such way.
    std::function<double(const TraitSubset&)> estimate = nullptr;
    /// The line of a subset just rated, up to the labels of its traits, and what follows them.
    std::function<void(FILE* results, int lane, double value)> printRating = nullptr;
    /// A screen of the subsets, which tells those that are worth rating; null, or null made: all
    /// are. For values that are kept by sign, and behind the first rating.
    std::function<std::unique_ptr<SubsetScreen>()> makeScreen = nullptr;
};

struct SubsetSearch {
    std::span<const HeaderLine> header;
    Keeping keeping;
    int groups;  ///< types that each subset is rated with

    /// The rater of a worker. Worker 0 rates first and alone, with the tables that the search has
    /// made; others have copies of them, and may rate at the same time. The value of a subset
    /// depends on nothing but the subset.
    std::function<SubsetRater(int worker)> raterOf = nullptr;
    std::function<void(FILE* results)> printBehindLabels = nullptr;

    const char* sizeLine = "Ranking criterion value and optimal subset";  ///< how it begins
    bool namesGroups = false;  ///< the number of types stands before the labels

    const char* rankedHeading = nullptr;  ///< null: the heading with a column for the value
    void (*printClosing)(FILE* results, const SubsetSearch& search,
                         const SearchOutcome& outcome) = nullptr;  ///< null: PrintClosingTables
};

/// Where a search stands: the next subset, by its size and its number among those of the size.
struct SearchPlace {
    int size;
    std::int64_t number;
};

/// What a search will take, by a sample of its subsets.
struct SearchEstimate {
    std::int64_t subsets;
    std::int64_t sampled;
    double seconds;  ///< of the whole search, on as many cores as it may use
};

/// What becomes of what a search finds.
struct SearchRun {
    bool writesResults = true;  ///< the results file whichChorder
    /// Seconds that one worker rates all subsets before it screens them and others help: a small
    /// search ends earlier.
    double aloneFor = 1e-3;
    bool screens = true;  ///< whether a search that can screen its subsets does so
    /// Called with the outcome; empty: nothing is called.
    std::function<void(const SubsetSearch& search, const SearchOutcome& outcome)> receive = nullptr;
    /// Fills in the outcome of all subsets before the place that it gives, where the search then
    /// goes on; empty: it begins at its beginning.
    std::function<SearchPlace(SearchOutcome* outcome)> goOn = nullptr;
    /// Called again and again, twelve times a second and more where subsets are rated as fast. An
    /// exception ends the search, and leaves the former results.
    std::function<void(const SearchPlace& place, const SearchOutcome& outcome)> between = nullptr;
    /// Called instead of a search, which writes nothing; empty: there is a search.
    std::function<void(const SearchEstimate& estimate)> estimate = nullptr;
};

/// Enters a value where it belongs, if anywhere.
void TakeRating(const SubsetSearch& search, const TraitSubset& subset, double value,
                SearchOutcome* outcome);

/// What a value of a size must be better than to be kept: as the search goes on they only get
/// better.
struct ValuesToBeat {
    double best;
    double ranked;
    double whileRating;
};
ValuesToBeat ToBeat(const SubsetSearch& search, int size, const SearchOutcome& outcome);

/// Whether TakeRating may keep the value; never false where it would.
bool MayBeKept(const SubsetSearch& search, double value, const ValuesToBeat& toBeat);

/// Whether the value may be kept, as far as an estimate tells.
bool MayBeKeptByEstimate(const SubsetSearch& search, double estimate, const ValuesToBeat& toBeat);

/// Runs the search.
void RunSearch(const SubsetSearch& search, const SearchRun& run);

/// The ranked list, the best of each size, the time elapsed.
void PrintClosingTables(FILE* results, const SubsetSearch& search, const SearchOutcome& outcome);

/// Labels of the traits of a subset, each at least two wide and followed by a tab; PrintLabelLine
/// ends the line.
void PrintLabels(FILE* stream, const TraitSubset& subset);
void PrintLabelLine(FILE* stream, const TraitSubset& subset);
void PrintKeptLabels(FILE* stream, const KeptSubsets& kept, int place);

/// "Elapsed time" since time0.
void PrintElapsedTime(FILE* results);

/// Significant digits of the values, and the columns that the tables give a value.
int ValueDigits();
int ValueWidth();

/// A value in its column.
void PrintValue(FILE* results, double value);
