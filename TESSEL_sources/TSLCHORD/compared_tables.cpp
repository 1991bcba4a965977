#include "TSLCHORD/compared_tables.h"

#include <algorithm>
#include <utility>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlibRes/congruence.h"

namespace {

constexpr int kMostPairs = 5 * kMostTogether;
constexpr int kMostCellsTogether = 1 << 18;  // beyond, memory counts for more
constexpr int kChordDistance = 10;

bool IsOfOneColumn(Table table) {
    return table == Table::R || table == Table::S;
}

/// Tables that stand for all subsets; crisp types give every subset the same composition.
bool IsShared(Table table) {
    const bool ofSubset = table == Table::T || table == Table::X || IsOfOneColumn(table);
    return !ofSubset || (table == Table::X && fuzzy != kFuzzyTypes);
}

/// With two communities there is one distance and no correlation.
bool IsSmallSample(const TablePair& pair) {
    return ncsm < 3 && !IsOfOneColumn(pair.a) && !IsOfOneColumn(pair.b);
}

double SmallSample(const MantelSide& a, const MantelSide& b) {
    return ncsm < 2 ? SmallSampleCongruence(0.0, 0.0)
                    : SmallSampleCongruence(a.cells[0], b.cells[0]);
}

void CopyResemblance(const Resemblance& from, Resemblance* to) {
    std::copy_n(from.side.cells.get(), from.side.nCells, to->side.cells.get());
    to->side.mean = from.side.mean;
    to->side.squares = from.side.squares;
    to->side.hasMissing = from.side.hasMissing;
    to->isNew = from.isNew;
}

template <class Real>
const CongruenceSide<Real>& SideOf(ComparedTable<Real>* table) {
    if (table->sideIsNew) SetCongruenceSide<Real>(table->values, table->side.get());
    table->sideIsNew = false;
    return *table->side;
}

}  // namespace

int SubsetsTogether() {
    const bool one =
        opt_ro != kMantel || saveStruct == 'y' || CountCellsAbove(ncsm) > kMostCellsTogether;
    return one ? 1 : kMostTogether;
}

template <class Real>
void AddTable(Table table, int columns, ComparedTables<Real>* t) {
    std::unique_ptr<ComparedTable<Real>>& added = t->tables[static_cast<int>(table)];
    added.reset(new ComparedTable<Real>{columns,
                                        ScopedMatrix<Real>(ncsm, columns),
                                        nullptr,
                                        MakeColumnTable<Real>(ncsm, columns),
                                        {},
                                        nullptr,
                                        true});
    const int lanes = IsShared(table) ? 1 : SubsetsTogether();
    for (int lane = 0; lane < lanes; lane++) added->resemblances.push_back({MakeMantelSide(ncsm)});
    added->values = added->rows;
    if (opt_ro != kMantel)
        added->side =
            std::make_unique<CongruenceSide<Real>>(MakeCongruenceSide<Real>(opt_ro, ncsm, columns));
}

/// One side of a comparison is not Z.
template <class Real>
void FinishTables(ComparedTables<Real>* t) {
    int widest = 1;
    int widestButZ = 1;
    for (int table = 0; table < kTables; table++) {
        if (t->tables[table] == nullptr) continue;
        const int columns = t->tables[table]->columns;
        widest = std::max(widest, columns);
        if (static_cast<Table>(table) != Table::Z) widestButZ = std::max(widestButZ, columns);
    }
    if (opt_ro != kMantel)
        t->scratch = std::make_unique<CongruenceScratch<Real>>(
            MakeCongruenceScratch<Real>(opt_ro, ncsm, widest, widestButZ));
    if (rese_opt == kChordDistance)
        t->unitRows = std::make_unique<ColumnTable<Real>>(MakeColumnTable<Real>(ncsm, widest));
}

template <class Real>
ComparedTables<Real> CopyOf(const ComparedTables<Real>& t) {
    ComparedTables<Real> copy;
    for (int table = 0; table < kTables; table++) {
        if (t.tables[table] == nullptr) continue;
        const ComparedTable<Real>& from = *t.tables[table];
        AddTable(static_cast<Table>(table), from.columns, &copy);
        ComparedTable<Real>& to = *copy.tables[table];
        for (int i = 0; i < ncsm; i++) std::copy_n(from.values[i], from.columns, to.rows[i]);
        for (size_t k = 0; k < to.resemblances.size(); k++)
            CopyResemblance(from.resemblances[k], &to.resemblances[k]);
    }
    FinishTables(&copy);
    return copy;
}

template <class Real>
ComparedTable<Real>& Of(Table table, ComparedTables<Real>* t) {
    return *t->tables[static_cast<int>(table)];
}

template <class Real>
Resemblance& ResemblanceBy(Table table, int lane, ComparedTables<Real>* t) {
    std::vector<Resemblance>& resemblances = Of(table, t).resemblances;
    return resemblances[resemblances.size() == 1 ? 0 : static_cast<size_t>(lane)];
}

