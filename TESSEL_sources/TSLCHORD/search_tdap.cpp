// The searches on r(XE) and on the partial r(XE.T).

#include <ctime>

#include "TSLCHORD/search_frame.h"
#include "TSLCHORD/search_header.h"
#include "TSLCHORD/searches.h"
#include "TSLCHORD/subset_tables.h"
#include "TSLCHORD/trait_divergence.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/text.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/standardisation.h"

namespace {

constexpr const char* kHeadings[] = {
    "\n\nTrait subsets with maximum partial Mantel correlation ro(XE.T):\n"
    "TRC\toptimal subset of traits\n",
    "\n\nTrait subsets with maximum partial congruence in a symmetric Procrustes rotation "
    "r(XE.T):\nTRC\toptimal subset of traits\n",
    "\n\nTrait subsets with maximum partial congruence in RV r(XE.T):\n"
    "TRC\toptimal subset of traits\n"};

void PrintStructure(FILE* stream, const TraitSubset& subset, double value) {
    std::fprintf(stream, "\nTrait ranking criterion:\t");
    PrintValue(stream, value);
    std::fprintf(stream, "Trait subset used:\t");
    PrintLabelLine(stream, subset);
}

void PrintRating(FILE* results, const DivergenceRating& rating) {
    std::fprintf(results, "%sTE)=\t%g\tro(XE)=\t%g\tro(XT)=\t%g\tro(XE.T)=\t%g\tTraits:\t",
                 opt_ro == kMantel ? "ro(" : "r(", Printable(rating.roTA), Printable(rating.roXA),
                 Printable(rating.roXT), Printable(rating.partial));
}

}  // namespace

void ChRankTDAP_TCAP(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    SubsetTables<float> t(nMinCSTGroupsChRank);
    t.structures = {structures, &kGroupTexts};
    AddTable(Table::E, nenv, &t);
    AddTable(Table::X, t.K, &t);
    FinishTables(&t);
    TakeSitesOfSearch<float>(EucliDistMV, &t);
    TakeCommunities(&t);
    TakeTraits<float>(NormalizeColsMV, &t);
    CompareOTUsByTrait(OTUsComparedForTypes(t), &t);

    SubsetSearch search{.header = kHeaderTDAP_TCAP, .keeping = Keeping::bySign, .groups = t.K};
    search.make = [&](const TraitSubset& subset, int lane) {
        t.lane = lane;
        CompareOTUs(subset, &t);
        if (t.K < 2) return;
        PoolIntoTypes(&t);
        if (opt_ro == kMantel || structures != nullptr) CompareCommunities(Table::X, rese_opt, &t);
    };
    search.rate = [&](std::span<const TraitSubset> subsets, double* values) {
        if (t.K < 2) return false;
        constexpr TablePair kXE[] = {{Table::E, Table::X}};
        FindCongruences<float>(kXE, static_cast<int>(subsets.size()), values, &t);
        if (structures != nullptr) PrintStructure(structures, subsets[0], values[0]);
        return true;
    };
    search.printRating = [](FILE* results, int, double value) { PrintValue(results, value); };
    RunSearch(search, run);
    structures.Finish();
}

void ChRankTDAP(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    InitRndNumberGenerator(static_cast<unsigned long>(time0));
    SubsetTables<double> t(nMinCSTGroupsChRank);
    t.structures.stream = structures;
    AddTable(Table::E, nenv, &t);
    AddTable(Table::T, nch, &t);
    AddTable(Table::X, t.K, &t);
    FinishTables(&t);
    TakeSitesOfSearch<double>(EucliDistMV, &t);
    TakeCommunities(&t);
    TakeTraits<double>(NormalizeCols, &t);
    CompareOTUsByTrait(OTUsComparedForTypes(t), &t);
    TraitDivergence divergence = MakeTraitDivergence(Table::E, &t);
    const bool wantsAll = structures != nullptr || printRankIntermedResults == 'y';

    SubsetSearch search{.header = kHeaderTDAP,
                        .keeping = Keeping::byMagnitude,
                        .groups = t.K,
                        .rankedHeading = kHeadings[opt_ro - 1]};
    search.make = [&](const TraitSubset& subset, int lane) {
        t.lane = lane;
        ScaleTraitsUp(subset, &t);
        if (opt_ro == kMantel || wantsAll) CompareCommunities(Table::T, rese_opt, &t);
        CompareOTUs(subset, &t);
        if (t.K < 2) return;
        PoolIntoTypes(&t);
        if (opt_ro == kMantel) CompareCommunities(Table::X, rese_opt, &t);
    };
    search.rate = [&](std::span<const TraitSubset> subsets, double* values) {
        if (t.K < 2) return false;
        RateTraitDivergence(subsets, wantsAll, &divergence, values, &t);
        if (structures != nullptr)
            PrintTraitDivergence(structures, subsets[0], divergence.ratings[0], &t);
        return true;
    };
    search.printRating = [&](FILE* results, int lane, double) {
        PrintRating(results, divergence.ratings[static_cast<size_t>(lane)]);
    };
    RunSearch(search, run);
    structures.Finish();
}
