#include "TSLCHORD/search_frame.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <limits>

#include "TSLCHORD/search_rounds.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
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

void TakeRating(const SubsetSearch& search, const TraitSubset& subset, double value,
                SearchOutcome* outcome) {
    if (search.keeping == Keeping::enteredBySign)
        EnterRankedList(subset, value, search.groups, search.keeping, &outcome->whileRating);
    if (!IsBetter(search.keeping, value, StartOf(search.keeping))) return;
    if (IsBetter(search.keeping, value, outcome->best.value[subset.size - 1]))
        Keep(subset, value, search.groups, subset.size - 1, &outcome->best);
    EnterRankedList(subset, value, search.groups, search.keeping, &outcome->ranked);
}

ValuesToBeat ToBeat(const SubsetSearch& search, int size, const SearchOutcome& outcome) {
    const KeptSubsets& ranked = Kept(outcome.ranked);
    const bool entersTwice = search.keeping == Keeping::enteredBySign;
    return {outcome.best.value[size - 1], ranked.value[0],
            (entersTwice ? Kept(outcome.whileRating) : ranked).value[0]};
}

bool MayBeKept(const SubsetSearch& search, double value, const ValuesToBeat& toBeat) {
    const Keeping keeping = search.keeping;
    return IsBetter(keeping, value, toBeat.best) || IsBetter(keeping, value, toBeat.ranked) ||
           IsBetter(keeping, value, toBeat.whileRating);
}

bool MayBeKeptByEstimate(const SubsetSearch& search, double estimate, const ValuesToBeat& toBeat) {
    if (std::isnan(estimate)) return true;
    if (search.keeping == Keeping::byMagnitude) estimate = std::fabs(estimate);
    return MayBeKept(search, estimate + kMarginOfEstimate, toBeat);
}

void RunSearch(const SubsetSearch& search, const SearchRun& run) {
    SearchOutcome outcome;
    std::fill_n(outcome.best.value.get(), nch, StartOf(search.keeping));
    if (run.estimate) {
        run.estimate(SearchRounds(search, run, nullptr, &outcome).Estimate());
        return;
    }
    ResultsFile results = run.writesResults ? ResultsFile(whichChorder, volumeName) : ResultsFile();
    if (results != nullptr)
        for (const HeaderLine line : search.header) line(results);
    FILE* const lines = printRankIntermedResults == 'y' ? results.operator FILE*() : nullptr;
    SearchRounds rounds(search, run, lines, &outcome);
    const SearchPlace place = run.goOn ? run.goOn(&outcome) : SearchPlace{nMinTraitsChRank, 0};
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++) {
        rounds.SearchSize(size, place);
        if (results != nullptr) PrintSizeLine(results, search, size, outcome.best);
    }
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
