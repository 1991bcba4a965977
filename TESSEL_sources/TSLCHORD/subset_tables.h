#pragma once
/// \file
/// The tables of a search: what stands for all subsets, and what a subset makes of its traits, step
/// by step. Real is the precision of the search, float or double. In the comments c stands for the
/// communities, n for the OTUs, p for the traits, K for the types.

#include <array>
#include <cstdio>
#include <memory>
#include <span>

#include "TSLCHORD/ranked_list.h"
#include "TSLCHORD/structures_file.h"
#include "TSLGLOB/dataset.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence_kernels.h"

/// The tables of communities by their letters: variables of the sites, smoothed composition,
/// composition by phylogeny; of a subset, traits, composition of types, Rao entropy, dark
/// diversity.
enum class Table { E, Z, P, T, X, R, S };
inline constexpr int kTables = 7;

/// What a table is in the comparisons.
template <class Real>
struct ComparedTable {
    int columns;
    ScopedMatrix<Real> values;                   ///< c x columns
    ScopedMatrix<double> resemblance;            ///< c x c, upper half
    std::unique_ptr<CongruenceSide<Real>> side;  ///< under Procrustes and RV
    bool sideReady = false;                      ///< for the present values
};

template <class Real>
struct SubsetTables {
    /// Tables for K types (0: the search takes none).
    explicit SubsetTables(int types);

    int K;
    std::array<std::unique_ptr<ComparedTable<Real>>, kTables> compared;  ///< null: takes no part
    std::unique_ptr<CongruenceScratch<Real>> scratch;

    ScopedMatrix<Real> W{ncsm, tcst};          ///< c x n, at unit totals only on request
    ScopedMatrix<Real> WUnit{ncsm, tcst};      ///< c x n, at unit totals
    ScopedMatrix<float> B{tcst, nch};          ///< n x p, 0 for traits not in use
    ScopedMatrix<Real> averages{ncsm, nch};    ///< c x p, WUnit B
    ScopedMatrix<Real> normalised{ncsm, nch};  ///< the same at unit length of its columns
    ScopedCube<float> similarities;            ///< n x n x p, by trait; empty without types
    ScopedMatrix<float> S;                     ///< n x n, of the subset
    ScopedMatrix<float> U;                     ///< n x K, of the subset
    bool pooled = false;                       ///< U and X are made: crisp types stay as they are

    StructuresFile structures;  ///< receives the tables as they are made
};

/// Takes a table of `columns` columns into the comparisons. To be called before any step.
template <class Real>
void AddTable(Table table, int columns, SubsetTables<Real>* t);
/// Room for the comparisons of the tables added.
template <class Real>
void FinishTables(SubsetTables<Real>* t);

// Steps made once, in this order.

/// E and its resemblance, by the distances given where the variables are of comparable kinds.
template <class Real>
void TakeSitesOfSearch(void (*distances)(int n, int p, ConstMatrix<Real> a, Matrix<double> d),
                       SubsetTables<Real>* t);
/// Both copies of W.
template <class Real>
void TakeCommunities(SubsetTables<Real>* t);
/// B, and the averages of all traits, brought to unit length by `normalise`.
template <class Real>
void TakeTraits(void (*normalise)(int n, int p, ConstMatrix<Real> a, Matrix<Real> result),
                SubsetTables<Real>* t);
/// The similarities between OTUs trait by trait.
template <class Real>
void CompareOTUsByTrait(SubsetTables<Real>* t);

// Steps of a subset, in this order.

/// T.
template <class Real>
void ScaleTraitsUp(const TraitSubset& subset, SubsetTables<Real>* t);
/// S.
template <class Real>
void CompareOTUs(const TraitSubset& subset, SubsetTables<Real>* t);
/// U and X.
template <class Real>
void PoolIntoTypes(SubsetTables<Real>* t);

/// The resemblance by a table: option 6 to 10, with R and S no option (0).
template <class Real>
void CompareCommunities(Table table, int option, SubsetTables<Real>* t);

/// Two tables to be compared.
struct TablePair {
    Table a;
    Table b;
};

/// Matrix correlations of the resemblances by the pairs of tables; with two communities the
/// congruence of their distances, but for R and S.
template <class Real>
void CorrelateResemblances(std::span<const TablePair> pairs, double* results,
                           SubsetTables<Real>* t);
/// Procrustes or RV coefficients of the tables themselves.
template <class Real>
void CompareTables(std::span<const TablePair> pairs, double* results, SubsetTables<Real>* t);
/// The one or the other by opt_ro.
template <class Real>
void FindCongruences(std::span<const TablePair> pairs, double* results, SubsetTables<Real>* t);

/// The values of a table that takes part.
template <class Real>
ComparedTable<Real>& Of(Table table, SubsetTables<Real>* t);
