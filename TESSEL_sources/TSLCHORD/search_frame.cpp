#include "TSLCHORD/search_frame.h"

#include <algorithm>
#include <ctime>
#include <limits>
#include <utility>

#include "TSLCHORD/compared_tables.h"
#include "TSLCHORD/subset_counts.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "iflibG/iflibG.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/replacement.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"

namespace {

/// Where the best of a size starts: no subset has to be better than nothing.
double StartOf(Keeping keeping) {
    return keeping == Keeping::byMagnitude ? 0.0 : std::numeric_limits<double>::lowest();
}

/// A size without any subset that counts as better than nothing.
bool IsNone(Keeping keeping, double best) {
    return keeping == Keeping::byMagnitude && best == 0.0;
}

/// The walk over all subsets of all sizes.
struct Walk {
    int iteration = 0;
    int iterations = 0;
    ProgressPace pace;
    ScopedVector<int> list{nch};  ///< members first

    int together = SubsetsTogether();
    int waiting = 0;  ///< subsets to be rated, by lane
    TraitSubset subsets[kMostTogether] = {};
    ScopedMatrix<int> members{together, nch};
    ScopedMatrix<int> selected{together, nch};  ///< 1 for a member
};

void ReportProgress(const Walk& walk, int size) {
    char text[80];
    std::snprintf(text, sizeof text, "Iteration: %d of %d, Traits: %d", walk.iteration,
                  walk.iterations, size);
    HandleEventInfoWhere2(text);
}

/// Makes the tables of the subset under way, but for one with a trait that is not in use.
void MakeSubset(const SubsetSearch& search, int size, Walk* walk) {
    const int lane = walk->waiting;
    int* selected = walk->selected[lane];
    std::fill_n(selected, nch, 0);
    for (int j = 0; j < size; j++) {
        const int trait = walk->list[j] - 1;
        if (!(weight[trait] > 0.0F)) return;
        selected[trait] = 1;
    }
    std::copy_n(walk->list.get(), size, walk->members[lane]);
    walk->subsets[lane] = {size, walk->members[lane], selected};
    search.make(walk->subsets[lane], lane);
    walk->waiting++;
}

void TakeRating(const SubsetSearch& search, const TraitSubset& subset, int lane, double value,
                FILE* results, SearchOutcome* outcome) {
    if (results != nullptr && printRankIntermedResults == 'y') {
        search.printRating(results, lane, value);
        PrintLabels(results, subset);
        if (search.printBehindLabels) search.printBehindLabels(results);
        std::fprintf(results, "\n");
    }
    if (search.keeping == Keeping::enteredBySign)
        EnterRankedList(subset, value, search.groups, search.keeping, &outcome->whileRating);
    if (!IsBetter(search.keeping, value, StartOf(search.keeping))) return;
    if (IsBetter(search.keeping, value, outcome->best.value[subset.size - 1]))
        Keep(subset, value, search.groups, subset.size - 1, &outcome->best);
    EnterRankedList(subset, value, search.groups, search.keeping, &outcome->ranked);
}

void RateWaiting(const SubsetSearch& search, FILE* results, Walk* walk, SearchOutcome* outcome) {
    const int count = std::exchange(walk->waiting, 0);
    double values[kMostTogether] = {};
    if (count == 0 || !search.rate({walk->subsets, walk->subsets + count}, values)) return;
    for (int lane = 0; lane < count; lane++)
        TakeRating(search, walk->subsets[lane], lane, values[lane], results, outcome);
}

void PrintSizeLine(ResultsFile& results, const SubsetSearch& search, int size,
                   const KeptSubsets& best) {
    const double value = best.value[size - 1];
    std::fprintf(results, "%s with %d traits: \t", search.sizeLine, size);
    PrintValue(results, value);
    if (search.namesGroups) std::fprintf(results, "%d groups\t", search.groups);
    if (IsNone(search.keeping, value))
        std::fprintf(results, "none");
    else
        PrintKeptLabels(results, best, size - 1);
    std::fprintf(results, "\n");
    results.Flush();
}

void SearchSize(const SubsetSearch& search, int size, ResultsFile& results, Walk* walk,
                SearchOutcome* outcome) {
    const int subsets = static_cast<int>(CountSubsets(nch, size));
    for (int c = 0; c < subsets; c++) {
        walk->iteration++;
        if (walk->pace.IsDue()) ReportProgress(*walk, size);
        PermuteArray(nch, size, walk->list, c == 0);
        MakeSubset(search, size, walk);
        if (walk->waiting == walk->together) RateWaiting(search, results, walk, outcome);
    }
    RateWaiting(search, results, walk, outcome);
    if (results != nullptr) PrintSizeLine(results, search, size, outcome->best);
}

void PrintRankedSubsets(FILE* results, const SubsetSearch& search, const RankedList& list) {
    if (search.rankedHeading != nullptr)
        std::fputs(search.rankedHeading, results);
    else
        std::fprintf(results, "\n\nTrait subsets with maximum rank:\n%-*s\tSubset of traits\n",
                     ValueWidth(), "TRC");
    const KeptSubsets& kept = Kept(list);
    for (int place = list.places - 1; place > 0; place--) {
        if (kept.size[place] == 0) continue;
        PrintValue(results, kept.value[place]);
        PrintKeptLabels(results, kept, place);
        std::fprintf(results, "\n");
    }
}

void PrintBestOfEachSize(FILE* results, const SubsetSearch& search, const KeptSubsets& best) {
    std::fprintf(results,
                 "\n\nTrait subsets with maximum rank for each number of traits:\n"
                 "%-*s\tSubset of traits\n",
                 ValueWidth(), "TRC");
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++) {
        const double value = best.value[size - 1];
        std::fprintf(results, "%-13.*g\t", ValueDigits(), Printable(value));
        if (IsNone(search.keeping, value))
            std::fprintf(results, "none");
        else
            PrintKeptLabels(results, best, size - 1);
        std::fprintf(results, "\n");
    }
}

}  // namespace

