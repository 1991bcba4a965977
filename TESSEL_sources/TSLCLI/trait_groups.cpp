#include "TSLCLI/trait_groups.h"

#include <algorithm>
#include <map>

#include "TSLCLI/failure.h"
#include "TSLCLI/named_items.h"
#include "TSLCLI/wording.h"
#include "TSLGLOB/dataset.h"

namespace {

constexpr const char* kOption = "--trait-groups: ";

/// The next trait=group of the text, taken off it; a trait's name may hold both signs.
std::pair<std::string, std::string> TakePair(std::string_view* text, const Names& known) {
    std::string_view name = NameAtStart(*text, known, '=');
    const std::size_t end = std::min(text->find(',', name.size()), text->size());
    const std::string_view pair = text->substr(0, end);
    if (name.empty()) name = pair.substr(0, pair.rfind('='));
    if (name.size() + 1 >= pair.size())
        FailUsage(kOption + Quoted(pair) + " is not of the form trait=group");
    text->remove_prefix(std::min(end + 1, text->size()));
    return {std::string(name), std::string(pair.substr(name.size() + 1))};
}

}  // namespace

void TakeTraitGroups(const Names& given, const Names& traits) {
    Names known = traits;
    known.insert(known.end(), chLabel, chLabel + nch);
    std::map<int, std::string> groupOf;
    for (const std::string& texts : given)
        for (std::string_view text = texts; !text.empty();) {
            const auto [trait, group] = TakePair(&text, known);
            const int place = PlacesAmong({trait}, known)[0];
            if (place < 0)
                FailUsage(kOption + ("no trait is named " + Quoted(trait)) +
                          NearestTo(trait, traits));
            if (!groupOf.emplace(place % nch, group).second)
                FailUsage(kOption + Quoted(trait) + " is given twice");
        }
    std::map<std::string, int> numbers;
    int last = 0;
    for (int k = 0; k < nch; k++) {
        const auto group = groupOf.find(k);
        int own = 0;
        int& number = group == groupOf.end() ? own : numbers[group->second];
        if (number == 0) number = ++last;
        traitGroups[k] = number;
    }
}
