// The statistics of the examples against general packages of statistics; scripts/judge tells how
// the values were made.

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "mxLinearModels/mxLinearModels.h"
#include "mxlib/belonging.h"
#include "mxlib/ordination.h"
#include "mxlib/perm_test/statistics.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/crossproducts.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/rao.h"
#include "mxlibRes/standardisation.h"
#include "reference/example_tables.h"
#include "reference/perm_test_data.h"
#include "support/judge_values.h"
#include "support/matrices.h"

namespace {

constexpr double kDoublePrecision = 1e-10;  // what the values are written with
constexpr double kSinglePrecision = 1e-6;   // a step of the way is rounded to float

const std::string kExamples = TESSEL_EXAMPLES;

template <class T>
Table<T> TableOf(const ExampleTables::Rows& rows) {
    Table<T> table(int(rows.size()), rows.empty() ? 0 : int(rows[0].size()));
    for (int i = 0; i < table.rows(); i++)
        for (int j = 0; j < table.cols(); j++) table[i][j] = T(rows[i][j]);
    return table;
}

/// The sums of the rows, and those weighted by the column number.
template <class T>
void ExpectMatrixAsJudged(const std::string& name, const Table<T>& m, double tolerance) {
    std::vector<double> sums(m.rows()), weighted(m.rows());
    for (int i = 0; i < m.rows(); i++)
        for (int j = 0; j < m.cols(); j++) {
            sums[i] += double(m[i][j]);
            weighted[i] += double(m[i][j]) * (j + 1);
        }
    ExpectAsJudged(name + ".rows", sums, tolerance);
    ExpectAsJudged(name + ".weighted", weighted, tolerance);
}

Table<double> Full(Table<double> upper) {
    for (int i = 0; i < upper.rows(); i++)
        for (int j = 0; j < i; j++) upper[i][j] = upper[j][i];
    return upper;
}

class JudgedExample : public testing::TestWithParam<const char*> {
  protected:
    std::string At(const std::string& what) const { return std::string(GetParam()) + "." + what; }

