// The permutation test against the plain one, on real data and on small data with every oddity.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "mxlib/perm_test/statistics.h"
#include "mxlib/random_lists.h"
#include "reference/perm_test_data.h"
#include "reference/plain_perm_test.h"

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

struct Outcome {
    double observed[kReported];
    double probability[kReported];
};

Outcome RunTest(bool (*test)(TestRecord*), TestRecord* in, unsigned long seed) {
    testing::internal::CaptureStdout();  // the progress line
    InitRndNumberGenerator(seed);
    EXPECT_TRUE(test(in));
    testing::internal::GetCapturedStdout();
    Outcome outcome;
    for (int k = 0; k < kReported; k++) {
        outcome.observed[k] = in->*kReportedStatistics[k].observed;
        outcome.probability[k] = in->*kReportedStatistics[k].probability;
    }
    return outcome;
}

bool IsOfPhylogeny(int k) {
    return k >= kBF;
}

void ExpectSame(const Outcome& one, const Outcome& other, const TestRecord& in) {
    for (int k = 0; k < kReported; k++) {
        SCOPED_TRACE("statistic " + std::to_string(k));
        EXPECT_EQ(one.probability[k], other.probability[k]);
        if (IsOfPhylogeny(k) && !in.includePhylogeny) continue;
        // Under Procrustes and RV the phylogenetic signal is computed in single precision.
        const double tolerance = k == kBF && in.opt_ro != 1 ? 1e-5 : 1e-12;
        if (std::isnan(one.observed[k]))
            EXPECT_TRUE(std::isnan(other.observed[k])) << other.observed[k];
        else
            EXPECT_NEAR(one.observed[k], other.observed[k], tolerance);
    }
}

void ExpectLikePlain(TestRecord* in) {
    const Outcome plain = RunTest(PlainPermTest, in, 42);
    const unsigned long next = gsl_rng_get(r);
    const Outcome fast = RunTest(PermTest_FunctionalPhyl_Correl, in, 42);
    EXPECT_EQ(gsl_rng_get(r), next) << "draws from the generator";
    ExpectSame(plain, fast, *in);
}

TEST(PermutationTest, AgreesWithThePlainTestOnTheExamples) {
    for (const char* name : {"aravo", "mafragh"})
        for (const int opt_ro : {1, 2, 3}) {
            SCOPED_TRACE(std::string(name) + ", measure " + std::to_string(opt_ro));
            const bool phylogeny = std::string(name) == "mafragh";
            auto data = ExamplePermTestData(TESSEL_EXAMPLES, name, phylogeny, opt_ro);
            data->record.nIterations = opt_ro == 1 ? 60 : 8;
            ExpectLikePlain(&data->record);
        }
}

/// One departure from ordinary data each.
const struct {
    const char* name;
    PermTestSizes sizes;
    std::function<void(PermTestData*)> change;
    std::function<void(PermTestData*)> changeDerived;
} kOddities[] = {
    {"ordinary", {9, 14, 4, 3, 3, 2, 0.4}, nullptr, nullptr},
    {"two communities", {2, 12, 4, 3, 3, 2, 0.6}, nullptr, nullptr},
    {"three communities", {3, 12, 3, 2, 2, 2, 0.6}, nullptr, nullptr},
    {"one trait", {8, 12, 1, 2, 3, 2, 0.4}, nullptr, nullptr},
    {"each OTU a type", {8, 7, 3, 2, 7, 7, 0.5}, nullptr, nullptr},
    {"more traits than communities", {6, 12, 9, 2, 3, 2, 0.5}, nullptr, nullptr},
    {"traits out of use",
     {9, 14, 5, 3, 3, 2, 0.4},
     nullptr,
     [](PermTestData* d) {
         d->traitsInUse[1] = d->traitsInUse[4] = 0;
         for (int k = 0; k < 14; k++) d->record.B[k][1] = d->record.B[k][4] = 0.0F;
     }},
    {"missing traits and performances",
     {9, 14, 4, 3, 3, 2, 0.4},
     [](PermTestData* d) { d->record.B[2][1] = d->record.B[5][0] = -999.0F; },
     [](PermTestData* d) { d->record.W[3][3] = d->record.W[1][6] = -999.0; }},
    {"missing resemblances",
     {9, 14, 4, 3, 3, 2, 0.4},
     nullptr,
     [](PermTestData* d) {
         d->record.DE[1][4] = d->record.DZ[0][2] = -999.0;
         d->record.Sb[2][5] = d->record.Sb[5][2] = -999.0F;
         d->record.Sf[3][8] = d->record.Sf[8][3] = -999.0;
         d->record.U[4][1] = d->record.Q[2][0] = -999.0;
     }},
    {"lower halves not filled",
     {9, 14, 4, 3, 3, 2, 0.4},
     nullptr,
     [](PermTestData* d) {
         for (int i = 0; i < 14; i++)
             for (int j = 0; j < i; j++) d->record.Sf[i][j] = d->record.Sb[i][j] = 0.25F;
     }},
    {"an empty community",
     {9, 14, 4, 3, 3, 2, 0.4},
     [](PermTestData* d) {
         for (int k = 0; k < 14; k++) d->record.W[2][k] = 0.0;
     },
     nullptr},
    {"a NaN among traits",
     {9, 14, 4, 3, 3, 2, 0.4},
     nullptr,
     [](PermTestData* d) { d->record.B[2][1] = static_cast<float>(kNaN); }},
    {"an infinite belonging",
     {9, 14, 4, 3, 3, 2, 0.4},
     nullptr,
     [](PermTestData* d) { d->record.U[2][1] = kInfinity; }},
    {"a similarity above 1",
     {9, 14, 4, 3, 3, 2, 0.4},
     nullptr,
     [](PermTestData* d) { d->record.Sb[2][5] = d->record.Sb[5][2] = 1.5F; }},
    {"constant environment",
     {9, 14, 4, 1, 3, 2, 0.4},
     [](PermTestData* d) {
         for (int i = 0; i < 9; i++) d->record.E[i][0] = 2.0;
     },
     nullptr},
};

