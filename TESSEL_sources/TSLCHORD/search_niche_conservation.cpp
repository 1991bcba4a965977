// The search on niche conservation: products of congruences with the phylogeny and with the sites.

#include <array>
#include <ctime>

#include "TSLCHORD/phylogeny_table.h"
#include "TSLCHORD/search_frame.h"
#include "TSLCHORD/search_header.h"
#include "TSLCHORD/searches.h"
#include "TSLCHORD/structures_file.h"
#include "TSLCHORD/subset_tables.h"
#include "TSLCHORD/trait_screen.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "mxlibDim/text.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/standardisation.h"

namespace {

constexpr int kBetaNiche = 14;

/// All in single precision; statistics that feed no value and no line stay 0.
struct NicheRating {
    float PT, PX, XT, XE, TE, PE;
    float XE_T, TE_P, PX_T, PE_T, XE_P, XE_PT;
    float betaNiche, alphaBetaNiche, alphaNiche;
};

void FindPartials(NicheRating* r) {
    r->XE_T = PartialCorrelation(r->XE, r->XT, r->TE);
    r->TE_P = PartialCorrelation(r->TE, r->PT, r->PE);
    r->PX_T = PartialCorrelation(r->PX, r->PT, r->XT);
    r->PE_T = PartialCorrelation(r->PE, r->PT, r->TE);
    r->XE_P = PartialCorrelation(r->XE, r->PX, r->PE);
    r->XE_PT = PartialCorrelation(r->XE_T, r->PX_T, r->PE_T);
}

float Correlation(Table a, Table b, SubsetTables<float>* t) {
    const TablePair pair[] = {{a, b}};
    double r = 0.0;
    CorrelateResemblances<float>(pair, 1, &r, t);
    return static_cast<float>(r);
}

struct Needs {
    bool T;
    bool X;
};

void MakeTables(const TraitSubset& subset, const Needs& needs, SubsetTables<float>* t) {
    if (needs.T) {
        ScaleTraitsUp(subset, t);
        CompareCommunities(Table::T, rese_opt, t);
    }
    if (needs.X) CompareOTUs(subset, t);
    if (needs.X && t->K >= 2) {
        PoolIntoTypes(t);
        CompareCommunities(Table::X, rese_opt, t);
    }
}

void RateLanes(const Needs& needs, int lanes, NicheRating* ratings, SubsetTables<float>* t) {
    constexpr TablePair kPairs[] = {{Table::P, Table::T},
                                    {Table::T, Table::E},
                                    {Table::P, Table::X},
                                    {Table::X, Table::E},
                                    {Table::T, Table::X}};
    const int first = needs.T ? 0 : 2;
    const int last = needs.T && needs.X ? 5 : first + 2;
    double values[5 * kMostTogether];
    CorrelateResemblances<float>({kPairs + first, kPairs + last}, lanes, values, t);
    const double* value = values;
    for (NicheRating* r = ratings; r < ratings + lanes; r++) {
        float* const results[] = {&r->PT, &r->TE, &r->PX, &r->XE, &r->XT};
        for (int k = first; k < last; k++) *results[k] = static_cast<float>(*value++);
        if (needs.T && needs.X) FindPartials(r);
        r->betaNiche = r->PT * r->TE;
        r->alphaBetaNiche = r->PX * r->XE;
        r->alphaNiche = r->XE_T * r->PX_T;
    }
}

void PrintStatistic(FILE* stream, const char* name, float value) {
    std::fprintf(stream, "%s=\t%g\t", name, Printable(value));
}

void PrintRating(FILE* stream, const NicheRating& r, int K) {
    const struct {
        const char* name;
        float value;
    } statistics[] = {{"ro(PT)", r.PT},
                      {"ro(PX)", r.PX},
                      {"ro(XT)", r.XT},
                      {"ro(PX.T)", r.PX_T},
                      {"ro(XE)", r.XE},
                      {"ro(TE)", r.TE},
                      {"ro(XE.T)", r.XE_T},
                      {"ro(PE)", r.PE},
                      {"ro(TE.P)", r.TE_P},
                      {"ro(PE.T)", r.PE_T},
                      {"ro(XE.P)", r.XE_P},
                      {"ro(XE.PT)", r.XE_PT},
                      {"roBetaNiche", r.betaNiche},
                      {"roAlphaBetaNiche", r.alphaBetaNiche},
                      {"roAlphaNiche", r.alphaNiche}};
    for (const auto& statistic : statistics)
        PrintStatistic(stream, statistic.name, statistic.value);
    std::fprintf(stream, "%d groups\tTraits:\t", K);
}

/// All places of a list, best first, also those never filled.
void PrintWholeList(FILE* results, const char* heading, const RankedList& list) {
    std::fprintf(results, "\n\n%s:\nTRC\tn groups\toptimal subset of traits\n", heading);
    const KeptSubsets& kept = Kept(list);
    for (int place = list.places - 1; place > 0; place--) {
        PrintValue(results, kept.value[place]);
        std::fprintf(results, "%d groups\t", kept.groups[place]);
        PrintKeptLabels(results, kept, place);
        std::fprintf(results, "\n");
    }
}

/// Written over the head of the file: readers of the file take the summary from its top.
void OverwriteHead(FILE* results, const KeptSubsets& best) {
    std::fseek(results, 0, SEEK_SET);  // rewind would forget a failed output
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++) {
        PrintKeptLabels(results, best, size - 1);
        std::fprintf(results, "\n");
    }
    std::fprintf(results, "\n");
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++)
        std::fprintf(results, "%-5d\t", best.groups[size - 1]);
    std::fprintf(results, "\n");
    for (int size = nMinTraitsChRank; size <= nMaxTraitsChRank; size++)
        std::fprintf(results, "%-13.*g\t", ValueDigits(), Printable(best.value[size - 1]));
    std::fprintf(results, "\n");
}

