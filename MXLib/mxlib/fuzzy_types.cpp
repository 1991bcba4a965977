#include "mxlib/fuzzy_types.h"

#include "mxlibRes/kernels.h"
#include "mxlibRes/subset_kernels.h"

namespace {

/// Writes into `kept` the members of type g that count, and returns how many; `redundant` tells
/// whether some do not. MergeIdentical is left to the types in which something is identical.
template <class U>
int MembersThatCount(ConstMatrix<float> s, int g, FuzzyTypes<U>* types, bool* redundant) {
    const int size = types->members.size[g];
    const int* list = types->members.list + types->members.start[g];
    const SubsetKernels& kernels = SubsetKernelsOfProcessor();
    for (int a = 0; a < size; a++) types->kept[a] = list[a];
    *redundant = false;
    for (int a = 0; a + 1 < size && !*redundant; a++)
        *redundant = kernels.sameAsOne(list[a + 1], list[size - 1] + 1, s[list[a]],
                                       types->members.columns, g);
    if (!*redundant) return size;
    for (int a = 0; a < size; a++) types->representative[list[a]] = list[a];
    return MergeIdentical<float>(s, size, types->kept, types->representative);
}

template <class U>
void MeansOfType(ConstMatrix<float> s, int g, FuzzyTypes<U>* types) {
    bool redundant = false;
    const int size = MembersThatCount(s, g, types, &redundant);
    U* means = types->means.get() + static_cast<std::ptrdiff_t>(g) * types->stride;
    KernelsOf<U>(SubsetKernelsOfProcessor()).memberMeans(types->n, size, types->kept, s, means);
    if (!redundant) return;
    const int* list = types->members.list + types->members.start[g];
    for (int a = 0; a < types->members.size[g]; a++) {
        const int i = list[a];
        if (types->representative[i] == i) continue;
        ExchangeForRepresentative(i, types->representative[i], size, types->kept, types->own);
        means[i] = MeanResemblance<float, U>(s[i], size, types->own, false);
    }
}

}  // namespace

template <class U>
FuzzyTypes<U> MakeFuzzyTypes(int n, int K, const int* partition) {
    const int stride = n + kOverrun;
    return {n,
            K,
            stride,
            MakeTypeMembers(n, K, partition),
            ScopedVector<int>(n),
            ScopedVector<int>(n),
            ScopedVector<int>(n),
            ScopedVector<U>(static_cast<std::ptrdiff_t>(K) * stride)};
}

template <class U>
void BelongingToTypes(ConstMatrix<float> s, FuzzyTypes<U>* types, Matrix<U> u) {
    const U* means = types->means;
    for (int g = 0; g < types->K; g++) MeansOfType(s, g, types);
    KernelsOf<U>(SubsetKernelsOfProcessor())
        .unitSums(types->n, types->K, types->stride, types->means);
    for (int i = 0; i < types->n; i++)
        for (int g = 0; g < types->K; g++)
            u[i][g] = means[static_cast<std::ptrdiff_t>(g) * types->stride + i];
}

template FuzzyTypes<float> MakeFuzzyTypes<float>(int, int, const int*);
template FuzzyTypes<double> MakeFuzzyTypes<double>(int, int, const int*);
template void BelongingToTypes<float>(ConstMatrix<float>, FuzzyTypes<float>*, Matrix<float>);
template void BelongingToTypes<double>(ConstMatrix<float>, FuzzyTypes<double>*, Matrix<double>);
