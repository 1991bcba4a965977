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

}  // namespace

const InfoTable traitBasedOptInfo = {1, std::size(kTraitBased), kTraitBased};
const InfoTable poolCSToptInfo = {0, std::size(kPooling), kPooling};
const InfoTable reseCSToptInfo = {1, std::size(kReseOTUs), kReseOTUs};
const InfoTable rese_optInfo = {1, std::size(kResemblance), kResemblance};
const InfoTable opt_roInfo = {1, std::size(kCongruence), kCongruence};
const InfoTable fuzzyInfo = {0, std::size(kFuzzy), kFuzzy};
const InfoTable YesNotInfo = {0, std::size(kYesNo), kYesNo};
const InfoTable partInfo = {1, std::size(kPartition), kPartition};

const char* InfoText(const InfoTable& table, int option) {
    const int row = option - table.first;
    if (row < 0 || row >= table.rows || table.texts[row] == nullptr) return "(null)";
    return table.texts[row];
}
