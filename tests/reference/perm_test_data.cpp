#include "reference/perm_test_data.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "mxlib/belonging.h"
#include "mxlib/ordination.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/standardisation.h"

namespace {

using Record = PermTest_FunctionalPhyl_Correl_Input;

void SetSizes(const PermTestSizes& sizes, int opt_ro, PermTestData* data) {
    Record& in = data->record;
    in.nIterations = 1;
    in.nTraits = sizes.traits;
    in.nOTUs = sizes.OTUs;
    in.nTypes = sizes.types;
    in.nTaxa = sizes.taxa;
    in.nEnv = sizes.variables;
    in.nCommunities = sizes.communities;
    in.rese_opt = 6;
    in.opt_ro = opt_ro;
    in.overfitFactorPCARegr = 2.0;
    in.includePhylogeny = sizes.taxa > 0;
    in.phylogenyIsDissimilarity = true;
    in.sqrtDissimOpt_RaoTraits = true;
    in.twoTailedTestMantel = true;
    data->traitsInUse.assign(static_cast<size_t>(sizes.traits), 1);
    data->nesting.assign(static_cast<size_t>(sizes.OTUs), 1);
    data->traitTypes.assign(static_cast<size_t>(sizes.traits), kIntervalVariable);
    data->traitWeights.assign(static_cast<size_t>(sizes.traits), 1.0F);
    for (int k = 0; k < sizes.OTUs; k++) {
        data->typeLabels.push_back(k % sizes.types + 1);
        if (sizes.taxa > 0) data->taxonLabels.push_back(k % sizes.taxa + 1);
    }
    in.traitsInUse = data->traitsInUse.data();
    in.nestingMembershipOTUs = data->nesting.data();
}

void MakeTables(PermTestData* data) {
    Record& in = data->record;
    const int n = in.nOTUs;
    const int c = in.nCommunities;
    in.B = data->Float(n, in.nTraits);
    in.Sb = data->Float(n, n);
    in.U = data->Double(n, in.nTypes);
    in.W = data->Double(c, n);
    in.E = data->Double(c, in.nEnv);
    in.Z = data->Double(c, n);
    in.Y = data->Double(c, n);
    in.DE = data->Double(c, c);
    in.DZ = data->Double(c, c);
    in.DY = data->Double(c, c);
    in.Sf = data->Double(n, n);
    in.Q = data->Double(n, in.nTaxa);
    in.outT = data->Double(c, in.nTraits);
    in.outX = data->Double(c, in.nTypes);
    in.outP = data->Double(c, in.nTaxa);
    in.outR = data->vectors.emplace_back(c).data();
    in.outF = data->vectors.emplace_back(c).data();
}

void Narrow(int n, ConstMatrix<double> from, Matrix<float> to) {
    for (int i = 0; i < n; i++) std::copy(from[i], from[i] + n, to[i]);
}

void SimilaritiesOfTraits(PermTestData* data) {
    Record& in = data->record;
    const int n = in.nOTUs;
    ScopedMatrix<double> s(n, n);
    GowerMVOpt(n, in.nTraits, data->traitTypes.data(), in.B, s, nullptr, data->traitWeights.data(),
               1);
    Narrow(n, s, in.Sb);
}

void ScoresOfPhylogeny(PermTestData* data) {
    Record& in = data->record;
    const int n = in.nOTUs;
    ScopedMatrix<float> f(n, n), evec(n, n), scores(n, n);
    ScopedVector<float> eval(n);
    Narrow(n, in.Sf, f);
    bool ok = false;
    OrdinationLib(n, n, nullptr, f, evec, scores, &in.nPhylAxes, eval, &ok, kPrincipalCoordinates,
                  in.phylogenyIsDissimilarity ? 3 : 5, 1);
    in.PhylScores = data->Float(n, in.nPhylAxes);
    for (int i = 0; i < n; i++)
        for (int k = 0; k < in.nPhylAxes; k++) in.PhylScores[i][k] = scores[k][i];
}

}  // namespace

void RandomPhylogeny(int n, std::mt19937* random, double** f) {
    std::normal_distribution<double> normal;
    ScopedMatrix<double> points(n, 6);
    for (int i = 0; i < n; i++)
        for (int k = 0; k < 6; k++) points[i][k] = normal(*random);
    EucliDist(n, 6, points, f);
    double largest = 0.0;
    for (int i = 0; i < n; i++) largest = std::max(largest, *std::max_element(f[i] + i, f[i] + n));
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) f[j][i] = f[i][j] = largest > 0 ? f[i][j] / largest : 0.0;
}

std::unique_ptr<PermTestData> EmptyPermTestData(const PermTestSizes& sizes, int opt_ro) {
    auto data = std::make_unique<PermTestData>();
    SetSizes(sizes, opt_ro, data.get());
    MakeTables(data.get());
    return data;
}

void DeriveFromTables(PermTestData* data) {
    Record& in = data->record;
    const int n = in.nOTUs;
    const int c = in.nCommunities;
    EucliDistMV(c, in.nEnv, in.E, in.DE);
    SimilaritiesOfTraits(data);
    FuzzyBelonging(n, in.nTypes, in.Sb, data->typeLabels.data(), in.U, false);
    BealsSmoothing(c, n, in.W, in.W, in.Z, true, 1, false);
    BealsSmoothing(c, n, in.W, in.W, in.Y, true, 2, true);
    NominalReseNonHier(c, n, in.Z, in.DZ, in.rese_opt);
    NominalReseNonHier(c, n, in.Y, in.DY, in.rese_opt);
    if (!in.includePhylogeny) return;
    FuzzyBelonging(n, in.nTaxa, in.Sf, data->taxonLabels.data(), in.Q, in.phylogenyIsDissimilarity);
    ScoresOfPhylogeny(data);
}

std::unique_ptr<PermTestData> RandomPermTestData(const PermTestSizes& sizes, unsigned seed,
                                                 int opt_ro) {
    auto data = EmptyPermTestData(sizes, opt_ro);
    Record& in = data->record;
    std::mt19937 random(seed);
    std::normal_distribution<double> normal;
    std::uniform_real_distribution<double> uniform;
    for (int k = 0; k < in.nOTUs; k++)
        for (int j = 0; j < in.nTraits; j++) in.B[k][j] = static_cast<float>(4 + normal(random));
    for (int i = 0; i < in.nCommunities; i++) {
        for (int j = 0; j < in.nEnv; j++) in.E[i][j] = normal(random);
        for (int k = 0; k < in.nOTUs; k++)
            in.W[i][k] = uniform(random) < sizes.density ? std::exp(normal(random)) : 0.0;
        in.W[i][i % in.nOTUs] = 1.0;
    }
    UnitSumRowsAdjMV(in.nCommunities, in.nOTUs, in.W, in.W);
    RandomPhylogeny(in.nOTUs, &random, in.Sf);
    DeriveFromTables(data.get());
    return data;
}
