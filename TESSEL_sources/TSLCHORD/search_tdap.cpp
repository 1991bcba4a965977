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

SubsetRater RaterOfXE(const std::shared_ptr<SubsetTables<float>>& t) {
    FILE* const structures = t->structures.stream;
    SubsetRater rater;
    rater.make = [=](const TraitSubset& subset, int lane) {
        t->lane = lane;
        CompareOTUs(subset, t.get());
        if (t->K < 2) return;
        PoolIntoTypes(t.get());
        if (opt_ro == kMantel || structures != nullptr)
            CompareCommunities(Table::X, rese_opt, t.get());
    };
    rater.rate = [=](std::span<const TraitSubset> subsets, double* values) {
        if (t->K < 2) return false;
        constexpr TablePair kXE[] = {{Table::E, Table::X}};
        FindCongruences<float>(kXE, static_cast<int>(subsets.size()), values, t.get());
        if (structures != nullptr) PrintStructure(structures, subsets[0], values[0]);
        return true;
    };
    rater.printRating = [](FILE* results, int, double value) { PrintValue(results, value); };
    return rater;
}

SubsetRater RaterOfXE_T(const std::shared_ptr<SubsetTables<double>>& t) {
    FILE* const structures = t->structures.stream;
    const bool wantsAll = structures != nullptr || printRankIntermedResults == 'y';
    const auto divergence =
        std::make_shared<TraitDivergence>(MakeTraitDivergence(Table::E, t.get()));
    SubsetRater rater;
    rater.make = [=](const TraitSubset& subset, int lane) {
        t->lane = lane;
        ScaleTraitsUp(subset, t.get());
        if (opt_ro == kMantel || wantsAll) CompareCommunities(Table::T, rese_opt, t.get());
        CompareOTUs(subset, t.get());
        if (t->K < 2) return;
        PoolIntoTypes(t.get());
        if (opt_ro == kMantel) CompareCommunities(Table::X, rese_opt, t.get());
    };
    rater.rate = [=](std::span<const TraitSubset> subsets, double* values) {
        if (t->K < 2) return false;
        RateTraitDivergence(subsets, wantsAll, divergence.get(), values, t.get());
        if (structures != nullptr)
            PrintTraitDivergence(structures, subsets[0], divergence->ratings[0], t.get());
        return true;
    };
    rater.printRating = [=](FILE* results, int lane, double) {
        PrintRating(results, divergence->ratings[static_cast<size_t>(lane)]);
    };
    return rater;
}

}  // namespace

void ChRankTDAP_TCAP(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    const auto t = std::make_shared<SubsetTables<float>>(nMinCSTGroupsChRank);
    t->structures = {structures, &kGroupTexts};
    AddTable(Table::E, nenv, t.get());
    AddTable(Table::X, t->K, t.get());
    FinishTables(t.get());
    TakeSitesOfSearch<float>(EucliDistMV, t.get());
    TakeCommunities(t.get());
    TakeTraits<float>(NormalizeColsMV, t.get());
    CompareOTUsByTrait(OTUsComparedForTypes(*t), t.get());
    const SubsetSearch search{
        .header = kHeaderTDAP_TCAP,
        .keeping = Keeping::bySign,
        .groups = t->K,
        .raterOf = [&](int worker) { return RaterOfXE(TablesOfWorker(worker, t)); }};
    RunSearch(search, run);
    structures.Finish();
}

void ChRankTDAP(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    InitRndNumberGenerator(static_cast<unsigned long>(time0));
    const auto t = std::make_shared<SubsetTables<double>>(nMinCSTGroupsChRank);
    t->structures.stream = structures;
    AddTable(Table::E, nenv, t.get());
    AddTable(Table::T, nch, t.get());
    AddTable(Table::X, t->K, t.get());
    FinishTables(t.get());
    TakeSitesOfSearch<double>(EucliDistMV, t.get());
    TakeCommunities(t.get());
    TakeTraits<double>(NormalizeCols, t.get());
    CompareOTUsByTrait(OTUsComparedForTypes(*t), t.get());
    const SubsetSearch search{
        .header = kHeaderTDAP,
        .keeping = Keeping::byMagnitude,
        .groups = t->K,
        .raterOf = [&](int worker) { return RaterOfXE_T(TablesOfWorker(worker, t)); },
        .rankedHeading = kHeadings[opt_ro - 1]};
    RunSearch(search, run);
    structures.Finish();
}
