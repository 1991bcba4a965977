#include <ctime>

#include "TSLRESE/analysis_statistics.h"
#include "TSLRESE/scaling_up_report.h"
#include "mxlibDim/text.h"
#include "mxlibOut/mxlibOut.h"

namespace {

using Test = PermTest_FunctionalPhyl_Correl_Input;

void PrintLines(FILE* report, ReportBlock block, const Test& test) {
    for (const AnalysisStatistic& line : kAnalysisStatistics)
        if (line.block == block)
            std::fprintf(report, "%s\t%g\tP=\t%g\n", line.label, Printable(test.*line.value),
                         Printable(test.*line.probability));
}

void PrintKindOfStatistics(FILE* report) {
    if (opt_ro == kMantel)
        std::fprintf(report, "\nThe statistics shown below are matrix (Mantel) correlations.\n");
    if (opt_ro == kProcrustes)
        std::fprintf(report,
                     "\nThe statistics shown below are Procrustes correlations (traceW).\n");
    if (opt_ro == kRV)
        std::fprintf(report,
                     "\nThe statistics shown below are RV coefficients (Escoufier 1973).\n");
}

void PrintPermutations(FILE* report) {
    std::fprintf(report, "\nNumber of iterations for permutation tests: %d\n", niter);
    std::fprintf(report, "Random generator seed: %u\n", static_cast<unsigned>(rseed));
    if (optRestrictPermutNullModel == 1) {
        std::fprintf(report,
                     "Permutations of OTUs: Restricted within the following groups:\n"
                     "Nesting groups for %d OTUs:\t",
                     tcst);
        PrintVectorTab(report, tcst, nestingMembershipOTUs, nullptr);
    } else {
        std::fprintf(report, "Permutations of OTUs: Unrestricted\n");
    }
    if (opt_ro != kMantel) return;
    std::fprintf(report, twoTailedTestMantel
                             ? "Permutation tests generated TWO-tailed p-values based on Mantel "
                               "correlations.\n"
                             : "Permutation tests generated ONE-tailed p-values based on Mantel "
                               "correlations, except for partial correlations, which are always "
                               "two-tailed tests.\n");
}

void PrintTypesAndTraits(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\nNumber of %s types:\t%d\nTraits:\t",
                 fuzzy == kFuzzyTypes ? "fuzzy" : "crisp", m.nTypes);
    PrintTraitsInUse(report, 2);
    std::fprintf(report, "\nNumber of OTUs in each type:\t");
    PrintVectorTab(report, m.nTypes, m.typeSizes, nullptr);
}

void PrintNullModel(FILE* report) {
    if (includePhylogeny != 0) {
        std::fprintf(report,
                     "\n(*)Probability of finding more extreme correlations involving matrices T, "
                     "X and P, and vector R, under null models described in Marlow et al. (2009) "
                     "and Marlow & Hollis (2010).\n");
        std::fprintf(report,
                     "Null model involved (1) permutation among OTUs vectors in matrix B for those "
                     "correlations involving matrices T and X and vector R, (2) permutation among "
                     "vectors in matrix Q for those correlations involving matrix P (ro(PE), "
                     "ro(PT) and ro(PE.X)), and (3) identical permutation among row vectors in "
                     "both matrices U and Q, for ro(PX) and ro(PX.T). Matrix W and environmental "
                     "matrix E are not permuted.\n");
    } else {
        std::fprintf(report,
                     "\n(*)Probability of finding more extreme correlations involving matrices T "
                     "and X, and vector R, under null model described in Marlow et al. (2009).\n");
        std::fprintf(report,
                     "Null model involved permutation among OTUs vectors in matrix B, keeping "
                     "fixed the community matrix W and environmental matrix E.\n");
    }
    std::fprintf(report,
                 "Probability of an OTU occurring in a community was %sweighted by its frequency "
                 "in the community set.\n",
                 optWeightedNullModel ? "" : "NOT ");
}

}  // namespace

void PrintStatistics(FILE* report, const ScalingUpMatrices& m, const Test& test) {
    PrintKindOfStatistics(report);
    std::fprintf(report, "\nStatistics and probabilities*:\n");
    PrintLines(report, ReportBlock::kAssembly, test);
    PrintPermutations(report);
    PrintTypesAndTraits(report, m);
    if (includePhylogeny == 0) return;
    std::fprintf(report, "\n");
    PrintLines(report, ReportBlock::kSignal, test);
    std::fprintf(report, "\nPhylogenetically structured assembly patterns (PSAP):\n");
    PrintLines(report, ReportBlock::kPhylogeny, test);
}

void PrintTestClosing(FILE* report) {
    PrintNullModel(report);
    std::fprintf(report, "Elapsed time for the test(s): %g seconds\n",
                 std::difftime(std::time(nullptr), time0));
}