template <class Real>
void MarkChanged(ComparedTable<Real>* table) {
    table->sideIsNew = true;
}

template <class Real>
void CompareColumns(int p, const Real* const* columns, int option, Table table,
                    ComparedTables<Real>* t) {
    Resemblance& resemblance = ResemblanceBy(table, t->lane, t);
    DistanceCells(ncsm, p, columns, option, t->unitRows.get(), resemblance.side.cells);
    resemblance.isNew = true;
}

template <class Real>
void CompareRows(int option, Table table, ComparedTables<Real>* t) {
    ComparedTable<Real>& compared = Of(table, t);
    for (int i = 0; i < ncsm; i++)
        for (int j = 0; j < compared.columns; j++)
            compared.byColumn.columns[j][i] = compared.values[i][j];
    CompareColumns<Real>(compared.columns, compared.byColumn.columns, option, table, t);
}

template <class Real>
ScopedMatrix<double> ResemblanceMatrix(Table table, ComparedTables<Real>* t) {
    ScopedMatrix<double> d(ncsm, ncsm);
    const double* cell = ResemblanceBy(table, t->lane, t).side.cells;
    for (int i = 0; i < ncsm; i++)
        for (int j = i + 1; j < ncsm; j++) d[i][j] = d[j][i] = *cell++;
    return d;
}

template <class Real>
void TakeResemblance(ConstMatrix<double> d, Table table, ComparedTables<Real>* t) {
    Resemblance& resemblance = ResemblanceBy(table, t->lane, t);
    CellsAbove<double>(ncsm, d, resemblance.side.cells);
    resemblance.isNew = true;
}

template <class Real>
void CorrelateResemblances(std::span<const TablePair> pairs, int lanes, double* results,
                           ComparedTables<Real>* t) {
    MantelSide* moving[2 * kMostPairs] = {};
    MantelPair sides[kMostPairs] = {};
    int nMoving = 0;
    int nPairs = 0;
    for (int lane = 0; lane < lanes; lane++)
        for (const TablePair& pair : pairs) {
            Resemblance* const compared[] = {&ResemblanceBy(pair.a, lane, t),
                                             &ResemblanceBy(pair.b, lane, t)};
            sides[nPairs++] = {&compared[0]->side, &compared[1]->side};
            for (Resemblance* resemblance : compared)
                if (std::exchange(resemblance->isNew, false))
                    moving[nMoving++] = &resemblance->side;
        }
    CorrelateMantelSides(nMoving, moving, nPairs, sides, results);
    for (int k = 0; k < nPairs; k++)
        if (IsSmallSample(pairs[static_cast<size_t>(k) % pairs.size()]))
            results[k] = SmallSample(*sides[k].a, *sides[k].b);
}

template <class Real>
void CompareTables(std::span<const TablePair> pairs, double* results, ComparedTables<Real>* t) {
    for (const TablePair& pair : pairs)
        *results++ =
            Congruence<Real>(SideOf(&Of(pair.a, t)), SideOf(&Of(pair.b, t)), t->scratch.get());
}

template <class Real>
void FindCongruences(std::span<const TablePair> pairs, int lanes, double* results,
                     ComparedTables<Real>* t) {
    if (opt_ro == kMantel)
        CorrelateResemblances(pairs, lanes, results, t);
    else
        CompareTables(pairs, results, t);
}

#define TESSEL_OF_PRECISION(Real)                                                                  \
    template void AddTable<Real>(Table, int, ComparedTables<Real>*);                               \
    template void FinishTables<Real>(ComparedTables<Real>*);                                       \
    template ComparedTables<Real> CopyOf<Real>(const ComparedTables<Real>&);                       \
    template ComparedTable<Real>& Of<Real>(Table, ComparedTables<Real>*);                          \
    template Resemblance& ResemblanceBy<Real>(Table, int, ComparedTables<Real>*);                  \
    template void MarkChanged<Real>(ComparedTable<Real>*);                                         \
    template void CompareColumns<Real>(int, const Real* const*, int, Table,                        \
                                       ComparedTables<Real>*);                                     \
    template void CompareRows<Real>(int, Table, ComparedTables<Real>*);                            \
    template ScopedMatrix<double> ResemblanceMatrix<Real>(Table, ComparedTables<Real>*);           \
    template void TakeResemblance<Real>(ConstMatrix<double>, Table, ComparedTables<Real>*);        \
    template void CorrelateResemblances<Real>(std::span<const TablePair>, int, double*,            \
                                              ComparedTables<Real>*);                              \
    template void CompareTables<Real>(std::span<const TablePair>, double*, ComparedTables<Real>*); \
    template void FindCongruences<Real>(std::span<const TablePair>, int, double*,                  \
                                        ComparedTables<Real>*);
TESSEL_OF_PRECISION(float)
TESSEL_OF_PRECISION(double)
#undef TESSEL_OF_PRECISION
