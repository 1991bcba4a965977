// The criteria with Rao entropy, dark diversity and the smoothed compositions.

#include <algorithm>
#include <array>
#include <ctime>
#include <string>

#include "TSLCHORD/criteria.h"
#include "TSLCHORD/search_frame.h"
#include "TSLCHORD/search_header.h"
#include "TSLCHORD/searches.h"
#include "TSLCHORD/subset_tables.h"
#include "TSLCHORD/trait_divergence.h"
#include "TSLCHORD/trait_screen.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/text.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/rao.h"
#include "mxlibRes/standardisation.h"

namespace {

enum class Form { pair, partial, partialWithEntropy };

/// Smoothing by joint performances as odds (Z) or by plain conditional performances (Y): the
/// searches name them the other way round than the functional analysis does.
struct Smoothing {
    int option;
    bool odds;
};
constexpr Smoothing kSmoothingZ = {2, true};
constexpr Smoothing kSmoothingY = {1, false};

struct DivergenceCriterion {
    Form form;
    Table a;
    Table b;
    const Smoothing* smoothing;  ///< of table Z, if it takes part
};
constexpr DivergenceCriterion kDivergenceCriteria[] = {
    {Form::pair, Table::R, Table::E, nullptr},
    {Form::partialWithEntropy, Table::X, Table::E, nullptr},
    {Form::pair, Table::S, Table::E, nullptr},
    {Form::pair, Table::X, Table::Z, &kSmoothingZ},
    {Form::pair, Table::T, Table::Z, &kSmoothingZ},
    {Form::partial, Table::X, Table::Z, &kSmoothingZ},
    {Form::pair, Table::X, Table::Z, &kSmoothingY},
    {Form::pair, Table::T, Table::Z, &kSmoothingY},
    {Form::partial, Table::X, Table::Z, &kSmoothingY},
};

/// What stands around the statistic in the heading of the ranked list, by form and opt_ro.
constexpr struct {
    const char* before;
    const char* letters;
} kHeadings[][3] = {{{"maximum Mantel correlation", "ro"},
                     {"maximum congruence in a symmetric Procrustes rotation", "ro"},
                     {"maximum congruence measured by the RV coefficient", "r"}},
                    {{"maximum partial Mantel correlation", "ro"},
                     {"maximum congruence in a partial Procrustes correlation", "ro"},
                     {"maximum partial congruence measured by a partial RV coefficient", "r"}},
                    {{"maximum partial Mantel correlation", "ro"},
                     {"maximum partial congruence in a partial Procrustes correlation", "ro"},
                     {"maximum partial congruence measured by a partial RV coefficient", "r"}}};

std::string RankedHeading(Form form, const char* statistic) {
    const auto& heading = kHeadings[static_cast<int>(form)][opt_ro - 1];
    return std::string("\n\nTrait subsets with ") + heading.before + " " + heading.letters + "(" +
           statistic + "):\nTRC\toptimal subset of traits\n";
}

/// Which tables a criterion needs of each subset; with the structures file all are made.
struct Needs {
    bool T, X, R, S;
};
Needs NeedsOf(const DivergenceCriterion& criterion, bool all) {
    const bool partial = criterion.form != Form::pair;
    const bool entropy = criterion.form == Form::partialWithEntropy && opt_ro != kMantel;
    return {all || partial || criterion.a == Table::T,
            all || partial || criterion.a == Table::X || criterion.a == Table::S,
            all || entropy || criterion.a == Table::R, all || criterion.a == Table::S};
}

/// Entropy alone compares only the OTUs that it is taken over.
int OTUsCompared(const Needs& needs, const SubsetTables<double>& t) {
    return std::max(needs.X ? OTUsComparedForTypes(t) : 0, needs.R ? t.K : 0);
}

/// Rao entropy and dark diversity are taken over the first K OTUs, not all.
struct FirstOTUs {
    ScopedVector<int> otus;
    ScopedVector<double> proportions;
    ScopedVector<double> entropies;
};

void MeasureEntropy(FirstOTUs* room, SubsetTables<double>* t) {
    ComparedTable<double>& R = Of(Table::R, t);
    RaoIndexRows(ncsm, t->K, t->shared->W, t->S, false, sqrtDissimOpt_RaoTraits, room->otus,
                 room->proportions, room->entropies);
    for (int i = 0; i < ncsm; i++) R.rows[i][0] = room->entropies[i];
    MarkChanged(&R);
}

void MeasureDarkDiversity(SubsetTables<double>* t) {
    ComparedTable<double>& S = Of(Table::S, t);
    for (int i = 0; i < ncsm; i++)
        S.rows[i][0] = SumAbsDeviations(t->K, t->shared->W[i], Of(Table::X, t).values[i], false);
    MarkChanged(&S);
}

/// Congruences with Z are held in single precision.
void RatePair(const DivergenceCriterion& criterion, int lanes, double* values,
              SubsetTables<double>* t) {
    const TablePair pair[] = {{criterion.a, criterion.b}};
    FindCongruences<double>(pair, lanes, values, t);
    if (criterion.b != Table::Z) return;
    for (int lane = 0; lane < lanes; lane++)
        values[lane] = static_cast<double>(static_cast<float>(values[lane]));
}

void AddTables(const DivergenceCriterion& criterion, SubsetTables<double>* t) {
    AddTable(Table::E, nenv, t);
    if (criterion.smoothing != nullptr) AddTable(Table::Z, tcst, t);
    AddTable(Table::T, nch, t);
    AddTable(Table::X, t->K, t);
    AddTable(Table::R, 1, t);
    AddTable(Table::S, 1, t);
    FinishTables(t);
}

void SmoothComposition(const Smoothing& smoothing, SubsetTables<double>* t) {
    BealsSmoothing(ncsm, tcst, t->shared->W, t->shared->W, Of(Table::Z, t).rows, BealsIncludeOpt,
                   smoothing.option, smoothing.odds);
    CompareCommunities(Table::Z, rese_opt, t);
}

constexpr int kEuclideanDistance = 6;
constexpr int kAbsoluteDifference = 8;

void MakeTables(const TraitSubset& subset, const Needs& needs, FirstOTUs* room,
                SubsetTables<double>* t) {
    const bool compare = opt_ro == kMantel || t->structures.stream != nullptr;
    if (needs.T) {
        ScaleTraitsUp(subset, t);
        if (compare) CompareCommunities(Table::T, kEuclideanDistance, t);
    }
    if (needs.X || needs.R) CompareOTUs(subset, t);
    if (t->K < 2) return;
    if (needs.X) {
        PoolIntoTypes(t);
        if (opt_ro == kMantel) CompareCommunities(Table::X, rese_opt, t);
    }
    if (needs.R) {
        MeasureEntropy(room, t);
        if (compare) CompareCommunities(Table::R, kAbsoluteDifference, t);
    }
    if (needs.S) {
        MeasureDarkDiversity(t);
        if (compare) CompareCommunities(Table::S, kEuclideanDistance, t);
    }
}

/// Under the matrix correlation the entropy is not removed: r(XE.TR) is r(XE.T).
void RateSubsets(std::span<const TraitSubset> subsets, const DivergenceCriterion& criterion,
                 TraitDivergence* divergence, PartialCorrelationRoom* withEntropy, double* values,
                 SubsetTables<double>* t) {
    if (criterion.form == Form::pair)
        RatePair(criterion, static_cast<int>(subsets.size()), values, t);
    else if (withEntropy != nullptr)
        values[0] = PartialOfTables(criterion.a, criterion.b, true, subsets[0], withEntropy, t);
    else
        RateTraitDivergence(subsets, false, divergence, values, t);
}

void PrintStructures(FILE* stream, const TraitSubset& subset, TraitDivergence* withE,
                     SubsetTables<double>* t) {
    PrintResemblanceMatrix(stream,
                           "\nResemblance matrix DR comparing communities based on their Rao "
                           "entropy expressed as equivalent numbers of OTUs (Jost 2007): \n",
                           ResemblanceMatrix<double>(Table::R, t));
    double value = 0.0;
    RateTraitDivergence({&subset, 1}, false, withE, &value, t);
    PrintTraitDivergence(stream, subset, withE->ratings[0], t);
}

/// What a worker rates with beside its tables.
struct WorkerRoom {
    FirstOTUs otus;
    TraitDivergence divergence;
    TraitDivergence withE;
    std::unique_ptr<PartialCorrelationRoom> withEntropy;  ///< null: entropy is not removed
    std::unique_ptr<FixedMatrix> Z;                       ///< null: subsets are not estimated
};
std::shared_ptr<WorkerRoom> MakeRoom(const DivergenceCriterion& criterion,
                                     SubsetTables<double>* t) {
    const bool removesEntropy = criterion.form == Form::partialWithEntropy && opt_ro != kMantel;
    return std::make_shared<WorkerRoom>(WorkerRoom{
        {ScopedVector<int>(t->K), ScopedVector<double>(t->K), ScopedVector<double>(ncsm)},
        MakeTraitDivergence(criterion.b, t),
        MakeTraitDivergence(Table::E, t),
        removesEntropy ? MakePartialRoom(criterion.a, criterion.b, true, t) : nullptr,
        nullptr});
}

SubsetRater RaterOf(const DivergenceCriterion& criterion,
                    const std::shared_ptr<SubsetTables<double>>& t) {
    FILE* const structures = t->structures.stream;
    const Needs needs = NeedsOf(criterion, structures != nullptr);
    const auto room = MakeRoom(criterion, t.get());
    SubsetRater rater;
    rater.make = [=](const TraitSubset& subset, int lane) {
        t->lane = lane;
        MakeTables(subset, needs, &room->otus, t.get());
    };
    rater.rate = [=, &criterion](std::span<const TraitSubset> subsets, double* values) {
        if (t->K < 2) return false;
        RateSubsets(subsets, criterion, &room->divergence, room->withEntropy.get(), values,
                    t.get());
        if (structures != nullptr) PrintStructures(structures, subsets[0], &room->withE, t.get());
        return true;
    };
    // Z is wide, and its residuals would be made anew for each subset.
    PartialCorrelationRoom* const partial = room->divergence.room.get();
    if (criterion.form == Form::partial && opt_ro != kMantel && structures == nullptr && t->K > 1 &&
        EstimatesPay(*partial)) {
        room->Z = std::make_unique<FixedMatrix>(
            MakeFixedMatrix(Of(criterion.b, t.get()).values, nch, *partial));
        rater.estimate = [=, &criterion](const TraitSubset& subset) {
            return EstimateOfTables(criterion.a, subset, room->Z.get(), partial, t.get());
        };
    }
    rater.printRating = [](FILE* results, int, double value) {
        std::fprintf(results, "r(%s)=\t%g\tTraits:\t", CriterionOf(opt_struct).statistic,
                     Printable(value));
    };
    if (criterion.form == Form::pair && criterion.a == Table::T)
        rater.makeScreen = [=, &criterion] {
            return ScreenTraits<double>(std::array{criterion.b}, kEuclideanDistance, true, t.get());
        };
    return rater;
}

}  // namespace

