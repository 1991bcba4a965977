#include <ctime>

#include "TSLCHORD/search_frame.h"
#include "TSLCHORD/search_header.h"
#include "TSLCHORD/searches.h"
#include "TSLCHORD/subset_tables.h"
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

}  // namespace

void ChRankTCAP(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    SubsetTables<float> t(0);
    t.structures.stream = structures;
    AddTable(Table::E, nenv, &t);
    AddTable(Table::T, nch, &t);
    FinishTables(&t);
    TakeSitesOfSearch<float>(EucliDistMV, &t);
    TakeCommunities(&t);
    TakeTraits<float>(NormalizeColsMV, &t);

    SubsetSearch search{.header = kHeaderTCAP, .keeping = Keeping::bySign, .groups = 0};
    search.make = [&](const TraitSubset& subset, int lane) {
        t.lane = lane;
        ScaleTraitsUp(subset, &t);
        if (opt_ro == kMantel || structures != nullptr) CompareCommunities(Table::T, rese_opt, &t);
    };
    search.rate = [&](std::span<const TraitSubset> subsets, double* values) {
        constexpr TablePair kTE[] = {{Table::E, Table::T}};
        FindCongruences<float>(kTE, static_cast<int>(subsets.size()), values, &t);
        if (structures != nullptr) PrintStructure(structures, subsets[0], values[0]);
        return true;
    };
    search.printRating = [](FILE* results, int, double value) {
        std::fprintf(results, "%g\t", Printable(value));
    };
    RunSearch(search, run);
    structures.Finish();
}
