#include "TSLIFFMT/community_pooling.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLIFFMT/selection.h"
#include "mxlib/belonging.h"
#include "mxlibDim/scoped.h"
#include "mxlibDim/text.h"
#include "mxlibRes/totals.h"

namespace {

constexpr int kGroupMeans = 2;  // option of ConcentrateGroups

/// Puts rows in the place of the first ones of a table.
void Install(float** table, const ScopedMatrix<float>& rows, int n) {
    std::swap_ranges(table, table + n, rows.get());
}

std::vector<int> NumbersUpTo(int n) {
    std::vector<int> numbers(static_cast<std::size_t>(n));
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

/// Puts new columns in the place of sppRelMap's: "1" where a species occurs in any of the
/// communities of a new one. `destinations(c)` gives the new ones that community c goes to: the
/// first, and one past the last.
template <class Destinations>
void PoolSpeciesMap(int count, Destinations destinations) {
    std::string pooled;
    for (int s = 0; s < nSpp; s++) {
        pooled.assign(static_cast<std::size_t>(count), '0');
        for (int c = 0; c < ncsm; c++) {
            if (sppRelMap[s][c] != '1') continue;
            const auto [first, end] = destinations(c);
            for (int k = std::max(first, 0); k < std::min(end, count); k++)
                pooled[static_cast<std::size_t>(k)] = '1';
        }
        pooled.copy(sppRelMap[s], pooled.size());
    }
}

/// The new communities are there: the count, and the OTUs of each.
template <class Present>
void SetCommunityCount(int count, Present isPresent) {
    const int before = std::exchange(ncsm, count);
    ReleaseCommunitiesLeftBehind(before);
    for (int c = 0; c < ncsm; c++)
        ncst[c] = static_cast<int>(std::count_if(
            cadat, cadat + tcst, [&](const float* row) { return isPresent(row[c]); }));
}

bool IsPositive(float quantity) {
    return quantity > 0;
}

bool IsNotZero(float quantity) {
    return quantity != 0;
}

/// What follows W and E where communities become groups.
template <class Present>
void TurnIntoGroups(Present isPresent) {
    PoolSpeciesMap(nGroups, [](int c) { return std::pair(groupRel[c] - 1, groupRel[c]); });
    for (int k = 0; k < nGroups; k++) CopyText(reLabel[k], kLabelLength, grLabel[k]);
    SetCommunityCount(nGroups, isPresent);
}

void PoolEnvironment() {
    const ScopedMatrix<float> E(nGroups, nenv);
    ConcentrateGroups(ncsm, nenv, env, E, nGroups, groupRel, nenv, NumbersUpTo(nenv).data(),
                      kGroupMeans);
    Install(env, E, nGroups);
}

/// The routine takes communities as columns.
void TakeChangesOfEnvironment() {
    const ScopedMatrix<float> turned(nenv, ncsm), changes(nenv, nGroups), E(nGroups, nenv);
    TransposeMatrix(ncsm, nenv, env, turned);
    ReleveChange(ncsm, turned, changes, nenv, nGroups, groupRel);
    TransposeMatrix(nenv, nGroups, changes, E);
    Install(env, E, nGroups);
}

void AverageEnvironment() {
    const ScopedMatrix<float> E(ncsm, nenv);
    int count = 0;
    SplitMovingWinPool(ncsm, nenv, env, E, SMWSize, &count, true);
    Install(env, E, ncsm);
}

/// A nominal variable's change is told by 1, whatever the difference of its states.
void MakeChangesBinary() {
    for (int j = 0; j < nenv; j++) {
        if (envVarType[j] != 2) continue;
        envVarType[j] = 1;
        for (int k = 0; k < ncsm; k++)
            if (env[k][j] != 0.0F) env[k][j] = 1.0F;
    }
}

}  // namespace

void ReleveChange(int n, ConstMatrix<float> source, Matrix<float> result, int rows, int groups,
                  const int* membership) {
    for (int c = 0; c < n; c++) {
        const int group = membership[c];
        if (group < 1 || group > groups) continue;
        for (int i = 0; i < rows; i++) result[i][group - 1] = source[i][c] - result[i][group - 1];
    }
}

void SplitMovingWinPool(int rows, int cols, ConstMatrix<float> source, Matrix<float> result, int w,
                        int* count, bool byRows) {
    *count = (byRows ? rows : cols) + 1 - w;
    const auto size = static_cast<float>(w);
    for (int k = 0; k < *count; k++)
        for (int i = 0; i < (byRows ? cols : rows); i++) {
            float& mean = byRows ? result[k][i] : result[i][k];
            mean = 0;
            for (int j = k; j < k + w; j++) mean += byRows ? source[j][i] : source[i][j];
            mean /= size;
        }
}

void PoolCommunitiesByGroups() {
    std::iota(groupCst, groupCst + tcst, 1);
    const ScopedMatrix<float> W(tcst, nGroups);
    ConcentrateGroups(tcst, ncsm, cadat, W, tcst, groupCst, nGroups, groupRel, kGroupMeans);
    Install(cadat, W, tcst);
    if (nenv > 0) PoolEnvironment();
    TurnIntoGroups(IsPositive);
    if (temEnvBin != 0) std::replace(envVarType, envVarType + nenv, 1, 3);
    temEnvBin = 0;
}

void TakeChangesOfCommunities() {
    const ScopedMatrix<float> W(tcst, nGroups);
    ReleveChange(ncsm, cadat, W, tcst, nGroups, groupRel);
    Install(cadat, W, tcst);
    if (nenv > 0) TakeChangesOfEnvironment();
    TurnIntoGroups(IsNotZero);
    if (temEnvQual != 0) MakeChangesBinary();
    temEnvQual = 0;
}

void PoolCommunitiesByMovingWindow() {
    const ScopedMatrix<float> W(tcst, ncsm);
    int count = 0;
    SplitMovingWinPool(tcst, ncsm, cadat, W, SMWSize, &count, false);
    Install(cadat, W, tcst);
    if (nenv > 0) AverageEnvironment();
    PoolSpeciesMap(count, [](int c) { return std::pair(c + 1 - SMWSize, c + 1); });
    SetCommunityCount(count, IsNotZero);
}
