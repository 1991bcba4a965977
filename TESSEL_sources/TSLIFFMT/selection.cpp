#include "TSLIFFMT/selection.h"

#include <algorithm>
#include <cstring>

#include "TSLGLOB/dataset.h"
#include "TSLIFFMT/checks.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

namespace {

int Size(const Selection& selection) {
    return static_cast<int>(selection.size());
}

template <class T>
void Pick(T* vector, const Selection& selection) {
    std::vector<T> picked;
    for (const int i : selection) picked.push_back(vector[i]);
    std::copy(picked.begin(), picked.end(), vector);
}

template <class T>
void PickColumns(T** table, int rows, const Selection& selection) {
    for (int i = 0; i < rows; i++) Pick(table[i], selection);
}

/// The rows that are not picked are released, so that the table can be released with the old count
/// of rows as with the new one.
template <class T>
void PickRows(T** table, int rows, int cols, const Selection& selection) {
    if (table == nullptr) return;
    const ScopedMatrix<T> picked(Size(selection), cols);
    for (int i = 0; i < Size(selection); i++)
        std::copy_n(table[selection[static_cast<std::size_t>(i)]], cols, picked[i]);
    for (int i = 0; i < Size(selection); i++) std::swap(table[i], picked.get()[i]);
    ReleaseRows(table, Size(selection), rows);
}

void PickPhylogeny(const Selection& selection) {
    if (hasPhylogeny == 0) return;
    PickColumns(phylogenyRese, phylogenyOTUs, selection);
    PickRows(phylogenyRese, phylogenyOTUs, Size(selection), selection);
    PickRows(phylogenyData, phylogenyOTUs, nClados, selection);
    phylogenyOTUs = Size(selection);
}

}  // namespace

Selection PositionsOf(int n, const char* const* wanted, int count, const char* const* labels) {
    Selection positions;
    for (int i = 0; i < n; i++) {
        const auto* const found = std::find_if(labels, labels + count, [&](const char* label) {
            return std::strcmp(label, wanted[i]) == 0;
        });
        if (found == labels + count) return {};
        positions.push_back(static_cast<int>(found - labels));
    }
    return positions;
}

void SelectTraits(const Selection& selection) {
    PickColumns(csm_Float, tcst, selection);
    Pick(chtype, selection);
    Pick(chrange, selection);
    Pick(onsta, selection);
    Pick(traitGroups, selection);
    PickRows(chLabel, nch, kLabelLength + 1, selection);
    nch = Size(selection);
}

void SelectOTUs(const Selection& selection) {
    const int before = tcst;
    PickRows(csm_Float, tcst, nch, selection);
    PickRows(cadat, tcst, ncsm, selection);
    PickRows(cstSppMap, tcst, nSpp, selection);
    PickPhylogeny(selection);
    tcst = Size(selection);
    ReleaseRowsLeftBehind(before, nSpp);
}

void SelectCommunities(const Selection& selection) {
    const int before = ncsm;
    PickColumns(cadat, tcst, selection);
    PickColumns(sppRelMap, nSpp, selection);
    PickRows(env, ncsm, nenv, selection);
    PickRows(reLabel, ncsm, kLabelLength + 1, selection);
    ncsm = Size(selection);
    ReleaseCommunitiesLeftBehind(before);
}

void SelectVariables(const Selection& selection) {
    PickColumns(env, ncsm, selection);
    Pick(envVarType, selection);
    PickRows(envLabel, nenv, kLabelLength + 1, selection);
    nenv = Size(selection);
}

void ReleaseCommunitiesLeftBehind(int before) {
    ReleaseRows(reLabel, ncsm, before);
    ReleaseRows(env, ncsm, before);
    for (int k = 0; k < kPartitions; k++) ReleaseRows(grLabelP[k], ncsm, before);
}

Selection CleanDataSet() {
    const int species = nSpp;
    const std::vector<const float*> before(csm_Float, csm_Float + tcst);
    CheckData(1);
    // The OTUs that are left keep their rows of B and their order.
    Selection left;
    for (std::size_t i = 0; i < before.size(); i++)
        if (Size(left) < tcst && csm_Float[left.size()] == before[i])
            left.push_back(static_cast<int>(i));
    PickPhylogeny(left);
    ReleaseRowsLeftBehind(static_cast<int>(before.size()), species);
    return left;
}
