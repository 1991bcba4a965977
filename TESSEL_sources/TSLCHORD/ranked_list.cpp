#include "TSLCHORD/ranked_list.h"

#include <algorithm>
#include <cmath>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "mxlibRes/ranks.h"

namespace {

void CopyPlace(const KeptSubsets& from, int fromPlace, KeptSubsets* to, int toPlace) {
    to->value[toPlace] = from.value[fromPlace];
    to->size[toPlace] = from.size[fromPlace];
    to->groups[toPlace] = from.groups[fromPlace];
    std::copy_n(from.members[fromPlace], from.size[fromPlace], to->members[toPlace]);
}

/// What the list is ordered by.
double KeyOf(Keeping keeping, double value) {
    return keeping == Keeping::bySign ? value : std::fabs(value);
}

/// Moves place 0 up to where it belongs among the others, which are in order: false where it equals
/// one of them or two of them are equal, since the sorting of ties has an order of its own. Places
/// never filled are all the same.
bool MoveUp(Keeping keeping, int places, KeptSubsets* kept) {
    const double key = KeyOf(keeping, kept->value[0]);
    int first = 1;
    while (first < places && kept->size[first] == 0) first++;
    int to = first - 1;
    for (int place = first; place < places; place++) {
        const double here = KeyOf(keeping, kept->value[place]);
        if (here == key || (place > first && here == KeyOf(keeping, kept->value[place - 1])))
            return false;
        if (here < key) to = place;
    }
    std::rotate(kept->value.get(), kept->value + 1, kept->value + to + 1);
    std::rotate(kept->size.get(), kept->size + 1, kept->size + to + 1);
    std::rotate(kept->groups.get(), kept->groups + 1, kept->groups + to + 1);
    std::rotate(kept->members.get(), kept->members + 1, kept->members + to + 1);
    return true;
}

}  // namespace

KeptSubsets::KeptSubsets(int places)
    : value(places), size(places), groups(places), members(places, nch) {}

RankedList::RankedList()
    : places(nKeepTrack + 1),
      layers{KeptSubsets(places), KeptSubsets(places)},
      current(0),
      order(places) {}

const KeptSubsets& Kept(const RankedList& list) {
    return list.layers[list.current];
}

bool IsBetter(Keeping keeping, double value, double best) {
    if (keeping == Keeping::byMagnitude) return std::fabs(value) > std::fabs(best);
    return value > best;
}

void Keep(const TraitSubset& subset, double value, int groups, int place, KeptSubsets* kept) {
    kept->value[place] = value;
    kept->size[place] = subset.size;
    kept->groups[place] = groups;
    std::copy_n(subset.members, subset.size, kept->members[place]);
}

void EnterRankedList(const TraitSubset& subset, double value, int groups, Keeping keeping,
                     RankedList* list) {
    KeptSubsets& kept = list->layers[list->current];
    if (!IsBetter(keeping, value, kept.value[0])) return;
    Keep(subset, value, groups, 0, &kept);
    if (MoveUp(keeping, list->places, &kept)) return;
    if (keeping == Keeping::bySign)
        RankVector(list->places, kept.value, list->order);
    else
        RankVectorAbs(list->places, kept.value, list->order);
    KeptSubsets& sorted = list->layers[1 - list->current];
    for (int place = 0; place < list->places; place++)
        CopyPlace(kept, static_cast<int>(list->order[place]) - 1, &sorted, place);
    list->current = 1 - list->current;
}
