// The search on the congruence of the composition by phylogeny with traits and types.

#include <array>
#include <ctime>

#include "TSLCHORD/phylogeny_table.h"
#include "TSLCHORD/search_frame.h"
#include "TSLCHORD/search_header.h"
#include "TSLCHORD/searches.h"
#include "TSLCHORD/subset_tables.h"
#include "TSLCHORD/trait_divergence.h"
#include "TSLCHORD/trait_screen.h"
#include "TSLGLOB/settings.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/text.h"
#include "mxlibRes/standardisation.h"

namespace {

enum Criterion : int { kRatePX = 11, kRatePX_T = 12, kRatePT = 13 };

struct PhylogenyRating {
    double roPT;
    double roPX;
    double roXT;
    double roPX_T;
};

/// Which tables of a subset are made: all if everything is printed.
struct Needs {
    bool T;
    bool X;
    bool all;
};

void MakeTables(const TraitSubset& subset, const Needs& needs, SubsetTables<double>* t) {
    const bool compare = opt_ro == kMantel || t->structures.stream != nullptr;
    if (needs.T) {
        ScaleTraitsUp(subset, t);
        if (compare) CompareCommunities(Table::T, rese_opt, t);
    }
    if (needs.X) CompareOTUs(subset, t);
    if (needs.X && t->K >= 2) {
        PoolIntoTypes(t);
        if (compare) CompareCommunities(Table::X, rese_opt, t);
    }
}

/// Statistics that feed no value and no line stay 0.
void RateLanes(std::span<const TraitSubset> subsets, const Needs& needs,
               PartialCorrelationRoom* room, PhylogenyRating* ratings, SubsetTables<double>* t) {
    // Of two tables as wide as each other the first is the narrower to the coefficients.
    constexpr TablePair kPairs[] = {
        {Table::T, Table::P}, {Table::X, Table::P}, {Table::X, Table::T}};
    const int lanes = static_cast<int>(subsets.size());
    const bool partial = needs.T && needs.X;
    const int first = needs.T ? 0 : 1;
    const int last = partial ? 3 : first + 1;
    double values[3 * kMostTogether] = {};
    if (!partial || opt_ro == kMantel || needs.all)
        FindCongruences<double>({kPairs + first, kPairs + last}, lanes, values, t);
    const double* value = values;
    for (PhylogenyRating* rating = ratings; rating < ratings + lanes; rating++) {
        double* const results[] = {&rating->roPT, &rating->roPX, &rating->roXT};
        for (int k = first; k < last; k++) *results[k] = *value++;
        if (partial && opt_ro == kMantel)
            rating->roPX_T = PartialCorrelation(rating->roPX, rating->roXT, rating->roPT);
    }
    if (partial && opt_ro != kMantel)
        ratings[0].roPX_T = PartialOfTables(Table::X, Table::P, false, subsets[0], room, t);
}

void PrintRating(FILE* stream, const PhylogenyRating& r) {
    std::fprintf(stream, "ro(PT)=\t%g\tro(PX)=\t%g\tro(XT)=\t%g\tro(PX.T)=\t%g\t",
                 Printable(r.roPT), Printable(r.roPX), Printable(r.roXT), Printable(r.roPX_T));
}

/// The residuals take the place of DP: the subsets that follow are compared with them.
void PrintStructures(FILE* stream, const TraitSubset& subset, const PhylogenyRating& rating,
                     SubsetTables<double>* t) {
    std::fprintf(stream, "\nTrait ranking criterion:\t");
    PrintRating(stream, rating);
    std::fprintf(stream, "%d groups\tTraits:\t", t->K);
    PrintLabels(stream, subset);
    std::fprintf(stream, "Group sizes:\t");
    PrintSizesOfTypes(stream, t->K);
    std::fprintf(stream, "\n");
    const ScopedMatrix<double> DT = ResemblanceMatrix<double>(Table::T, t);
    const ScopedMatrix<double> DP = ResemblanceMatrix<double>(Table::P, t);
    PrintResiduals(stream,
                   "\nResemblance matrix between communities based lon phylogeny (residuals after "
                   "removing the effect of DT):\n",
                   DT, DP);
    TakeResemblance<double>(DP, Table::P, t);
    PrintResiduals(stream,
                   "\nResemblance matrix between communities based on traits (residuals after "
                   "removing the effect of DT):\n",
                   DT, ResemblanceMatrix<double>(Table::X, t));
}

double ValueOf(const PhylogenyRating& rating) {
    switch (opt_struct) {
        case kRatePX:
            return rating.roPX;
        case kRatePX_T:
            return rating.roPX_T;
        default:
            return rating.roPT;
    }
}

SubsetRater RaterOf(const std::shared_ptr<SubsetTables<double>>& t) {
    FILE* const structures = t->structures.stream;
    const bool all = structures != nullptr || printRankIntermedResults == 'y';
    const Needs needs = {all || opt_struct != kRatePX, all || opt_struct != kRatePT, all};
    const std::shared_ptr<PartialCorrelationRoom> room =
        needs.T && needs.X ? MakePartialRoom(Table::X, Table::P, false, t.get()) : nullptr;
    const auto ratings = std::make_shared<std::array<PhylogenyRating, kMostTogether>>();
    SubsetRater rater;
    rater.make = [=](const TraitSubset& subset, int lane) {
        t->lane = lane;
        MakeTables(subset, needs, t.get());
    };
    rater.rate = [=](std::span<const TraitSubset> subsets, double* values) {
        if (t->K < 2) return false;
        RateLanes(subsets, needs, room.get(), ratings->data(), t.get());
        if (structures != nullptr)
            PrintStructures(structures, subsets[0], ratings->front(), t.get());
        for (size_t lane = 0; lane < subsets.size(); lane++)
            values[lane] = ValueOf((*ratings)[lane]);
        return true;
    };
    rater.printRating = [=](FILE* results, int lane, double) {
        PrintRating(results, (*ratings)[static_cast<size_t>(lane)]);
        std::fprintf(results, "Traits:\t");
    };
    if (opt_struct == kRatePT)
        rater.makeScreen = [=] {
            return ScreenTraits<double>(std::array{Table::P}, rese_opt, false, t.get());
        };
    return rater;
}

}  // namespace

void ChRankPhylogenyAssembly(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures("IntermediateRankResults.txt");
    InitRndNumberGenerator(static_cast<unsigned long>(time0));
    const auto t = std::make_shared<SubsetTables<double>>(nMinCSTGroupsChRank);
    t->structures.stream = structures;
    AddTable(Table::P, nTaxa, t.get());
    AddTable(Table::T, nch, t.get());
    AddTable(Table::X, t->K, t.get());
    FinishTables(t.get());
    TakeCommunities(t.get());
    TakePhylogeny(t.get());
    TakeTraits<double>(NormalizeCols, t.get());
    CompareOTUsByTrait(OTUsComparedForTypes(*t), t.get());
    const SubsetSearch search{
        .header = kHeaderPhylogeny,
        .keeping = opt_struct == kRatePX_T ? Keeping::byMagnitude : Keeping::bySign,
        .groups = t->K,
        .raterOf = [&](int worker) { return RaterOf(TablesOfWorker(worker, t)); },
        .rankedHeading =
            "\n\nTrait subsets with maximum matrix correlation:\nTRC\toptimal subset of traits\n"};
    RunSearch(search, run);
    structures.Finish();
}
