#include "TSLRESE/scaling_up.h"

#include <ctime>

#include "TSLGLOB/session_files.h"
#include "TSLRESE/memory.h"
#include "TSLRESE/scaling_up_matrices.h"
#include "TSLRESE/scaling_up_report.h"
#include "iflibG/iflibG.h"
#include "mxlib/perm_test.h"
#include "mxlib/random_lists.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/replacement.h"

namespace {

constexpr int kScalingUpAnalysis = 9;  // in the place of a trait ranking criterion

void SetAnalysisOptions() {
    opt_struct = kScalingUpAnalysis;
    optUnitTotalAdjust1 = true;
    nMaxCSTGroupsChRank = nMinCSTGroupsChRank = nGrPoly[0];
    nMinTraitsChRank = nMaxTraitsChRank = CountTraitsInUse();
    MakeSessionFileName(whichRndData, sessionName, rndDataExt);
}

PermTest_FunctionalPhyl_Correl_Input TestRecord(ScalingUpMatrices& m, FILE* stream) {
    const bool phylogeny = includePhylogeny != 0;
    PermTest_FunctionalPhyl_Correl_Input test = {};
    test.nIterations = niter;
    test.nTraits = nch;
    test.traitsInUse = m.include;
    test.nOTUs = tcst;
    test.nTypes = m.nTypes;
    test.nTaxa = m.nTaxaInUse;
    test.nEnv = nenv;
    test.nCommunities = ncsm;
    test.nPhylAxes = m.nPhylAxes;
    test.B = m.B;
    test.Sb = m.Sb;
    test.PhylScores = ReadsCoordinates() ? m.phylScores.get() : nullptr;
    test.Sf = phylogeny ? phylogenyRese : nullptr;
    test.E = m.EDouble;
    test.U = fuzzy == kFuzzyTypes ? m.U : m.C;
    test.Q = phylogeny ? m.Q.get() : nullptr;
    test.W = m.W;
    test.DE = m.DE;
    test.DZ = m.DZ;
    test.DY = m.DY;
    test.Z = m.Z;
    test.Y = m.Y;
    test.rese_opt = rese_opt;
    test.opt_ro = opt_ro;
    test.overfitFactorPCARegr = overfitFactorPCARegr;
    test.saveRndData = saveRndData == 'y';
    test.optWeightedNullModel = optWeightedNullModel;
    test.includePhylogeny = phylogeny;
    test.phylogenyIsDissimilarity = PhylogenyIsDissimilarity();
    test.sqrtDissimOpt_RaoTraits = sqrtDissimOpt_RaoTraits;
    test.sqrtDissimOpt_RaoPhyl = sqrtDissimOpt_RaoPhyl;
    test.optRestrictPermutNullModel = optRestrictPermutNullModel;
    test.nestingMembershipOTUs = nestingMembershipOTUs;
    test.twoTailedTestMantel = twoTailedTestMantel;
    test.outT = m.T;
    test.outP = phylogeny ? m.P.get() : nullptr;
    test.stream = stream;
    return test;
}

/// The test on the matrices, its statistics in the report.
void TestPatterns(ScalingUpMatrices& m, const AnalysisReceiver& receiver, FileReplacement& report) {
    FileReplacement tables(whichRndData, volumeName);
    if (tables == nullptr) {
        if (report.IsNew())
            report.Finish();  // there is no better one, and it tells how far it came
        EndProgram(1);
    }
    time0 = std::time(nullptr);
    PermTest_FunctionalPhyl_Correl_Input test = TestRecord(m, tables);
    test.eachArrangement = receiver.arrangement;
    PermTest_FunctionalPhyl_Correl(&test);
    tables.Finish();
    if (receiver.tested) receiver.tested(test);
    PrintStatistics(report, m, test);
    PrintTestClosing(report);
}

/// Everything up to the types; false when there is nothing to go on with: no trait, a single OTU
/// or a single type.
bool ScaleUpToTypes(ScalingUpMatrices& m, const AnalysisReceiver& receiver, FILE* report) {
    if (printDetail) PrintCommunities(report, m);
    AdjustToUnitTotals(m);
    SmoothCompositions(m);
    MeasureGiniSimpson(m);
    if (printDetail) PrintAdjustedCommunities(report, m);
    if (includePhylogeny != 0) {
        ScalePhylogenyUp(m);
        PrintPhylogeny(report, m);
    }
    SelectTraits(m);
    if (printDetail) PrintTraitMatrix(report);
    if (m.nTraitsInUse == 0) return false;
    PrintSites(report, m);
    AverageTraits(m);
    if (receiver.averages) receiver.averages(m);
    PrintAveragedTraits(report, m);
    NormaliseTraits(m);
    PrintNormalisedTraits(report, m);
    CompareOTUs(m);
    PrintOTUSimilarities(report, m);
    return tcst >= 2 && m.nTypes >= 2;
}

}  // namespace

void PFTs_ScalingUp(const AnalysisReceiver& receiver) {
    SetAnalysisOptions();
    TellLargeMemory(MemoryOfAnalysis(SizesOfAnalysis()));
    const LongStep step("Functional analysis");
    ScalingUpMatrices m;
    CompareSites(m);
    InitRndNumberGenerator(rseed);
    CopyDataSet(m);
    const bool continues = prindaMode[0] == 'a';
    ResultsFile report(whichPrinda, volumeName,
                       continues ? ResultsFile::Start::kOldContent : ResultsFile::Start::kEmpty);
    PrintHead(report, m);
    if (ScaleUpToTypes(m, receiver, report)) {
        PoolIntoTypes(m);
        MeasureRedundancy(m);
        AverageTraitsOfTypes(m);
        PrintTypes(report, m);
        if (receiver.matrices) receiver.matrices(m);
        TestPatterns(m, receiver, report);
        PrintDiversity(report, m);
    }
    std::fprintf(report, "\n");
    report.Finish();
}