void ChRankAlphaBetaDivergence(int mode, const SearchRun& run) {
    const DivergenceCriterion& criterion = kDivergenceCriteria[mode - 1];
    time0 = std::time(nullptr);
    ResultsFile structures = OpenStructures(whichStructures);
    InitRndNumberGenerator(static_cast<unsigned long>(time0));
    const auto t = std::make_shared<SubsetTables<double>>(nMinCSTGroupsChRank);
    t->structures.stream = structures;
    AddTables(criterion, t.get());
    TakeSitesOfSearch<double>(EucliDistMV, t.get());
    TakeCommunities(t.get());
    TakeTraits<double>(NormalizeCols, t.get());
    CompareOTUsByTrait(OTUsCompared(NeedsOf(criterion, structures != nullptr), *t), t.get());
    if (criterion.smoothing != nullptr) SmoothComposition(*criterion.smoothing, t.get());

    const std::string heading = RankedHeading(criterion.form, CriterionOf(opt_struct).statistic);
    const SubsetSearch search{
        .header = kHeaderDivergence,
        .keeping = criterion.form == Form::pair ? Keeping::bySign : Keeping::byMagnitude,
        .groups = t->K,
        .raterOf = [&](int worker) { return RaterOf(criterion, TablesOfWorker(worker, t)); },
        .sizeLine = "Ranking criterion value, groups and optimal subset",
        .namesGroups = true,
        .rankedHeading = heading.c_str()};
    RunSearch(search, run);
    structures.Finish();
}
