#include "TSLIFFMT/checks.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <cstring>

#include "TSLGLOB/dataset.h"
#include "TSLIFFMT/species_labels.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

namespace {

constexpr char kYes = '1';
constexpr char kNo = '0';
constexpr double kNoQuantity = 1e-13;    // largest magnitude in W that counts as absence
constexpr float kUncountedValue = 1e8F;  // a state that CountStates never counts

bool IsAbsence(float quantity) {
    return std::fabs(quantity) <= kNoQuantity;
}

/// Moves entry i of a pointer table step by step to the last of n places.
template <class T>
void MoveRowToEnd(T** table, int i, int n) {
    for (int k = i; k < n - 1; k++) swap(table, k, k + 1);
}

/// Closes the gap that column j leaves in the first nOTUs rows of cstSppMap.
void RemoveSpeciesColumn(int j, int nOTUs) {
    for (int i = 0; i < nOTUs; i++)
        std::copy(cstSppMap[i] + j + 1, cstSppMap[i] + nSpp, cstSppMap[i] + j);
}

/// Removes species j from spp, sppRelMap and the columns of cstSppMap.
void RemoveSpecies(int j, int nOTUs) {
    MoveRowToEnd(spp, j, nSpp);
    MoveRowToEnd(sppRelMap, j, nSpp);
    RemoveSpeciesColumn(j, nOTUs);
    nSpp--;
}

void JoinOTUsOfSpecies(int into, int from) {
    for (int i = 0; i < tcst; i++)
        if (cstSppMap[i][from] == kYes) cstSppMap[i][into] = kYes;
}

void MergeEqualNames() {
    for (int i = 0; i < nSpp; i++)
        for (int j = i + 1; j < nSpp;) {
            if (std::strcmp(spp[i], spp[j]) != 0) {
                j++;
                continue;
            }
            JoinOTUsOfSpecies(i, j);
            MoveRowToEnd(spp, j, nSpp);
            RemoveSpeciesColumn(j, tcst);
            nSpp--;
        }
}

void RemoveAbsentOTUs() {
    for (int i = 0; i < tcst;) {
        if (!OccursNowhere(i)) {
            i++;
            continue;
        }
        MoveRowToEnd(csm_Float, i, tcst);
        MoveRowToEnd(cadat, i, tcst);
        if (nSpp > 0) MoveRowToEnd(cstSppMap, i, tcst);
        tcst--;
    }
}

void CountOTUsOfCommunities() {
    emptyReleves = 0;
    for (int c = 0; c < ncsm; c++) {
        ncst[c] = 0;
        for (int i = 0; i < tcst; i++)
            if (cadat[i][c] != 0.0F) ncst[c]++;
        if (ncst[c] == 0) emptyReleves++;
    }
}

/// One step of CheckSpeciesMerge: species j, equal to species i, changes places with the next one.
void MergeIntoEarlierSpecies(int i, int j) {
    swap(spp, j, j + 1);
    for (int otu = 0; otu < tcst; otu++) {
        char* belongs = cstSppMap[otu];
        if (belongs[j] == kYes) {
            belongs[i] = kYes;
            belongs[j] = kNo;
        }
        belongs[j] = belongs[j + 1];
    }
    for (int c = 0; c < ncsm; c++) {
        if (sppRelMap[j][c] == kYes) sppRelMap[i][c] = kYes;
        sppRelMap[j][c] = sppRelMap[j + 1][c];
    }
    nSpp--;
}

bool HasOTU(int species, int nOTUs) {
    for (int i = 0; i < nOTUs; i++)
        if (cstSppMap[i][species] == kYes) return true;
    return false;
}

bool HasCommunity(int species) {
    return std::find(sppRelMap[species], sppRelMap[species] + ncsm, kYes) !=
           sppRelMap[species] + ncsm;
}

bool MeetsSpecies(int otu, int species) {
    for (int c = 0; c < ncsm; c++)
        if (cadat[otu][c] != 0.0F && sppRelMap[species][c] == kYes) return true;
    return false;
}

}  // namespace

bool OccursNowhere(int otu) {
    return std::all_of(cadat[otu], cadat[otu] + ncsm, IsAbsence);
}

bool IsEmptyCommunity(int community) {
    return std::all_of(cadat, cadat + tcst,
                       [community](const float* otu) { return IsAbsence(otu[community]); });
}

