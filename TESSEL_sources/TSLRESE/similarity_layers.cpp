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

/// Sums of the first `level` + 1 members from those of one less.
void AddMember(int level, int member, LayerAverages* a) {
    const SubsetKernels& kernels = SubsetKernelsOfProcessor();
    const SimilarityLayers& l = *a->of;
    a->members[level] = member;
    a->hasCounts[level + 1] = a->hasCounts[level] || !l.isComplete[member];
    if (!a->hasCounts[level + 1]) {
        kernels.addLayer(l.nCells, a->sums[level], l.layers[member], a->sums[level + 1]);
        return;
    }
    if (!a->hasCounts[level]) std::fill_n(a->counts[level], l.nCells, static_cast<float>(level));
    kernels.addLayerMV(l.nCells, a->sums[level], a->counts[level], l.layers[member],
                       a->sums[level + 1], a->counts[level + 1]);
}

void AverageWith(int level, int member, LayerAverages* a) {
    const SubsetKernels& kernels = SubsetKernelsOfProcessor();
    const SimilarityLayers& l = *a->of;
    if (!a->hasCounts[level] && l.isComplete[member]) {
        kernels.averages(l.tiles, a->sums[level], l.layers[member], static_cast<float>(level + 1),
                         a->similarity);
        return;
    }
    if (!a->hasCounts[level]) std::fill_n(a->counts[level], l.nCells, static_cast<float>(level));
    kernels.averagesMV(l.tiles, a->sums[level], a->counts[level], l.layers[member], a->similarity);
}

}  // namespace

SimilarityLayers MakeSimilarityLayers(int nVariables, const float* const* data, int n, int compared,
                                      const int* types, const float* ranges, const float* weights) {
    const int tiles = (compared + kTileSide - 1) / kTileSide;
    const std::ptrdiff_t nCells = static_cast<std::ptrdiff_t>(tiles) * (tiles + 1) / 2 * kTileCells;
    SimilarityLayers layers{compared, tiles, nCells, ScopedMatrix<float>(nVariables, nCells),
                            ScopedVector<bool>(nVariables)};
    ScopedVector<float> values(n);
    ScopedMatrix<float> pairs(n, n);
    for (int k = 0; k < nVariables; k++) {
        for (int i = 0; i < n; i++) values[i] = data[i][k];
        GowerMVPartial_dAbsences(n, types[k], values, pairs, ranges[k], weights[k],
                                 countDoubleAbsence);
        PackTiles(compared, tiles, pairs, layers.layers[k]);
        layers.isComplete[k] = std::find(layers.layers[k], layers.layers[k] + nCells,
                                         float{kMissing}) == layers.layers[k] + nCells;
    }
    return layers;
}

LayerAverages MakeLayerAverages(const SimilarityLayers& layers, int largestSubset) {
    const std::ptrdiff_t side = static_cast<std::ptrdiff_t>(layers.tiles) * kTileSide;
    const int levels = std::max(largestSubset, 1);  // the sum over all members is not kept
    LayerAverages averages{&layers,
                           ScopedMatrix<double>(levels, layers.nCells),
                           ScopedMatrix<float>(levels, layers.nCells),
                           ScopedVector<bool>(levels),
                           ScopedVector<int>(levels),
                           0,
                           ScopedVector<float>(side * side),
                           ScopedVector<float*>(layers.n)};
    for (int i = 0; i < layers.n; i++) averages.rows[i] = averages.similarity.get() + i * side;
    return averages;
}

float* const* AverageLayers(int size, const int* members, LayerAverages* averages) {
    int level = 0;
    while (level < averages->ready && level + 1 < size &&
           averages->members[level] == members[level])
        level++;
    for (; level + 1 < size; level++) AddMember(level, members[level], averages);
    averages->ready = level;
    const SimilarityLayers& layers = *averages->of;
    if (size > 0)
        AverageWith(level, members[level], averages);
    else
        std::fill_n(averages->similarity.get(),
                    static_cast<std::ptrdiff_t>(layers.tiles) * layers.tiles * kTileCells,
                    float{kMissing});
    for (int i = 0; i < layers.n; i++) averages->rows[i][i] = 1.0F;
    return averages->rows;
}
