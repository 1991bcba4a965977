#include <algorithm>

#include "mxlib/belonging.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/gower.h"

namespace {

/// Sorts n labels and gives their distinct ones.
void TakeDistinct(int n, int* labels, int* count, int* distinct) {
    std::sort(labels, labels + n);
    const int* end = std::unique(labels, labels + n);
    *count = static_cast<int>(end - labels);
    if (distinct != nullptr) std::copy_n(labels, *count, distinct);
}

template <class T>
void ReorderVector(int n, const int* order, T* vector) {
    ScopedVector<T> kept(n);
    std::copy_n(vector, std::max(n, 0), kept.get());
    for (int k = 0; k < n; k++) vector[k] = kept[order[k] - 1];
}

}  // namespace

void CountGroupsNew(int n, const int* labels, int* count, int* distinct) {
    ScopedVector<int> seen(n);
    const int size = std::max(n, 0);
    std::copy_n(labels, size, seen.get());
    TakeDistinct(size, seen, count, distinct);
}

void CountGroups(int n, const int* labels, int* count, int* distinct) {
    CountGroupsNew(n, labels, count, distinct);
}

void CountGroupsSelect(int n, const int* labels, const int* mask, int* count, int* distinct) {
    ScopedVector<int> seen(n);
    int size = 0;
    for (int i = 0; i < n; i++)
        if (mask[i] == 1) seen[size++] = labels[i];
    TakeDistinct(size, seen, count, distinct);
}

void ReorderVectors(int n, const int* order, int* i1, int* i2, float* f1, float* f2) {
    ReorderVector(n, order, i1);
    ReorderVector(n, order, i2);
    ReorderVector(n, order, f1);
    ReorderVector(n, order, f2);
}

bool HasQualitTrait(int n, const int* types) {
    return std::count(types, types + std::max(n, 0), kNominalVariable) > 0;
}
