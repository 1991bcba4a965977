// The permutation test against the plain one, on ordinary data and on small data with every oddity.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>
#include <vector>

#include "mxlib/perm_test/statistics.h"
#include "mxlib/random_lists.h"
#include "mxlibPar/side_by_side.h"
#include "reference/perm_test_data.h"
#include "reference/plain_perm_test.h"

namespace {

struct Outcome {
    double observed[kReported];
    double probability[kReported];
    std::vector<double> matrices;  ///< T, X, P, R and F
};

Outcome RunTest(const std::function<bool(TestRecord*)>& test, TestRecord* in) {
    testing::internal::CaptureStdout();  // the progress line
    InitRndNumberGenerator(42);
    in->returnMatrices = true;
    EXPECT_TRUE(test(in));
    testing::internal::GetCapturedStdout();
    Outcome outcome;
    for (int k = 0; k < kReported; k++) {
        outcome.observed[k] = in->*kReportedStatistics[k].observed;
        outcome.probability[k] = in->*kReportedStatistics[k].probability;
    }
    const auto add = [&](const double* x, int n) {
        outcome.matrices.insert(outcome.matrices.end(), x, x + n);
    };
    for (int i = 0; i < in->nCommunities; i++) {
        add(in->outT[i], in->nTraits);
        add(in->outX[i], in->nTypes);
        add(&in->outR[i], 1);
        if (!in->includePhylogeny) continue;
        add(in->outP[i], in->nTaxa);
        add(&in->outF[i], 1);
    }
    return outcome;
}

void ExpectSameNumber(double one, double other, double tolerance) {
    if (!std::isfinite(one))
        EXPECT_TRUE(one == other || (std::isnan(one) && std::isnan(other))) << one << other;
    else
        EXPECT_NEAR(one, other, tolerance);
}

void ExpectLikePlain(TestRecord* in) {
    const Outcome plain = RunTest(PlainPermTest, in);
    const unsigned long next = gsl_rng_get(r);
    const Outcome fast = RunTest(PermTest_FunctionalPhyl_Correl, in);
    EXPECT_EQ(gsl_rng_get(r), next) << "draws from the generator";
    for (int k = 0; k < kReported; k++) {
        // Three resemblances less two covariables leave nothing but rounding errors.
        if (in->nCommunities == 3 && in->opt_ro == 1 && (k == kXE_TR || k == kXE_TP)) continue;
        SCOPED_TRACE("statistic " + std::to_string(k));
        EXPECT_EQ(plain.probability[k], fast.probability[k]);
        if (k >= kBF && !in->includePhylogeny) continue;
        // Under Procrustes and RV the phylogenetic signal is computed in single precision.
        const double tolerance = k == kBF && in->opt_ro != 1 ? 1e-5 : 1e-12;
        ExpectSameNumber(plain.observed[k], fast.observed[k], tolerance);
    }
    for (size_t i = 0; i < plain.matrices.size(); i++)
        ExpectSameNumber(plain.matrices[i], fast.matrices[i], 1e-12);
}

TEST(PermutationTest, AgreesWithThePlainTestOnDataOfOrdinarySize) {
    for (const int opt_ro : {1, 2, 3}) {
        auto data = RandomPermTestData({75, 82, 8, 6, 5, 4, 0.25}, 1, opt_ro);
        data->record.nIterations = opt_ro == 1 ? 60 : 8;
        ExpectLikePlain(&data->record);
    }
}

// Tables of OTUs larger than a cache are read row by row, for several orders at a time;
// compositions far wider than communities are turned under Procrustes, also where communities
// repeat others.
TEST(PermutationTest, AgreesWithThePlainTestOnManyOTUs) {
    auto data = RandomPermTestData({12, 730, 3, 2, 3, 3, 0.3}, 1, 1);
    data->record.nIterations = 11;
    ExpectLikePlain(&data->record);
    for (const int repeated : {0, 1, 6}) {
        data = RandomPermTestData({12, 40, 3, 3, 2, 3, 0.4}, 2 + repeated, 2);
        for (double** table : {data->record.Z, data->record.Y, data->record.W})
            for (int i = 0; i < repeated; i++) std::copy_n(table[11 - i], 40, table[i]);
        data->record.nIterations = 60;
        ExpectLikePlain(&data->record);
    }
}

/// Every statistic of every arrangement, and the probabilities.
std::vector<double> AllOf(
    TestRecord* in, int threads,
    const std::function<bool(TestRecord*)>& test = PermTest_FunctionalPhyl_Correl) {
    std::vector<double> all;
    in->eachArrangement = [&all](const TestRecord& now) {
        for (int k = 0; k < (now.includePhylogeny ? kReported : kBF); k++)
            all.push_back(now.*kReportedStatistics[k].observed);
    };
    SetThreads(threads);
    const Outcome outcome = RunTest(test, in);
    SetThreads(0);
    all.insert(all.end(), outcome.probability, outcome.probability + kReported);
    all.push_back(static_cast<double>(gsl_rng_get(r)));
    return all;
}

TEST(PermutationTest, OrdersDrawnAheadAreThoseOfTheTest) {
    for (const int groups : {0, 1, 2}) {
        auto data = RandomPermTestData({12, 20, 3, 2, 3, 3, 0.3}, 3, 1);
        TestRecord& in = data->record;
        in.nIterations = 40;
        in.optRestrictPermutNullModel = groups;
        for (size_t k = 0; k < data->nesting.size(); k++) data->nesting[k] = int(k) % 3;
        const std::vector<double> drawnAsItGoes = AllOf(&in, 1);
        ScopedMatrix<int> orders(39, in.nOTUs);
        const auto ahead = [&](TestRecord* record) {
            DrawPermutations(*record, orders);
            record->orders = orders;
            return PermTest_FunctionalPhyl_Correl(record);
        };
        EXPECT_EQ(AllOf(&in, 2, ahead), drawnAsItGoes) << groups;
    }
}

TEST(ThreadsPermutationTest, SameBitsForAnyNumberOfThreads) {
    for (const int opt_ro : {1, 2, 3})
        for (int variant = 0; variant < 5; variant++) {
            PermTestSizes sizes = {40, 30, 4, 2, 3, variant == 1 ? 0 : 3, 0.4};
            if (variant == 4) sizes = {60, 730, 3, 2, 3, opt_ro == 2 ? 0 : 3, 0.1};
            auto data = RandomPermTestData(sizes, 1 + variant, opt_ro);
            TestRecord& in = data->record;
            in.nIterations = variant == 4 ? 50 : 130;
            in.optRestrictPermutNullModel = variant == 2;
            for (size_t k = 0; k < data->nesting.size(); k++) data->nesting[k] = int(k) % 3;
            if (variant == 3) in.B[2][1] = in.B[5][0] = -999.0F, DeriveFromTables(data.get());
            if (variant == 3) in.Sb[2][5] = in.Sb[5][2] = -999.0F;
            const std::vector<double> serial = AllOf(&in, 1);
            const std::vector<int> numbers =
                variant == 4 ? std::vector{3} : std::vector{2, 3, 5, 16};
            for (const int threads : numbers)
                EXPECT_EQ(AllOf(&in, threads), serial)
                    << opt_ro << " " << variant << " " << threads;
        }
}

/// Y becomes what the traits of the communities explain, and a part of what it was.
void ExplainYByTraits(const TestRecord& in, double part) {
    for (int i = 0; i < in.nCommunities; i++) {
        double explained = 0.0;
        for (int k = 0; k < in.nOTUs; k++)
            for (int j = 0; j < in.nTraits; j++) explained += in.W[i][k] * in.B[k][j];
        for (int k = 0; k < in.nOTUs; k++)
            in.Y[i][k] = in.Y[i][k] * part + explained * std::sin(k + 1.0);
    }
}

/// One departure from ordinary data each.
const PermTestSizes kOrdinary = {9, 14, 4, 3, 3, 2, 0.4};
const struct {
    const char* name;
    PermTestSizes sizes;
    std::function<void(PermTestData*, TestRecord&)> change;
} kOddities[] = {
    {"ordinary", kOrdinary, nullptr},
    {"two communities", {2, 12, 4, 3, 3, 2, 0.6}, nullptr},
    {"three communities", {3, 12, 3, 2, 2, 2, 0.6}, nullptr},
    {"one trait", {8, 12, 1, 2, 3, 2, 0.4}, nullptr},
    {"each OTU a type", {8, 7, 3, 2, 7, 7, 0.5}, nullptr},
    {"more traits than communities", {6, 12, 9, 2, 3, 2, 0.5}, nullptr},
    {"no permutation", kOrdinary, [](PermTestData*, TestRecord& in) { in.nIterations = 1; }},
    {"no iteration", kOrdinary, [](PermTestData*, TestRecord& in) { in.nIterations = 0; }},
    {"traits out of use", kOrdinary,
     [](PermTestData* d, TestRecord& in) {
         d->traitsInUse[1] = d->traitsInUse[3] = 0;
         for (int k = 0; k < 14; k++) in.B[k][1] = in.B[k][3] = 0.0F;
     }},
    {"missing traits and performances", kOrdinary,
     [](PermTestData* d, TestRecord& in) {
         in.B[2][1] = in.B[5][0] = -999.0F;
         DeriveFromTables(d);
         in.W[3][3] = in.W[1][6] = -999.0;
     }},
    {"missing resemblances", kOrdinary,
     [](PermTestData*, TestRecord& in) {
         in.DE[1][4] = in.DZ[0][2] = -999.0;
         in.Sb[2][5] = in.Sb[5][2] = -999.0F;
         in.Sf[3][8] = in.Sf[8][3] = -999.0;
         in.U[4][1] = in.Q[2][0] = -999.0;
     }},
    {"a missing similarity", kOrdinary,
     [](PermTestData*, TestRecord& in) { in.Sb[2][5] = in.Sb[5][2] = -999.0F; }},
    {"a performance that is no number", kOrdinary,
     [](PermTestData*, TestRecord& in) { in.W[2][3] = std::nan(""); }},
    {"lower halves not filled", kOrdinary,
     [](PermTestData*, TestRecord& in) {
         for (int i = 0; i < 14; i++)
             for (int j = 0; j < i; j++) in.Sf[i][j] = in.Sb[i][j] = 0.25F;
     }},
    {"an empty community", kOrdinary,
     [](PermTestData* d, TestRecord& in) {
         for (int k = 0; k < 14; k++) in.W[2][k] = 0.0;
         DeriveFromTables(d);
     }},
    {"a NaN among traits", kOrdinary,
     [](PermTestData*, TestRecord& in) { in.B[2][1] = std::nanf(""); }},
    {"an infinite belonging", kOrdinary,
     [](PermTestData*, TestRecord& in) { in.U[2][1] = HUGE_VAL; }},
    {"a similarity above 1", kOrdinary,
     [](PermTestData*, TestRecord& in) { in.Sb[2][5] = in.Sb[5][2] = 1.5F; }},
    // 1 / (1 - Q) is then the rounding of Q: summed in another order its P was 0.1 instead of 1.
    {"entropies of 1", kOrdinary,
     [](PermTestData*, TestRecord& in) {
         for (int i = 0; i < 14; i++)
             for (int j = 0; j < 14; j++) in.Sb[i][j] = 0x1p-22F, in.Sf[i][j] = 1 - 1e-9;
     }},
    {"entropies of 1 in permuted orders only", kOrdinary,
     [](PermTestData*, TestRecord& in) {
         in.nIterations = 50;
         for (int k = 0; k < 14; k++) {
             for (int i = 0; i < 9; i++)
                 in.W[i][k] = k > 7 && (k + i) % 6 < 3 ? 0.1 + i * k % 7 : 0.0;
             for (int i = 0; i < 8 && k < 8; i++) in.Sb[i][k] = 0.0F, in.Sf[i][k] = 1.0;
         }
     }},
    {"constant environment", kOrdinary,
     [](PermTestData* d, TestRecord& in) {
         for (int i = 0; i < 9; i++) in.E[i][0] = in.E[i][1] = in.E[i][2] = 2.0;
         DeriveFromTables(d);
     }},
    {"Y mostly explained by the traits",
     {12, 14, 3, 3, 3, 2, 0.4},
     [](PermTestData*, TestRecord& in) { ExplainYByTraits(in, 0.3); }},
    {"Y explained by the traits but for a trace",
     {12, 10, 3, 3, 3, 2, 0.4},
     [](PermTestData*, TestRecord& in) { ExplainYByTraits(in, 1e-5); }},
};

TEST(PermutationTest, AgreesWithThePlainTestOnOddData) {
    unsigned seed = 0;
    for (const auto& odd : kOddities) {
        seed++;
        for (const int opt_ro : {1, 2, 3})
            for (const bool phylogeny : {false, true}) {
                SCOPED_TRACE(std::string(odd.name) + ", measure " + std::to_string(opt_ro) +
                             (phylogeny ? ", phylogeny" : ""));
                PermTestSizes sizes = odd.sizes;
                if (!phylogeny) sizes.taxa = 0;
                auto data = RandomPermTestData(sizes, seed, opt_ro);
                TestRecord& in = data->record;
                if (!phylogeny) in.Q = data->Double(sizes.OTUs, 1);
                in.nIterations = 12;
                if (odd.change) odd.change(data.get(), in);
                ExpectLikePlain(&in);
                EXPECT_TRUE(in.nIterations > 0 || std::isinf(in.probXE));
            }
    }
}

// A covariable that is no number was left out, as if there were nothing to remove, with P = 1.
TEST(PermutationTest, CovariablesThatAreNoNumbersGiveNone) {
    for (const int opt_ro : {2, 3}) {
        auto data = RandomPermTestData({8, 10, 3, 2, 3, 0, 0.4}, 5, opt_ro);
        TestRecord& in = data->record;
        for (int k = 0; k < 10; k++) {
            in.W[0][k] = k < 2 ? 0.5 : 0.0;
            for (int i = 0; i < 10; i++) in.Sb[i][k] = i == k ? 1.0F : -3.0F;  // Q = 1, R infinite
        }
        in.nIterations = 10;
        const Outcome outcome = RunTest(PermTest_FunctionalPhyl_Correl, &in);
        EXPECT_EQ(in.outR[0], 1.0);
        EXPECT_TRUE(std::isnan(outcome.observed[kXE_TR])) << outcome.observed[kXE_TR];
        EXPECT_EQ(outcome.probability[kXE_TR], 0.1);
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

}  // namespace
