#include "TSLIF/settings_dialogue.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/analysis_settings.h"
#include "TSLIF/menus.h"
#include "TSLIF/otu_groups.h"
#include "TSLIF2/console.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/scoped.h"

namespace {

constexpr double kLargestInt = 2147483647.0;
constexpr unsigned kLargestSeed = 4294967295U;

bool IsRanking() {
    return optmain == 'K';
}

/// A question answered with y or n whose reader calls the terminal the keyboard.
bool AskYesNoAtKeyboard(const char* question) {
    std::fputs(question, out);
    return ScanChar(in, "y n", "keyboard") == 'y';
}

/// The partition of OTUs into types; false when a file of types ended before its time.
bool SettingsTypes() {
    std::fputs("\nThe partition of OTUs into types should be specified.\n", out);
    OTUsTypesAreSpecies = nSpp > 0 && AskYesNoAtKeyboard(
                                          "Wish to use as OTUs types the species specified in the "
                                          "session's formatted file? y/n ");
    bool complete = true;
    if (OTUsTypesAreSpecies)
        TakeSpeciesAsTypes();
    else
        complete = AskTypesOfOTUs(tcst, partition_OTUs);
    SettleTypes();
    return complete;
}

void SettingsFuzziness() {
    const int option = ReadOption(
        "\nFuzzy set adjustment:\n"
        "   0  no adjustment (crisp belonging of OTUs to types)\n"
        "   1  fuzzy types (fuzzy belonging of OTUs to types)\n"
        "Type option no.: ",
        "0 1");
    SettleFuzziness(option == 1);
}

void SettingsPermutationRestriction(bool typesComplete) {
    std::fputs(
        "OTU permutation restrictions: \n"
        "\t(0) none\n"
        "\t(1) permutations restricted within groups of OTUs to be specified\n"
        "\t\tEnter option: ",
        out);
    SettleNesting(TruncateToInt(ScanNumber(in, "keyboard", "0 1")) == 1);
    if (optRestrictPermutNullModel != 1) return;
    AskNestingGroupsOfOTUs(tcst, nestingMembershipOTUs, typesComplete);
}

void SettingsPermutationTests(bool typesComplete) {
    std::fputs(
        "Enter number of iterations in permutation tests of final correlations based on null "
        "models: ",
        out);
    niter = ReadIntegerIn("%d\n", "-", 0.0, kLargestInt);
    SettingsPermutationRestriction(typesComplete);
    SettingsSeed();
}

/// Only the matrix correlation takes nominal variables in E: with one the menu comes until it is
/// chosen.
void SettingsCongruence() {
    do {
        opt_ro = ReadOption(
            "\nMeasuring congruence using\n"
            "  1 matrix correlation (Mantel)\n"
            "  2 Procrustes (traceW, cannot be used when matrix E contains nominal variables)\n"
            "  3 RV coefficient (Escoufier 1973, cannot be used when matrix E contains nominal "
            "variables)\n"
            "Type option no.: ",
            "1 2 3");
    } while (opt_ro != kMantel && temEnvQual == 1);
}

void SettingsCommunityResemblance() {
    if (opt_ro == kMantel) whichObj = 'r';
    if (!TakesResemblance(IsRanking())) return;
    std::fputs("\nSpecify resemblance function between communities:", out);
    SettingsRese();
}

/// Fills `included` with 1 for the traits that take part, else 0, and their weights with the same.
void SettingsTraits(int* included) {
    const int option = ReadOption(
        "\nTraits in matrix B to be used in the analysis:\n"
        "   1  all traits \n"
        "   2  select traits \n"
        "Type option no.: ",
        "1 2");
    std::fill(included, included + nch, 1);
    if (option == 2) {
        std::fputs("Select traits:\n(enter 0 for exclusion or 1 for inclusion)\n", out);
        for (int k = 0; k < nch; k++) std::fprintf(out, "%s ", chLabel[k]);
        std::fputs("\n", out);
        for (int k = 0; k < nch; k++) included[k] = ReadIntegerIn("%-3d", "0 1");
    }
    SettleTraits(included);
}

void SettingsTraitWeights(const int* included) {
    if (hasTraitGroups != 0 &&
        ReadYesNo("Set weights for traits inversely proportional to effective trait group sizes? "
                  "y/n "))
        WeightByTraitGroups(included);
}

void SettingsStandardisation() {
    optUnitTotalAdjust2 =
        traitBasedOpt == 1 &&
        AskYesNoAtKeyboard(
            "\nStandardize community data matrix (matrix W) to unit total in each community? y/n ");
}

void SettingsPrintOut() {
    printDetail = ReadYesNo("\nInclude detailed results in the printout y/n ");
    GetPrindaMode(whichPrinda);
}

}  // namespace

void IFHierarchicalAccum() {
    StartFunctionalAnalysis();
    SettingsHierarchy();
    RunFunctionalAnalysis();
    ClearLine();
    std::fprintf(out, "\n\nResults on file %s%s\n", volumeName, whichPrinda);
    Wait();
}

void SettingsHierarchy() {
    Menu("FUNCTIONAL ANALYSIS SETTINGS");
    if (IsRanking() && opt_struct == kRankTE) {
        ScaleByTraitAverages();
    } else {
        if (!IsRanking())
            std::fputs("\nTrait-based scaling-up from population to communities:", out);
        ScaleByTypes();
        const bool typesComplete = SettingsTypes();
        SettingsFuzziness();
        optRndTests = !IsRanking();
        if (optRndTests) SettingsPermutationTests(typesComplete);
    }
    SettingsCongruence();
    SettingsCommunityResemblance();
    ScopedVector<int> included(nch);
    SettingsTraits(included);
    SettingsTraitWeights(included);
    SettingsStandardisation();
    SettlePhylogeny();
    SettleOrder();
    if (!IsRanking()) SettingsPrintOut();
}

void SettingsRese() {
    int option = 0;
    SettingReseFunction(&option);
    if (whichObj == 'r') rese_opt = option;
}

void SettingReseFunction(int* option) {
    *option = ReadOption(
        "\nResemblance function option:\n"
        "\t6   Euclidean distance\n"
        "\t10  chord distance\n"
        "Type option no.: ",
        // 7, 8 and 9 are taken though the menu does not offer them.
        "6 7 8 9 10");
}

void SettingsSeed() {
    seedOpt = ReadOption(
        "\nInitialization of the random number generator: \n"
        "   1  automatic (taken from the clock)\n"
        "   2  specified by the user\n"
        "Type option no.: ",
        "1 2");
    if (seedOpt == 2) {
        std::fprintf(out, "\nEnter seed (integer in the 0 to %u interval):\n", kLargestSeed);
        rseed = static_cast<unsigned long>(ReadNumberIn("%u\n", "-", 0.0, kLargestSeed));
    } else {
        rseed = static_cast<unsigned long>(std::time(nullptr));
    }
}
