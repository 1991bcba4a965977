#include "reference/plain_perm_test.h"

#include <cstdio>
#include <vector>

#include "iflibG/iflibG.h"
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
#include "reference/plain_measures.h"

namespace {

using Record = PermTest_FunctionalPhyl_Correl_Input;

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

/// A matrix of communities and its resemblances.
struct Side {
    int p;
    double** m;
    double** d;
    const int* select = nullptr;  ///< columns that count as covariables
};

struct Statistics {
    double XE, TE, XE_T, RE, XE_TR, TZ, TY, XZ, XY, XZ_T, XY_T, BF, FE, PE, PT, PX, PX_T, TE_P,
        XE_P, XE_TP, PE_T, PE_X;
    double XT, XR, TR;
};

/// The matrices of one arrangement of the OTUs, and the fixed ones.
struct Matrices {
    std::vector<ScopedMatrix<double>> room;
    Side T, X, P, R, F, E, Z, Y;

    explicit Matrices(const Record& in)
        : T(Make(in, in.nTraits, in.traitsInUse)),
          X(Make(in, in.nTypes)),
          P(Make(in, in.nTaxa)),
          R(Make(in, 1)),
          F(Make(in, 1)),
          E{in.nEnv, in.E, in.DE},
          Z{in.nOTUs, in.Z, in.DZ},
          Y{in.nOTUs, in.Y, in.DY} {}