void PrintClosing(FILE* results, const SubsetSearch&, const SearchOutcome& outcome) {
    PrintWholeList(results, "Trait subsets and number of types with maximum matrix correlation",
                   outcome.whileRating);
    PrintWholeList(results,
                   "Trait subsets with maximum matrix correlation (only optimal number of types "
                   "presented)",
                   outcome.ranked);
    PrintElapsedTime(results);
    OverwriteHead(results, outcome.best);
}

void TakeTables(SubsetTables<float>* t) {
    AddTable(Table::E, nenv, t);
    AddTable(Table::P, nTaxa, t);
    AddTable(Table::T, nch, t);
    AddTable(Table::X, t->K, t);
    FinishTables(t);
    TakeSitesOfSearch<float>(EucliDist, t);
    TakeCommunities(t);
    TakePhylogeny(t);
    TakeTraits<float>(NormalizeCols, t);
    CompareOTUsByTrait(OTUsComparedForTypes(*t), t);
}

SubsetRater RaterOf(float PE, const std::shared_ptr<SubsetTables<float>>& t) {
    FILE* const structures = t->structures.stream;
    const bool all = structures != nullptr || printRankIntermedResults == 'y';
    const Needs needs = {all || opt_struct == kBetaNiche, all || opt_struct != kBetaNiche};
    const auto ratings = std::make_shared<std::array<NicheRating, kMostTogether>>();
    for (NicheRating& rating : *ratings) rating.PE = PE;
    SubsetRater rater;
    rater.make = [=](const TraitSubset& subset, int lane) {
        t->lane = lane;
        MakeTables(subset, needs, t.get());
    };
    rater.rate = [=](std::span<const TraitSubset> subsets, double* values) {
        if (t->K < 2) return false;
        RateLanes(needs, static_cast<int>(subsets.size()), ratings->data(), t.get());
        if (structures != nullptr) {
            std::fprintf(structures, "\nTrait ranking criterion:\t");
            PrintRating(structures, ratings->front(), t->K);
            PrintLabelLine(structures, subsets[0]);
        }
        for (size_t lane = 0; lane < subsets.size(); lane++) {
            const NicheRating& rating = (*ratings)[lane];
            values[lane] = static_cast<double>(opt_struct == kBetaNiche ? rating.betaNiche
                                                                        : rating.alphaBetaNiche);
        }
        return true;
    };
    rater.printRating = [=](FILE* results, int lane, double) {
        PrintRating(results, (*ratings)[static_cast<size_t>(lane)], t->K);
    };
    // The congruences of this search are matrix correlations under every measure.
    if (opt_struct == kBetaNiche && opt_ro == kMantel)
        rater.makeScreen = [=] {
            return ScreenTraits<float>(std::array{Table::P, Table::E}, rese_opt, true, t.get());
        };
    return rater;
}

}  // namespace

void ChRank_Phylogeny_x_Trait_Assembly(const SearchRun& run) {
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    const auto t = std::make_shared<SubsetTables<float>>(nMinCSTGroupsChRank);
    t->structures.stream = structures;
    TakeTables(t.get());
    const float PE = Correlation(Table::P, Table::E, t.get());
    const SubsetSearch search{
        .header = kHeaderNicheConservation,
        .keeping = Keeping::enteredBySign,
        .groups = t->K,
        .raterOf = [&](int worker) { return RaterOf(PE, TablesOfWorker(worker, t)); },
        .printBehindLabels =
            [&](FILE* results) {
                std::fprintf(results, "Group sizes:\t");
                PrintSizesOfTypes(results, t->K);
            },
        .sizeLine = "Ranking criterion values, groups and optimal subset",
        .namesGroups = true,
        .printClosing = PrintClosing};
    RunSearch(search, run);
    structures.Finish();
}
