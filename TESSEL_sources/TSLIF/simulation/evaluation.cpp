#include "TSLIF/simulation/evaluation.h"

#include <algorithm>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlib/belonging.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

using Record = PermTest_FunctionalPhyl_Correl_Input;

const RatedStatistic ratedStatistics[kRatedStatistics] = {
    {"Convergence (TCAP): r(TE)", &Record::roTE, &Record::probTE},
    {"Both TCAP and Divergence (TDAP): r(XE)", &Record::roXE, &Record::probXE},
    {"TDAP: r(XE.T)", &Record::roXE_T, &Record::probXE_T},
    {"Alpha divergence (correlation between ecosystem variables and Rao entropy): r(RE)",
     &Record::roRE, &Record::probRE},
    {"Beta divergence: r(XE.TR)", &Record::roXE_TR, &Record::probXE_TR},
    {"r(TY)", &Record::roTZ, &Record::probTZ},
    {"r(XY)", &Record::roXZ, &Record::probXZ},
    {"r(XY_T)", &Record::roXZ_T, &Record::probXZ_T},
    {"r(TZ)", &Record::roTY, &Record::probTY},
    {"r(XZ)", &Record::roXY, &Record::probXY},
    {"r(XZ_T)", &Record::roXY_T, &Record::probXY_T},
};

namespace {

void SelectTraits(Evaluation* e) {
    for (int t = 0; t < e->answers.nTraits; t++) {
        e->traitsInUse[t] = static_cast<int>(weight[t]);
        chtype[t] = kIntervalVariable;
    }
}

void MeasureBelonging(Evaluation* e) {
    const int N = e->answers.nOTUs;
    if (fuzzy == kFuzzyTypes) {
        GowerMV(N, e->answers.nTraits, chtype, e->B, e->Sb, nullptr, weight);
        FuzzyBelonging(N, N, e->Sb, nullptr, e->U, false);
    } else if (fuzzy == kCrisp) {
        CrispBelonging(N, N, nullptr, e->U);
    }
}

void SmoothCommunities(Evaluation* e) {
    const int S = e->answers.nSites;
    const int N = e->answers.nOTUs;
    constexpr int kByCoOccurrence = 1;
    constexpr int kByProducts = 2;
    BealsSmoothing(S, N, e->shares, e->shares, e->coOccurrence, BealsIncludeOpt, kByCoOccurrence,
                   false);
    BealsSmoothing(S, N, e->shares, e->shares, e->products, BealsIncludeOpt, kByProducts, true);
}

void TakePredictors(Evaluation* e) {
    const int S = e->answers.nSites;
    const int Q = e->answers.nPredictors;
    for (int k = 0; k < Q; k++) {
        const bool inUse = e->answers.predictorsInUse[static_cast<std::size_t>(k)] == 1;
        for (int s = 0; s < S; s++) e->E[s][k] = inUse ? e->predictors[k][s] : 0.0;
    }
    CorrAdj(S, Q, e->E, e->E);
}

void CompareSites(Evaluation* e) {
    const int S = e->answers.nSites;
    EucliDist(S, e->answers.nPredictors, e->E, e->DE);
    NominalReseNonHier(S, e->answers.nOTUs, e->coOccurrence, e->DCoOccurrence, rese_opt);
    NominalReseNonHier(S, e->answers.nOTUs, e->products, e->DProducts, rese_opt);
}

Record FilledRecord(const Evaluation& e) {
    const SimulationAnswers& a = e.answers;
    Record test = {};
    test.nIterations = niter;
    test.nTraits = a.nTraits;
    test.traitsInUse = e.traitsInUse;
    test.nOTUs = test.nTypes = a.nOTUs;
    test.nTaxa = nTaxa;
    test.nEnv = a.nPredictors;
    test.nCommunities = a.nSites;
    test.B = e.B;
    test.Sb = e.Sb;
    test.E = e.E;
    test.U = e.U;
    test.W = e.shares;
    test.DE = e.DE;
    test.DZ = e.DCoOccurrence;
    test.DY = e.DProducts;
    test.Z = e.coOccurrence;
    test.Y = e.products;
    test.rese_opt = rese_opt;
    test.opt_ro = opt_ro;
    test.overfitFactorPCARegr = overfitFactorPCARegr;
    test.sqrtDissimOpt_RaoTraits = true;
    test.optRestrictPermutNullModel = optRestrictPermutNullModel;
    test.nestingMembershipOTUs = nestingMembershipOTUs;
    test.returnMatrices = true;
    test.twoTailedTestMantel = twoTailedTestMantel;
    test.outT = e.outT;
    test.outX = e.outX;
    test.outR = e.outR;
    return test;
}

}  // namespace

Evaluation::Evaluation(const SimulationAnswers& answersOfRun)
    : Evaluation(answersOfRun, answersOfRun.nSites, answersOfRun.nOTUs, answersOfRun.nTraits,
                 answersOfRun.nPredictors) {}

Evaluation::Evaluation(const SimulationAnswers& answersOfRun, int S, int N, int T, int Q)
    : answers(answersOfRun),
      B(Table<float>(N, T)),
      shares(Table<double>(S, N)),
      predictors(Table<double>(Q, S)),
      traitsInUse(T),
      Sb(Table<float>(N, N)),
      U(Table<double>(N, N)),
      coOccurrence(Table<double>(S, N)),
      products(Table<double>(S, N)),
      DCoOccurrence(Table<double>(S, S)),
      DProducts(Table<double>(S, S)),
      E(Table<double>(S, Q)),
      DE(Table<double>(S, S)),
      outT(Table<double>(S, T)),
      outX(Table<double>(S, N)),
      outR(S) {}

void TakeDataSet(World& world, Evaluation* evaluation) {
    const SimulationAnswers& a = evaluation->answers;
    SelectTraits(evaluation);
    for (int i = 0; i < a.nOTUs; i++) std::copy_n(world.B[i], a.nTraits, evaluation->B[i]);
    CopyMatrix(a.nSites, a.nOTUs, world.shares, evaluation->shares);
    CopyMatrix(a.nPredictors, a.nSites, world.E, evaluation->predictors);
    evaluation->test = FilledRecord(*evaluation);
}

void EvaluateDataSet(Evaluation* evaluation) {
    MeasureBelonging(evaluation);
    SmoothCommunities(evaluation);
    TakePredictors(evaluation);
    CompareSites(evaluation);
    PermTest_FunctionalPhyl_Correl(&evaluation->test);
}

std::vector<double> EvaluatedValues(const Evaluation& evaluation) {
    std::vector<double> values;
    for (const RatedStatistic& rated : ratedStatistics) {
        values.push_back(evaluation.test.*rated.value);
        values.push_back(evaluation.test.*rated.probability);
    }
    return values;
}

void TakeValues(const double* values, Evaluation* evaluation) {
    for (const RatedStatistic& rated : ratedStatistics) {
        evaluation->test.*rated.value = *values++;
        evaluation->test.*rated.probability = *values++;
    }
}

bool IsRejected(double probability, double alpha) {
    return AlmostEqual2sComplement(probability, alpha, 1) || alpha > probability;
}

void CountRejections(Evaluation* evaluation) {
    for (int k = 0; k < kRatedStatistics; k++)
        if (IsRejected(evaluation->test.*ratedStatistics[k].probability, evaluation->answers.alpha))
            evaluation->rejections[static_cast<std::size_t>(k)] += 1.0;
}

void ToRates(Evaluation* evaluation) {
    for (double& count : evaluation->rejections) count /= DataSetsOfRun(evaluation->answers);
}
