#include "mxlibRes/mantel_sides.h"

#include <cmath>

#include "mxlibRes/kernels.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/subset_kernels.h"

namespace {

/// Sums of products of deviations that wait for a pass over the cells.
struct Chains {
    std::ptrdiff_t m;
    int count = 0;
    const double* x[kMostChains] = {};
    const double* y[kMostChains] = {};
    double meanX[kMostChains] = {};
    double meanY[kMostChains] = {};
    double* sum[kMostChains] = {};
};

void RunProducts(Chains* chains) {
    double sums[kMostChains];
    SubsetKernelsOfProcessor().products(chains->count, chains->m, chains->x, chains->meanX,
                                        chains->y, chains->meanY, sums);
    for (int c = 0; c < chains->count; c++) *chains->sum[c] = sums[c];
    chains->count = 0;
}

void AddProduct(const MantelSide& a, const MantelSide& b, double* sum, Chains* chains) {
    const int c = chains->count++;
    chains->x[c] = a.cells;
    chains->meanX[c] = a.mean;
    chains->y[c] = b.cells;
    chains->meanY[c] = b.mean;
    chains->sum[c] = sum;
    if (chains->count == kMostChains) RunProducts(chains);
}

/// Means of up to kMostChains sides, and whether cells are missing.
void FindMeans(int count, MantelSide* const* sides) {
    const double* cells[kMostChains];
    double sums[kMostChains];
    bool missing[kMostChains];
    for (int s = 0; s < count; s++) cells[s] = sides[s]->cells;
    SubsetKernelsOfProcessor().sums(count, sides[0]->nCells, cells, sums, missing);
    for (int s = 0; s < count; s++) {
        sides[s]->mean = sums[s] / static_cast<double>(sides[s]->nCells);
        sides[s]->hasMissing = missing[s];
    }
}

/// Over the cells present in both sides.
double CorrelatePresent(const MantelSide& a, const MantelSide& b) {
    double sumA = 0.0, sumB = 0.0;
    std::ptrdiff_t present = 0;
    for (std::ptrdiff_t c = 0; c < a.nCells; c++) {
        if (IsMissing(a.cells[c]) || IsMissing(b.cells[c])) continue;
        sumA += a.cells[c];
        sumB += b.cells[c];
        present++;
    }
    double squaresA = 0.0, squaresB = 0.0, products = 0.0;
    for (std::ptrdiff_t c = 0; c < a.nCells; c++) {
        if (IsMissing(a.cells[c]) || IsMissing(b.cells[c])) continue;
        const double da = a.cells[c] - sumA / static_cast<double>(present);
        const double db = b.cells[c] - sumB / static_cast<double>(present);
        squaresA += da * da;
        squaresB += db * db;
        products += da * db;
    }
    if (squaresA == 0.0 || squaresB == 0.0) return 0.0;
    return products / std::sqrt(squaresA * squaresB);
}

bool HasMissing(const MantelPair& pair) {
    return pair.a->hasMissing || pair.b->hasMissing;
}

void CompleteSides(int count, MantelSide* const* sides, Chains* chains) {
    for (int s = 0; s < count; s += kMostChains)
        FindMeans(count - s < kMostChains ? count - s : kMostChains, sides + s);
    for (int s = 0; s < count; s++) AddProduct(*sides[s], *sides[s], &sides[s]->squares, chains);
}

}  // namespace

MantelSide MakeMantelSide(int n) {
    const std::ptrdiff_t nCells = CountCellsAbove(n);
    return {nCells, ScopedVector<double>(nCells + kOverrun), 0.0, 0.0, false};
}

void CompleteMantelSide(MantelSide* side) {
    Chains chains{.m = side->nCells};
    CompleteSides(1, &side, &chains);
    RunProducts(&chains);
}

void CorrelateMantelSides(int nMoving, MantelSide* const* moving, int nPairs,
                          const MantelPair* pairs, double* r) {
    if (nPairs < 1) return;
    Chains chains{.m = pairs[0].a->nCells};
    CompleteSides(nMoving, moving, &chains);
    for (int i = 0; i < nPairs; i++)
        if (!HasMissing(pairs[i])) AddProduct(*pairs[i].a, *pairs[i].b, r + i, &chains);
    RunProducts(&chains);
    for (int i = 0; i < nPairs; i++) {
        const MantelSide& a = *pairs[i].a;
        const MantelSide& b = *pairs[i].b;
        if (HasMissing(pairs[i]))
            r[i] = CorrelatePresent(a, b);
        else if (a.squares == 0.0 || b.squares == 0.0)
            r[i] = 0.0;
        else
            r[i] /= std::sqrt(a.squares * b.squares);
    }
}
