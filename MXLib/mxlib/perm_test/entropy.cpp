#include "mxlib/perm_test/entropy.h"

#include <cmath>

#include "mxlib/perm_test/kernels.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/rao.h"

namespace {

void EquivalentNumbers(int n, const double* q, Matrix<double> numbers) {
    for (int i = 0; i < n; i++) numbers[i][0] = 1.0 / (1.0 - q[i]);
}

/// A community without a total above 0 has entropy 0: its proportions are left at 0.
bool ToProportions(int nCommunities, SparseCells* cells) {
    bool finite = true;
    for (int i = 0; i < nCommunities; i++) {
        double total = 0.0;
        for (int e = cells->start[i]; e < cells->start[i + 1]; e++) total += cells->value[e];
        for (int e = cells->start[i]; e < cells->start[i + 1]; e++) {
            cells->value[e] = total > 0 ? cells->value[e] / total : 0.0;
            finite = finite && std::isfinite(cells->value[e]);
        }
        finite = finite && std::isfinite(total);
    }
    return finite;
}

void ListByOTU(const TestRecord& in, Entropies* e) {
    const int* start = e->proportions.start;
    for (int k = 0; k < start[in.nCommunities]; k++) e->otuStart[e->proportions.otu[k] + 1]++;
    for (int o = 0; o < in.nOTUs; o++) e->otuStart[o + 1] += e->otuStart[o];
    ScopedVector<int> filled(in.nOTUs);
    for (int i = 0; i < in.nCommunities; i++)
        for (int k = start[i]; k < start[i + 1]; k++) {
            const int o = e->proportions.otu[k];
            const int place = e->otuStart[o] + filled[o]++;
            e->community[place] = i;
            e->entry[place] = k;
        }
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

/// Each pair of OTUs once, from the row of differences of its first OTU to all communities that
/// hold this OTU: one row at a time is at hand.
void SumOverPresentPairs(const TestRecord& in, const int* list, const double* table, Entropies* e) {
    const double* p = e->proportions.value;
    for (int i = 0; i < in.nCommunities; i++) e->q[i] = 0.0;
    for (int o = 0; o < in.nOTUs; o++) {
        const int self = list[o] - 1;
        const double* row = table + static_cast<long>(self) * in.nOTUs;
        for (int place = e->otuStart[o]; place < e->otuStart[o + 1]; place++) {
            const int community = e->community[place];
            const int k = e->entry[place];
            const int next = k + 1;
            const double later = GatheredDot(e->proportions.start[community + 1] - next,
                                             e->at + next, p + next, row);
            e->q[community] += p[k] * (2.0 * later + p[k] * row[self]);
        }
    }
}

}  // namespace

Entropies MakeEntropies(const TestRecord& in) {
    const int n = in.nOTUs;
    const int count = CountPresent(in.nCommunities, n, in.W);
    const int phylogenyCells = in.includePhylogeny ? n * n : 0;
    Entropies e{false,
                PresentCells(in.nCommunities, n, in.W),
                ScopedVector<int>(n + 1),
                ScopedVector<int>(count),
                ScopedVector<int>(count),
                ScopedVector<int>(count),
                ScopedVector<double>(n * n),
                ScopedVector<double>(phylogenyCells),
                ScopedVector<double>(in.nCommunities),
                ScopedMatrix<double>(n, n)};
    e.plain = !ToProportions(in.nCommunities, &e.proportions);
    ListByOTU(in, &e);
    return e;
}

void ObservedEntropies(const TestRecord& in, Entropies* e, Arrangement* now) {
    RaoIndexRows(in.nCommunities, in.nOTUs, in.W, in.Sb, false, in.sqrtDissimOpt_RaoTraits, e->q);
    EquivalentNumbers(in.nCommunities, e->q, now->R);
    if (in.returnMatrices)
        for (int i = 0; i < in.nCommunities; i++) in.outR[i] = e->q[i];
    if (!in.includePhylogeny) return;
    RaoIndexRows(in.nCommunities, in.nOTUs, in.W, in.Sf, in.phylogenyIsDissimilarity,
                 in.sqrtDissimOpt_RaoPhyl, e->q);
    EquivalentNumbers(in.nCommunities, e->q, now->F);
    if (in.returnMatrices)
        for (int i = 0; i < in.nCommunities; i++) in.outF[i] = e->q[i];
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
    if (e->plain) {
        PermuteBoth<float>(in.nOTUs, list, in.Sb, e->permuted);
        RaoIndexRows(in.nCommunities, in.nOTUs, in.W, e->permuted, false,
                     in.sqrtDissimOpt_RaoTraits, e->q);
    } else {
        const int entries = e->proportions.start[in.nCommunities];
        for (int k = 0; k < entries; k++) e->at[k] = list[e->proportions.otu[k]] - 1;
        SumOverPresentPairs(in, list, e->byTraits, e);
    }
    EquivalentNumbers(in.nCommunities, e->q, now->R);
    if (!in.includePhylogeny) return;
    if (e->plain) {
        PermuteBoth<double>(in.nOTUs, list, in.Sf, e->permuted);
        RaoIndexRows(in.nCommunities, in.nOTUs, in.W, e->permuted, in.phylogenyIsDissimilarity,
                     in.sqrtDissimOpt_RaoPhyl, e->q);
    } else {
        SumOverPresentPairs(in, list, e->byPhylogeny, e);
    }
    EquivalentNumbers(in.nCommunities, e->q, now->F);
}
