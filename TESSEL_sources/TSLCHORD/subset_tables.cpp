#include "TSLCHORD/subset_tables.h"

#include <algorithm>

#include "TSLGLOB/settings.h"
#include "TSLIFFMT/checks.h"
#include "TSLRESE/gower_partial.h"
#include "TSLRESE/sites.h"
#include "mxlib/belonging.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

bool HasResemblanceOfOneColumn(Table table) {
    return table == Table::R || table == Table::S;
}

/// With two communities there is one distance and no correlation.
bool IsSmallSample(const TablePair& pair) {
    return ncsm < 3 && !HasResemblanceOfOneColumn(pair.a) && !HasResemblanceOfOneColumn(pair.b);
}

double SmallSample(ConstMatrix<double> a, ConstMatrix<double> b) {
    return ncsm < 2 ? SmallSampleCongruence(0.0, 0.0) : SmallSampleCongruence(a[0][1], b[0][1]);
}

template <class Real>
const CongruenceSide<Real>& SideOf(ComparedTable<Real>* table) {
    if (!table->sideReady) SetCongruenceSide<Real>(table->values, table->side.get());
    table->sideReady = true;
    return *table->side;
}

}  // namespace

template <class Real>
SubsetTables<Real>::SubsetTables(int types)
    : K(types),
      similarities(types > 0 ? tcst : 0, tcst, nch),
      S(types > 0 ? tcst : 0, tcst),
      U(tcst, types) {}

template <class Real>
void AddTable(Table table, int columns, SubsetTables<Real>* t) {
    std::unique_ptr<ComparedTable<Real>>& added = t->compared[static_cast<int>(table)];
    added.reset(new ComparedTable<Real>{columns, ScopedMatrix<Real>(ncsm, columns),
                                        ScopedMatrix<double>(ncsm, ncsm), nullptr});
    if (opt_ro != kMantel)
        added->side =
            std::make_unique<CongruenceSide<Real>>(MakeCongruenceSide<Real>(opt_ro, ncsm, columns));
}

/// Of two tables one is a subset's, or P with E: all but Z may stand with Z.
template <class Real>
void FinishTables(SubsetTables<Real>* t) {
    if (opt_ro == kMantel) return;
    int widest = 1;
    int widestButZ = 1;
    for (int table = 0; table < kTables; table++) {
        if (t->compared[table] == nullptr) continue;
        const int columns = t->compared[table]->columns;
        widest = std::max(widest, columns);
        if (static_cast<Table>(table) != Table::Z) widestButZ = std::max(widestButZ, columns);
    }
    t->scratch = std::make_unique<CongruenceScratch<Real>>(
        MakeCongruenceScratch<Real>(opt_ro, ncsm, widest, widestButZ));
}

template <class Real>
ComparedTable<Real>& Of(Table table, SubsetTables<Real>* t) {
    return *t->compared[static_cast<int>(table)];
}

template <class Real>
void TakeSitesOfSearch(void (*distances)(int n, int p, ConstMatrix<Real> a, Matrix<double> d),
                       SubsetTables<Real>* t) {
    ComparedTable<Real>& E = Of(Table::E, t);
    TakeSites<Real>(E.values);
    CompareSites<Real>(E.values, distances, E.resemblance);
    if (t->structures.stream != nullptr) PrintSiteResemblance(t->structures.stream, E.resemblance);
}

template <class Real>
void TakeCommunities(SubsetTables<Real>* t) {
    for (int i = 0; i < ncsm; i++)
        for (int j = 0; j < tcst; j++) t->W[i][j] = t->WUnit[i][j] = cadat[j][i];
    if (optUnitTotalAdjust1) UnitSumRowsAdjMV(ncsm, tcst, t->WUnit, t->W);
    if (optUnitTotalAdjust2) UnitSumRowsAdjMV(ncsm, tcst, t->W, t->W);
}

template <class Real>
void TakeTraits(void (*normalise)(int n, int p, ConstMatrix<Real> a, Matrix<Real> result),
                SubsetTables<Real>* t) {
    ScopedVector<int> inUse(nch);
    for (int k = 0; k < nch; k++) {
        inUse[k] = weight[k] > 0.0F ? 1 : 0;
        for (int i = 0; i < tcst; i++) t->B[i][k] = inUse[k] == 1 ? csm_Float[i][k] : 0.0F;
    }
    MatrixProdSelectMV(ncsm, tcst, tcst, nch, t->WUnit, t->B, t->averages, inUse);
    normalise(ncsm, nch, t->averages, t->normalised);
    if (t->structures.stream != nullptr) PrintTraitsOfOTUs(t->structures.stream, t->B);
}

template <class Real>
void CompareOTUsByTrait(SubsetTables<Real>* t) {
    RangeStates(nch, tcst, csm_Float, chtype, chrange);
    gower_similarityPartial(nch, csm_Float, tcst, t->similarities, chtype, chrange, weight);
}

