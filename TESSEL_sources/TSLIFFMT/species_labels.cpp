#include "TSLIFFMT/species_labels.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>
#include <unordered_set>

#include "TSLGLOB/dataset.h"
#include "mxlibDim/text.h"

namespace {

constexpr unsigned char kFirstCharacter = '!';
constexpr unsigned char kLastCharacter = '~';
constexpr int kKeptOfName = kSpeciesLength - kSpeciesLabelLength - 1;

using SpeciesLabel = char[kSpeciesLabelLength + 1];

/// First character of the second word, looked for at position 3 or later; the end when none is.
const char* SecondWord(const char* name) {
    const std::size_t length = std::strlen(name);
    for (std::size_t k = 3; k < length; k++)
        if (name[k - 1] == ' ' && name[k] != ' ') return name + k;
    return name + length;
}

char Raised(char character) {
    const auto next = static_cast<unsigned char>(static_cast<unsigned char>(character) + 1);
    return static_cast<char>(next < kFirstCharacter ? kFirstCharacter : next);
}

void CountOn(char* label) {
    for (int k = kSpeciesLabelLength - 1; k >= 0; k--) {
        if (static_cast<unsigned char>(label[k]) < kLastCharacter) {
            label[k] = Raised(label[k]);
            return;
        }
        label[k] = kFirstCharacter;
    }
}

void AlterLabel(char* label, int step) {
    char& character = label[step % kSpeciesLabelLength];
    if (step < 2 * kSpeciesLabelLength)
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    else if (step < 3 * kSpeciesLabelLength)
        character = Raised(character);
    else
        CountOn(label);
}

/// The characters by which a label is told from the beginning of a labelled name.
std::string BeginningOf(const char* text) {
    return {text, strnlen(text, kSpeciesLabelLength)};
}

void MakeLabel(SpeciesLabel& label, const char* name,
               const std::unordered_set<std::string>& taken) {
    std::memset(label, 0, sizeof label);
    std::snprintf(label, sizeof label, "%.2s%.2s", name, SecondWord(name));
    for (int step = 0; taken.contains(BeginningOf(label)); step++) AlterLabel(label, step);
}

}  // namespace

void LabelSpecies(int n, char** names) {
    std::unordered_set<std::string> taken;  // beginnings of the names labelled so far
    for (int i = 0; i < n; i++) {
        SpeciesLabel label;
        MakeLabel(label, names[i], taken);
        char labelled[kSpeciesLength + 1];
        std::snprintf(labelled, sizeof labelled, "%s %.*s", label, kKeptOfName, names[i]);
        CopyText(names[i], kSpeciesLength, labelled);
        taken.insert(BeginningOf(names[i]));
    }
}
