#include <array>
#include <ctime>

#include "TSLCHORD/search_frame.h"
#include "TSLCHORD/search_header.h"
#include "TSLCHORD/searches.h"
#include "TSLCHORD/subset_tables.h"
#include "TSLCHORD/trait_screen.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "mxlibDim/text.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/standardisation.h"

namespace {

void PrintStructure(FILE* stream, const TraitSubset& subset, double value) {
    constexpr const char* kNames[] = {"ro(TE)", "traceW", "RV"};
    std::fprintf(stream, "\nTrait ranking criterion %s=\t", kNames[opt_ro - 1]);
    PrintValue(stream, value);
    std::fprintf(stream, "Trait subset used:\t");
    PrintLabelLine(stream, subset);
}

SubsetRater RaterOf(const std::shared_ptr<SubsetTables<float>>& t) {
    FILE* const structures = t->structures.stream;
    SubsetRater rater;
    rater.make = [=](const TraitSubset& subset, int lane) {
        t->lane = lane;
        ScaleTraitsUp(subset, t.get());
        if (opt_ro == kMantel || structures != nullptr)
            CompareCommunities(Table::T, rese_opt, t.get());
    };
    rater.rate = [=](std::span<const TraitSubset> subsets, double* values) {
        constexpr TablePair kTE[] = {{Table::E, Table::T}};
        FindCongruences<float>(kTE, static_cast<int>(subsets.size()), values, t.get());
        if (structures != nullptr) PrintStructure(structures, subsets[0], values[0]);
        return true;
    };
    rater.printRating = [](FILE* results, int, double value) {
        std::fprintf(results, "%g\t", Printable(value));
    };
    rater.makeScreen = [=] {
        return ScreenTraits<float>(std::array{Table::E}, rese_opt, false, t.get());
    };
    return rater;
}

}  // namespace

void ChRankTCAP(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    const auto t = std::make_shared<SubsetTables<float>>(0);
    t->structures.stream = structures;
    AddTable(Table::E, nenv, t.get());
    AddTable(Table::T, nch, t.get());
    FinishTables(t.get());
    TakeSitesOfSearch<float>(EucliDistMV, t.get());
    TakeCommunities(t.get());
    TakeTraits<float>(NormalizeColsMV, t.get());
    const SubsetSearch search{
        .header = kHeaderTCAP, .keeping = Keeping::bySign, .groups = 0, .raterOf = [&](int worker) {
            return RaterOf(TablesOfWorker(worker, t));
        }};
    RunSearch(search, run);
    structures.Finish();
}
