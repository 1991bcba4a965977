#include "mxlib/belonging.h"

#include "mxlib/type_members.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

/// Column of the belonging matrices for each OTU.
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

void ListMembers(int n, int K, TypeMembers* members) {
    const int* columns = members->columns;
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

template <class S, class U>
bool Fuzzy(int n, int K, Matrix<S> s, const int* partition, Matrix<U> u, bool dissimilarity) {
    const TypeMembers members = MakeTypeMembers(n, K, partition);
    const int* columns = members.columns;
    int* size = members.size;
    ScopedVector<int> representative(n), own(n);
    for (int i = 0; i < n; i++) representative[i] = i;
    for (int g = 0; g < K; g++)
        size[g] = MergeIdentical<S>(s, size[g], members.list + members.start[g], representative);
    UpperToLowerMatrix(n, s);
    for (int i = 0; i < n; i++)
        for (int g = 0; g < K; g++) {
            const int* others = members.list + members.start[g];
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

TypeMembers MakeTypeMembers(int n, int K, const int* partition) {
    TypeMembers members{ScopedVector<int>(n), ScopedVector<int>(n), ScopedVector<int>(K),
                        ScopedVector<int>(K)};
    TypeColumns(n, K, partition, members.columns);
    ListMembers(n, K, &members);
    return members;
}

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
