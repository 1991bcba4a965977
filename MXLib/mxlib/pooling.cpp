#include "mxlib/belonging.h"
#include "mxlibDim/scoped.h"

namespace {

enum PartitionOption : int { kQuantitative = 2, kQualitative = 3 };

constexpr int kKeepGrandTotal = 1;

bool IsGroup(int label, int groups) {
    return label >= 1 && label <= groups;
}

void CountMembers(int n, const int* labels, int groups, int* sizes) {
    for (int i = 0; i < n; i++)
        if (IsGroup(labels[i], groups)) sizes[labels[i] - 1]++;
}

float Total(int n, int p, ConstMatrix<float> a) {
    float total = 0;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++) total += a[i][j];
    return total;
}

/// result = sums of the cells of `a` by row group and column group. An item whose label is no group
/// is left out.
void SumGroups(int n, int p, ConstMatrix<float> a, Matrix<float> result, int rowGroups,
               const int* rowGroup, int colGroups, const int* colGroup) {
    for (int g = 0; g < rowGroups; g++)
        for (int h = 0; h < colGroups; h++) result[g][h] = 0;
    for (int i = 0; i < n; i++) {
        if (!IsGroup(rowGroup[i], rowGroups)) continue;
        float* sums = result[rowGroup[i] - 1];
        for (int j = 0; j < p; j++)
            if (IsGroup(colGroup[j], colGroups)) sums[colGroup[j] - 1] += a[i][j];
    }
}

}  // namespace

void ConcentrateGroups(int n, int p, ConstMatrix<float> a, Matrix<float> result, int rowGroups,
                       const int* rowGroup, int colGroups, const int* colGroup, int option) {
    ScopedVector<int> rowSizes(rowGroups), colSizes(colGroups);
    CountMembers(n, rowGroup, rowGroups, rowSizes);
    CountMembers(p, colGroup, colGroups, colSizes);
    SumGroups(n, p, a, result, rowGroups, rowGroup, colGroups, colGroup);
    const float before = Total(rowGroups, colGroups, result);
    for (int g = 0; g < rowGroups; g++)
        for (int h = 0; h < colGroups; h++)
            result[g][h] /= static_cast<float>(rowSizes[g]) * static_cast<float>(colSizes[h]);
    if (option != kKeepGrandTotal) return;
    const float after = Total(rowGroups, colGroups, result);
    for (int g = 0; g < rowGroups; g++)
        for (int h = 0; h < colGroups; h++) result[g][h] = result[g][h] * before / after;
}

void DataPartitionL(int nOTUs, int nCommunities, const int* richness, int partition,
                    Matrix<float> data, float* totals) {
    for (int c = 0; c < nCommunities; c++) totals[c] = 0;
    for (int o = 0; o < nOTUs; o++)
        for (int c = 0; c < nCommunities; c++) totals[c] += data[o][c];
    if (partition != kQuantitative && partition != kQualitative) return;
    for (int c = 0; c < nCommunities; c++) {
        const float mean = totals[c] / static_cast<float>(richness[c]);
        for (int o = 0; o < nOTUs; o++)
            if (data[o][c] > 0) data[o][c] = partition == kQualitative ? mean : data[o][c] - mean;
    }
    if (partition == kQuantitative)
        for (int c = 0; c < nCommunities; c++) totals[c] = 0;
}
