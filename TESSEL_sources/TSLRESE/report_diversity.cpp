#include "TSLRESE/scaling_up_report.h"
#include "mxlibOut/mxlibOut.h"

namespace {

void PrintIndex(FILE* report, const char* title, const double* values) {
    std::fprintf(report, "\n%s:\n", title);
    PrintVectorTab(report, ncsm, values, sDigits, nullptr);
}

}  // namespace

void PrintDiversity(FILE* report, const ScalingUpMatrices& m) {
    std::fprintf(report, "\n\nFUNCTIONAL DIVERSITY");
    PrintIndex(report,
               "Gini-Simpson index (D) within each community (equivalent to Rao quadratic entropy "
               "with null, crisp, similarities)",
               m.D);
    PrintIndex(report,
               sqrtDissimOpt_RaoTraits
                   ? "Rao quadratic entropy within each community, considering trait "
                     "dissimilarities [D=sqrt(1-GowerIndex)] between OTUs (Rf)"
                   : "Rao quadratic entropy within each community, considering trait "
                     "dissimilarities [D=1-GowerIndex] between OTUs (Rf)",
               m.RaoTraits);
    PrintIndex(report, "Functional redundancy in each community (FR = D-Rf)", m.redundancyTraits);
    if (includePhylogeny == 0) return;
    std::fprintf(report, "\n\nPHYLOGENETIC DIVERSITY");
    PrintIndex(report,
               PhylogenyIsDissimilarity()
                   ? "Rao quadratic entropy (Rp) within each community, considering phylogenetic "
                     "dissimilarities between OTUs"
                   : "Rao quadratic entropy (Rp) within each community, considering phylogenetic "
                     "dissimilarities obtained by transformation of input similarities [D= "
                     "sqrt(1-S)] between OTUs",
               m.RaoPhyl);
    PrintIndex(report, "Phylogenetic redundancy in each community (PR = D-Rp)", m.redundancyPhyl);
}
