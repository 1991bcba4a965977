#include "TSLCLI/names.h"

#include <algorithm>
#include <charconv>
#include <unordered_map>
#include <unordered_set>

#include "TSLCLI/csv_writer.h"
#include "TSLCLI/delimited_table.h"
#include "TSLCLI/session.h"
#include "TSLCLI/utf8.h"
#include "TSLGLOB/dataset.h"
#include "TSLIFFMT/species_labels.h"

namespace {

using Names = std::vector<std::string>;

/// A kind of row of the table; those with codes name a trait or variable by its label.
struct Kind {
    const char* name;
    Names FullNames::*names;
    const char* codeName;  ///< null for what has no codes
    std::vector<FullNames::Codes> FullNames::*codes;
};
constexpr Kind kKinds[] = {
    {"OTU", &FullNames::otus, nullptr, nullptr},
    {"trait", &FullNames::traits, "code of trait", &FullNames::traitCodes},
    {"community", &FullNames::communities, nullptr, nullptr},
    {"variable", &FullNames::variables, "code of variable", &FullNames::variableCodes}};

Names Texts(const char* const* labels, int n) {
    return {labels, labels + n};
}

/// The species of each OTU, when each has one of its own; else empty.
Names SpeciesOfOTUs() {
    Names names;
    std::unordered_set<std::string> seen;
    for (int i = 0; i < tcst; i++) {
        const char* const belongs = nSpp > 0 ? cstSppMap[i] : nullptr;
        if (nSpp == 0 || std::count(belongs, belongs + nSpp, '1') != 1) return {};
        names.push_back(NameOfSpecies(spp[std::find(belongs, belongs + nSpp, '1') - belongs]));
        if (!seen.insert(names.back()).second) return {};
    }
    return names;
}

/// The labels of the data set in memory in the place of full names.
FullNames LabelsInMemory() {
    FullNames labels;
    labels.traits = Texts(chLabel, nch);
    labels.communities = Texts(reLabel, ncsm);
    labels.variables = Texts(envLabel, nenv);
    labels.otus = SpeciesOfOTUs();
    for (int i = static_cast<int>(labels.otus.size()); i < tcst; i++)
        labels.otus.push_back("OTU" + std::to_string(i + 1));
    return labels;
}

std::string TableOf(const std::string& session) {
    return session + kNamesExt;
}

/// One row of the table; false for a code that is no number or follows no code before it.
bool TakeRow(const std::string& kind, const std::string& label, const std::string& code,
             const std::string& name, FullNames* names, FullNames* labels) {
    for (const Kind& k : kKinds) {
        if (kind == k.name) {
            (names->*k.names).push_back(name);
            (labels->*k.names).push_back(label);
            return true;
        }
        if (k.codeName == nullptr || kind != k.codeName) continue;
        int number = 0;
        if (std::from_chars(code.data(), code.data() + code.size(), number).ec != std::errc())
            return false;
        auto& codes = names->*k.codes;
        if (codes.empty() || codes.back().name != label) codes.push_back({label, number, {}});
        codes.back().words.push_back(name);
        return number == codes.back().first + static_cast<int>(codes.back().words.size()) - 1;
    }
    return false;
}

bool IsOf(const FullNames& a, const FullNames& b) {
    return std::all_of(std::begin(kKinds), std::end(kKinds),
                       [&](const Kind& kind) { return a.*kind.names == b.*kind.names; });
}

}  // namespace

std::string NameOfSpecies(std::string species) {
    species.erase(species.find_last_not_of(' ') + 1);
    const std::size_t blank = species.find(' ');
    if (blank == std::string::npos || blank > kSpeciesLabelLength) return species;
    const std::string name = species.substr(blank + 1);
    // A shorter label is the beginning of a name of one word.
    const auto alike = [&](std::size_t k) {
        return k >= name.size() || std::tolower(static_cast<unsigned char>(species[k])) ==
                                       std::tolower(static_cast<unsigned char>(name[k]));
    };
    const bool isLabel = blank == kSpeciesLabelLength || (alike(0) && (blank < 2 || alike(1)));
    return isLabel && !name.empty() ? name : species;
}

Names CutNames(const Names& names, std::size_t bytes) {
    // Names that need no cut keep themselves, whatever stands before them.
    std::unordered_set<std::string> taken;
    std::vector<bool> isKept;
    for (const std::string& name : names)
        isKept.push_back(name.size() <= bytes && taken.insert(name).second);
    std::unordered_map<std::string, int> lastNumber;
    Names cut;
    for (std::size_t i = 0; i < names.size(); i++) {
        std::string shortened(CutUtf8(names[i], bytes));
        if (!isKept[i]) {
            int& number = lastNumber.emplace(shortened, 1).first->second;
            const std::string whole = shortened;
            while (!taken.insert(shortened).second) {
                const std::string digits = std::to_string(++number);
                shortened = std::string(CutUtf8(whole, bytes - digits.size())) + digits;
            }
        }
        cut.push_back(shortened);
    }
    return cut;
}

Names LabelsFor(const Names& names) {
    Names labels = names;
    for (std::string& label : labels) std::replace(label.begin(), label.end(), ' ', '_');
    return CutNames(labels, kLabelLength);
}

void WriteNames(const std::string& session, const FullNames& names) {
    const FullNames labels = LabelsInMemory();
    CsvWriter table(TableOf(session), {"kind", "label", "code", "name"});
    const auto put = [&](const char* kind, const std::string& label, const std::string& code,
                         const std::string& name) {
        for (const std::string& text : {std::string(kind), label, code, name}) table.Text(text);
        table.EndRow();
    };
    for (const Kind& kind : kKinds) {
        const Names& full = names.*kind.names;
        for (std::size_t i = 0; i < full.size(); i++)
            put(kind.name, (labels.*kind.names)[i], "", full[i]);
        if (kind.codeName == nullptr) continue;
        for (const FullNames::Codes& codes : names.*kind.codes) {
            const auto place = std::find(full.begin(), full.end(), codes.name) - full.begin();
            for (std::size_t k = 0; k < codes.words.size(); k++)
                put(kind.codeName, (labels.*kind.names)[place],
                    std::to_string(codes.first + static_cast<int>(k)), codes.words[k]);
        }
    }
    table.Finish();
}

FullNames ReadNames(const std::string& session) {
    FullNames inMemory = LabelsInMemory();
    if (!IsThere(TableOf(session))) return inMemory;
    const DelimitedTable table = ReadDelimitedTable(TableOf(session));
    constexpr std::size_t kColumns = 3;  // behind the kind
    FullNames names, labels;
    std::vector<std::string_view> cells;
    bool isWhole = table.columnNames.size() == kColumns;
    for (int i = 0; isWhole && i < static_cast<int>(table.rowNames.size()); i++) {
        CellsOf(table, i, &cells);
        isWhole = TakeRow(table.rowNames[i], std::string(cells[0]), std::string(cells[1]),
                          std::string(cells[2]), &names, &labels);
    }
    if (!isWhole || !IsOf(labels, inMemory)) return inMemory;
    // Codes stand under the labels of what they belong to.
    for (const Kind& kind : kKinds) {
        if (kind.codes == nullptr) continue;
        for (FullNames::Codes& codes : names.*kind.codes) {
            const Names& known = labels.*kind.names;
            const auto place = std::find(known.begin(), known.end(), codes.name);
            if (place == known.end()) return inMemory;
            codes.name = (names.*kind.names)[place - known.begin()];
        }
    }
    names.isFromTable = true;
    return names;
}
