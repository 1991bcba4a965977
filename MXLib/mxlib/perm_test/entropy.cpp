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
        for (std::ptrdiff_t e = cells->start[i]; e < cells->start[i + 1]; e++)
            total += cells->value[e];
        for (std::ptrdiff_t e = cells->start[i]; e < cells->start[i + 1]; e++) {
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
    constexpr int kRows = kBlockOfSum;
    double sum = 0.0;
    int k = 0;
    for (; k + kRows <= present; k += kRows) {
        const double* row[kRows];
        double later[kRows] = {};
        for (int t = 0; t < kRows; t++)
            row[t] = table + static_cast<std::ptrdiff_t>(at[k + t]) * nOTUs;
        for (int l = k + kRows; l < present; l++)
            for (int t = 0; t < kRows; t++) later[t] += p[l] * row[t][at[l]];
        for (int t = 0; t < kRows; t++) {
            for (int u = t + 1; u < kRows; u++) later[t] += p[k + u] * row[t][at[k + u]];
            sum += p[k + t] * (2.0 * later[t] + p[k + t] * row[t][at[k + t]]);
        }
    }
    for (; k < present; k++) {
        const double* row = table + static_cast<std::ptrdiff_t>(at[k]) * nOTUs;
        double later = 0.0;
        for (int l = k + 1; l < present; l++) later += p[l] * row[at[l]];
        sum += p[k] * (2.0 * later + p[k] * row[at[k]]);
    }
    return sum;
}

void SumOverPresentPairs(const TestRecord& in, const int* otuOf, const double* table,
                         Entropies* e) {
    const std::ptrdiff_t entries = e->tables->proportions.start[in.nCommunities];
    for (std::ptrdiff_t k = 0; k < entries; k++) e->at[k] = otuOf[e->tables->proportions.otu[k]];
    for (int i = 0; i < in.nCommunities; i++) {
        const std::ptrdiff_t first = e->tables->proportions.start[i];
        e->q[i] =
            SumOverPairs(static_cast<int>(e->tables->proportions.start[i + 1] - first),
                         e->at + first, e->tables->proportions.value + first, table, in.nOTUs);
    }
}

void TakeObserved(const TestRecord& in, double* handedBack, Matrix<double> numbers, Entropies* e) {
    EquivalentNumbers(in.nCommunities, e->q, numbers);
    e->tables->plain = e->tables->plain || NearPole(in.nCommunities, e->q);
    if (in.returnMatrices) std::copy_n(e->q.get(), in.nCommunities, handedBack);
}

/// Resemblances between the OTUs, how they are read, and the table of differences made of them.
template <class T>
struct Resemblances {
    ConstMatrix<T> s;
    bool areDissimilarities;
    bool squareRoot;
    const double* differences;
    ConstMatrix<double> ahead;  ///< by order: entropies, where they are found by rows
};

template <class T>
void EntropiesInOrder(const TestRecord& in, const Orders& orders, int order,
                      const Resemblances<T>& from, Entropies* e) {
    if (!e->tables->plain) {
        if (e->rows)
            std::copy_n(from.ahead[order], in.nCommunities, e->q.get());
        else
            SumOverPresentPairs(in, orders.otuOf[order], from.differences, e);
        if (!NearPole(in.nCommunities, e->q)) return;
    }
    PermuteBoth<T>(in.nOTUs, orders.lists[order], from.s, e->permuted);
    RaoIndexRows(in.nCommunities, in.nOTUs, in.W, e->permuted, from.areDissimilarities,
                 from.squareRoot, e->otus, e->shares, e->q);
}

/// Rows are worth their reading when they are large and looked up often enough.
bool GoesByRows(const TestRecord& in, const EntropyTables& tables) {
    constexpr double kLookupsPerCell = 1.0 / 64;
    const double cells = static_cast<double>(in.nOTUs) * in.nOTUs;
    return !tables.plain && IsLargeTable(in.nOTUs) &&
           CountPairs(in.nCommunities, tables.proportions) > kLookupsPerCell * cells;
}

void MakeRoomForRows(int nOTUs, Entropies* e) {
    if (e->tables->rows) e->rows.reset(new RowTerms(MakeRowTerms(nOTUs, *e->tables->rows)));
}

std::shared_ptr<EntropyTables> MakeTables(const TestRecord& in) {
    const std::ptrdiff_t cells = static_cast<std::ptrdiff_t>(in.nOTUs) * in.nOTUs;
    std::shared_ptr<EntropyTables> tables(new EntropyTables{
        false, PresentCells(in.nCommunities, in.nOTUs, in.W), ScopedVector<double>(cells),
        ScopedVector<double>(in.includePhylogeny ? cells : 0), nullptr});
    tables->plain = !ToProportions(in.nCommunities, &tables->proportions);
    return tables;
}

}  // namespace

Entropies MakeEntropies(const TestRecord& in, const Entropies* first) {
    const int n = in.nOTUs;
    const int ahead = IsLargeTable(n) ? OrdersTogether(n) : 0;
    const std::shared_ptr<EntropyTables> tables = first != nullptr ? first->tables : MakeTables(in);
    Entropies e{tables,
                ScopedVector<int>(tables->proportions.start[in.nCommunities]),
                ScopedVector<double>(in.nCommunities),
                ScopedMatrix<double>(n, n),
                ScopedVector<int>(n),
                ScopedVector<double>(n),
                nullptr,
                ScopedMatrix<double>(ahead, in.nCommunities),
                ScopedMatrix<double>(in.includePhylogeny ? ahead : 0, in.nCommunities)};
    MakeRoomForRows(n, &e);
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
    EntropyTables* t = e->tables.get();
    bool finite =
        Differences<float>(in.nOTUs, in.Sb, false, in.sqrtDissimOpt_RaoTraits, t->byTraits);
    if (in.includePhylogeny)
        finite = Differences<double>(in.nOTUs, in.Sf, in.phylogenyIsDissimilarity,
                                     in.sqrtDissimOpt_RaoPhyl, t->byPhylogeny) &&
                 finite;
    t->plain = t->plain || !finite;
    if (GoesByRows(in, *t))
        t->rows.reset(
            new EntriesByRow(MakeEntriesByRow(in.nCommunities, in.nOTUs, t->proportions)));
    MakeRoomForRows(in.nOTUs, e);
}

void EntropiesAhead(const TestRecord& in, const Orders& orders, Entropies* e) {
    if (!e->rows) return;
    const EntropyTables& t = *e->tables;
    SumByRows(in.nCommunities, t.proportions, t.byTraits, orders, *t.rows, e->rows.get(),
              e->aheadByTraits);
    if (in.includePhylogeny)
        SumByRows(in.nCommunities, t.proportions, t.byPhylogeny, orders, *t.rows, e->rows.get(),
                  e->aheadByPhylogeny);
}

void PermutedEntropies(const TestRecord& in, const Orders& orders, int order, Entropies* e,
                       Arrangement* now) {
    EntropiesInOrder<float>(
        in, orders, order,
        {in.Sb, false, in.sqrtDissimOpt_RaoTraits, e->tables->byTraits, e->aheadByTraits.get()}, e);
    EquivalentNumbers(in.nCommunities, e->q, now->R);
    if (!in.includePhylogeny) return;
    EntropiesInOrder<double>(in, orders, order,
                             {in.Sf, in.phylogenyIsDissimilarity, in.sqrtDissimOpt_RaoPhyl,
                              e->tables->byPhylogeny, e->aheadByPhylogeny.get()},
                             e);
    EquivalentNumbers(in.nCommunities, e->q, now->F);
}
