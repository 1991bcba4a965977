#include "TSLCHORD/trait_divergence.h"

#include "TSLCHORD/search_frame.h"
#include "TSLGLOB/settings.h"

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

TraitDivergence MakeTraitDivergence(Table a, SubsetTables<double>* t) {
    return {a, MakePartialRoom(Table::X, a, false, t), 0.0F, 0.0F, 0.0F, 0.0};
}

void RateTraitDivergence(const TraitSubset& subset, bool wantsAll, TraitDivergence* divergence,
                         SubsetTables<double>* t) {
    const Table a = divergence->a;
    if (opt_ro == kMantel) {
        const TablePair pairs[] = {{a, Table::T}, {a, Table::X}, {Table::T, Table::X}};
        double r[3];
        CorrelateResemblances<double>(pairs, r, t);
        divergence->roTA = static_cast<float>(r[0]);
        divergence->roXA = static_cast<float>(r[1]);
        divergence->roXT = static_cast<float>(r[2]);
        divergence->partial = static_cast<double>(
            PartialCorrelation(divergence->roXA, divergence->roXT, divergence->roTA));
        return;
    }
    if (wantsAll) {
        const TablePair pair[] = {{a, Table::T}};
        double r = 0.0;
        CorrelateResemblances<double>(pair, &r, t);
        divergence->roTA = static_cast<float>(r);
    }
    divergence->partial = PartialOfTables(Table::X, a, false, subset, divergence->room.get(), t);
}

void PrintTraitDivergence(FILE* stream, const TraitSubset& subset,
                          const TraitDivergence& divergence, SubsetTables<double>* t) {
    std::fprintf(stream, "\nTrait ranking criterion:\t");
    if (opt_ro == kMantel)
        std::fprintf(stream, "ro(TE)=\t%g\tro(XE)=\t%g\tro(XT)=\t%g\tro(XE.T)=\t",
                     static_cast<double>(divergence.roTA), static_cast<double>(divergence.roXA),
                     static_cast<double>(divergence.roXT));
    else
        std::fprintf(stream, "r(XE.T)=\t");
    std::fprintf(stream, "%g\t%d groups\tTraits:\t", divergence.partial, t->K);
    PrintLabelLine(stream, subset);
    if (opt_ro == kMantel)
        PrintResiduals(stream,
                       "\nResemblance matrix between communities (residuals after removing the "
                       "effect of DT):\n",
                       ResemblanceMatrix<double>(Table::T, t),
                       ResemblanceMatrix<double>(Table::X, t));
}
