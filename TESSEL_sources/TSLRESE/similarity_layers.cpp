#include "TSLRESE/similarity_layers.h"

#include <algorithm>

#include "TSLGLOB/settings.h"
#include "TSLRESE/gower_partial.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/subset_kernels.h"

namespace {

/// Packs a matrix into tiles; the diagonal, and what stands beyond n, is 0.
void PackTiles(int n, int tiles, const float* const* pairs, float* cells) {
    for (int ti = 0; ti < tiles; ti++)
        for (int tj = ti; tj < tiles; tj++)
            for (int r = 0; r < kTileSide; r++)
                for (int c = 0; c < kTileSide; c++) {
                    const int i = ti * kTileSide + r;
                    const int j = tj * kTileSide + c;
                    *cells++ = i < n && j < n && i != j ? pairs[i][j] : 0.0F;
                }
}

SimilarityLayers MakeRoom(int nVariables, int n, int largestSubset) {
    const int tiles = (n + kTileSide - 1) / kTileSide;
    const long nCells = static_cast<long>(tiles) * (tiles + 1) / 2 * kTileCells;
    const long side = static_cast<long>(tiles) * kTileSide;
    const int levels = std::max(largestSubset, 1);  // the sum over all members is not kept
    SimilarityLayers layers{n,
                            largestSubset,
                            tiles,
                            nCells,
                            ScopedMatrix<float>(nVariables, nCells),
                            ScopedVector<bool>(nVariables),
                            ScopedMatrix<double>(levels, nCells),
                            ScopedMatrix<float>(levels, nCells),
                            ScopedVector<bool>(levels),
                            ScopedVector<int>(levels),
                            0,
                            ScopedVector<float>(side * side),
                            ScopedVector<float*>(n)};
    for (int i = 0; i < n; i++) layers.rows[i] = layers.similarity.get() + i * side;
    return layers;
}

/// Sums of the first `level` + 1 members from those of one less.
void AddMember(int level, int member, SimilarityLayers* l) {
    const SubsetKernels& kernels = SubsetKernelsOfProcessor();
    l->members[level] = member;
    l->hasCounts[level + 1] = l->hasCounts[level] || !l->isComplete[member];
    if (!l->hasCounts[level + 1]) {
        kernels.addLayer(l->nCells, l->sums[level], l->layers[member], l->sums[level + 1]);
        return;
    }
    if (!l->hasCounts[level]) std::fill_n(l->counts[level], l->nCells, static_cast<float>(level));
    kernels.addLayerMV(l->nCells, l->sums[level], l->counts[level], l->layers[member],
                       l->sums[level + 1], l->counts[level + 1]);
}

void AverageWith(int level, int member, SimilarityLayers* l) {
    const SubsetKernels& kernels = SubsetKernelsOfProcessor();
    if (!l->hasCounts[level] && l->isComplete[member]) {
        kernels.averages(l->tiles, l->sums[level], l->layers[member], static_cast<float>(level + 1),
                         l->similarity);
        return;
    }
    if (!l->hasCounts[level]) std::fill_n(l->counts[level], l->nCells, static_cast<float>(level));
    kernels.averagesMV(l->tiles, l->sums[level], l->counts[level], l->layers[member],
                       l->similarity);
}

}  // namespace

SimilarityLayers MakeSimilarityLayers(int nVariables, const float* const* data, int n, int compared,
                                      const int* types, const float* ranges, const float* weights,
                                      int largestSubset) {
    SimilarityLayers layers = MakeRoom(nVariables, compared, largestSubset);
    ScopedVector<float> values(n);
    ScopedMatrix<float> pairs(n, n);
    for (int k = 0; k < nVariables; k++) {
        for (int i = 0; i < n; i++) values[i] = data[i][k];
        GowerMVPartial_dAbsences(n, types[k], values, pairs, ranges[k], weights[k],
                                 countDoubleAbsence);
        PackTiles(compared, layers.tiles, pairs, layers.layers[k]);
        layers.isComplete[k] = std::find(layers.layers[k], layers.layers[k] + layers.nCells,
                                         float{kMissing}) == layers.layers[k] + layers.nCells;
    }
    return layers;
}

float* const* AverageLayers(int size, const int* members, SimilarityLayers* layers) {
    int level = 0;
    while (level < layers->ready && level + 1 < size && layers->members[level] == members[level])
        level++;
    for (; level + 1 < size; level++) AddMember(level, members[level], layers);
    layers->ready = level;
    if (size > 0)
        AverageWith(level, members[level], layers);
    else
        std::fill_n(layers->similarity.get(),
                    static_cast<long>(layers->tiles) * layers->tiles * kTileCells, float{kMissing});
    for (int i = 0; i < layers->n; i++) layers->rows[i][i] = 1.0F;
    return layers->rows;
}
