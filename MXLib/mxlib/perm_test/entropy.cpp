#include "mxlib/perm_test/entropy.h"

#include <algorithm>
#include <cmath>

#include "mxlibRes/missing.h"
#include "mxlibRes/rao.h"

namespace {

/// 1 / (1 - Q) so near to its pole shows the order in which Q was summed.
bool NearPole(int n, const double* q) {
    constexpr double kNear = 1e-6;
    return std::any_of(q, q + n, [](double x) { return std::fabs(1.0 - x) < kNear; });
}

void EquivalentNumbers(int n, const double* q, Matrix<double> numbers) {
    for (int i = 0; i < n; i++) numbers[i][0] = 1.0 / (1.0 - q[i]);
}

/// A community without a total above 0 has entropy 0: its proportions are left at 0.
bool ToProportions(int nCommunities, SparseCells* cells) {
    bool finite = true;
    for (int i = 0; i < nCommunities; i++) {
        double total = 0.0;
        for (long e = cells->start[i]; e < cells->start[i + 1]; e++) total += cells->value[e];
        for (long e = cells->start[i]; e < cells->start[i + 1]; e++) {
            cells->value[e] = total > 0 ? cells->value[e] / total : 0.0;
            finite = finite && std::isfinite(cells->value[e]);
        }
        finite = finite && std::isfinite(total);
    }
    return finite;
}

/// Returns whether all differences are finite.
template <class T>
bool Differences(int n, ConstMatrix<T> m, bool dissimilarity, bool squareRoot, double* table) {
    bool finite = true;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++, table++) {
            const double x = m[i][j];
            const double d = dissimilarity ? x : 1.0 - x;
            *table = IsMissing(x) ? 0.0 : squareRoot ? std::sqrt(d) : d;
            finite = finite && std::isfinite(*table);
        }
    return finite;
}

/// Sum over the ordered pairs of OTUs of one community, each unordered pair being looked up once.
/// Four rows of differences are read at a time, so that place and proportion of the other OTU are
/// loaded for four pairs.
double SumOverPairs(int present, const int* at, const double* p, const double* table, int nOTUs) {
    constexpr int kRows = 4;
    double sum = 0.0;
    int k = 0;
    for (; k + kRows <= present; k += kRows) {
        const double* row[kRows];
        double later[kRows] = {};
        for (int t = 0; t < kRows; t++) row[t] = table + static_cast<long>(at[k + t]) * nOTUs;
        for (int l = k + kRows; l < present; l++)
            for (int t = 0; t < kRows; t++) later[t] += p[l] * row[t][at[l]];
        for (int t = 0; t < kRows; t++) {
            for (int u = t + 1; u < kRows; u++) later[t] += p[k + u] * row[t][at[k + u]];
            sum += p[k + t] * (2.0 * later[t] + p[k + t] * row[t][at[k + t]]);
        }
    }
    for (; k < present; k++) {
        const double* row = table + static_cast<long>(at[k]) * nOTUs;
        double later = 0.0;
        for (int l = k + 1; l < present; l++) later += p[l] * row[at[l]];
        sum += p[k] * (2.0 * later + p[k] * row[at[k]]);
    }
    return sum;
}

void SumOverPresentPairs(const TestRecord& in, const double* table, Entropies* e) {
    for (int i = 0; i < in.nCommunities; i++) {
        const long first = e->proportions.start[i];
        e->q[i] = SumOverPairs(static_cast<int>(e->proportions.start[i + 1] - first), e->at + first,
                               e->proportions.value + first, table, in.nOTUs);
    }
}

void TakeObserved(const TestRecord& in, double* handedBack, Matrix<double> numbers, Entropies* e) {
    EquivalentNumbers(in.nCommunities, e->q, numbers);
    e->plain = e->plain || NearPole(in.nCommunities, e->q);
    if (in.returnMatrices) std::copy_n(e->q.get(), in.nCommunities, handedBack);
}

/// Resemblances between the OTUs, how they are read, and the table of differences made of them.
template <class T>
struct Resemblances {
    ConstMatrix<T> s;
    bool areDissimilarities;
    bool squareRoot;
    const double* differences;
};

template <class T>
void EntropiesInOrder(const TestRecord& in, const int* list, const Resemblances<T>& from,
                      Entropies* e) {
    if (!e->plain) {
        SumOverPresentPairs(in, from.differences, e);
        if (!NearPole(in.nCommunities, e->q)) return;
    }
    PermuteBoth<T>(in.nOTUs, list, from.s, e->permuted);
    RaoIndexRows(in.nCommunities, in.nOTUs, in.W, e->permuted, from.areDissimilarities,
                 from.squareRoot, e->otus, e->shares, e->q);
}

}  // namespace

Entropies MakeEntropies(const TestRecord& in) {
    const int n = in.nOTUs;
    const long count = CountPresent(in.nCommunities, n, in.W);
    const long cells = static_cast<long>(n) * n;
    Entropies e{false,
                PresentCells(in.nCommunities, n, in.W),
                ScopedVector<int>(count),
                ScopedVector<double>(cells),
                ScopedVector<double>(in.includePhylogeny ? cells : 0),
                ScopedVector<double>(in.nCommunities),
                ScopedMatrix<double>(n, n),
                ScopedVector<int>(n),
                ScopedVector<double>(n)};
    e.plain = !ToProportions(in.nCommunities, &e.proportions);
    return e;
}

void ObservedEntropies(const TestRecord& in, Entropies* e, Arrangement* now) {
    RaoIndexRows(in.nCommunities, in.nOTUs, in.W, in.Sb, false, in.sqrtDissimOpt_RaoTraits, e->otus,
                 e->shares, e->q);
    TakeObserved(in, in.outR, now->R, e);
    if (!in.includePhylogeny) return;
    RaoIndexRows(in.nCommunities, in.nOTUs, in.W, in.Sf, in.phylogenyIsDissimilarity,
                 in.sqrtDissimOpt_RaoPhyl, e->otus, e->shares, e->q);
    TakeObserved(in, in.outF, now->F, e);
}

void FillDifferences(const TestRecord& in, Entropies* e) {
    bool finite =
        Differences<float>(in.nOTUs, in.Sb, false, in.sqrtDissimOpt_RaoTraits, e->byTraits);
    if (in.includePhylogeny)
        finite = Differences<double>(in.nOTUs, in.Sf, in.phylogenyIsDissimilarity,
                                     in.sqrtDissimOpt_RaoPhyl, e->byPhylogeny) &&
                 finite;
    e->plain = e->plain || !finite;
}

void PermutedEntropies(const TestRecord& in, const int* list, Entropies* e, Arrangement* now) {
    const long entries = e->proportions.start[in.nCommunities];
    for (long k = 0; k < entries; k++) e->at[k] = list[e->proportions.otu[k]] - 1;
    EntropiesInOrder<float>(in, list, {in.Sb, false, in.sqrtDissimOpt_RaoTraits, e->byTraits}, e);
    EquivalentNumbers(in.nCommunities, e->q, now->R);
    if (!in.includePhylogeny) return;
    EntropiesInOrder<double>(
        in, list, {in.Sf, in.phylogenyIsDissimilarity, in.sqrtDissimOpt_RaoPhyl, e->byPhylogeny},
        e);
    EquivalentNumbers(in.nCommunities, e->q, now->F);
}
