#include "reference/plain_perm_test.h"

#include <cmath>
#include <cstdio>

#include "iflibG/iflibG.h"
#include "mxlib/partial_matrix_correlation.h"
#include "mxlib/random_lists.h"
#include "mxlib/resemblance_lib.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"
#include "reference/plain_congruence.h"

namespace {

using Record = PermTest_FunctionalPhyl_Correl_Input;

/// Over all ordered pairs, as the definition has it.
template <class M>
double Rao(int n, const double* p, Matrix<M> m, bool dissimilarity, bool squareRoot) {
    double t = 0.0;
    for (int i = 0; i < n; i++)
        if (!IsMissing(p[i])) t += p[i];
    if (n <= 0 || !(t > 0)) return 0.0;
    for (int i = 0; i < n; i++)
        for (int j = i + 1; j < n; j++) m[j][i] = m[i][j];
    double sum = 0.0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) {
            if (IsMissing(m[i][j]) || IsMissing(p[i]) || IsMissing(p[j])) continue;
            const M d = dissimilarity ? m[i][j] : 1 - m[i][j];
            const double wide = static_cast<double>(d);
            sum += (p[i] / t) * (p[j] / t) * (squareRoot ? std::sqrt(wide) : wide);
        }
    return sum;
}

/// Over present pairs, k ascending.
template <class T>
void Product(int n, int p, int q, ConstMatrix<double> a, ConstMatrix<T> b, Matrix<double> c,
             const int* sel) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < q; j++) {
            c[i][j] = 0.0;
            if (sel != nullptr && sel[j] != 1) continue;
            for (int k = 0; k < p; k++)
                if (!IsMissing(a[i][k]) && !IsMissing(b[k][j])) c[i][j] += a[i][k] * b[k][j];
        }
}

/// The matrices of one arrangement of the OTUs.
struct Matrices {
    ScopedMatrix<double> T, X, P, R, F;
    ScopedMatrix<double> DT, DX, DP, DR, DF;

    explicit Matrices(const Record& in)
        : T(in.nCommunities, in.nTraits),
          X(in.nCommunities, in.nTypes),
          P(in.nCommunities, in.nTaxa),
          R(in.nCommunities, 1),
          F(in.nCommunities, 1),
          DT(in.nCommunities, in.nCommunities),
          DX(in.nCommunities, in.nCommunities),
          DP(in.nCommunities, in.nCommunities),
          DR(in.nCommunities, in.nCommunities),
          DF(in.nCommunities, in.nCommunities) {}
};

struct Statistics {
    double XE, TE, XE_T, RE, XE_TR, TZ, TY, XZ, XY, XZ_T, XY_T, BF, FE, PE, PT, PX, PX_T, TE_P,
        XE_P, XE_TP, PE_T, PE_X;
    double XT, XR, TR;
};

/// c(A, B) between matrices of communities.
double Pair(const Record& in, int p1, ConstMatrix<double> a, ConstMatrix<double> da, int p2,
            ConstMatrix<double> b, ConstMatrix<double> db) {
    const int n = in.nCommunities;
    if (in.opt_ro == 2) return PlainProcrustes(n, p1, p2, a, b);
    if (in.opt_ro == 3) return PlainRV(n, p1, p2, a, b);
    if (n >= 3) return MatrixCorr(n, da, db);
    return n == 2 ? SmallSampleCongruence(da[0][1], db[0][1]) : SmallSampleCongruence(0.0, 0.0);
}

/// The same in the block of the entropies, where two communities are no special case.
double PairOfEntropy(const Record& in, int p1, ConstMatrix<double> a, ConstMatrix<double> da,
                     int p2, ConstMatrix<double> b, ConstMatrix<double> db) {
    if (in.opt_ro == 1) return MatrixCorr(in.nCommunities, da, db);
    return Pair(in, p1, a, da, p2, b, db);
}

/// Congruence of the residuals of a and b on the components of the sets' columns, side by side.
double Partial(const Record& in, int p1, ConstMatrix<double> a, int p2, ConstMatrix<double> b,
               std::initializer_list<CovariableSet> sets) {
    const int n = in.nCommunities;
    int columns = 0;
    for (const CovariableSet& set : sets) columns += set.columns;
    ScopedMatrix<double> c(n, columns);
    int used = 0;
    for (const CovariableSet& set : sets)
        for (int j = 0; j < set.columns; j++) {
            if (set.select != nullptr && set.select[j] != 1) continue;
            for (int i = 0; i < n; i++) c[i][used] = set.matrix[i][j];
            used++;
        }
    ScopedMatrix<double> ra(n, p1);
    ScopedMatrix<double> rb(n, p2);
    PlainComponentResiduals(n, p1, used, a, c, ra, 2, in.overfitFactorPCARegr);
    PlainComponentResiduals(n, p2, used, b, c, rb, 2, in.overfitFactorPCARegr);
    return in.opt_ro == 2 ? PlainProcrustes(n, p1, p2, ra, rb) : PlainRV(n, p1, p2, ra, rb);
}

