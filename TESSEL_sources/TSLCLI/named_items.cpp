#include "TSLCLI/named_items.h"

#include <algorithm>
#include <optional>

#include "TSLCLI/failure.h"
#include "TSLCLI/wording.h"

namespace {

Names LabelsOf(const Names& names, const char* const* labels) {
    return labels == nullptr ? Names() : Names(labels, labels + names.size());
}

/// The first of the wanted names that is not among the items, or none; `places` of those before.
std::optional<std::string> FindPlaces(const Names& wanted, const Names& names, const Names& labels,
                                      Selection* places) {
    *places = PlacesAmong(wanted, names);
    const Selection labelled = PlacesAmong(wanted, labels);
    for (std::size_t i = 0; i < wanted.size(); i++) {
        if ((*places)[i] < 0) (*places)[i] = labelled[i];
        if ((*places)[i] < 0) return wanted[i];
    }
    return std::nullopt;
}

std::string NoSuch(const std::string& where, const char* what, const std::string& name,
                   const Names& names) {
    return where + ": there is no " + what + " " + Quoted(name) + NearestTo(name, names);
}

}  // namespace

std::string_view NameAtStart(std::string_view text, const Names& known, char end) {
    std::string_view longest;
    for (const std::string& name : known)
        if (name.size() > longest.size() && text.starts_with(name) &&
            (text.size() == name.size() || text[name.size()] == end))
            longest = name;
    return text.substr(0, longest.size());
}

Names NamesAsGiven(const Names& given, const Names& known) {
    Names names;
    for (const std::string& text : given) {
        std::string_view rest = text;
        while (!rest.empty()) {
            rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
            std::string_view name = NameAtStart(rest, known, ',');
            if (name.empty()) name = rest.substr(0, rest.find(','));
            if (!name.empty()) names.emplace_back(name);
            rest.remove_prefix(std::min(name.size() + 1, rest.size()));
        }
    }
    return names;
}

Selection PlacesOfNames(const std::string& file, const char* what, const Names& wanted,
                        const Names& names, const char* const* labels) {
    Selection places;
    const auto unknown = FindPlaces(wanted, names, LabelsOf(names, labels), &places);
    if (unknown) FailRun(NoSuch(file, what, *unknown, names));
    return places;
}

Selection PlacesOfOption(const char* option, const char* what, const Names& given,
                         const Names& names, const char* const* labels) {
    const Names byLabel = LabelsOf(names, labels);
    Names known = names;
    known.insert(known.end(), byLabel.begin(), byLabel.end());
    const Names wanted = NamesAsGiven(given, known);
    Selection places;
    if (const auto unknown = FindPlaces(wanted, names, byLabel, &places))
        FailUsage(NoSuch(option, what, *unknown, names));
    for (std::size_t i = 0; i < places.size(); i++)
        if (std::find(places.begin(), places.begin() + i, places[i]) != places.begin() + i)
            FailUsage(std::string(option) + ": " + Quoted(wanted[i]) + " is given twice");
    return places;
}