std::unique_ptr<PermTestData> MakeOdd(size_t which, int opt_ro, bool phylogeny) {
    PermTestSizes sizes = kOddities[which].sizes;
    if (!phylogeny) sizes.taxa = 0;
    auto data = RandomPermTestData(sizes, static_cast<unsigned>(which) + 1, opt_ro);
    if (kOddities[which].change) {
        kOddities[which].change(data.get());
        DeriveFromTables(data.get());
    }
    if (kOddities[which].changeDerived) {
        if (!phylogeny) data->record.Q = data->Double(sizes.OTUs, 1);
        kOddities[which].changeDerived(data.get());
    }
    data->record.nIterations = 12;
    return data;
}

TEST(PermutationTest, AgreesWithThePlainTestOnOddData) {
    for (size_t which = 0; which < std::size(kOddities); which++)
        for (const int opt_ro : {1, 2, 3})
            for (const bool phylogeny : {false, true}) {
                SCOPED_TRACE(std::string(kOddities[which].name) + ", measure " +
                             std::to_string(opt_ro) + (phylogeny ? ", phylogeny" : ""));
                ExpectLikePlain(&MakeOdd(which, opt_ro, phylogeny)->record);
            }
}

TEST(PermutationTest, AgreesWithThePlainTestUnderEveryOption) {
    for (int variant = 0; variant < 40; variant++) {
        SCOPED_TRACE("variant " + std::to_string(variant));
        auto data = RandomPermTestData({10, 15, 4, 3, 4, 3, 0.4}, 100U + variant, 1);
        TestRecord& in = data->record;
        in.nIterations = 25;
        in.rese_opt = 1 + variant % 10;
        in.twoTailedTestMantel = variant % 2 == 0;
        in.phylogenyIsDissimilarity = variant % 3 != 0;
        in.sqrtDissimOpt_RaoTraits = variant % 4 < 2;
        in.sqrtDissimOpt_RaoPhyl = variant % 8 < 4;
        in.optRestrictPermutNullModel = variant % 5 == 0;
        for (int k = 0; k < in.nOTUs; k++) data->nesting[static_cast<size_t>(k)] = 7 - k % 3;
        DeriveFromTables(data.get());
        ExpectLikePlain(&in);
    }
}

TEST(PermutationTest, WithoutPermutationsDrawsNothing) {
    auto data = RandomPermTestData({9, 14, 4, 3, 3, 2, 0.4}, 5, 1);
    TestRecord& in = data->record;
    in.nIterations = 1;
    const Outcome one = RunTest(PermTest_FunctionalPhyl_Correl, &in, 3);
    const unsigned long next = gsl_rng_get(r);
    InitRndNumberGenerator(3);
    EXPECT_EQ(gsl_rng_get(r), next);
    in.nIterations = 0;
    const Outcome none = RunTest(PermTest_FunctionalPhyl_Correl, &in, 3);
    for (int k = 0; k < kReported; k++) {
        EXPECT_EQ(one.probability[k], 1.0);
        EXPECT_EQ(none.probability[k], kInfinity);
        EXPECT_EQ(one.observed[k], none.observed[k]);
    }
}

