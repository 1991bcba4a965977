#include "TSLIF/settings_dialogue.h"

#include <algorithm>
#include <cstdio>
#include <ctime>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "TSLIF/otu_groups.h"
#include "TSLIF2/console.h"
#include "TSLIFFM2/track.h"
#include "TSLRESE/scaling_up.h"
#include "iflibG/iflibG.h"
#include "mxlib/belonging.h"
#include "mxlibDim/dim.h"
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

void Release(int*& memberships) {
    free1D(memberships);
    memberships = nullptr;
}

/// An OTU of several species takes the last one; one of none keeps its label.
void TakeSpeciesAsTypes() {
    for (int t = 0; t < tcst; t++)
        for (int s = 0; s < nSpp; s++)
            if (cstSppMap[t][s] == '1') partition_OTUs[t] = s + 1;
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
    CountGroupsNew(tcst, partition_OTUs, &nGrPoly[0], nullptr);
    reseCSTopt = 1;
    return complete;
}

void SettingsFuzziness() {
    const int option = ReadOption(
        "\nFuzzy set adjustment:\n"
        "   0  no adjustment (crisp belonging of OTUs to types)\n"
        "   1  fuzzy types (fuzzy belonging of OTUs to types)\n"
        "Type option no.: ",
        "0 1");
    fuzzy = option == 1 ? kFuzzyTypes : kCrisp;
    if (option == 1) fuzziness = 1.0F;
}

void SettingsPermutationRestriction(bool typesComplete) {
    std::fputs(
        "OTU permutation restrictions: \n"
        "\t(0) none\n"
        "\t(1) permutations restricted within groups of OTUs to be specified\n"
        "\t\tEnter option: ",
        out);
    optRestrictPermutNullModel = TruncateToInt(ScanNumber(in, "keyboard", "0 1"));
    if (optRestrictPermutNullModel != 1) return;
    Release(nestingMembershipOTUs);
    nestingMembershipOTUs = dim1Dint(tcst);
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
    if (opt_ro != kMantel) return;
    whichObj = 'r';
    if (IsRanking() && (opt_struct == kRankTE || opt_struct == kRankRE)) return;
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
    std::copy(included, included + nch, weight);
}

/// Divides the weights of the included traits by the number of included traits of their group.
void WeightByTraitGroups(const int* included) {
    ScopedVector<int> labels(nch);
    int groups = 0;
    CountGroupsSelect(nch, traitGroups, included, &groups, labels);
    for (int g = 0; g < groups; g++) {
        int size = 0;
        for (int k = 0; k < nch; k++)
            if (included[k] == 1 && traitGroups[k] == labels[g]) size++;
        for (int k = 0; k < nch; k++)
            if (traitGroups[k] == labels[g]) weight[k] /= static_cast<float>(size);
    }
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

/// The taxa are the types of the partition.
void SettingsPhylogeny() {
    if (hasPhylogeny != 0) includePhylogeny = 1;
    if (includePhylogeny == 0) return;
    Release(partition_OTUs_Phyl);
    partition_OTUs_Phyl = dim1Dint(tcst);
    std::copy(partition_OTUs, partition_OTUs + tcst, partition_OTUs_Phyl);
    CountGroupsNew(tcst, partition_OTUs_Phyl, &nTaxa, nullptr);
    fuzzyPhyl = 1;
}

void SettingsOrder() {
    isHierarchical = 0;
    for (int k = 0; k < nch; k++) nchor[k] = k + 1;
    for (int k = 1; k < nch; k++) nGrPoly[k] = 2;
    optCoVariable = false;
}

void SettingsPrintOut() {
    printDetail = ReadYesNo("\nInclude detailed results in the printout y/n ");
    GetPrindaMode(whichPrinda);
}

void ResetDerivedResults() {
    hasHier = 1;
    hasCstRese = hasCstClus = hasNRese = hasPRese = hasScores = hasReClus = hasAOCScor = 0;
    hasProbN = hasProbRo = hasRo = 0;
    hasComplexity = hasVelocity = hasRoVelComplex = hasRoVelComplexPROB = 0;
    nCstGroups = 0;
    whichLevelGrCST = 1;
    // A phylogeny of an earlier session takes no part.
    includePhylogeny = 0;
}

}  // namespace

void IFHierarchicalAccum() {
    MakeSessionFileName(whichPrinda, sessionName, prindaExt);
    MakeSessionFileName(whichHier, sessionName, hierExt);
    ResetDerivedResults();
    SettingsHierarchy();
    cohe = 0;
    reseTypeOrd = reseTypeClus = reseTypeEv = reseTypeRnd = reseTypeERank = 1;
    reseCstOpt = 0;
    PFTs_ScalingUp();
    std::copy(nGrPoly, nGrPoly + nch, rcst);
    Release(nestingMembershipOTUs);
    Release(partition_OTUs_Phyl);
    dirtyOrig = 1;
    WriteTrack(1);
    ClearLine();
    std::fprintf(out, "\n\nResults on file %s%s\n", volumeName, whichPrinda);
    Wait();
}

void SettingsHierarchy() {
    optWeightedNullModel = false;
    Menu("FUNCTIONAL ANALYSIS SETTINGS");
    part = 1;
    if (IsRanking() && opt_struct == kRankTE) {
        traitBasedOpt = 2;
        poolCSTopt = 0;
    } else {
        if (!IsRanking())
            std::fputs("\nTrait-based scaling-up from population to communities:", out);
        traitBasedOpt = 1;
        poolCSTopt = 2;
        clusMethPoolCSTs = 0;
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
    SettingsPhylogeny();
    SettingsOrder();
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
