#pragma once
/// \file
/// The tables of communities that a search compares, by their letters, and the congruences between
/// them. Nothing is allocated once the tables are added. Real is the precision of the search.

#include <array>
#include <memory>
#include <span>
#include <vector>

#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence_kernels.h"
#include "mxlibRes/distance_cells.h"
#include "mxlibRes/mantel_sides.h"

/// Variables of the sites, smoothed composition, composition by phylogeny; of a subset, traits,
/// composition of types, Rao entropy, dark diversity.
enum class Table { E, Z, P, T, X, R, S };
inline constexpr int kTables = 7;

/// Subsets that are rated together take a lane each: under the matrix correlation the sums of
/// several cost little more than those of one. The structures file is written one by one.
inline constexpr int kMostTogether = 4;
int SubsetsTogether();

struct Resemblance {
    MantelSide side;    ///< cells above the diagonal
    bool isNew = true;  ///< not yet made ready for correlations
};

/// In the comments c stands for the communities.
template <class Real>
struct ComparedTable {
    int columns;
    ScopedMatrix<Real> rows;                     ///< c x columns
    ConstMatrix<Real> values;                    ///< these rows, or others that hold the values
    ColumnTable<Real> byColumn;                  ///< the values once more
    std::vector<Resemblance> resemblances;       ///< by lane, or one that all subsets share
    std::unique_ptr<CongruenceSide<Real>> side;  ///< under Procrustes and RV
    bool sideIsNew;                              ///< not yet made from the values
};

template <class Real>
struct ComparedTables {
    std::array<std::unique_ptr<ComparedTable<Real>>, kTables> tables;  ///< null: takes no part
    std::unique_ptr<CongruenceScratch<Real>> scratch;
    std::unique_ptr<ColumnTable<Real>> unitRows;  ///< room of the chord distance
    int lane = 0;                                 ///< of the subset whose tables are made
};

/// Takes a table into the comparisons.
template <class Real>
void AddTable(Table table, int columns, ComparedTables<Real>* t);
/// Room for the comparisons of the tables added. To be called behind the last one.
template <class Real>
void FinishTables(ComparedTables<Real>* t);

/// Tables of the same kind and content, made ready, with room of their own.
template <class Real>
ComparedTables<Real> CopyOf(const ComparedTables<Real>& t);

/// A table that takes part.
template <class Real>
ComparedTable<Real>& Of(Table table, ComparedTables<Real>* t);

/// The resemblance by a table, that of the subset in the lane where each has its own.
template <class Real>
Resemblance& ResemblanceBy(Table table, int lane, ComparedTables<Real>* t);

/// The values of a table have changed.
template <class Real>
void MarkChanged(ComparedTable<Real>* table);

/// The resemblance of the communities by p columns: option 6 to 10.
template <class Real>
void CompareColumns(int p, const Real* const* columns, int option, Table table,
                    ComparedTables<Real>* t);
/// By the rows of a table, all of its columns.
template <class Real>
void CompareRows(int option, Table table, ComparedTables<Real>* t);

/// The resemblance as a square matrix, its diagonal 0, and back.
template <class Real>
ScopedMatrix<double> ResemblanceMatrix(Table table, ComparedTables<Real>* t);
template <class Real>
void TakeResemblance(ConstMatrix<double> d, Table table, ComparedTables<Real>* t);

/// Two tables to be compared.
struct TablePair {
    Table a;
    Table b;
};

/// Matrix correlations of the resemblances by the pairs of tables, pair after pair for one lane
/// after the other; with two communities the congruence of their distances, but for R and S.
template <class Real>
void CorrelateResemblances(std::span<const TablePair> pairs, int lanes, double* results,
                           ComparedTables<Real>* t);
/// Procrustes or RV coefficients of the tables themselves.
template <class Real>
void CompareTables(std::span<const TablePair> pairs, double* results, ComparedTables<Real>* t);
/// The one or the other by opt_ro; the coefficients have one lane.
template <class Real>
void FindCongruences(std::span<const TablePair> pairs, int lanes, double* results,
                     ComparedTables<Real>* t);
