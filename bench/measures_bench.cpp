// Single measures on the matrices of the permutation test, the definition beside the routine where
// the tests keep one.

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "TSLRESE/gower_partial.h"
#include "example_data.h"
#include "mxlib/belonging.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/rao.h"
#include "reference/perm_test_data.h"
#include "reference/plain_congruence.h"
#include "reference/plain_measures.h"

namespace {

using Record = PermTest_FunctionalPhyl_Correl_Input;

double RaoOfAll(const Record& in) {
    double sum = 0.0;
    for (int i = 0; i < in.nCommunities; i++)
        sum += RaoIndex(in.nOTUs, in.W[i], in.Sb, false, true);
    return sum;
}

double PlainRaoOfAll(const Record& in) {
    double sum = 0.0;
    for (int i = 0; i < in.nCommunities; i++)
        sum += PlainRao(in.nOTUs, in.W[i], in.Sb, false, true);
    return sum;
}

std::vector<int> Types(const Record& in) {
    std::vector<int> types;
    for (int k = 0; k < in.nOTUs; k++) types.push_back(k % in.nTypes + 1);
    return types;
}

double Belonging(const Record& in) {
    ScopedMatrix<float> u(in.nOTUs, in.nTypes);
    FuzzyBelonging(in.nOTUs, in.nTypes, in.Sb, Types(in).data(), u, false);
    return u[0][0];
}

double PlainBelonging(const Record& in) {
    ScopedMatrix<float> u(in.nOTUs, in.nTypes);
    PlainFuzzyBelonging(in.nOTUs, in.nTypes, in.Sb, Types(in).data(), u, false);
    return u[0][0];
}

double Beals(const Record& in) {
    BealsSmoothing(in.nCommunities, in.nOTUs, in.W, in.W, in.Z, false, 1, false);
    return in.Z[0][0];
}

double PlainBeals(const Record& in) {
    PlainBealsWithoutTarget(in.nCommunities, in.nOTUs, in.W, in.W, in.Z, 1, false);
    return in.Z[0][0];
}

double PartialGower(const Record& in) {
    ScopedMatrix<float> similarity(in.nOTUs, in.nOTUs);
    const std::vector<int> types(static_cast<size_t>(in.nTraits), 3);
    const std::vector<float> ranges(static_cast<size_t>(in.nTraits), 0.0F);
    const std::vector<float> weights(static_cast<size_t>(in.nTraits), 1.0F);
    gower_similarityWeighted(in.nTraits, in.B, in.nOTUs, similarity, types.data(), ranges.data(),
                             weights.data());
    return similarity[0][1];
}

/// X against Z: a narrow matrix and a wide one.
constexpr struct {
    const char* name;
    double (*measure)(const Record&);
} kMeasures[] = {
    {"MatrixCorr", [](const Record& in) { return MatrixCorr(in.nCommunities, in.DE, in.DZ); }},
    {"ProcrustesCoeff/plain",
     [](const Record& in) {
         return PlainProcrustes(in.nCommunities, in.nEnv, in.nOTUs, in.E, in.Z);
     }},
    {"ProcrustesCoeff",
     [](const Record& in) {
         return ProcrustesCoeff(in.nCommunities, in.nEnv, in.nOTUs, in.E, in.Z);
     }},
    {"RVcoeff/plain",
     [](const Record& in) { return PlainRV(in.nCommunities, in.nEnv, in.nOTUs, in.E, in.Z); }},
    {"RVcoeff",
     [](const Record& in) { return RVcoeff(in.nCommunities, in.nEnv, in.nOTUs, in.E, in.Z); }},
    {"RaoIndex/plain", PlainRaoOfAll},
    {"RaoIndex", RaoOfAll},
    {"FuzzyBelonging/plain", PlainBelonging},
    {"FuzzyBelonging", Belonging},
    {"BealsSmoothing/plain", PlainBeals},
    {"BealsSmoothing", Beals},
    {"gower_similarityWeighted", PartialGower},
};

std::unique_ptr<PermTestData> MakeData(const std::string& set) {
    if (set == "aravo") return ExamplePermTestData(TESSEL_EXAMPLES, set, false, 1);
    return RandomPermTestData({200, 300, 12, 5, 8, 0, 0.15}, 20111, 1);
}

const bool registered = [] {
    for (const char* set : {"aravo", "synthetic"})
        for (const auto& measure : kMeasures)
            benchmark::RegisterBenchmark(
                ("measure/" + std::string(set) + "/" + measure.name).c_str(),
                [=](benchmark::State& state) {
                    const auto data = MakeData(set);
                    for (auto _ : state) benchmark::DoNotOptimize(measure.measure(data->record));
                })
                ->Unit(benchmark::kMicrosecond);
    return true;
}();

}  // namespace
