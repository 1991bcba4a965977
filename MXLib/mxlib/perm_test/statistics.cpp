#include "mxlib/perm_test/statistics.h"

const std::array<ReportedStatistic, kReported> kReportedStatistics = {{
    {&TestRecord::roXE, &TestRecord::probXE, kBlockX, false},
    {&TestRecord::roTE, &TestRecord::probTE, kBlockT, false},
    {&TestRecord::roXE_T, &TestRecord::probXE_T, kBlockX, true},
    {&TestRecord::roRE, &TestRecord::probRE, kBlockR, false},
    {&TestRecord::roXE_TR, &TestRecord::probXE_TR, kBlockR, true},
    {&TestRecord::roTZ, &TestRecord::probTZ, kBlockT, false},
    {&TestRecord::roTY, &TestRecord::probTY, kBlockT, false},
    {&TestRecord::roXZ, &TestRecord::probXZ, kBlockX, false},
    {&TestRecord::roXY, &TestRecord::probXY, kBlockX, false},
    {&TestRecord::roXZ_T, &TestRecord::probXZ_T, kBlockX, true},
    {&TestRecord::roXY_T, &TestRecord::probXY_T, kBlockX, true},
    {&TestRecord::roBF, &TestRecord::probBF, kBlockF, false},
    {&TestRecord::roFE, &TestRecord::probFE, kBlockF, false},
    {&TestRecord::roPE, &TestRecord::probPE, kBlockP, false},
    {&TestRecord::roPT, &TestRecord::probPT, kBlockP, false},
    {&TestRecord::roPX, &TestRecord::probPX, kBlockP, false},
    {&TestRecord::roPX_T, &TestRecord::probPX_T, kBlockP, true},
    {&TestRecord::roTE_P, &TestRecord::probTE_P, kBlockP, true},
    {&TestRecord::roXE_P, &TestRecord::probXE_P, kBlockP, true},
    {&TestRecord::roXE_TP, &TestRecord::probXE_TP, kBlockP, true},
    {&TestRecord::roPE_T, &TestRecord::probPE_T, kBlockP, true},
    {&TestRecord::roPE_X, &TestRecord::probPE_X, kBlockP, true},
}};

const std::array<PairStatistic, 14> kPairStatistics = {{
    {kTE, kBlockT, kT, kE, false},
    {kTZ, kBlockT, kT, kZ, false},
    {kTY, kBlockT, kT, kY, false},
    {kXE, kBlockX, kX, kE, false},
    {kXT, kBlockX, kX, kT, true},
    {kXZ, kBlockX, kX, kZ, false},
    {kXY, kBlockX, kX, kY, false},
    {kPE, kBlockP, kP, kE, false},
    {kPT, kBlockP, kP, kT, false},
    {kPX, kBlockP, kP, kX, false},
    {kRE, kBlockR, kR, kE, false},
    {kXR, kBlockR, kX, kR, true},
    {kTR, kBlockR, kT, kR, true},
    {kFE, kBlockF, kF, kE, false},
}};

const std::array<PartialOfPairs, 14> kPartialsOfPairs = {{
    {kXZ_T, kBlockX, kXZ, kXT, kTZ},
    {kXY_T, kBlockX, kXY, kXT, kTY},
    {kXE_T, kBlockX, kXE, kXT, kTE},
    {kPX_T, kBlockP, kPX, kXT, kPT},
    {kPE_X, kBlockP, kPE, kPX, kXE},
    {kPE_T, kBlockP, kPE, kPT, kTE},
    {kXE_P, kBlockP, kXE, kPX, kPE},
    {kXT_P, kBlockP, kXT, kPX, kPT},
    {kTE_P, kBlockP, kTE, kPT, kPE},
    {kXE_TP, kBlockP, kXE_P, kXT_P, kTE_P},
    {kXE_R, kBlockR, kXE, kXR, kRE},
    {kTE_R, kBlockR, kTE, kTR, kRE},
    {kXT_R, kBlockR, kXT, kXR, kTR},
    {kXE_TR, kBlockR, kXE_R, kXT_R, kTE_R},
}};

const std::array<std::array<Letter, 2>, kCovariableChoices> kCovariableLetters = {{
    {kT, kE},
    {kX, kE},
    {kP, kE},
    {kT, kP},
    {kT, kR},
}};

const std::array<PartialOfMatrices, 10> kPartialsOfMatrices = {{
    {kXZ_T, kBlockX, kX, kZ, kRemoveT},
    {kXY_T, kBlockX, kX, kY, kRemoveT},
    {kXE_T, kBlockX, kX, kE, kRemoveT},
    {kPX_T, kBlockP, kP, kX, kRemoveT},
    {kPE_X, kBlockP, kP, kE, kRemoveX},
    {kPE_T, kBlockP, kP, kE, kRemoveT},
    {kXE_P, kBlockP, kX, kE, kRemoveP},
    {kTE_P, kBlockP, kT, kE, kRemoveP},
    {kXE_TP, kBlockP, kX, kE, kRemoveTP},
    {kXE_TR, kBlockR, kX, kE, kRemoveTR},
}};

Letter MadeIn(Block block) {
    constexpr Letter kMade[kBlocks] = {kT, kX, kP, kR, kF};
    return kMade[block];
}