template <class Real>
void ScaleTraitsUp(const TraitSubset& subset, SubsetTables<Real>* t) {
    ComparedTable<Real>& T = Of(Table::T, t);
    for (int i = 0; i < ncsm; i++)
        for (int k = 0; k < nch; k++)
            T.values[i][k] = subset.selected[k] == 1 ? t->normalised[i][k] : Real(0);
    T.sideReady = false;
    if (t->structures.stream == nullptr) return;
    PrintAverages<Real>(t->structures.stream, subset, t->averages);
    PrintNormalised<Real>(t->structures.stream, T.values);
}

template <class Real>
void CompareOTUs(const TraitSubset& subset, SubsetTables<Real>* t) {
    gower_similarityAverage(nch, tcst, t->similarities, t->S, subset.selected);
    if (t->structures.stream != nullptr) PrintSimilarity(t->structures, subset, t->S);
}

template <class Real>
void PoolIntoTypes(SubsetTables<Real>* t) {
    ComparedTable<Real>& X = Of(Table::X, t);
    if (fuzzy == kFuzzyTypes)
        FuzzyBelonging(tcst, t->K, t->S, partition_OTUs, t->U, false);
    else if (!t->pooled)
        CrispBelonging(tcst, t->K, partition_OTUs, t->U);
    if (fuzzy == kFuzzyTypes || !t->pooled) {
        MatrixProdMV(ncsm, tcst, tcst, t->K, t->W, t->U, X.values);
        X.sideReady = false;
    }
    t->pooled = true;
    if (t->structures.stream != nullptr)
        PrintTypesOfSubset<Real>(t->structures, t->K, t->U, X.values);
}

template <class Real>
void CompareCommunities(Table table, int option, SubsetTables<Real>* t) {
    ComparedTable<Real>& compared = Of(table, t);
    if (HasResemblanceOfOneColumn(table))
        table == Table::R ? AbsValFunctionMV(ncsm, 1, compared.values, compared.resemblance)
                          : EucliDistMV(ncsm, 1, compared.values, compared.resemblance);
    else
        NominalReseNonHier(ncsm, compared.columns, compared.values, compared.resemblance, option);
    FILE* stream = t->structures.stream;
    if (stream == nullptr) return;
    if (table == Table::T)
        PrintResemblanceMatrix(stream, "Resemblance matrix between communities:\n",
                               compared.resemblance);
    if (table == Table::X)
        PrintResemblanceMatrix(stream, t->structures.texts->resemblance, compared.resemblance);
}

template <class Real>
void CorrelateResemblances(std::span<const TablePair> pairs, double* results,
                           SubsetTables<Real>* t) {
    for (const TablePair& pair : pairs) {
        const ConstMatrix<double> a = Of(pair.a, t).resemblance;
        const ConstMatrix<double> b = Of(pair.b, t).resemblance;
        *results++ = IsSmallSample(pair) ? SmallSample(a, b) : MatrixCorr(ncsm, a, b);
    }
}

template <class Real>
void CompareTables(std::span<const TablePair> pairs, double* results, SubsetTables<Real>* t) {
    for (const TablePair& pair : pairs)
        *results++ =
            Congruence<Real>(SideOf(&Of(pair.a, t)), SideOf(&Of(pair.b, t)), t->scratch.get());
}

template <class Real>
void FindCongruences(std::span<const TablePair> pairs, double* results, SubsetTables<Real>* t) {
    if (opt_ro == kMantel)
        CorrelateResemblances(pairs, results, t);
    else
        CompareTables(pairs, results, t);
}

#define TESSEL_INSTANTIATE(Real)                                                                 \
    template struct SubsetTables<Real>;                                                          \
    template void AddTable<Real>(Table, int, SubsetTables<Real>*);                               \
    template void FinishTables<Real>(SubsetTables<Real>*);                                       \
    template ComparedTable<Real>& Of<Real>(Table, SubsetTables<Real>*);                          \
    template void TakeSitesOfSearch<Real>(void (*)(int, int, ConstMatrix<Real>, Matrix<double>), \
                                          SubsetTables<Real>*);                                  \
    template void TakeCommunities<Real>(SubsetTables<Real>*);                                    \
    template void TakeTraits<Real>(void (*)(int, int, ConstMatrix<Real>, Matrix<Real>),          \
                                   SubsetTables<Real>*);                                         \
    template void CompareOTUsByTrait<Real>(SubsetTables<Real>*);                                 \
    template void ScaleTraitsUp<Real>(const TraitSubset&, SubsetTables<Real>*);                  \
    template void CompareOTUs<Real>(const TraitSubset&, SubsetTables<Real>*);                    \
    template void PoolIntoTypes<Real>(SubsetTables<Real>*);                                      \
    template void CompareCommunities<Real>(Table, int, SubsetTables<Real>*);                     \
    template void CorrelateResemblances<Real>(std::span<const TablePair>, double*,               \
                                              SubsetTables<Real>*);                              \
    template void CompareTables<Real>(std::span<const TablePair>, double*, SubsetTables<Real>*); \
    template void FindCongruences<Real>(std::span<const TablePair>, double*, SubsetTables<Real>*);
TESSEL_INSTANTIATE(float)
TESSEL_INSTANTIATE(double)
#undef TESSEL_INSTANTIATE
