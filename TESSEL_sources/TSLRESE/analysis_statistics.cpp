#include "TSLRESE/analysis_statistics.h"

namespace {

using Test = AnalysisStatistic::Test;

constexpr ReportBlock kAssembly = ReportBlock::kAssembly;
constexpr ReportBlock kPhylogeny = ReportBlock::kPhylogeny;
constexpr ReportBlock kNone = ReportBlock::kNone;

constexpr AnalysisStatistic kStatistics[] = {
    {"TE", "Convergence (TCAP): r(TE)=", &Test::roTE, &Test::probTE, kAssembly, false},
    {"XE", "Both TCAP and Divergence (TDAP): r(XE)=", &Test::roXE, &Test::probXE, kAssembly, false},
    {"XE.T", "TDAP: r(XE.T)=", &Test::roXE_T, &Test::probXE_T, kAssembly, false},
    {"RE", "Alpha divergence (correlation between environmental variables and Rao entropy): r(RE)=",
     &Test::roRE, &Test::probRE, kAssembly, false},
    {"XE.TR", "Beta divergence: r(XE.TR)=", &Test::roXE_TR, &Test::probXE_TR, kAssembly, false},
    {"BF", "Phylogenetic signal at OTU (species) level ro(BF) = ", &Test::roBF, &Test::probBF,
     ReportBlock::kSignal, true},
    {"PE", "Correlation of PSAP to ecological variables: ro(PE)=", &Test::roPE, &Test::probPE,
     kPhylogeny, true},
    {"PT", "Correlation of PSAP to TCAP: ro(PT)=", &Test::roPT, &Test::probPT, kPhylogeny, true},
    {"PX", "Correlation of PSAP to both TCAP and TDAP: ro(PX)=", &Test::roPX, &Test::probPX,
     kPhylogeny, true},
    {"PX.T", "Correlation of PSAP to TDAP: ro(PX.T)=", &Test::roPX_T, &Test::probPX_T, kPhylogeny,
     true},
    {"TE.P", "Removing phylogeny from TCAP: ro(TE.P)=", &Test::roTE_P, &Test::probTE_P, kPhylogeny,
     true},
    {"XE.P", "Removing phylogeny from both TCAP and TDAP: ro(XE.P)=", &Test::roXE_P,
     &Test::probXE_P, kPhylogeny, true},
    {"XE.TP", "Removing phylogeny from TDAP: ro(XE.TP)=", &Test::roXE_TP, &Test::probXE_TP,
     kPhylogeny, true},
    {"PE.T", "Removing TCAP from phylogeny: ro(PE.T)=", &Test::roPE_T, &Test::probPE_T, kPhylogeny,
     true},
    {"PE.X", "Removing TCAP and TDAP from phylogeny: ro(PE.X)=", &Test::roPE_X, &Test::probPE_X,
     kPhylogeny, true},
    {"FE",
     "Alpha divergence (correlation between environmental variables and Rao entropy based on "
     "phylogeny): r(FE)=",
     &Test::roFE, &Test::probFE, kPhylogeny, true},
    {"TZ", "Traits and the composition smoothed by joint occurrence: r(TZ)=", &Test::roTZ,
     &Test::probTZ, kNone, false},
    {"XZ", "Types and the composition smoothed by joint occurrence: r(XZ)=", &Test::roXZ,
     &Test::probXZ, kNone, false},
    {"XZ.T", "Types and the composition smoothed by joint occurrence, traits removed: r(XZ.T)=",
     &Test::roXZ_T, &Test::probXZ_T, kNone, false},
    {"TY", "Traits and the composition smoothed by joint performance: r(TY)=", &Test::roTY,
     &Test::probTY, kNone, false},
    {"XY", "Types and the composition smoothed by joint performance: r(XY)=", &Test::roXY,
     &Test::probXY, kNone, false},
    {"XY.T", "Types and the composition smoothed by joint performance, traits removed: r(XY.T)=",
     &Test::roXY_T, &Test::probXY_T, kNone, false},
};

}  // namespace

const std::span<const AnalysisStatistic> kAnalysisStatistics = kStatistics;

std::string_view MeaningOf(const AnalysisStatistic& statistic) {
    const std::string_view label = statistic.label;
    const std::string_view meaning = label.substr(0, label.rfind(" r"));
    return meaning.back() == ':' ? meaning.substr(0, meaning.size() - 1) : meaning;
}
