#include "TSLCHORD/subset_tables.h"

#include "TSLGLOB/settings.h"
#include "TSLIFFMT/checks.h"
#include "TSLRESE/sites.h"
#include "mxlib/belonging.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"

namespace {

/// Crisp types give every subset the same composition.
template <class Real>
bool IsSettled(const SubsetTables<Real>& t) {
    return fuzzy != kFuzzyTypes && t.pooled;
}

template <class Real>
void TakeMembers(const TraitSubset& subset, SubsetTables<Real>* t) {
    t->size = subset.size;
    for (int j = 0; j < subset.size; j++) {
        t->members[j] = subset.members[j] - 1;
        t->memberColumns[j] = t->shared->traitColumns.columns[subset.members[j] - 1];
    }
}

template <class Real>
void MakeRoomForTypes(SubsetTables<Real>* t) {
    t->sparseW =
        std::make_unique<SparseRows<Real>>(MakeSparseRows<Real>(ncsm, tcst, t->K, t->shared->W));
}

template <class Real>
void MakeRoomForSimilarities(SubsetTables<Real>* t) {
    if (t->shared->layers != nullptr)
        t->similarities = std::make_unique<LayerAverages>(
            MakeLayerAverages(*t->shared->layers, nMaxTraitsChRank));
    if (fuzzy == kFuzzyTypes)
        t->fuzzyTypes =
            std::make_unique<FuzzyTypes<float>>(MakeFuzzyTypes<float>(tcst, t->K, partition_OTUs));
}

template <class Real>
void PrintTraitsOfSubset(const TraitSubset& subset, SubsetTables<Real>* t) {
    FILE* stream = t->structures.stream;
    PrintAverages<Real>(stream, subset, t->shared->averages);
    PrintNormalised<Real>(stream, Of(Table::T, t).values);
}

}  // namespace

template <class Real>
SubsetTables<Real>::SubsetTables(const SubsetTables& search)
    : ComparedTables<Real>(CopyOf(search)), K(search.K), shared(search.shared), U(tcst, search.K) {
    MakeRoomForTypes(this);
    if (search.similarities != nullptr || search.fuzzyTypes != nullptr)
        MakeRoomForSimilarities(this);
}

template <class Real>
void TakeSitesOfSearch(void (*distances)(int n, int p, ConstMatrix<Real> a, Matrix<double> d),
                       SubsetTables<Real>* t) {
    ScopedMatrix<double> DE(ncsm, ncsm);
    ComparedTable<Real>& E = Of(Table::E, t);
    TakeSites<Real>(E.rows);
    CompareSites<Real>(E.rows, distances, DE);
    TakeResemblance<Real>(DE, Table::E, t);
    if (t->structures.stream != nullptr) PrintSiteResemblance(t->structures.stream, DE);
}

template <class Real>
void TakeCommunities(SubsetTables<Real>* t) {
    Matrix<Real> W = t->shared->W;
    Matrix<Real> WUnit = t->shared->WUnit;
    for (int i = 0; i < ncsm; i++)
        for (int j = 0; j < tcst; j++) W[i][j] = WUnit[i][j] = cadat[j][i];
    if (optUnitTotalAdjust1) UnitSumRowsAdjMV(ncsm, tcst, WUnit, W);
    if (optUnitTotalAdjust2) UnitSumRowsAdjMV(ncsm, tcst, W, W);
    MakeRoomForTypes(t);
}

template <class Real>
void TakeTraits(void (*normalise)(int n, int p, ConstMatrix<Real> a, Matrix<Real> result),
                SubsetTables<Real>* t) {
    ScopedMatrix<float> B(tcst, nch);
    ScopedVector<int> inUse(nch);
    for (int k = 0; k < nch; k++) {
        inUse[k] = weight[k] > 0.0F ? 1 : 0;
        for (int i = 0; i < tcst; i++) B[i][k] = inUse[k] == 1 ? csm_Float[i][k] : 0.0F;
    }
    SharedTables<Real>& shared = *t->shared;
    MatrixProdSelectMV(ncsm, tcst, tcst, nch, shared.WUnit, B, shared.averages, inUse);
    normalise(ncsm, nch, shared.averages, shared.normalised);
    for (int i = 0; i < ncsm; i++)
        for (int k = 0; k < nch; k++) shared.traitColumns.columns[k][i] = shared.normalised[i][k];
    if (t->structures.stream != nullptr) PrintTraitsOfOTUs(t->structures.stream, B);
}

