#include "TSLCHORD/criteria.h"

#include <algorithm>
#include <string_view>

#include "TSLCHORD/searches.h"
#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "mxlib/belonging.h"

namespace {

constexpr ShownWith kWithSites = {true, false, false};
constexpr ShownWith kWithSitesAndNumbers = {true, false, true};
constexpr ShownWith kWithPhylogeny = {false, true, false};
constexpr ShownWith kWithPhylogenyAndNumbers = {false, true, true};
constexpr ShownWith kHidden = {false, false, false};

template <int mode>
void Divergence(const SearchRun& run) {
    ChRankAlphaBetaDivergence(mode, run);
}

constexpr RankingCriterion kCriteria[] = {
    {1, "XE", kWithSites, true, "   1 r(XE): TCAP and TDAP\n",
     "1. Correlation r(XE) between fuzzy weighted community composition based on OTU's trait "
     "similarities (X) and ecological variables (E) may reflect both trait convergence assembly "
     "patterns (TCAP) and trait divergence assembly patterns (TDAP).\n",
     "ChRank_TDAP_TCAP.txt", ChRankTDAP_TCAP},
    {9, "XE.T", kWithSitesAndNumbers, false, "   9 r(XE.T): TDAP only\n",
     "9. Partial correlation r(XE.T) between X and E, removing T, reflects TDAP only.\n",
     "ChRank_TDAP.txt", ChRankTDAP},
    {10, "TE", kWithSitesAndNumbers, false, "   10 r(TE): TCAP only\n",
     "10. Correlation r(TE) between community weighted mean traits (T) and E reflects TCAP only.\n",
     "ChRank_TCAP.txt", ChRankTCAP},
    {11, "PX", kWithPhylogeny, false,
     "   11  correlation of phylogenetically structured assembly patterns (PSAP) to both TCAP and "
     "TDAP = r(PX)\n",
     "11. Correlation r(PX) between P (fuzzy weighted community composition based on OTU's "
     "phylogenetic similarities) and X reflects phylogenetic signal at the metacommunity level.\n",
     "ChRank_PSAP_X.txt", ChRankPhylogenyAssembly},
    {12, "PX.T", kWithPhylogenyAndNumbers, false, "   12  correlation of PSAP to TDAP = r(PX.T)\n",
     "12. Partial correlation r(PX.T) between P and X, removing T reflects phylogenetic signal at "
     "the metacommunity level.\n",
     "ChRank_PSAP_X_T.txt", ChRankPhylogenyAssembly},
    {13, "PT", kWithPhylogenyAndNumbers, false, "   13  correlation of PSAP to TCAP = r(PT)\n",
     "13. Correlation r(PT) reflects phylogenetic signal at the metacommunity level.\n",
     "ChRank_PSAP_T.txt", ChRankPhylogenyAssembly},
    {14, "PTxTE", kHidden, true, nullptr, nullptr, "ChRank_BetaNicheConserv.txt",
     ChRank_Phylogeny_x_Trait_Assembly},
    {15, "PXxXE", kHidden, true, nullptr, nullptr, "ChRank_AlphaBetaNicheConserv.txt",
     ChRank_Phylogeny_x_Trait_Assembly},
    {16, "RE", kWithSites, true, "   16  alpha divergence: r(RE) \n",
     "16. ro(RE) is a congruence between Rao entropy and E.\n", "ChRank_AlphaDivergence.txt",
     Divergence<kAlphaDivergence>},
    {17, "XE.TR", kHidden, false, nullptr, nullptr, "ChRank_BetaDivergence.txt",
     Divergence<kBetaDivergence>},
    {18, "XZ", kHidden, false, nullptr, nullptr, "ChRank_roXZ.txt", Divergence<kCongruenceZ>},
    {19, "TZ", kHidden, false, nullptr, nullptr, "ChRank_roTZ.txt", Divergence<kTraitConvergenceZ>},
    {20, "XZ.T", kHidden, false, nullptr, nullptr, "ChRank_roXZ_T.txt",
     Divergence<kTraitDivergenceZ>},
    {21, "XY", kHidden, false, nullptr, nullptr, "ChRank_roXY.txt", Divergence<kCongruenceY>},
    {22, "TY", kHidden, false, nullptr, nullptr, "ChRank_roTY.txt", Divergence<kTraitConvergenceY>},
    {23, "XY.T", kHidden, false, nullptr, nullptr, "ChRank_roXY_T.txt",
     Divergence<kTraitDivergenceY>},
    {24, "SE", kHidden, true, nullptr, nullptr, "ChRank_DarkDiversity.txt",
     Divergence<kDarkDiversity>},
};
static_assert(std::all_of(std::begin(kCriteria), std::end(kCriteria), [](const auto& criterion) {
    return std::string_view(criterion.suffix).size() <= kRankingSuffixLength;
}));

}  // namespace

const std::span<const RankingCriterion> kRankingCriteria = kCriteria;

const RankingCriterion& CriterionOf(int option) {
    return *std::find_if(std::begin(kCriteria), std::end(kCriteria),
                         [=](const RankingCriterion& c) { return c.option == option; });
}

bool ComparesWithPhylogeny(int option) {
    return option >= 11 && option <= 15;
}

Lack WhatIsLacking(const RankingCriterion& criterion) {
    if (nenv == 0 && criterion.needsSites) return Lack::kSites;
    if (nenv == 0 && criterion.shown.noNominalTrait && criterion.shown.sites &&
        HasQualitTrait(nch, chtype))
        return Lack::kSitesOrNumbers;
    return ComparesWithPhylogeny(criterion.option) && hasPhylogeny == 0 ? Lack::kPhylogeny
                                                                        : Lack::kNothing;
}

bool IsShown(const RankingCriterion& criterion) {
    const ShownWith& shown = criterion.shown;
    return criterion.menuLine != nullptr && (!shown.sites || nenv > 0) &&
           (!shown.phylogeny || hasPhylogeny != 0) &&
           (!shown.noNominalTrait || !HasQualitTrait(nch, chtype));
}