void Resemblance(const Record& in, int p, ConstMatrix<double> data, Matrix<double> d, int measure) {
    const int n = in.nCommunities;
    ResemblanceLib(n, p, data, d, 1, measure, 0.0, nullptr, 0.0, 0.0, 0, false);
}

void BlockT(const Record& in, ConstMatrix<float> B, Matrices* m, Statistics* s) {
    const int n = in.nCommunities;
    Product<float>(n, in.nOTUs, in.nTraits, in.W, B, m->T, in.traitsInUse);
    NormalizeCols(n, in.nTraits, m->T, m->T);
    if (in.opt_ro == 1) Resemblance(in, in.nTraits, m->T, m->DT, 3);
    s->TE = Pair(in, in.nTraits, m->T, m->DT, in.nEnv, in.E, in.DE);
    s->TZ = Pair(in, in.nTraits, m->T, m->DT, in.nOTUs, in.Z, in.DZ);
    s->TY = Pair(in, in.nTraits, m->T, m->DT, in.nOTUs, in.Y, in.DY);
}

void BlockX(const Record& in, ConstMatrix<double> U, ConstMatrix<double> Q, Matrices* m,
            Statistics* s) {
    const int n = in.nCommunities;
    Product<double>(n, in.nOTUs, in.nTypes, in.W, U, m->X, nullptr);
    if (in.includePhylogeny) Product<double>(n, in.nOTUs, in.nTaxa, in.W, Q, m->P, nullptr);
    if (in.opt_ro == 1)
        Resemblance(in, in.nTypes, m->X, m->DX, TranslateReseOpt_TESSEL_POLYAX(in.rese_opt));
    s->XE = Pair(in, in.nTypes, m->X, m->DX, in.nEnv, in.E, in.DE);
    s->XT = Pair(in, in.nTypes, m->X, m->DX, in.nTraits, m->T, m->DT);
    s->XZ = Pair(in, in.nTypes, m->X, m->DX, in.nOTUs, in.Z, in.DZ);
    s->XY = Pair(in, in.nTypes, m->X, m->DX, in.nOTUs, in.Y, in.DY);
    if (in.opt_ro == 1) {
        s->XZ_T = PartialCorrelation(s->XZ, s->XT, s->TZ);
        s->XY_T = PartialCorrelation(s->XY, s->XT, s->TY);
        s->XE_T = PartialCorrelation(s->XE, s->XT, s->TE);
    } else {
        const CovariableSet T{in.nTraits, in.traitsInUse, m->T};
        s->XZ_T = Partial(in, in.nTypes, m->X, in.nOTUs, in.Z, {T});
        s->XY_T = Partial(in, in.nTypes, m->X, in.nOTUs, in.Y, {T});
        s->XE_T = Partial(in, in.nTypes, m->X, in.nEnv, in.E, {T});
    }
}

void BlockP(const Record& in, Matrices* m, Statistics* s) {
    if (in.opt_ro == 1)
        Resemblance(in, in.nTaxa, m->P, m->DP, TranslateReseOpt_TESSEL_POLYAX(in.rese_opt));
    s->PE = Pair(in, in.nTaxa, m->P, m->DP, in.nEnv, in.E, in.DE);
    s->PT = Pair(in, in.nTaxa, m->P, m->DP, in.nTraits, m->T, m->DT);
    s->PX = Pair(in, in.nTaxa, m->P, m->DP, in.nTypes, m->X, m->DX);
    if (in.opt_ro == 1) {
        s->PX_T = PartialCorrelation(s->PX, s->XT, s->PT);
        s->PE_X = PartialCorrelation(s->PE, s->PX, s->XE);
        s->PE_T = PartialCorrelation(s->PE, s->PT, s->TE);
        s->XE_P = PartialCorrelation(s->XE, s->PX, s->PE);
        const double XT_P = PartialCorrelation(s->XT, s->PX, s->PT);
        s->TE_P = PartialCorrelation(s->TE, s->PT, s->PE);
        s->XE_TP = PartialCorrelation(s->XE_P, XT_P, s->TE_P);
    } else {
        const CovariableSet T{in.nTraits, in.traitsInUse, m->T};
        const CovariableSet X{in.nTypes, nullptr, m->X};
        const CovariableSet P{in.nTaxa, nullptr, m->P};
        s->PX_T = Partial(in, in.nTaxa, m->P, in.nTypes, m->X, {T});
        s->PE_X = Partial(in, in.nTaxa, m->P, in.nEnv, in.E, {X});
        s->PE_T = Partial(in, in.nTaxa, m->P, in.nEnv, in.E, {T});
        s->XE_P = Partial(in, in.nTypes, m->X, in.nEnv, in.E, {P});
        s->TE_P = Partial(in, in.nTraits, m->T, in.nEnv, in.E, {P});
        s->XE_TP = Partial(in, in.nTypes, m->X, in.nEnv, in.E, {T, P});
    }
}

