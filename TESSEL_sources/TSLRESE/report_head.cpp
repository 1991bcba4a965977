#include "TSLGLOB/info_texts.h"
#include "TSLGLOB/session_files.h"
#include "TSLRESE/scaling_up_report.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/text.h"

namespace {

const char* YesOrNo(bool answer) {
    return InfoText(YesNotInfo, answer ? 1 : 0);
}

void PrintTitle(FILE* report) {
    if (prindaMode[0] == 'w') std::fprintf(report, "\n%s\n", version);
    std::fprintf(report, "%s\n", lineL);
    std::fprintf(report, "EXPLORATION OF COMMUNITY DATA STRUCTURES\n");
    std::fprintf(report, "%s\n", lineL);
    TimeStamp(report);
    std::fprintf(report, "Session:          %s\n", sessionName);
    std::fprintf(report, "Formatted data:   %s\n", whichFormda);
    std::fprintf(report, "Unformatted data: %s\n\n", dataName);
}

void PrintTraitSet(FILE* report) {
    std::fprintf(report, "Trait set:        ");
    for (int k = 0; k < nch; k++) std::fprintf(report, "%-3s", chLabel[k]);
    std::fprintf(report, "\nNumber of states: ");
    for (int k = 0; k < nch; k++) std::fprintf(report, "%-3d", onsta[k]);
    std::fprintf(report, "\nTrait type:       ");
    for (int k = 0; k < nch; k++) std::fprintf(report, "%-3d", chtype[k]);
    std::fprintf(report, "\nTrait weights:     ");
    for (int k = 0; k < nch; k++) std::fprintf(report, "%g\t", Printable(weight[k]));
}

void PrintApproach(FILE* report) {
    std::fprintf(report, "\nTrait-based approach: %s\n",
                 InfoText(traitBasedOptInfo, traitBasedOpt));
    std::fprintf(report,
                 "Community data matrix W adjusted to unit totals prior to trait convergence "
                 "evaluation (TCAP).\n");
    std::fprintf(report,
                 "Community data matrix W %sadjusted to unit totals prior to evaluation of TDAP.\n",
                 optUnitTotalAdjust2 ? "" : "NOT ");
    std::fprintf(report, "\nPooling of OTUs: %s\n", InfoText(poolCSToptInfo, poolCSTopt));
    std::fprintf(report,
                 "Clustering method defining types: none (groups were specified by the user).\n");
    std::fprintf(report, "Resemblance function between OTUs: %s\n",
                 InfoText(reseCSToptInfo, reseCSTopt));
    std::fprintf(report, "Gower index modified to count matching absences in binary traits? %s\n",
                 InfoText(YesNotInfo, countDoubleAbsence));
}

void PrintPhylogenyAndRao(FILE* report) {
    std::fprintf(report, includePhylogeny != 0 ? "\nPhylogeny: Is considered\n"
                                               : "\nPhylogeny: Is NOT considered\n");
    std::fprintf(report,
                 "Rao entropy based on traits computed on square root transformed "
                 "dissimilarities? %s\n",
                 YesOrNo(sqrtDissimOpt_RaoTraits));
    if (includePhylogeny != 0)
        std::fprintf(report,
                     "Rao entropy based on phylogeny computed on square root transformed "
                     "dissimilarities? %s\n",
                     YesOrNo(sqrtDissimOpt_RaoPhyl));
}

void PrintTraitsConsidered(FILE* report) {
    if (!AnyTraitLeftOut()) {
        std::fprintf(
            report, "All traits were considered in the computation of resemblance between OTUs.\n");
        return;
    }
    std::fprintf(report, "Traits considered in the computation of OTUs resemblance:\n");
    PrintTraitsInColumns(report);
}

void PrintCongruence(FILE* report) {
    std::fprintf(report, "\nCorrelation function between matrices: \t%s\n",
                 InfoText(opt_roInfo, opt_ro));
    if (opt_ro == kMantel)
        std::fprintf(report, "Resemblance option between communities: %s\n",
                     InfoText(rese_optInfo, rese_opt));
    else
        std::fprintf(report,
                     "Factor (f) for limiting the number of predictors in PCA regression in "
                     "relation to sample size n (number of predictors = n/f): %g\n",
                     Printable(overfitFactorPCARegr));
}

void PrintCommunityLabels(FILE* report) {
    std::fprintf(report, "\nNumber of communities: %d\n", ncsm);
    std::fprintf(report, "Community labels: ");
    for (int i = 0; i < ncsm; i++) std::fprintf(report, "%-6s", reLabel[i]);
    std::fprintf(report, "\n");
}

}  // namespace

void PrintHead(FILE* report, const ScalingUpMatrices& m) {
    PrintTitle(report);
    PrintTraitSet(report);
    PrintApproach(report);
    PrintPhylogenyAndRao(report);
    PrintTraitsConsidered(report);
    std::fprintf(report, "\nFuzzy transformation: \t%s\n", InfoText(fuzzyInfo, fuzzy));
    std::fprintf(report, "Number of types examined: \t%d\n", m.nTypes);
    PrintCongruence(report);
    PrintCommunityLabels(report);
}
