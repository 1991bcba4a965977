#include "TSLCHORD/trait_divergence.h"

#include "TSLCHORD/search_frame.h"
#include "TSLGLOB/settings.h"
#include "mxlibDim/text.h"

std::unique_ptr<PartialCorrelationRoom> MakePartialRoom(Table a, Table b, bool withEntropy,
                                                        SubsetTables<double>* t) {
    if (opt_ro == kMantel) return nullptr;
    return std::make_unique<PartialCorrelationRoom>(MakePartialCorrelationRoom(
        ncsm, Of(a, t).columns, Of(b, t).columns, nch + (withEntropy ? 1 : 0), opt_ro));
}

double PartialOfTables(Table a, Table b, bool withEntropy, const TraitSubset& subset,
                       PartialCorrelationRoom* room, SubsetTables<double>* t) {
    const CovariableSet traits = {nch, subset.selected, Of(Table::T, t).values};
    const ConstMatrix<double> A = Of(a, t).values;
    const ConstMatrix<double> B = Of(b, t).values;
    if (!withEntropy) return PartialMatrixCorrelation(A, B, overfitFactorPCARegr, {traits}, room);
    const CovariableSet entropy = {1, nullptr, Of(Table::R, t).values};
    return PartialMatrixCorrelation(A, B, overfitFactorPCARegr, {traits, entropy}, room);
}

double EstimateOfTables(Table a, const TraitSubset& subset, FixedMatrix* b,
                        PartialCorrelationRoom* room, SubsetTables<double>* t) {
    const CovariableSet traits = {nch, subset.selected, Of(Table::T, t).values};
    return EstimatedPartialCorrelation(Of(a, t).values, overfitFactorPCARegr, {traits}, b, room);
}

TraitDivergence MakeTraitDivergence(Table a, SubsetTables<double>* t) {
    TraitDivergence divergence{a, nullptr, {}};
    divergence.room = MakePartialRoom(Table::X, a, false, t);
    return divergence;
}

namespace {

void RateByCorrelations(Table a, int lanes, DivergenceRating* ratings, SubsetTables<double>* t) {
    const TablePair pairs[] = {{a, Table::T}, {a, Table::X}, {Table::T, Table::X}};
    double r[kMostTogether][3];
    CorrelateResemblances<double>(pairs, lanes, r[0], t);
    for (int lane = 0; lane < lanes; lane++) {
        DivergenceRating& rating = ratings[lane];
        rating.roTA = static_cast<float>(r[lane][0]);
        rating.roXA = static_cast<float>(r[lane][1]);
        rating.roXT = static_cast<float>(r[lane][2]);
        rating.partial =
            static_cast<double>(PartialCorrelation(rating.roXA, rating.roXT, rating.roTA));
    }
}

void RateByTables(const TraitSubset& subset, bool wantsAll, TraitDivergence* divergence,
                  SubsetTables<double>* t) {
    DivergenceRating& rating = divergence->ratings[0];
    if (wantsAll) {
        const TablePair pair[] = {{divergence->a, Table::T}};
        double r = 0.0;
        CorrelateResemblances<double>(pair, 1, &r, t);
        rating.roTA = static_cast<float>(r);
    }
    rating.partial =
        PartialOfTables(Table::X, divergence->a, false, subset, divergence->room.get(), t);
}

}  // namespace

void RateTraitDivergence(std::span<const TraitSubset> subsets, bool wantsAll,
                         TraitDivergence* divergence, double* values, SubsetTables<double>* t) {
    const int lanes = static_cast<int>(subsets.size());
    if (opt_ro == kMantel)
        RateByCorrelations(divergence->a, lanes, divergence->ratings.data(), t);
    else
        RateByTables(subsets[0], wantsAll, divergence, t);
    for (int lane = 0; lane < lanes; lane++)
        values[lane] = divergence->ratings[static_cast<size_t>(lane)].partial;
}

void PrintTraitDivergence(FILE* stream, const TraitSubset& subset, const DivergenceRating& rating,
                          SubsetTables<double>* t) {
    std::fprintf(stream, "\nTrait ranking criterion:\t");
    if (opt_ro == kMantel)
        std::fprintf(stream, "ro(TE)=\t%g\tro(XE)=\t%g\tro(XT)=\t%g\tro(XE.T)=\t",
                     Printable(rating.roTA), Printable(rating.roXA), Printable(rating.roXT));
    else
        std::fprintf(stream, "r(XE.T)=\t");
    std::fprintf(stream, "%g\t%d groups\tTraits:\t", Printable(rating.partial), t->K);
    PrintLabelLine(stream, subset);
    if (opt_ro == kMantel)
        PrintResiduals(stream,
                       "\nResemblance matrix between communities (residuals after removing the "
                       "effect of DT):\n",
                       ResemblanceMatrix<double>(Table::T, t),
                       ResemblanceMatrix<double>(Table::X, t));
}