/// `Sb` float in the observed stage, double in the permuted one.
template <class S>
void BlockR(const Record& in, S** Sb, double** Sf, double* outR, double* outF, Matrices* m,
            Statistics* s) {
    const int n = in.nCommunities;
    for (int i = 0; i < n; i++) {
        const double q = Rao<S>(in.nOTUs, in.W[i], Sb, false, in.sqrtDissimOpt_RaoTraits);
        if (outR != nullptr) outR[i] = q;
        m->R[i][0] = 1.0 / (1.0 - q);
        if (!in.includePhylogeny) continue;
        const double f = Rao<double>(in.nOTUs, in.W[i], Sf, in.phylogenyIsDissimilarity,
                                     in.sqrtDissimOpt_RaoPhyl);
        if (outF != nullptr) outF[i] = f;
        m->F[i][0] = 1.0 / (1.0 - f);
    }
    if (in.opt_ro == 1) {
        AbsValFunctionMV(n, 1, m->R, m->DR);
        AbsValFunctionMV(n, 1, m->F, m->DF);
    }
    s->RE = PairOfEntropy(in, 1, m->R, m->DR, in.nEnv, in.E, in.DE);
    s->XR = PairOfEntropy(in, in.nTypes, m->X, m->DX, 1, m->R, m->DR);
    s->TR = PairOfEntropy(in, in.nTraits, m->T, m->DT, 1, m->R, m->DR);
    if (in.includePhylogeny) s->FE = PairOfEntropy(in, 1, m->F, m->DF, in.nEnv, in.E, in.DE);
    if (in.opt_ro == 1) {
        const double XE_R = PartialCorrelation(s->XE, s->XR, s->RE);
        const double TE_R = PartialCorrelation(s->TE, s->TR, s->RE);
        const double XT_R = PartialCorrelation(s->XT, s->XR, s->TR);
        s->XE_TR = PartialCorrelation(XE_R, XT_R, TE_R);
    } else {
        s->XE_TR = Partial(in, in.nTypes, m->X, in.nEnv, in.E,
                           {{in.nTraits, in.traitsInUse, m->T}, {1, nullptr, m->R}});
    }
}

/// ro(BF) of B with phylogenetic resemblances Sf or scores.
double SignalOfPhylogeny(const Record& in, double** Sf, float** scores) {
    const int n = in.nOTUs;
    if (in.opt_ro == 1) return MatrixCorr(n, in.Sb, Sf);
    ScopedMatrix<float> Bn(n, in.nTraits);
    NormalizeCols(n, in.nTraits, in.B, Bn);
    if (in.opt_ro == 2) return PlainProcrustes(n, in.nTraits, in.nPhylAxes, Bn, scores);
    return PlainRV(n, in.nTraits, in.nPhylAxes, Bn, scores);
}

/// One statistic, its place in the record and its test.
struct Place {
    double Statistics::*value;
    double Record::*observed;
    double Record::*probability;
    bool alwaysAbsolute;
    bool phylogeny;
};

const Place kPlaces[] = {
    {&Statistics::XE, &Record::roXE, &Record::probXE, false, false},
    {&Statistics::TE, &Record::roTE, &Record::probTE, false, false},
    {&Statistics::XE_T, &Record::roXE_T, &Record::probXE_T, true, false},
    {&Statistics::RE, &Record::roRE, &Record::probRE, false, false},
    {&Statistics::XE_TR, &Record::roXE_TR, &Record::probXE_TR, true, false},
    {&Statistics::TZ, &Record::roTZ, &Record::probTZ, false, false},
    {&Statistics::TY, &Record::roTY, &Record::probTY, false, false},
    {&Statistics::XZ, &Record::roXZ, &Record::probXZ, false, false},
    {&Statistics::XY, &Record::roXY, &Record::probXY, false, false},
    {&Statistics::XZ_T, &Record::roXZ_T, &Record::probXZ_T, true, false},
    {&Statistics::XY_T, &Record::roXY_T, &Record::probXY_T, true, false},
    {&Statistics::BF, &Record::roBF, &Record::probBF, false, true},
    {&Statistics::FE, &Record::roFE, &Record::probFE, false, true},
    {&Statistics::PE, &Record::roPE, &Record::probPE, false, true},
    {&Statistics::PT, &Record::roPT, &Record::probPT, false, true},
    {&Statistics::PX, &Record::roPX, &Record::probPX, false, true},
    {&Statistics::PX_T, &Record::roPX_T, &Record::probPX_T, true, true},
    {&Statistics::TE_P, &Record::roTE_P, &Record::probTE_P, true, true},
    {&Statistics::XE_P, &Record::roXE_P, &Record::probXE_P, true, true},
    {&Statistics::XE_TP, &Record::roXE_TP, &Record::probXE_TP, true, true},
    {&Statistics::PE_T, &Record::roPE_T, &Record::probPE_T, true, true},
    {&Statistics::PE_X, &Record::roPE_X, &Record::probPE_X, true, true},
};