TEST(PermutationTest, AStatisticWithoutItsBlockHasTheProbabilityItStartsWith) {
    auto data = RandomPermTestData({9, 14, 4, 3, 3, 0, 0.4}, 5, 1);
    data->record.nIterations = 20;
    const Outcome outcome = RunTest(PermTest_FunctionalPhyl_Correl, &data->record, 3);
    for (int k = kBF; k < kReported; k++) EXPECT_EQ(outcome.probability[k], 1.0 / 20);
}

TEST(PermutationTest, HandsBackTheObservedMatrices) {
    auto data = RandomPermTestData({7, 10, 3, 2, 3, 2, 0.5}, 8, 1);
    TestRecord& in = data->record;
    in.nIterations = 4;
    in.returnMatrices = true;
    RunTest(PermTest_FunctionalPhyl_Correl, &in, 3);
    for (int j = 0; j < in.nTraits; j++) {
        double squares = 0.0;
        for (int i = 0; i < in.nCommunities; i++) squares += in.outT[i][j] * in.outT[i][j];
        EXPECT_NEAR(squares, 1.0, 1e-12) << "columns of T have unit length";
    }
    for (int i = 0; i < in.nCommunities; i++) {
        double x = 0.0, p = 0.0, rao = 0.0;
        for (int k = 0; k < in.nOTUs; k++) {
            x += in.W[i][k] * in.U[k][1];
            p += in.W[i][k] * in.Q[k][0];
            for (int l = 0; l < in.nOTUs; l++)
                rao += in.W[i][k] * in.W[i][l] * std::sqrt(static_cast<double>(1.0F - in.Sb[k][l]));
        }
        EXPECT_NEAR(in.outX[i][1], x, 1e-12);
        EXPECT_NEAR(in.outP[i][0], p, 1e-12);
        EXPECT_NEAR(in.outR[i], rao, 1e-12);
        EXPECT_GT(in.outF[i], 0.0);
    }
}

/// What the OTUs are called must not matter: all their tables are reversed.
TEST(PermutationTest, RenumberingTheOTUsLeavesTheObservedStatistics) {
    for (const int opt_ro : {1, 2, 3}) {
        auto data = RandomPermTestData({9, 14, 4, 3, 3, 2, 0.4}, 21, opt_ro);
        TestRecord& in = data->record;
        const Outcome before = RunTest(PermTest_FunctionalPhyl_Correl, &in, 3);
        const int n = in.nOTUs;
        for (int k = 0; k < n / 2; k++) {
            swap(in.B, k, n - 1 - k);
            swap(in.U, k, n - 1 - k);
            swap(in.Q, k, n - 1 - k);
            swap(in.PhylScores, k, n - 1 - k);
            swap(in.Sb, k, n - 1 - k);
            swap(in.Sf, k, n - 1 - k);
        }
        for (int k = 0; k < n; k++) {
            std::reverse(in.Sb[k], in.Sb[k] + n);
            std::reverse(in.Sf[k], in.Sf[k] + n);
        }
        for (int i = 0; i < in.nCommunities; i++) {
            std::reverse(in.W[i], in.W[i] + n);
            std::reverse(in.Z[i], in.Z[i] + n);
            std::reverse(in.Y[i], in.Y[i] + n);
        }
        ExpectSame(before, RunTest(PermTest_FunctionalPhyl_Correl, &in, 3), in);
    }
}

/// r(XZ.T) under Procrustes and RV reports the value of r(XY.T), and is still tested by its own.
TEST(PermutationTest, ObservedXZTakesTheValueOfXYUnderProcrustesAndRV) {
    for (const int opt_ro : {2, 3}) {
        auto data = RandomPermTestData({9, 14, 4, 3, 3, 0, 0.4}, 4, opt_ro);
        data->record.nIterations = 10;
        RunTest(PermTest_FunctionalPhyl_Correl, &data->record, 3);
        EXPECT_EQ(data->record.roXZ_T, data->record.roXY_T);
    }
}

}  // namespace