void CheckSpecies(int option) {
    nSpp = tcst;
    for (int i = 0; i < tcst; i++) {
        std::fill_n(cstSppMap[i], tcst, kNo);
        cstSppMap[i][i] = kYes;
    }
    MergeEqualNames();
    if (option == kMakeSpeciesLabels) LabelSpecies(nSpp, spp);
}

void SpeciesReleveMap() {
    for (int s = 0; s < nSpp; s++)
        for (int i = 0; i < tcst; i++) {
            if (cstSppMap[i][s] != kYes) continue;
            for (int c = 0; c < ncsm; c++)
                if (cadat[i][c] != 0.0F)
                    sppRelMap[s][c] = kYes;
                else if (sppRelMap[s][c] != kYes)
                    sppRelMap[s][c] = kNo;
        }
}

void CountStates(int nTraits, int nOTUs, int* states, const float* const* B) {
    const ScopedVector<float> values(nOTUs);
    for (int k = 0; k < nTraits; k++) {
        float* end = values.get();
        states[k] = 0;
        for (int i = 0; i < nOTUs; i++)
            if (std::isnan(B[i][k]))
                states[k]++;
            else if (B[i][k] != kUncountedValue)
                *end++ = B[i][k];
        std::sort(values.get(), end);
        states[k] += static_cast<int>(std::unique(values.get(), end) - values.get());
    }
}

void RangeStates(int nTraits, int nOTUs, const float* const* B, const int* types, float* ranges) {
    constexpr int kInterval = 3;
    for (int k = 0; k < nTraits; k++) {
        if (types[k] != kInterval) continue;
        float largest = FLT_MIN;
        float smallest = FLT_MAX;
        for (int i = 0; i < nOTUs; i++) {
            if (B[i][k] > largest) largest = B[i][k];
            if (B[i][k] < smallest) smallest = B[i][k];
        }
        ranges[k] = largest - smallest;
    }
}

void CheckData(int recount) {
    RemoveAbsentOTUs();
    if (nSpp > 0) {
        CheckSpeciesMerge();
        CheckCSTsSameSpecies();
    }
    CountOTUsOfCommunities();
    if (recount == 1) CountStates(nch, tcst, onsta, csm_Float);
    RangeStates(nch, tcst, csm_Float, chtype, chrange);
    if (nSpp > 0) TrimSpecies(tcst);
}

void CheckSpeciesMerge() {
    for (int i = 0; i < nSpp; i++)
        for (int j = i + 1; j < nSpp - 1;)
            if (std::strcmp(spp[i], spp[j]) == 0)
                MergeIntoEarlierSpecies(i, j);
            else
                j++;
}

void CheckCSTsSameSpecies() {
    int trait = nch - 1;
    while (trait >= 0 && std::strcmp(chLabel[trait], "sp") != 0) trait--;
    if (trait < 0) return;
    for (int i = 0; i < tcst; i++) csm_Float[i][trait] = static_cast<float>(i);
    for (int i = 0; i < tcst; i++)
        for (int s = 0; s < nSpp; s++) {
            if (cstSppMap[i][s] != kYes) continue;
            for (int j = i + 1; j < tcst; j++)
                if (cstSppMap[j][s] == kYes) csm_Float[j][trait] = csm_Float[i][trait];
        }
}

void TrimSpecies(int nOTUs) {
    const int before = nSpp;
    for (int s = 0; s < nSpp;)
        if (HasOTU(s, nOTUs))
            s++;
        else
            RemoveSpecies(s, nOTUs);
    for (int s = 0; s < nSpp;)
        if (HasCommunity(s))
            s++;
        else
            RemoveSpecies(s, nOTUs);
    for (int i = 0; i < nOTUs; i++)
        for (int s = 0; s < nSpp; s++)
            if (cstSppMap[i][s] == kYes && !MeetsSpecies(i, s)) cstSppMap[i][s] = kNo;
    ReleaseRows(spp, nSpp, before);
    ReleaseRows(sppRelMap, nSpp, before);
}

void ReleaseRowsLeftBehind(int allocatedOTUs, int allocatedSpecies) {
    ReleaseRows(csm_Float, tcst, allocatedOTUs);
    ReleaseRows(cadat, tcst, allocatedOTUs);
    ReleaseRows(cstSppMap, tcst, allocatedOTUs);
    for (int k = 0; grCstLabelP != nullptr && k < kPartitions; k++)
        ReleaseRows(grCstLabelP[k], tcst, allocatedOTUs);
    ReleaseRows(spp, nSpp, allocatedSpecies);
    ReleaseRows(sppRelMap, nSpp, allocatedSpecies);
}
