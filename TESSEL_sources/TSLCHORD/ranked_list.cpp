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
    if (keeping == Keeping::bySign)
        RankVector(list->places, kept.value, list->order);
    else
        RankVectorAbs(list->places, kept.value, list->order);
    KeptSubsets& sorted = list->layers[1 - list->current];
    for (int place = 0; place < list->places; place++)
        CopyPlace(kept, static_cast<int>(list->order[place]) - 1, &sorted, place);
    list->current = 1 - list->current;
}