    Side Make(const Record& in, int p, const int* select = nullptr) {
        const int n = in.nCommunities;
        double** m = room.emplace_back(n, p);
        return {p, m, room.emplace_back(n, n), select};
    }
};

/// c(A, B) between matrices of communities.
double Pair(const Record& in, const Side& a, const Side& b) {
    const int n = in.nCommunities;
    if (in.opt_ro == 2) return PlainProcrustes(n, a.p, b.p, a.m, b.m);
    if (in.opt_ro == 3) return PlainRV(n, a.p, b.p, a.m, b.m);
    if (n >= 3) return MatrixCorr(n, a.d, b.d);
    return n == 2 ? SmallSampleCongruence(a.d[0][1], b.d[0][1]) : SmallSampleCongruence(0.0, 0.0);
}

/// The same in the block of the entropies, where two communities are no special case.
double PairOfEntropy(const Record& in, const Side& a, const Side& b) {
    return in.opt_ro == 1 ? MatrixCorr(in.nCommunities, a.d, b.d) : Pair(in, a, b);
}

/// From three others under the matrix correlation, otherwise the congruence of the residuals of a
/// and b on the components of what is removed, side by side.
double Partial(const Record& in, const Side& a, const Side& b, const std::vector<Side>& removed,
               double ab, double ac, double bc) {
    if (in.opt_ro == 1) return PartialCorrelation(ab, ac, bc);
    const int n = in.nCommunities;
    int columns = 0;
    for (const Side& side : removed) columns += side.p;
    ScopedMatrix<double> c(n, columns), ra(n, a.p), rb(n, b.p);
    int used = 0;
    for (const Side& side : removed)
        for (int j = 0; j < side.p; j++) {
            if (side.select != nullptr && side.select[j] != 1) continue;
            for (int i = 0; i < n; i++) c[i][used] = side.m[i][j];
            used++;
        }
    PlainComponentResiduals(n, a.p, used, a.m, c, ra, 2, in.overfitFactorPCARegr);
    PlainComponentResiduals(n, b.p, used, b.m, c, rb, 2, in.overfitFactorPCARegr);
    return in.opt_ro == 2 ? PlainProcrustes(n, a.p, b.p, ra, rb) : PlainRV(n, a.p, b.p, ra, rb);
}

void Resemblance(const Record& in, const Side& side, int measure) {
    if (in.opt_ro != 1) return;
    ResemblanceLib(in.nCommunities, side.p, side.m, side.d, 1, measure, 0.0, nullptr, 0.0, 0.0, 0,
                   false);
}

void BlockT(const Record& in, ConstMatrix<float> B, const Matrices& m, Statistics* s) {
    const int n = in.nCommunities;
    Product<float>(n, in.nOTUs, in.nTraits, in.W, B, m.T.m, in.traitsInUse);
    NormalizeCols(n, in.nTraits, m.T.m, m.T.m);
    Resemblance(in, m.T, 3);
    s->TE = Pair(in, m.T, m.E);
    s->TZ = Pair(in, m.T, m.Z);
    s->TY = Pair(in, m.T, m.Y);
}

void BlockX(const Record& in, ConstMatrix<double> U, ConstMatrix<double> Q, const Matrices& m,
            Statistics* s) {
    const int n = in.nCommunities;
    Product<double>(n, in.nOTUs, in.nTypes, in.W, U, m.X.m, nullptr);
    if (in.includePhylogeny) Product<double>(n, in.nOTUs, in.nTaxa, in.W, Q, m.P.m, nullptr);
    Resemblance(in, m.X, TranslateReseOpt_TESSEL_POLYAX(in.rese_opt));
    s->XE = Pair(in, m.X, m.E);
    s->XT = Pair(in, m.X, m.T);
    s->XZ = Pair(in, m.X, m.Z);
    s->XY = Pair(in, m.X, m.Y);
    s->XZ_T = Partial(in, m.X, m.Z, {m.T}, s->XZ, s->XT, s->TZ);
    s->XY_T = Partial(in, m.X, m.Y, {m.T}, s->XY, s->XT, s->TY);
    s->XE_T = Partial(in, m.X, m.E, {m.T}, s->XE, s->XT, s->TE);
}

void BlockP(const Record& in, const Matrices& m, Statistics* s) {
    Resemblance(in, m.P, TranslateReseOpt_TESSEL_POLYAX(in.rese_opt));
    s->PE = Pair(in, m.P, m.E);
    s->PT = Pair(in, m.P, m.T);
    s->PX = Pair(in, m.P, m.X);
    s->PX_T = Partial(in, m.P, m.X, {m.T}, s->PX, s->XT, s->PT);
    s->PE_X = Partial(in, m.P, m.E, {m.X}, s->PE, s->PX, s->XE);
    s->PE_T = Partial(in, m.P, m.E, {m.T}, s->PE, s->PT, s->TE);
    s->XE_P = Partial(in, m.X, m.E, {m.P}, s->XE, s->PX, s->PE);
    s->TE_P = Partial(in, m.T, m.E, {m.P}, s->TE, s->PT, s->PE);
    const double XT_P = PartialCorrelation(s->XT, s->PX, s->PT);
    s->XE_TP = Partial(in, m.X, m.E, {m.T, m.P}, s->XE_P, XT_P, s->TE_P);
}

/// `Sb` float in the observed stage, double in the permuted one.
template <class S>
void BlockR(const Record& in, S** Sb, double** Sf, double* outR, double* outF, const Matrices& m,
            Statistics* s) {
    const int n = in.nCommunities;
    const auto entropies = [&]<class M>(M** rese, bool dissimilarity, bool root, double* raw,
                                        const Side& side) {
        UpperToLowerMatrix(in.nOTUs, rese);
        for (int i = 0; i < n; i++) {
            const double q = PlainRao<M>(in.nOTUs, in.W[i], rese, dissimilarity, root);
            if (raw != nullptr) raw[i] = q;
            side.m[i][0] = 1.0 / (1.0 - q);
        }
        if (in.opt_ro == 1) AbsValFunctionMV(n, 1, side.m, side.d);
    };
    entropies(Sb, false, in.sqrtDissimOpt_RaoTraits, outR, m.R);
    s->RE = PairOfEntropy(in, m.R, m.E);
    s->XR = PairOfEntropy(in, m.X, m.R);
    s->TR = PairOfEntropy(in, m.T, m.R);
    const double XE_R = PartialCorrelation(s->XE, s->XR, s->RE);
    const double TE_R = PartialCorrelation(s->TE, s->TR, s->RE);
    const double XT_R = PartialCorrelation(s->XT, s->XR, s->TR);
    s->XE_TR = Partial(in, m.X, m.E, {m.T, m.R}, XE_R, XT_R, TE_R);
    if (!in.includePhylogeny) return;
    entropies(Sf, in.phylogenyIsDissimilarity, in.sqrtDissimOpt_RaoPhyl, outF, m.F);
    s->FE = PairOfEntropy(in, m.F, m.E);
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

Statistics Observed(Record* in, const Matrices& m) {
    Statistics s{};
    const int n = in->nCommunities;
    BlockT(*in, in->B, m, &s);
    CopyMatrix(n, in->nTraits, m.T.m, in->outT);
    BlockX(*in, in->U, in->Q, m, &s);
    if (in->returnMatrices) CopyMatrix(n, in->nTypes, m.X.m, in->outX);
    if (in->includePhylogeny) CopyMatrix(n, in->nTaxa, m.P.m, in->outP);
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

Statistics Permuted(const Record& in, const int* list, const Matrices& m) {
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
    const Statistics observed = Observed(in, m);
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
        const Statistics random = Permuted(*in, list, m);
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
