#include "mxlib/perm_test/composition.h"

#include <cmath>

#include "mxlibRes/kernels.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"

namespace {

int TaxaOf(const TestRecord& in) {
    return in.includePhylogeny ? in.nTaxa : 0;
}

template <class T>
bool AllFinite(int n, int p, ConstMatrix<T> a) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            if (!std::isfinite(a[i][j])) return false;
    return true;
}

bool NeedsPlainProducts(const TestRecord& in) {
    return !AllFinite<double>(in.nCommunities, in.nOTUs, in.W) ||
           !AllFinite<float>(in.nOTUs, in.nTraits, in.B) ||
           !AllFinite<double>(in.nOTUs, in.nTypes, in.U) ||
           (in.includePhylogeny && !AllFinite<double>(in.nOTUs, in.nTaxa, in.Q));
}

int TableWidth(const TestRecord& in) {
    constexpr int kMultiple = 4;  // of weightedRows
    const int columns = in.nTraits + in.nTypes + TaxaOf(in);
    return (columns + kMultiple - 1) / kMultiple * kMultiple;
}

/// A missing value adds nothing, as a 0 does.
template <class T>
double* AppendValues(int p, const T* source, const int* sel, double* to) {
    for (int j = 0; j < p; j++)
        if (sel == nullptr || sel[j] == 1) *to++ = IsMissing(source[j]) ? 0.0 : source[j];
    return to;
}

void FillTable(const TestRecord& in, CompositionTables* c) {
    for (int k = 0; k < in.nOTUs; k++) {
        double* to = c->table + static_cast<std::ptrdiff_t>(k) * c->width;
        to = AppendValues(in.nTraits, in.B[k], in.traitsInUse, to);
        to = AppendValues(in.nTypes, in.U[k], nullptr, to);
        if (in.includePhylogeny) AppendValues(in.nTaxa, in.Q[k], nullptr, to);
    }
}

std::shared_ptr<const CompositionTables> MakeTables(const TestRecord& in) {
    const int width = TableWidth(in);
    std::shared_ptr<CompositionTables> tables(new CompositionTables{
        NeedsPlainProducts(in), PresentCells(in.nCommunities, in.nOTUs, in.W), width,
        ScopedVector<double>(static_cast<std::ptrdiff_t>(in.nOTUs) * width)});
    FillTable(in, tables.get());
    return tables;
}

void SparseProducts(const TestRecord& in, const int* list, Composition* c, Arrangement* now) {
    const Kernels& kernels = KernelsOfProcessor();
    const CompositionTables& tables = *c->tables;
    const std::ptrdiff_t* start = tables.w.start;
    for (std::ptrdiff_t e = 0; e < start[in.nCommunities]; e++)
        c->at[e] = list[tables.w.otu[e]] - 1;
    for (int i = 0; i < in.nCommunities; i++) {
        const std::ptrdiff_t first = start[i];
        kernels.weightedRows(static_cast<int>(start[i + 1] - first), c->at + first,
                             tables.w.value + first, tables.table, tables.width, c->row);
        const double* from = c->row;
        for (int j = 0; j < in.nTraits; j++) now->T[i][j] = in.traitsInUse[j] == 1 ? *from++ : 0.0;
        for (int j = 0; j < in.nTypes; j++) now->X[i][j] = *from++;
        for (int j = 0; j < TaxaOf(in); j++) now->P[i][j] = *from++;
    }
}

void PlainProducts(const TestRecord& in, const Composition& c, Arrangement* now) {
    MatrixProdSelectMV(in.nCommunities, in.nOTUs, in.nOTUs, in.nTraits, in.W, c.rowsB, now->T,
                       in.traitsInUse);
    MatrixProdMV(in.nCommunities, in.nOTUs, in.nOTUs, in.nTypes, in.W, c.rowsU, now->X);
    if (in.includePhylogeny)
        MatrixProdMV(in.nCommunities, in.nOTUs, in.nOTUs, in.nTaxa, in.W, c.rowsQ, now->P);
}

}  // namespace

Arrangement MakeArrangement(const TestRecord& in) {
    const int n = in.nCommunities;
    return {ScopedMatrix<double>(n, in.nTraits), ScopedMatrix<double>(n, in.nTypes),
            ScopedMatrix<double>(n, TaxaOf(in)), ScopedMatrix<double>(n, 1),
            ScopedMatrix<double>(n, 1)};
}

ConstMatrix<double> MatrixOf(const TestRecord& in, const Arrangement& now, Letter letter) {
    const ConstMatrix<double> matrices[kLetters] = {in.E,  in.Z,  in.Y,  now.T,
                                                    now.X, now.P, now.R, now.F};
    return matrices[letter];
}

int ColumnsOf(const TestRecord& in, Letter letter) {
    const int columns[kLetters] = {in.nEnv,   in.nOTUs,   in.nOTUs, in.nTraits,
                                   in.nTypes, TaxaOf(in), 1,        1};
    return columns[letter];
}

std::ptrdiff_t CountPresent(int nCommunities, int nOTUs, ConstMatrix<double> w) {
    std::ptrdiff_t count = 0;
    for (int i = 0; i < nCommunities; i++)
        for (int k = 0; k < nOTUs; k++) count += w[i][k] != 0 && !IsMissing(w[i][k]);
    return count;
}

SparseCells PresentCells(int nCommunities, int nOTUs, ConstMatrix<double> w) {
    const std::ptrdiff_t count = CountPresent(nCommunities, nOTUs, w);
    SparseCells cells{ScopedVector<std::ptrdiff_t>(nCommunities + 1), ScopedVector<int>(count),
                      ScopedVector<double>(count)};
    std::ptrdiff_t e = 0;
    for (int i = 0; i < nCommunities; i++) {
        for (int k = 0; k < nOTUs; k++) {
            if (w[i][k] == 0 || IsMissing(w[i][k])) continue;
            cells.otu[e] = k;
            cells.value[e] = w[i][k];
            e++;
        }
        cells.start[i + 1] = e;
    }
    return cells;
}

Composition MakeComposition(const TestRecord& in, const Composition* first) {
    const std::shared_ptr<const CompositionTables> tables =
        first != nullptr ? first->tables : MakeTables(in);
    return {tables,
            ScopedVector<int>(tables->w.start[in.nCommunities]),
            ScopedVector<double>(tables->width),
            ScopedVector<const float*>(in.nOTUs),
            ScopedVector<const double*>(in.nOTUs),
            ScopedVector<const double*>(TaxaOf(in) > 0 ? in.nOTUs : 0)};
}

void ScaleUp(const TestRecord& in, const int* list, Composition* c, Arrangement* now) {
    for (int k = 0; k < in.nOTUs; k++) {
        c->rowsB[k] = in.B[list[k] - 1];
        c->rowsU[k] = in.U[list[k] - 1];
        if (TaxaOf(in) > 0) c->rowsQ[k] = in.Q[list[k] - 1];
    }
    if (c->tables->plain)
        PlainProducts(in, *c, now);
    else
        SparseProducts(in, list, c, now);
    NormalizeCols(in.nCommunities, in.nTraits, now->T, now->T);
}