SearchOutcome::SearchOutcome() : best(nch) {}

void RunSearch(const SubsetSearch& search, const SearchRun& run) {
    ResultsFile results = run.writesResults ? ResultsFile(whichChorder, volumeName) : ResultsFile();
    if (results != nullptr)
        for (const HeaderLine line : search.header) line(results);
    SearchOutcome outcome;
    Walk walk;
    walk.iterations =
        static_cast<int>(CountSubsetsOfSizes(nch, nMinTraitsChRank, nMaxTraitsChRank));
    std::fill_n(outcome.best.value.get(), nch, StartOf(search.keeping));
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++)
        SearchSize(search, size, results, &walk, &outcome);
    if (run.receive) run.receive(search, outcome);
    if (results == nullptr) return;
    const auto printClosing =
        search.printClosing != nullptr ? search.printClosing : PrintClosingTables;
    printClosing(results, search, outcome);
    results.Finish();
}

void PrintClosingTables(FILE* results, const SubsetSearch& search, const SearchOutcome& outcome) {
    PrintRankedSubsets(results, search, outcome.ranked);
    PrintBestOfEachSize(results, search, outcome.best);
    std::fprintf(results, "\n");
    PrintElapsedTime(results);
}

void PrintLabels(FILE* stream, const TraitSubset& subset) {
    for (int j = 0; j < subset.size; j++)
        std::fprintf(stream, "%-2s\t", chLabel[subset.members[j] - 1]);
}

void PrintLabelLine(FILE* stream, const TraitSubset& subset) {
    PrintLabels(stream, subset);
    std::fprintf(stream, "\n");
}

void PrintKeptLabels(FILE* stream, const KeptSubsets& kept, int place) {
    PrintLabels(stream, {kept.size[place], kept.members[place], nullptr});
}

void PrintElapsedTime(FILE* results) {
    std::fprintf(results, "Elapsed time: %g seconds\n", std::difftime(std::time(nullptr), time0));
}

int ValueDigits() {
    return std::clamp(sDigits, -kMostDigits, kMostDigits);
}

int ValueWidth() {
    constexpr int kMargin = 6;
    return ValueDigits() + kMargin;
}

void PrintValue(FILE* results, double value) {
    std::fprintf(results, "%-*.*g\t", ValueWidth(), ValueDigits(), Printable(value));
}