template <class Real>
int OTUsComparedForTypes(const SubsetTables<Real>& t) {
    return fuzzy == kFuzzyTypes || t.structures.stream != nullptr ? tcst : 0;
}

template <class Real>
void CompareOTUsByTrait(int count, SubsetTables<Real>* t) {
    RangeStates(nch, tcst, csm_Float, chtype, chrange);
    if (count > 0)
        t->shared->layers = std::make_unique<SimilarityLayers>(
            MakeSimilarityLayers(nch, csm_Float, tcst, count, chtype, chrange, weight));
    MakeRoomForSimilarities(t);
}

template <class Real>
void ScaleTraitsUp(const TraitSubset& subset, SubsetTables<Real>* t) {
    TakeMembers(subset, t);
    ComparedTable<Real>& T = Of(Table::T, t);
    MarkChanged(&T);
    if (opt_ro == kMantel && t->structures.stream == nullptr) return;  // the columns are enough
    for (int i = 0; i < ncsm; i++)
        for (int k = 0; k < nch; k++)
            T.rows[i][k] = subset.selected[k] == 1 ? t->shared->normalised[i][k] : Real(0);
    if (t->structures.stream != nullptr) PrintTraitsOfSubset(subset, t);
}

template <class Real>
void CompareOTUs(const TraitSubset& subset, SubsetTables<Real>* t) {
    if (t->similarities == nullptr) return;
    TakeMembers(subset, t);
    t->S = AverageLayers(t->size, t->members, t->similarities.get());
    if (t->structures.stream != nullptr) PrintSimilarity(t->structures, subset, t->S);
}

template <class Real>
void PoolIntoTypes(SubsetTables<Real>* t) {
    ComparedTable<Real>& X = Of(Table::X, t);
    if (!IsSettled(*t)) {
        if (fuzzy == kFuzzyTypes)
            BelongingToTypes<float>(t->S, t->fuzzyTypes.get(), t->U);
        else
            CrispBelonging(tcst, t->K, partition_OTUs, t->U);
        X.values = SparseProduct<Real>(t->U, t->sparseW.get(), X.byColumn.columns);
        MarkChanged(&X);
        t->pooled = true;
    }
    if (t->structures.stream != nullptr)
        PrintTypesOfSubset<Real>(t->structures, t->K, t->U, X.values);
}

template <class Real>
void CompareCommunities(Table table, int option, SubsetTables<Real>* t) {
    FILE* stream = t->structures.stream;
    const char* heading = nullptr;
    if (table == Table::T) {
        CompareColumns<Real>(t->size, t->memberColumns, option, table, t);
        heading = "Resemblance matrix between communities:\n";
    } else if (table == Table::X) {
        ComparedTable<Real>& X = Of(Table::X, t);
        if (fuzzy == kFuzzyTypes || ResemblanceBy(table, t->lane, t).isNew || stream != nullptr)
            CompareColumns<Real>(t->K, X.byColumn.columns, option, table, t);
        heading = t->structures.texts->resemblance;
    } else {
        CompareRows<Real>(option, table, t);
    }
    if (stream != nullptr && heading != nullptr)
        PrintResemblanceMatrix(stream, heading, ResemblanceMatrix<Real>(table, t));
}

#define TESSEL_OF_PRECISION(Real)                                                                \
    template struct SubsetTables<Real>;                                                          \
    template void TakeSitesOfSearch<Real>(void (*)(int, int, ConstMatrix<Real>, Matrix<double>), \
                                          SubsetTables<Real>*);                                  \
    template void TakeCommunities<Real>(SubsetTables<Real>*);                                    \
    template void TakeTraits<Real>(void (*)(int, int, ConstMatrix<Real>, Matrix<Real>),          \
                                   SubsetTables<Real>*);                                         \
    template int OTUsComparedForTypes<Real>(const SubsetTables<Real>&);                          \
    template void CompareOTUsByTrait<Real>(int, SubsetTables<Real>*);                            \
    template void ScaleTraitsUp<Real>(const TraitSubset&, SubsetTables<Real>*);                  \
    template void CompareOTUs<Real>(const TraitSubset&, SubsetTables<Real>*);                    \
    template void PoolIntoTypes<Real>(SubsetTables<Real>*);                                      \
    template void CompareCommunities<Real>(Table, int, SubsetTables<Real>*);
TESSEL_OF_PRECISION(float)
TESSEL_OF_PRECISION(double)
#undef TESSEL_OF_PRECISION