Statistics Observed(Record* in, Matrices* m) {
    Statistics s{};
    BlockT(*in, in->B, m, &s);
    CopyMatrix(in->nCommunities, in->nTraits, m->T, in->outT);
    BlockX(*in, in->U, in->Q, m, &s);
    if (in->returnMatrices) CopyMatrix(in->nCommunities, in->nTypes, m->X, in->outX);
    if (in->includePhylogeny) CopyMatrix(in->nCommunities, in->nTaxa, m->P, in->outP);
    if (in->opt_ro != 1) s.XZ_T = s.XY_T;
    if (in->includePhylogeny) {
        s.BF = SignalOfPhylogeny(*in, in->Sf, in->PhylScores);
        if (in->opt_ro == 1 && in->phylogenyIsDissimilarity) s.BF = -s.BF;
        BlockP(*in, m, &s);
    }
    BlockR(*in, in->Sb, in->Sf, in->returnMatrices ? in->outR : nullptr,
           in->returnMatrices ? in->outF : nullptr, m, &s);
    return s;
}

template <class T, class S>
void CopyRows(int n, int p, const int* list, S** from, T** to) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) to[i][j] = from[list[i] - 1][j];
}

template <class S>
void CopyRowsAndColumns(int n, const int* list, S** from, double** to) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) to[i][j] = from[list[i] - 1][list[j] - 1];
}

Statistics Permuted(const Record& in, const int* list, Matrices* m) {
    const int n = in.nOTUs;
    Statistics s{};
    ScopedMatrix<float> B(n, in.nTraits);
    CopyRows(n, in.nTraits, list, in.B, B.get());
    BlockT(in, B, m, &s);
    ScopedMatrix<double> U(n, in.nTypes);
    CopyRows(n, in.nTypes, list, in.U, U.get());
    ScopedMatrix<double> Q(n, in.nTaxa);
    if (in.includePhylogeny) CopyRows(n, in.nTaxa, list, in.Q, Q.get());
    BlockX(in, U, Q, m, &s);
    if (in.includePhylogeny) BlockP(in, m, &s);
    ScopedMatrix<double> Sb(n, n);
    CopyRowsAndColumns(n, list, in.Sb, Sb.get());
    ScopedMatrix<double> Sf(n, n);
    if (in.includePhylogeny) {
        CopyRowsAndColumns(n, list, in.Sf, Sf.get());
        ScopedMatrix<float> scores(n, in.nPhylAxes);
        CopyRows(n, in.nPhylAxes, list, in.PhylScores, scores.get());
        s.BF = SignalOfPhylogeny(in, Sf, scores);
    }
    BlockR(in, Sb.get(), Sf.get(), nullptr, nullptr, m, &s);
    return s;
}

}  // namespace

bool PlainPermTest(Record* in) {
    Matrices m(*in);
    ScopedVector<int> list(in->nOTUs);
    for (int i = 0; i < in->nOTUs; i++) list[i] = i + 1;
    const Statistics observed = Observed(in, &m);
    constexpr int kPlaceCount = sizeof(kPlaces) / sizeof(kPlaces[0]);
    double frequency[kPlaceCount];
    for (double& f : frequency) f = 1.0;
    for (int i = 1; i < in->nIterations; i++) {
        char text[100];
        snprintf(text, sizeof(text), "Permutation test: %d of %d", i, in->nIterations);
        HandleEventInfoWhere2(text);
        if (in->optRestrictPermutNullModel == 1)
            RndListNestedNew(in->nOTUs, in->nestingMembershipOTUs, 1, list);
        else if (in->optRestrictPermutNullModel == 0)
            RndListSpecified(in->nOTUs, list);
        const Statistics random = Permuted(*in, list, &m);
        for (int k = 0; k < kPlaceCount; k++)
            if ((in->includePhylogeny || !kPlaces[k].phylogeny) &&
                IsLargerThanOrEqual(random.*kPlaces[k].value, observed.*kPlaces[k].value, 1,
                                    kPlaces[k].alwaysAbsolute || in->twoTailedTestMantel))
                frequency[k] += 1.0;
    }
    for (int k = 0; k < kPlaceCount; k++) {
        in->*kPlaces[k].observed = observed.*kPlaces[k].value;
        in->*kPlaces[k].probability = frequency[k] / in->nIterations;
    }
    return true;
}
