#include "TSLCLI/name_matching.h"

#include <algorithm>
#include <cctype>
#include <numeric>
#include <unordered_map>
#include <unordered_set>

#include "TSLCLI/failure.h"
#include "TSLCLI/wording.h"

namespace {

/// The name without case and blanks; an underscore, a point and a hard blank stand for blanks in
/// names that went through other programs.
std::string Folded(const std::string& name, bool foldSubstitutes) {
    constexpr std::string_view kHardBlank = "\xC2\xA0";
    std::string folded;
    for (std::size_t k = 0; k < name.size(); k++) {
        if (name.compare(k, kHardBlank.size(), kHardBlank) == 0) {
            k++;
            continue;
        }
        const auto c = static_cast<unsigned char>(name[k]);
        if (c == ' ' || (foldSubstitutes && (c == '_' || c == '.'))) continue;
        folded.push_back(static_cast<char>(std::tolower(c)));
    }
    return folded;
}

/// Insertions, removals and replacements of a character between two names, counted up to `limit`;
/// limit + 1 where they are more.
int Edits(const std::string& a, const std::string& b, int limit, std::vector<int>* work) {
    const int n = static_cast<int>(a.size()), m = static_cast<int>(b.size());
    if (std::abs(n - m) > limit) return limit + 1;
    std::vector<int>& row = *work;
    row.resize(m + 1);
    std::iota(row.begin(), row.end(), 0);
    for (int i = 1; i <= n; i++) {
        const int first = std::max(1, i - limit), last = std::min(m, i + limit);
        int diagonal = row[first - 1];
        row[first - 1] = first == 1 ? i : limit + 1;
        int least = row[first - 1];
        for (int j = first; j <= last; j++) {
            const int above = j == i + limit ? limit + 1 : row[j];
            const int replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({replaced, above + 1, row[j - 1] + 1});
            least = std::min(least, row[j]);
        }
        if (least > limit) return limit + 1;
    }
    return std::min(row[m], limit + 1);
}

std::string ListedWithNearest(const Names& names, const Names& others) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + Quoted(name) + NearestTo(name, others);
    return text;
}

Names Missing(const Names& names, const Names& others) {
    Names missing;
    const std::vector<int> places = PlacesAmong(names, others);
    for (std::size_t i = 0; i < names.size(); i++)
        if (places[i] < 0) missing.push_back(names[i]);
    return missing;
}

}  // namespace

void RequireDistinct(const NameList& list, const std::string& what) {
    std::unordered_map<std::string, const std::string*> seen;
    for (const std::string& name : *list.names) {
        const auto [earlier, isNew] = seen.emplace(Folded(name, false), &name);
        if (isNew) continue;
        if (*earlier->second == name)
            FailRun(list.file + ": two " + what + "s are named " + Quoted(name) +
                    ": give each a name of its own");
        FailRun(list.file + ": the names " + Quoted(*earlier->second) + " and " + Quoted(name) +
                " of two " + what +
                "s differ only in case or blanks: make one of them, or rename "
                "one");
    }
}

std::vector<int> PlacesAmong(const Names& names, const Names& others) {
    std::unordered_map<std::string_view, int> places;
    for (std::size_t i = 0; i < others.size(); i++) places.emplace(others[i], static_cast<int>(i));
    std::vector<int> found;
    for (const std::string& name : names) {
        const auto place = places.find(name);
        found.push_back(place == places.end() ? -1 : place->second);
    }
    return found;
}

int CountAmong(const Names& names, const Names& others) {
    const std::vector<int> places = PlacesAmong(names, others);
    return static_cast<int>(
        std::count_if(places.begin(), places.end(), [](int place) { return place >= 0; }));
}

std::string NearestTo(const std::string& name, const Names& names) {
    const std::string folded = Folded(name, true);
    for (const std::string& other : names)
        if (Folded(other, true) == folded)
            return " (" + Quoted(other) + " but for case, blanks or the signs for them)";
    constexpr int kShareOfName = 3;  // of the characters of a name may differ
    int limit = std::max<int>(1, static_cast<int>(name.size()) / kShareOfName);
    const std::string* nearest = nullptr;
    std::vector<int> work;
    for (const std::string& other : names) {
        const int edits = Edits(name, other, limit, &work);
        if (edits > limit) continue;
        nearest = &other;
        limit = edits - 1;
        if (limit < 1) break;
    }
    return nearest == nullptr ? "" : " (near " + Quoted(*nearest) + ")";
}

Names MatchNames(const std::vector<NameList>& lists, const std::string& what, bool dropUnmatched,
                 const std::string& advice) {
    const NameList& first = lists[0];
    Names kept = *first.names;
    std::string faults;
    const auto tell = [&](const NameList& has, const NameList& lacks) {
        const Names missing = Missing(*has.names, *lacks.names);
        if (missing.empty()) return;
        const std::string text = what + " of " + has.file + " that " + lacks.file +
                                 " does not have: " + ListedWithNearest(missing, *lacks.names);
        if (dropUnmatched) Tell("Left out (" + std::to_string(missing.size()) + "): " + text);
        faults += (faults.empty() ? "" : "; ") + text;
    };
    for (std::size_t k = 1; k < lists.size(); k++) {
        tell(first, lists[k]);
        tell(lists[k], first);
        kept.erase(std::remove_if(kept.begin(), kept.end(),
                                  [names = std::unordered_set<std::string>(lists[k].names->begin(),
                                                                           lists[k].names->end())](
                                      const std::string& name) { return !names.contains(name); }),
                   kept.end());
    }
    if (!faults.empty() && !dropUnmatched) FailRun(faults + ": " + advice);
    if (kept.empty()) FailRun("the tables have no " + what + " in common");
    return kept;
}
