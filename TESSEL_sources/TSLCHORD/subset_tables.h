#pragma once
/// \file
/// The tables of a search: what stands for all subsets, and what a subset makes of its traits, step
/// by step. Real is the precision of the search, float or double. In the comments c stands for the
/// communities, n for the OTUs, p for the traits, K for the types.

#include <memory>

#include "TSLCHORD/compared_tables.h"
#include "TSLCHORD/ranked_list.h"
#include "TSLCHORD/structures_file.h"
#include "TSLGLOB/dataset.h"
#include "TSLRESE/similarity_layers.h"
#include "mxlib/fuzzy_types.h"
#include "mxlibRes/sparse_rows.h"

/// What all workers of a search read.
template <class Real>
struct SharedTables {
    ScopedMatrix<Real> W{ncsm, tcst};          ///< c x n, at unit totals on request
    ScopedMatrix<Real> WUnit{ncsm, tcst};      ///< c x n, at unit totals
    ScopedMatrix<Real> averages{ncsm, nch};    ///< c x p, of all traits in use
    ScopedMatrix<Real> normalised{ncsm, nch};  ///< at unit length of the columns
    ColumnTable<Real> traitColumns{MakeColumnTable<Real>(ncsm, nch)};  ///< the same by column
    std::unique_ptr<SimilarityLayers> layers;                          ///< null: S is not wanted
};

/// The base holds the tables compared with one another.
template <class Real>
struct SubsetTables : ComparedTables<Real> {
    int K;                      ///< types; 0: the search takes none
    StructuresFile structures;  ///< receives the tables as they are made
    std::shared_ptr<SharedTables<Real>> shared;

    ScopedVector<const Real*> memberColumns{nch};  ///< traitColumns of the subset
    ScopedVector<int> members{nch};                ///< of the subset, from 0
    int size = 0;                                  ///< of the subset

    std::unique_ptr<LayerAverages> similarities;  ///< null: S is not wanted
    float* const* S = nullptr;                    ///< n x n, of the subset
    ScopedMatrix<float> U;                        ///< n x K, of the subset
    std::unique_ptr<FuzzyTypes<float>> fuzzyTypes;
    std::unique_ptr<SparseRows<Real>> sparseW;
    bool pooled = false;  ///< U and X are made: crisp types stay as they are

    /// Tables for K types.
    explicit SubsetTables(int types)
        : K(types), shared(std::make_shared<SharedTables<Real>>()), U(tcst, types) {}
    /// The tables of one more worker, from those of a search that are ready for its subsets.
    SubsetTables(const SubsetTables& search);
};

/// The tables that a worker rates with: worker 0 takes those of the search.
template <class Real>
std::shared_ptr<SubsetTables<Real>> TablesOfWorker(
    int worker, const std::shared_ptr<SubsetTables<Real>>& search) {
    return worker == 0 ? search : std::make_shared<SubsetTables<Real>>(*search);
}

// Steps made once, in this order, behind FinishTables.

/// E and its resemblance, by the distances given where the variables are of comparable kinds.
template <class Real>
void TakeSitesOfSearch(void (*distances)(int n, int p, ConstMatrix<Real> a, Matrix<double> d),
                       SubsetTables<Real>* t);
/// Both copies of W.
template <class Real>
void TakeCommunities(SubsetTables<Real>* t);
/// The averages of all traits, brought to unit length by `normalise`.
template <class Real>
void TakeTraits(void (*normalise)(int n, int p, ConstMatrix<Real> a, Matrix<Real> result),
                SubsetTables<Real>* t);
/// Layers of similarity between the first `count` OTUs, trait by trait.
template <class Real>
void CompareOTUsByTrait(int count, SubsetTables<Real>* t);
/// OTUs to be compared for the types: none where crisp types need no similarity.
template <class Real>
int OTUsComparedForTypes(const SubsetTables<Real>& t);

// Steps of a subset, in this order.

/// T.
template <class Real>
void ScaleTraitsUp(const TraitSubset& subset, SubsetTables<Real>* t);
/// S, if it is wanted.
template <class Real>
void CompareOTUs(const TraitSubset& subset, SubsetTables<Real>* t);
/// U and X.
template <class Real>
void PoolIntoTypes(SubsetTables<Real>* t);

/// The resemblance of the communities by a table: option 6 to 10.
template <class Real>
void CompareCommunities(Table table, int option, SubsetTables<Real>* t);
