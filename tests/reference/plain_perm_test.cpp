#include "reference/plain_perm_test.h"

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "iflibG/iflibG.h"
#include "mxlib/perm_test/statistics.h"
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

/// The reported statistics in their order: two letters, and behind the dot what is removed.
const std::string kNames[kReported] = {"XE",   "TE",   "XE.T", "RE",    "XE.TR", "TZ",  "TY", "XZ",
                                       "XY",   "XZ.T", "XY.T", "BF",    "FE",    "PE",  "PT", "PX",
                                       "PX.T", "TE.P", "XE.P", "XE.TP", "PE.T",  "PE.X"};

bool IsOfPhylogeny(const std::string& name) {
    return name.find_first_of("PF") != std::string::npos;
}

/// A matrix of communities and its resemblances.
struct Side {
    int p;
    double** m;
    double** d;
};

/// The matrices of one arrangement of the OTUs, and the fixed ones, by their letters.
struct Matrices {
    const TestRecord& in;
    const int n = in.nCommunities;
    std::vector<ScopedMatrix<double>> room = {};
    std::map<char, Side> sides = {{'E', {in.nEnv, in.E, in.DE}},
                                  {'Z', {in.nOTUs, in.Z, in.DZ}},
                                  {'Y', {in.nOTUs, in.Y, in.DY}}};

    void Add(char letter, int p) {
        double** const m = room.emplace_back(n, p);
        sides[letter] = {p, m, room.emplace_back(n, n)};
    }

    /// W times b over present pairs, the OTUs ascending, and its resemblances.
    template <class T>
    void Pool(char letter, T** b, int measure) {
        const auto& [q, m, d] = sides.at(letter);
        for (int i = 0; i < n; i++)
            for (int j = 0; j < q; j++) {
                m[i][j] = 0.0;
                if (letter == 'T' && in.traitsInUse[j] != 1) continue;
                for (int k = 0; k < in.nOTUs; k++)
                    if (!IsMissing(in.W[i][k]) && !IsMissing(b[k][j]))
                        m[i][j] += in.W[i][k] * b[k][j];
            }
        if (letter == 'T') NormalizeCols(n, q, m, m);
        if (in.opt_ro == 1)
            ResemblanceLib(n, q, m, d, 1, measure, 0.0, nullptr, 0.0, 0.0, 0, false);
    }

    template <class S>
    void Entropies(char letter, S** rese, bool dissimilarity, bool root, double* raw) {
        const Side& side = sides.at(letter);
        UpperToLowerMatrix(in.nOTUs, rese);
        for (int i = 0; i < n; i++) {
            const double q = PlainRao<S>(in.nOTUs, in.W[i], rese, dissimilarity, root);
            if (raw != nullptr) raw[i] = q;
            side.m[i][0] = 1.0 / (1.0 - q);
        }
        if (in.opt_ro == 1) AbsValFunctionMV(n, 1, side.m, side.d);
    }

    /// `Sb` is float in the observed stage, double in the permuted one.
    template <class S>
    void Arrange(float** B, double** U, double** Q, S** Sb, double** Sf, bool returnsEntropies) {
        const int measure = TranslateReseOpt_TESSEL_POLYAX(in.rese_opt);
        Pool('T', B, 3);
        Pool('X', U, measure);
        Entropies('R', Sb, false, in.sqrtDissimOpt_RaoTraits, returnsEntropies ? in.outR : nullptr);
        if (!in.includePhylogeny) return;
        Pool('P', Q, measure);
        Entropies('F', Sf, in.phylogenyIsDissimilarity, in.sqrtDissimOpt_RaoPhyl,
                  returnsEntropies ? in.outF : nullptr);
    }

    double Congruence(int p, double** a, int q, double** b) const {
        return in.opt_ro == 2 ? PlainProcrustes(n, p, q, a, b) : PlainRV(n, p, q, a, b);
    }

    /// Where entropies are compared, two communities are no special case.
    double Pair(const std::string& name) const {
        const Side &a = sides.at(name[0]), &b = sides.at(name[1]);
        if (in.opt_ro != 1) return Congruence(a.p, a.m, b.p, b.m);
        if (n >= 3 || name.find_first_of("RF") != std::string::npos) return MatrixCorr(n, a.d, b.d);
        return n == 2 ? SmallSampleCongruence(a.d[0][1], b.d[0][1]) : SmallSampleCongruence(0., 0.);
    }

    /// Congruence of the residuals on the components of what is removed, side by side.
    double OfResiduals(const std::string& name) const {
        ScopedMatrix<double> c(n, in.nTraits + in.nTypes + in.nTaxa + 1);
        int used = 0;
        for (const char letter : name.substr(3))
            for (int j = 0; j < sides.at(letter).p; j++) {
                if (letter == 'T' && in.traitsInUse[j] != 1) continue;
                for (int i = 0; i < n; i++) c[i][used] = sides.at(letter).m[i][j];
                used++;
            }
        const Side &a = sides.at(name[0]), &b = sides.at(name[1]);
        ScopedMatrix<double> ra(n, a.p), rb(n, b.p);
        PlainComponentResiduals(n, a.p, used, a.m, c, ra, 2, in.overfitFactorPCARegr);
        PlainComponentResiduals(n, b.p, used, b.m, c, rb, 2, in.overfitFactorPCARegr);
        return Congruence(a.p, ra, b.p, rb);
    }

