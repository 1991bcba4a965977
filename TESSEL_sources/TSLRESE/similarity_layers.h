#pragma once
/// \file
/// Gower's similarity between n objects averaged over many subsets of the variables. The partial
/// similarities of each variable are made once, a layer each. Subsets that come in lexicographic
/// order share their first members: sums are kept for each length of beginning, and only those
/// after the first changed member are made anew.

#include "mxlibDim/scoped.h"

struct SimilarityLayers {
    int n;                       ///< objects compared
    int tiles;                   ///< per row; cells lie in square tiles on and above the diagonal
    std::ptrdiff_t nCells;       ///< of a layer
    ScopedMatrix<float> layers;  ///< by variable
    ScopedVector<bool> isComplete;  ///< by variable: no missing cell
};

/// The layers of gower_similarityPartial from `data` (n x nVariables), for the first `compared`
/// objects; reads countDoubleAbsence.
SimilarityLayers MakeSimilarityLayers(int nVariables, const float* const* data, int n, int compared,
                                      const int* types, const float* ranges, const float* weights);

/// The averages over one subset after another, from layers that others may read beside.
struct LayerAverages {
    const SimilarityLayers* of;
    ScopedMatrix<double> sums;       ///< by number of members
    ScopedMatrix<float> counts;      ///< members present, where some member is not complete
    ScopedVector<bool> hasCounts;    ///< by number of members
    ScopedVector<int> members;       ///< of the subset at hand
    int ready;                       ///< members whose sums are made
    ScopedVector<float> similarity;  ///< n rows side by side
    ScopedVector<float*> rows;
};

/// For subsets of at most `largestSubset` variables. The layers must outlive the averages.
LayerAverages MakeLayerAverages(const SimilarityLayers& layers, int largestSubset);

/// Average over the `size` variables `members`, ascending, from 0: cell by cell the one of
/// gower_similarityAverage, to the last bit; both halves, 1 on the diagonal. The matrix stays the
/// averages' own and holds until the next call. Allocates nothing.
float* const* AverageLayers(int size, const int* members, LayerAverages* averages);
