#include "mxlib/belonging.h"

#include <algorithm>

#include "mxlibDim/scoped.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

constexpr int kNoColumn = -1;

/// The members of K types: those of type g are list[start[g]] and on, size[g] of them, ascending.
struct TypeMembers {
    int* list;
    int* start;
    int* size;
};

/// Column of the belonging matrices for each OTU. A label beyond the first K has none.
void TypeColumns(int n, int K, const int* partition, int* columns) {
    if (partition == nullptr) {
        for (int i = 0; i < n; i++) columns[i] = i < K ? i : kNoColumn;
        return;
    }
    ScopedVector<int> labels(n);
    int count = 0;
    CountGroupsNew(n, partition, &count, labels);
    for (int i = 0; i < n; i++) {
        const int* place = std::lower_bound(labels.get(), labels.get() + count, partition[i]);
        const int column = static_cast<int>(place - labels.get());
        columns[i] = column < K ? column : kNoColumn;
    }
}

void ListMembers(int n, int K, const int* columns, TypeMembers* members) {
    for (int g = 0; g < K; g++) members->size[g] = 0;
    for (int i = 0; i < n; i++)
        if (columns[i] != kNoColumn) members->size[columns[i]]++;
    int place = 0;
    for (int g = 0; g < K; g++) {
        members->start[g] = place;
        place += members->size[g];
        members->size[g] = 0;
    }
    for (int i = 0; i < n; i++) {
        const int g = columns[i];
        if (g != kNoColumn) members->list[members->start[g] + members->size[g]++] = i;
    }
}

/// Leaves out of the `size` members of one type those that are identical to an earlier one, which
/// then represents them; returns how many stay. The raw entry is tested, also of dissimilarities.
template <class S>
int MergeIdentical(ConstMatrix<S> s, int size, int* members, int* representative) {
    int kept = 0;
    for (int a = 0; a < size; a++) {
        const int i = members[a];
        if (representative[i] != i) continue;
        members[kept++] = i;
        for (int b = a + 1; b < size; b++) {
            const int j = members[b];
            if (representative[j] == j && AlmostEqual2sComplement(s[i][j], S(1), 1))
                representative[j] = i;
        }
    }
    return kept;
}

/// A redundant OTU meets its own type in the place of its representative: `own` gets the members
/// with the one exchanged for the other, ascending.
void ExchangeForRepresentative(int otu, int representative, int size, const int* members,
                               int* own) {
    int count = 0;
    for (int a = 0; a < size; a++)
        if (members[a] != representative) own[count++] = members[a];
    own[count] = otu;
    std::rotate(std::upper_bound(own, own + count, otu), own + count, own + count + 1);
}

/// Each term is taken in the type of the resemblances, the sum in that of the result.
template <class S, class U>
U MeanResemblance(const S* row, int size, const int* members, bool dissimilarity) {
    const S divisor = static_cast<S>(size);
    U sum = 0;
    for (int a = 0; a < size; a++) {
        const S x = row[members[a]];
        if (IsMissing(x)) continue;
        sum += static_cast<U>((dissimilarity ? S(1) - x : x) / divisor);
    }
    return sum;
}

template <class S, class U>
bool Fuzzy(int n, int K, Matrix<S> s, const int* partition, Matrix<U> u, bool dissimilarity) {
    ScopedVector<int> columns(n), representative(n), own(n), list(n), start(K), size(K);
    TypeMembers members{list, start, size};
    TypeColumns(n, K, partition, columns);
    ListMembers(n, K, columns, &members);
    for (int i = 0; i < n; i++) representative[i] = i;
    for (int g = 0; g < K; g++)
        size[g] = MergeIdentical<S>(s, size[g], list + start[g], representative);
    UpperToLowerMatrix(n, s);
    for (int i = 0; i < n; i++)
        for (int g = 0; g < K; g++) {
            const int* others = list + start[g];
            if (g == columns[i] && representative[i] != i) {
                ExchangeForRepresentative(i, representative[i], size[g], others, own);
                others = own;
            }
            u[i][g] = MeanResemblance<S, U>(s[i], size[g], others, dissimilarity);
        }
    UnitSumRowsAdjMV(n, K, u, u);
    return true;
}

template <class T>
bool Crisp(int n, int K, const int* partition, Matrix<T> c) {
    ScopedVector<int> columns(n);
    TypeColumns(n, K, partition, columns);
    for (int i = 0; i < n; i++) {
        for (int g = 0; g < K; g++) c[i][g] = 0;
        if (columns[i] != kNoColumn) c[i][columns[i]] = 1;
    }
    return true;
}

}  // namespace

bool CrispBelonging(int n, int K, const int* partition, Matrix<float> c) {
    return Crisp<float>(n, K, partition, c);
}
bool CrispBelonging(int n, int K, const int* partition, Matrix<double> c) {
    return Crisp<double>(n, K, partition, c);
}

bool FuzzyBelonging(int n, int K, Matrix<float> s, const int* partition, Matrix<float> u,
                    bool dissimilarity) {
    return Fuzzy<float, float>(n, K, s, partition, u, dissimilarity);
}
bool FuzzyBelonging(int n, int K, Matrix<float> s, const int* partition, Matrix<double> u,
                    bool dissimilarity) {
    return Fuzzy<float, double>(n, K, s, partition, u, dissimilarity);
}
bool FuzzyBelonging(int n, int K, Matrix<double> s, const int* partition, Matrix<double> u,
                    bool dissimilarity) {
    return Fuzzy<double, double>(n, K, s, partition, u, dissimilarity);
}