    const ExampleTables example_ = ReadExampleTables(kExamples + "/" + GetParam());
    const int n_ = example_.OTUs;
    const int c_ = example_.communities;
    Table<double> W_ = TableOf<double>(example_.W);
};

INSTANTIATE_TEST_SUITE_P(Judge, JudgedExample, testing::Values("aravo", "mafragh"),
                         [](const auto& example) { return std::string(example.param); });

TEST_P(JudgedExample, GowerSimilaritiesAndRaoEntropies) {
    const std::vector<float> weights = TraitWeights(example_);
    Table<double> s(n_, n_);
    const auto expectGower = [&](auto traits, bool weighted, double tolerance) {
        GowerMVOpt(n_, example_.traits, example_.traitTypes.data(), traits, s, nullptr,
                   weighted ? weights.data() : nullptr, 1);
        ExpectMatrixAsJudged(At(weighted ? "gower_weighted" : "gower"), s, tolerance);
    };
    for (const bool weighted : {false, true}) {
        expectGower(TableOf<double>(example_.B), weighted, 1e-7);  // ranges and weights are floats
        expectGower(TableOf<float>(example_.B), weighted, kSinglePrecision);
    }
    Table<float> identity(n_, n_);
    for (int i = 0; i < n_; i++) identity[i][i] = 1.0F;
    Table<double> F = TableOf<double>(example_.F);
    std::vector<double> gini, plain, root, phylogeny;
    for (int i = 0; i < c_; i++) {
        gini.push_back(RaoIndex(n_, W_[i], identity, false));
        plain.push_back(RaoIndex(n_, W_[i], s, false, false));
        root.push_back(RaoIndex(n_, W_[i], s, false, true));
        if (F.rows() > 0) phylogeny.push_back(RaoIndex(n_, W_[i], F, true, false));
    }
    ExpectAsJudged(At("gini"), gini, kDoublePrecision);
    ExpectAsJudged(At("rao"), plain, kSinglePrecision);
    ExpectAsJudged(At("rao_sqrt"), root, kSinglePrecision);
    if (F.rows() > 0) ExpectAsJudged(At("rao_phylogeny"), phylogeny, kDoublePrecision);
}

TEST_P(JudgedExample, BealsSmoothingAndDistancesBetweenCommunities) {
    Table<double> z(c_, n_), d(c_, c_);
    BealsSmoothing(c_, n_, W_, W_, z, true, 1, false);
    ExpectMatrixAsJudged(At("beals"), z, kDoublePrecision);
    BealsSmoothing(c_, n_, W_, W_, z, false, 1, false);
    ExpectMatrixAsJudged(At("beals_others"), z, kDoublePrecision);
    ChordDistMV(c_, n_, W_, d);
    ExpectMatrixAsJudged(At("chord"), Full(d), kDoublePrecision);
    AbsValFunctionMV(c_, n_, W_, d);
    ExpectMatrixAsJudged(At("manhattan"), Full(d), kDoublePrecision);
}

TEST_P(JudgedExample, RegressionAndPrincipalComponents) {
    const int p = example_.variables;
    Table<double> E = TableOf<double>(example_.E);
    auto data = ExamplePermTestData(kExamples, GetParam(), false, kRV);
    PermTest_FunctionalPhyl_Correl(&data->record);
    const int traits = example_.traits;
    Table<double> B(p, traits), withIntercepts(p + 1, traits), predicted(c_, traits);
    std::vector<double> intercepts(traits), r2(traits);
    regression(c_, traits, p, data->record.outT, E, B, intercepts.data(), predicted, r2.data(),
               nullptr, false, nullptr, 0, false);
    for (int k = 0; k < traits; k++) {
        withIntercepts[0][k] = intercepts[k];
        for (int f = 0; f < p; f++) withIntercepts[f + 1][k] = B[f][k];
    }
    ExpectMatrixAsJudged(At("lm_coefficients"), withIntercepts, kSinglePrecision);
    ExpectAsJudged(At("lm_r2"), r2, kSinglePrecision);

    Table<double> byVariables(p, c_), correlations(p, p), evec(p, p), scores(p, c_);
    for (int j = 0; j < p; j++)
        for (int i = 0; i < c_; i++) byVariables[j][i] = E[i][j];
    CenterRowsMV(p, c_, byVariables, byVariables);
    NormalizeRowsMV(p, c_, byVariables, byVariables);
    CrossProductMV(p, c_, byVariables, correlations);
    correlations = Full(correlations);
    std::vector<double> eval(p);
    int axes = 0;
    bool ok = false;
    OrdinationLib_D(p, c_, byVariables, correlations, evec, scores, &axes, eval.data(), &ok,
                    kPrincipalComponents, 17, 1);
    EXPECT_TRUE(ok);
    ASSERT_EQ(axes, p);
    ExpectAsJudged(At("pca_eigenvalues"), eval, kDoublePrecision);
    for (int k = 0; k < p; k++) {
        double variance = 0.0;  // of the scores of standardised variables, over its share
        for (int i = 0; i < c_; i++) variance += scores[k][i] * scores[k][i];
        EXPECT_NEAR(variance, eval[k], 1e-10) << k;
    }
}

TEST(Judge, PrincipalCoordinatesOfThePhylogeny) {
    const auto data = ExamplePermTestData(kExamples, "mafragh", true, kMantel);
    const auto& in = data->record;
    std::vector<double> eigenvalues(in.nPhylAxes), products(in.nOTUs);
    for (int k = 0; k < in.nPhylAxes; k++)
        for (int i = 0; i < in.nOTUs; i++) {
            eigenvalues[k] += std::pow(double(in.PhylScores[i][k]), 2);
            for (int j = 0; j < in.nOTUs; j++)
                products[i] += double(in.PhylScores[i][k]) * in.PhylScores[j][k] * (j + 1);
        }
    ExpectAsJudged("mafragh.pcoa_eigenvalues", eigenvalues, kSinglePrecision);
    ExpectAsJudged("mafragh.pcoa_products.weighted", products, kSinglePrecision);
}

using Record = PermTest_FunctionalPhyl_Correl_Input;

const char* const kNames[kReported] = {"roXE",   "roTE",    "roXE_T", "roRE",   "roXE_TR", "roTZ",
                                       "roTY",   "roXZ",    "roXY",   "roXZ_T", "roXY_T",  "roBF",
                                       "roFE",   "roPE",    "roPT",   "roPX",   "roPX_T",  "roTE_P",
                                       "roXE_P", "roXE_TP", "roPE_T", "roPE_X"};

void ExpectStatisticsAsJudged(const std::string& name, Record* in) {
    SCOPED_TRACE(name);
    PermTest_FunctionalPhyl_Correl(in);
    int judged = 0;
    for (int k = 0; k < kReported; k++) {
        // r(XZ.T) of the data shows r(XY.T) under Procrustes and RV.
        if (k == kXZ_T && in->opt_ro != kMantel) {
            EXPECT_EQ(in->roXZ_T, in->roXY_T);
            continue;
        }
        const std::string key = name + "." + kNames[k];
        if (!HasJudged(key)) continue;
        ExpectAsJudged(key, in->*kReportedStatistics[k].observed, kSinglePrecision);
        judged++;
    }
    EXPECT_EQ(judged, (in->includePhylogeny ? 22 : 11) - (in->opt_ro == kMantel ? 0 : 1));
}

TEST_P(JudgedExample, StatisticsOfTheAnalysis) {
    const struct {
        const char* name;
        int opt_ro, rese_opt;
        bool raw, crisp;
    } analyses[] = {{"mantel6", kMantel, 6, false, false},
                    {"mantel8", kMantel, 8, false, false},
                    {"mantel10_raw", kMantel, 10, true, false},
                    {"mantel6_crisp", kMantel, 6, false, true},
                    {"procrustes", kProcrustes, 6, false, false},
                    {"rv", kRV, 6, false, false},
                    {"rv_raw", kRV, 6, true, false}};
    for (const auto& analysis : analyses) {
        auto data =
            ExamplePermTestData(kExamples, GetParam(), !example_.F.empty(), analysis.opt_ro);
        Record& in = data->record;
        in.rese_opt = analysis.rese_opt;
        if (analysis.raw)
            for (int i = 0; i < c_; i++) std::copy(W_[i], W_[i] + n_, in.W[i]);
        DeriveFromTables(data.get());
        if (analysis.crisp) CrispBelonging(n_, in.nTypes, example_.labels.data(), in.U);
        ExpectStatisticsAsJudged(At(analysis.name), &in);
    }
}

TEST(Judge, StatisticsWithVariablesOfMixedTypes) {
    const ExampleTables example = ReadExampleTables(kExamples + "/aravo", "E_mixed");
    const int c = example.communities;
    Table<double> E = TableOf<double>(example.E);
    Table<double> s(c, c);
    GowerMVOpt(c, example.variables, example.variableTypes.data(), E, s, nullptr, nullptr, 1);
    ExpectMatrixAsJudged("aravo.gower_mixed", s, 1e-7);
    auto data = ExamplePermTestData(kExamples, "aravo", false, kMantel);
    ProbToDissim(c, s, data->record.DE);
    ExpectStatisticsAsJudged("aravo.mixed", &data->record);
}

}  // namespace