    double Value(const std::string& name) const {
        if (name.size() == 2) return Pair(name);
        if (in.opt_ro != 1) return OfResiduals(name);
        const std::string rest = name.size() > 4 ? "." + name.substr(4) : "";
        const auto with = [&](char a, char b) { return Value(std::string{a, b} + rest); };
        return PartialCorrelation(with(name[0], name[1]), with(name[0], name[3]),
                                  with(name[1], name[3]));
    }
    /// Of B with phylogenetic resemblances or scores.
    double Signal(double** Sf, float** scores) const {
        if (in.opt_ro == 1) return MatrixCorr(in.nOTUs, in.Sb, Sf);
        ScopedMatrix<float> Bn(in.nOTUs, in.nTraits);
        NormalizeCols(in.nOTUs, in.nTraits, in.B, Bn);
        const int k = in.nOTUs, p = in.nTraits, q = in.nPhylAxes;
        return in.opt_ro == 2 ? double(PlainProcrustes(k, p, q, Bn, scores))
                              : PlainRV(k, p, q, Bn, scores);
    }

    std::vector<double> Values(double signal) const {
        std::vector<double> values(kReported);
        for (int k = 0; k < kReported; k++)
            if (in.includePhylogeny || !IsOfPhylogeny(kNames[k]))
                values[k] = k == kBF ? signal : Value(kNames[k]);
        return values;
    }
};

template <class S, class T>
void CopyRows(int n, int p, const int* list, S** from, T** to) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) to[i][j] = from[list[i] - 1][j];
}

template <class S>
void CopyRowsAndColumns(int n, const int* list, S** from, double** to) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) to[i][j] = from[list[i] - 1][list[j] - 1];
}

std::vector<double> Permuted(const int* list, Matrices* m) {
    const TestRecord& in = m->in;
    const int n = in.nOTUs;
    ScopedMatrix<float> B(n, in.nTraits), scores(n, in.nPhylAxes);
    ScopedMatrix<double> U(n, in.nTypes), Q(n, in.nTaxa), Sb(n, n), Sf(n, n);
    CopyRows(n, in.nTraits, list, in.B, B.get());
    CopyRows(n, in.nTypes, list, in.U, U.get());
    CopyRowsAndColumns(n, list, in.Sb, Sb.get());
    if (in.includePhylogeny) {
        CopyRows(n, in.nTaxa, list, in.Q, Q.get());
        CopyRowsAndColumns(n, list, in.Sf, Sf.get());
        CopyRows(n, in.nPhylAxes, list, in.PhylScores, scores.get());
    }
    m->Arrange(B, U, Q, Sb.get(), Sf, false);
    return m->Values(in.includePhylogeny ? m->Signal(Sf, scores) : 0.0);
}

std::vector<double> Observed(Matrices* m) {
    const TestRecord& in = m->in;
    m->Arrange(in.B, in.U, in.Q, in.Sb, in.Sf, in.returnMatrices);
    CopyMatrix(m->n, in.nTraits, m->sides.at('T').m, in.outT);
    if (in.returnMatrices) CopyMatrix(m->n, in.nTypes, m->sides.at('X').m, in.outX);
    if (in.includePhylogeny) CopyMatrix(m->n, in.nTaxa, m->sides.at('P').m, in.outP);
    const double signal = in.includePhylogeny ? m->Signal(in.Sf, in.PhylScores) : 0.0;
    const bool turned = in.opt_ro == 1 && in.phylogenyIsDissimilarity;
    std::vector<double> values = m->Values(turned ? -signal : signal);
    if (in.opt_ro != 1) values[kXZ_T] = values[kXY_T];
    return values;
}

}  // namespace

bool PlainPermTest(TestRecord* in) {
    Matrices m{*in};
    for (const auto& [letter, columns] :
         {std::pair('T', in->nTraits), {'X', in->nTypes}, {'P', in->nTaxa}, {'R', 1}, {'F', 1}})
        m.Add(letter, columns);
    ScopedVector<int> list(in->nOTUs);
    for (int i = 0; i < in->nOTUs; i++) list[i] = i + 1;
    const std::vector<double> observed = Observed(&m);
    std::vector<double> frequency(kReported, 1.0);
    for (int i = 1; i < in->nIterations; i++) {
        char text[100];
        snprintf(text, sizeof(text), "Permutation test: %d of %d", i, in->nIterations);
        HandleEventInfoWhere2(text);
        if (in->optRestrictPermutNullModel == 1)
            RndListNestedNew(in->nOTUs, in->nestingMembershipOTUs, 1, list);
        else if (in->optRestrictPermutNullModel == 0)
            RndListSpecified(in->nOTUs, list);
        const std::vector<double> random = Permuted(list, &m);
        for (int k = 0; k < kReported; k++)
            if ((in->includePhylogeny || !IsOfPhylogeny(kNames[k])) &&
                IsLargerThanOrEqual(random[k], observed[k], 1,
                                    kNames[k].size() > 2 || in->twoTailedTestMantel))
                frequency[k] += 1.0;
    }
    for (int k = 0; k < kReported; k++) {
        in->*kReportedStatistics[k].observed = observed[k];
        in->*kReportedStatistics[k].probability = frequency[k] / in->nIterations;
    }
    return true;
}
