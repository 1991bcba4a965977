#include "TSLIFFMT/derive_dialogue.h"

#include <algorithm>
#include <cstdio>
#include <numeric>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "TSLIFFMT/community_groups.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/scoped.h"

namespace {

/// The questions on one kind of items.
struct ItemTexts {
    const char* options;
    const char* count;
    const char* identify;
    const char* items;  ///< what the bulk entry calls them
    const char* error;
};

constexpr ItemTexts kTraitTexts = {
    "Traits:\n"
    "   1  keep the same \n"
    "   2  modify \n"
    "Type option no.: ",
    "Enter new number of traits: ", "Identify the traits by their labels: \n", "traits",
    "\nError!! Enter again. \n"};
constexpr ItemTexts kOTUTexts = {
    "Populations:\n"
    "   1  keep the same \n"
    "   2  modify \n"
    "Type option no.: ",
    "Enter new number of OTUs:   ", "Identify the OTUs by their position on file: \n", "OTUs",
    "Error!! Enter again. \n"};
constexpr ItemTexts kCommunityTexts = {
    "Communities:\n"
    "   1  keep the same \n"
    "   2  modify \n"
    "   3  pool according to groups \n"
    "   4  compute change between communities\n"
    "   5  pool for split moving-window edge detection (spatial or temporal series)\n"
    "Type option no.: ",
    "Enter new number of communities:    ", "Identify the communities by their labels: \n",
    "communities", "Error!! Enter again. \n"};
constexpr ItemTexts kVariableTexts = {
    "Environmental variables:\n"
    "   1  keep the same \n"
    "   2  modify \n"
    "Type option no.: ",
    "Enter new number of environmental variables: ", "Identify the variables by their labels: \n",
    "environmental variables", "Error!! Enter again. \n"};
constexpr int kModify = 2;

constexpr char kChangeIsBinary[] =
    "\b\nWarning! Change in environmental variables that are qualitative\n"
    "will result in a binary variable: 1 if there is change, 0 if there is not.\n";
constexpr char kOddNumber[] =
    "\b\nThis option is not possible, for the number of communities must be even.\n";
constexpr char kBinaryAveraged[] =
    "\b\nWarning! Binary environmental variables will be averaged, and therefore will become "
    "quantitative.\n";
constexpr char kNotPooled[] =
    "\b\nThis option not allowed with this data: pooling environmental variables that are "
    "qualitative is not possible.\n";
constexpr char kAboutChange[] =
    "\nTo compute change each vegetation unit must have two communities.\n"
    "A formda file will be created with the vegetation units.\n"
    "The new communities will contain differences between the 2nd and\n"
    "1st communities in each unit.\n";
constexpr char kAboutChangeOfE[] =
    "\nThe new communities will contain changes in the environmental variables as well.\n";
constexpr char kAboutOrder[] =
    "The user will inform how communities are ordered, but 2nd communities must\n"
    "allways come after 1st ones.\n";
constexpr char kAboutWindow[] =
    "\nThe community set must conform a spatial or temporal series\n"
    " (see Ludwig & Cornelius 1987, Ecology v.68).\n"
    "A formda file will be created by pooling communities according to\n"
    " the selected split moving-window size.\n";

void PrintRule() {
    std::fprintf(out, "%s\n", lineL);
}

Selection All(int n) {
    Selection all(static_cast<std::size_t>(n));
    std::iota(all.begin(), all.end(), 0);
    return all;
}

int AskForNewCount(const ItemTexts& texts, int most) {
    std::fputs(texts.count, out);
    return ReadIntegerIn("%d\n", "-", 1.0, most);
}

/// n of the items, named by their labels until all are known.
Selection AskForLabelled(const ItemTexts& texts, int n, int items, const char* const* labels) {
    const ScopedMatrix<char> typed(n, kLabelLength + 1);
    for (;;) {
        std::fputs(texts.identify, out);
        ReadLongInput(n, kLabelLength, typed, texts.items);
        Selection found = PositionsOf(n, typed, items, labels);
        if (!found.empty()) return found;
        std::fputs(texts.error, out);
    }
}

Selection AskForLabelledItems(const ItemTexts& texts, int items, const char* const* labels) {
    if (ReadOption(texts.options, "1 2") != kModify) return All(items);
    const int n = AskForNewCount(texts, items);
    return AskForLabelled(texts, n, items, labels);
}

/// OTUs have no labels: they are named by their positions from 1.
Selection AskForOTUs() {
    if (ReadOption(kOTUTexts.options, "1 2") != kModify) return All(tcst);
    Selection positions(static_cast<std::size_t>(AskForNewCount(kOTUTexts, tcst)));
    for (;;) {
        std::fputs(kOTUTexts.identify, out);
        ReadLongInput(static_cast<int>(positions.size()), positions.data(), kOTUTexts.items,
                      nullptr);
        if (std::all_of(positions.begin(), positions.end(),
                        [](int position) { return position >= 1 && position <= tcst; }))
            break;
        std::fputs(kOTUTexts.error, out);
    }
    for (int& position : positions) position--;
    return positions;
}

/// Says what an option does to the data set in memory; false when it cannot be had.
bool AllowCommunityOption(CommunityOption option) {
    const bool pools = option == CommunityOption::kPool;
    const bool takesChanges = option == CommunityOption::kChange;
    if (takesChanges && temEnvQual != 0) std::fputs(kChangeIsBinary, out);
    if (takesChanges && ncsm % 2 != 0) std::fputs(kOddNumber, out);
    if ((pools || option == CommunityOption::kMovingWindow) && temEnvBin != 0)
        std::fputs(kBinaryAveraged, out);
    if (!pools || temEnvQual == 0) return true;
    std::fputs(kNotPooled, out);
    PrintRule();
    return false;
}

CommunityOption AskForCommunityOption() {
    CommunityOption option = CommunityOption::kKeep;
    do option = static_cast<CommunityOption>(ReadOption(kCommunityTexts.options, "1 2 3 4 5"));
    while (!AllowCommunityOption(option));
    return option;
}

void AskForGroups() {
    PrepareGroups();
    SettingAnyGroups(ncsm, &nGroups, groupRel, grLabel, "communities");
}

void AskForPairs() {
    std::fputs(kAboutChange, out);
    if (nenv > 0) std::fputs(kAboutChangeOfE, out);
    std::fputs(kAboutOrder, out);
    PrepareGroups();
    SettingNewReleves(ncsm, &nGroups, groupRel, grLabel);
}

/// The pooling takes half the window of the edge detection.
void AskForWindow() {
    std::fputs(kAboutWindow, out);
    for (;;) {
        std::fputs("\nEnter the size of the split moving-window (must be even): ", out);
        const int size = ReadIntegerIn("%d\n", "-", 1.0, ncsm);
        SMWSize = size / 2;
        if (size % 2 == 0) return;
        std::fputs("\b\nEnter again. Must be even.\n", out);
    }
}

Selection AskForCommunities(CommunityOption option) {
    switch (option) {
        case CommunityOption::kSelect: {
            const int n = AskForNewCount(kCommunityTexts, ncsm);
            return AskForLabelled(kCommunityTexts, n, ncsm, reLabel);
        }
        case CommunityOption::kPool:
            AskForGroups();
            break;
        case CommunityOption::kChange:
            AskForPairs();
            break;
        case CommunityOption::kMovingWindow:
            AskForWindow();
            break;
        default:
            break;
    }
    return All(ncsm);
}

bool AskWhetherToTrimOTUs() {
    std::fputs("Trim OTUs absent in all communities? y/n ", out);
    return ScanChar(stdin, "y n", "keyboard") == 'y';
}

}  // namespace

Derivation AskDerivation() {
    Derivation derivation;
    derivation.traits = AskForLabelledItems(kTraitTexts, nch, chLabel);
    PrintRule();
    derivation.otus = AskForOTUs();
    PrintRule();
    derivation.communityOption = AskForCommunityOption();
    derivation.communities = AskForCommunities(derivation.communityOption);
    if (nenv > 0) {
        PrintRule();
        derivation.variables = AskForLabelledItems(kVariableTexts, nenv, envLabel);
    }
    derivation.trims = AskWhetherToTrimOTUs();
    return derivation;
}
