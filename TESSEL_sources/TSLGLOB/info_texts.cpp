#include "TSLGLOB/info_texts.h"

#include <iterator>

namespace {

constexpr const char* kTraitBased[] = {"1 (composition of types)",
                                       "2 (trait averages at community level)"};
constexpr const char* kPooling[] = {nullptr, nullptr, "2 (polythetic)"};
constexpr const char* kReseOTUs[] = {"1 (Gower index)"};
constexpr const char* kResemblance[] = {"1 (information divergence within rows)",
                                        "2 (information divergence mutual)",
                                        "3 (cross product uncentered data)",
                                        "4 (cross product centered data)",
                                        "5 (correlation coefficient)",
                                        "6 (Euclidean distance)",
                                        "7 (relative Euclidean distance)",
                                        "8 (absolute value function)",
                                        "9 (relative absolute value function)",
                                        "10 (chord distance)"};
constexpr const char* kCongruence[] = {"matrix correlation (Mantel)", "Procrustes (traceW)",
                                       "RV coefficient (Escoufier 1973)"};
constexpr const char* kFuzzy[] = {"no adjustment (crisp belonging of OTUs to types)", nullptr,
                                  nullptr, "fuzzy types (fuzzy belonging of OTUs to types)"};
constexpr const char* kYesNo[] = {"no", "yes"};
constexpr const char* kPartition[] = {"mixed", "quantitative", "qualitative"};

constexpr const char* kRankingAlgorithm[] = {"1 (stepwise)", "2 (all trait combinations)"};
constexpr const char* kRankingCriterion[] = {
    "1 (both trait-divergence and trait-convergence assembly patterns)",
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    nullptr,
    "9 (Trait-divergence assembly patterns, TDAP)",
    "10 (Trait-convergence assembly patterns, TCAP)",
    "11 (correlation of phylogenetically structured assembly patterns, PSAP to both "
    "trait-divergence and trait-convergence assembly patterns, TDAP and TCAP)",
    "12 (correlation of phylogenetically structured assembly patterns, PSAP to trait-divergence, "
    "TDAP)",
    "13 (correlation of phylogenetically structured assembly patterns, PSAP to trait-convergence "
    "assembly patterns, TCAP)",
    "14 (beta niche conservation: ro(PT) * ro(TE))",
    "15 (alpha and beta niche conservation: ro(PX) * ro(XE))",
    "16 (alpha divergence: ro(RE))",
    "17 (beta divergence: ro(XE.TR))",
    "18 (congruence of fuzzy-weighted composition and composition predicted by DeCaceres (2008) "
    "smoothing: r(XZ))",
    "19 (trait convergence: r(TZ))",
    "20 (trait divergence: r(XZ.T))21 (correlation between 'dark diversity' (for each community, "
    "sum of absolute differences between matrices X and W) and E: r(SE))",
    nullptr,
    nullptr,
    kCongruence[0],
    kCongruence[1]};

}  // namespace

const InfoTable traitBasedOptInfo = {1, std::size(kTraitBased), kTraitBased};
const InfoTable poolCSToptInfo = {0, std::size(kPooling), kPooling};
const InfoTable reseCSToptInfo = {1, std::size(kReseOTUs), kReseOTUs};
const InfoTable rese_optInfo = {1, std::size(kResemblance), kResemblance};
const InfoTable opt_roInfo = {1, std::size(kCongruence), kCongruence};
const InfoTable fuzzyInfo = {0, std::size(kFuzzy), kFuzzy};
const InfoTable YesNotInfo = {0, std::size(kYesNo), kYesNo};
const InfoTable partInfo = {1, std::size(kPartition), kPartition};
const InfoTable rankingAlgorithmInfo = {1, std::size(kRankingAlgorithm), kRankingAlgorithm};
const InfoTable opt_structInfo = {1, std::size(kRankingCriterion), kRankingCriterion};

const char* InfoText(const InfoTable& table, int option) {
    const int row = option - table.first;
    if (row < 0 || row >= table.rows || table.texts[row] == nullptr) return "(null)";
    return table.texts[row];
}
