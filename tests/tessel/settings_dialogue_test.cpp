#include "TSLIF/settings_dialogue.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/dim.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

constexpr char kMeasure[] =
    "\nMeasuring congruence using\n  1 matrix correlation (Mantel)\n"
    "  2 Procrustes (traceW, cannot be used when matrix E contains nominal variables)\n"
    "  3 RV coefficient (Escoufier 1973, cannot be used when matrix E contains nominal variables)\n"
    "Type option no.: ";
constexpr char kNestingSource[] =
    "Read nesting group memberships from file (f) or from the keyboard (k)? f/k ";

constexpr const char* kTraits[] = {"t1", "t2", "t3", "t4", "t5"};

/// Answers of an unrestricted analysis behind the partition: crisp, 10 iterations, seed 7,
/// Procrustes, all traits, W as it is, no details.
constexpr char kRest[] = "0\n10\n0\n2\n7\n2\n1\nn\nn\n";

int Count(const std::string& text, const std::string& part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        found++;
    return found;
}

std::vector<int> Types() {
    return {partition_OTUs, partition_OTUs + tcst};
}

std::vector<float> Weights() {
    return {weight, weight + nch};
}

/// Four OTUs of type 5 with five traits, in a folder of its own.
class SettingsDialogue : public testing::Test {
  protected:
    void SetUp() override {
        ReleaseAll();
        InitGlobals();
        std::strcpy(whichPrinda, "sPrinda.txt");
        std::strcpy(sessionShortName, "s");
        optmain = 'H';
        opt_struct = 0;
        tcst = 4;
        nch = 5;
        nSpp = 0;
        hasTraitGroups = hasPhylogeny = includePhylogeny = temEnvQual = 0;
        rese_opt = 0;
        partition_OTUs = dim1Dint(tcst);
        std::fill(partition_OTUs, partition_OTUs + tcst, 5);
        weight = dim1Dfloat(nch);
        nchor = dim1Dint(nch);
        nGrPoly = dim1Dint(nch);
        traitGroups = dim1Dint(nch);
        chLabel = dim2Dchar(nch, kLabelLength + 1);
        for (int k = 0; k < nch; k++) std::strcpy(chLabel[k], kTraits[k]);
    }

    void TearDown() override { ReleaseAll(); }

    /// An earlier dialogue of the process may have ended in the middle.
    static void ReleaseAll() {
        FreeGlobals2();
        free1D(nestingMembershipOTUs);
        nestingMembershipOTUs = nullptr;
        free1D(partition_OTUs_Phyl);
        partition_OTUs_Phyl = nullptr;
        tcst = nch = nSpp = 0;
        hasTraitGroups = hasPhylogeny = includePhylogeny = temEnvQual = 0;
        sessionShortName[0] = '\0';
    }

    ConsoleRun Answer(const std::string& answers) {
        return WithConsole(answers, [](FILE* stream) {
            in = stream;
            out = stdout;
            SettingsHierarchy();
        });
    }

    TempFolder folder_;
    WorkingIn here_{folder_.path()};
};

}  // namespace

TEST_F(SettingsDialogue, AsksEverySettingInOrder) {
    folder_.Write("sPrinda.txt", "an earlier report\n");
    const ConsoleRun run =
        Answer("k\n3.9 1 1 2\n1\n999\n1\nk\n4 4 8 8\n2\n4294967295\n1\n8\n2\n1 0 1 1 0\ny\ny\na\n");
    EXPECT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(
        run.out,
        "\n\nFUNCTIONAL ANALYSIS SETTINGS                                         s\n" +
            std::string(lineL) +
            "\n\nTrait-based scaling-up from population to communities:"
            "\nThe partition of OTUs into types should be specified.\n"
            "Read group memberships from file (f) or from the keyboard (k)? f/k "
            "Enter the group of each OTU:\nOTU:    \t1\t2\t3\t4\nGroups: "
            "\nFuzzy set adjustment:\n   0  no adjustment (crisp belonging of OTUs to types)\n"
            "   1  fuzzy types (fuzzy belonging of OTUs to types)\nType option no.: "
            "Enter number of iterations in permutation tests of final correlations based on null "
            "models: OTU permutation restrictions: \n\t(0) none\n"
            "\t(1) permutations restricted within groups of OTUs to be specified\n"
            "\t\tEnter option: "
            "Specify the nesting criterion (for each OTU, enter the group to which it belongs):\n" +
            kNestingSource +
            "Enter the nesting group of each OTU:\nOTU:            \t1\t2\t3\t4\nNesting groups: "
            "\nInitialization of the random number generator: \n"
            "   1  automatic (taken from the clock)\n   2  specified by the user\n"
            "Type option no.: \nEnter seed (integer in the 0 to 4294967295 interval):\n" +
            kMeasure +
            "\nSpecify resemblance function between communities:\nResemblance function option:\n"
            "\t6   Euclidean distance\n\t10  chord distance\nType option no.: "
            "\nTraits in matrix B to be used in the analysis:\n   1  all traits \n"
            "   2  select traits \nType option no.: Select traits:\n"
            "(enter 0 for exclusion or 1 for inclusion)\nt1 t2 t3 t4 t5 \n"
            "\nStandardize community data matrix (matrix W) to unit total in each community? y/n "
            "\nInclude detailed results in the printout y/n "
            "\nThis session has a previous sPrinda.txt file.\nOptions:\n"
            "   w  erase file and create a new one\n   a  append results to same file\n"
            "Type option: ");
    EXPECT_EQ(Types(), (std::vector<int>{3, 1, 1, 2}));
    EXPECT_EQ(std::vector<int>(nGrPoly, nGrPoly + nch), (std::vector<int>{3, 2, 2, 2, 2}));
    EXPECT_EQ(std::vector<int>(nchor, nchor + nch), (std::vector<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(std::vector<int>(nestingMembershipOTUs, nestingMembershipOTUs + tcst),
              (std::vector<int>{4, 4, 8, 8}));
    EXPECT_EQ(Weights(), (std::vector<float>{1, 0, 1, 1, 0}));
    EXPECT_EQ(fuzzy, kFuzzyTypes);
    EXPECT_EQ(niter, 999);
    EXPECT_TRUE(optRndTests);
    EXPECT_EQ(rseed, 4294967295UL);
    EXPECT_EQ(rese_opt, 8);
    EXPECT_EQ(whichObj, 114);
    EXPECT_TRUE(optUnitTotalAdjust2 && printDetail);
    EXPECT_STREQ(prindaMode, "a");
    EXPECT_EQ(includePhylogeny, 0);
    EXPECT_EQ(partition_OTUs_Phyl, nullptr);
}

TEST_F(SettingsDialogue, FileOfTypesThatDoesNotOpenIsAskedForAgain) {
    folder_.Write("types.txt", "groups: 1 2\r\n2 1");
    const ConsoleRun run = Answer(std::string("f\nabsent.txt\nf\ntypes.txt\n") + kRest);
    EXPECT_EQ(run.err, "\ncan't open absent.txt \n");
    EXPECT_EQ(Count(run.out, "Enter name of file containing group memberships: "), 2);
    EXPECT_EQ(Types(), (std::vector<int>{1, 2, 2, 1}));
    EXPECT_EQ(nGrPoly[0], 2);
}

TEST_F(SettingsDialogue, ShortFileOfTypesKeepsLabelsAndStopsTheNestingQuestion) {
    folder_.Write("types.txt", "1 2");
    const ConsoleRun plain = Answer(std::string("f\ntypes.txt\n") + kRest);
    EXPECT_FALSE(plain.rests);
    EXPECT_EQ(plain.err, "\nEnd of file types.txt\n");
    EXPECT_EQ(Types(), (std::vector<int>{1, 2, 5, 5}));
    EXPECT_EQ(nGrPoly[0], 3);
    const ConsoleRun nested = Answer("f\ntypes.txt\n0\n10\n1\nk\n1 1 1 1\n");
    EXPECT_TRUE(nested.rests);
    EXPECT_EQ(Count(nested.out, "Enter the nesting group"), 0);
}

TEST_F(SettingsDialogue, NestingFile) {
    folder_.Write("short.txt", "3.7\nx 9");
    const std::string restricted = "k\n1 1 2 2\n0\n10\n1\nf\n";
    const ConsoleRun read = Answer(restricted + "short.txt\n2\n7\n2\n1\nn\nn\n");
    EXPECT_FALSE(read.rests);
    EXPECT_EQ(read.err, "\nEnd of file short.txt\n");
    EXPECT_EQ(std::vector<int>(nestingMembershipOTUs, nestingMembershipOTUs + tcst),
              (std::vector<int>{3, 9, 0, 0}));
    const ConsoleRun absent = Answer(restricted + "absent.txt\nk\n1 1 1 1\n");
    EXPECT_TRUE(absent.rests);
    EXPECT_EQ(absent.err, "\ncan't open absent.txt \n");
    EXPECT_EQ(Count(absent.out, kNestingSource), 1);
}

TEST_F(SettingsDialogue, NominalEnvironmentAllowsMantelOnly) {
    temEnvQual = 1;
    const ConsoleRun run = Answer("k\n1 1 2 2\n0\n10\n0\n2\n7\n2\n3\n1\n10\n1\nn\nn\n");
    EXPECT_EQ(Count(run.out, kMeasure), 3);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(opt_ro, kMantel);
    EXPECT_EQ(rese_opt, 10);
}

TEST_F(SettingsDialogue, OtherMeasuresLeaveTheResemblanceAlone) {
    rese_opt = 6;
    const ConsoleRun run = Answer(std::string("k\n1 1 2 2\n") + kRest);
    EXPECT_EQ(opt_ro, kProcrustes);
    EXPECT_EQ(rese_opt, 6);
    EXPECT_EQ(Count(run.out, "Resemblance function option"), 0);
    EXPECT_STREQ(prindaMode, "w");
}

TEST_F(SettingsDialogue, WeightsByTraitGroups) {
    hasTraitGroups = 1;
    const int groups[] = {4, 4, 4, 9, 4};
    std::copy(groups, groups + nch, traitGroups);
    Answer("k\n1 1 2 2\n0\n10\n0\n2\n7\n2\n2\n1 1 0 1 1\ny\nn\nn\n");
    EXPECT_EQ(Weights(), (std::vector<float>{1.0F / 3, 1.0F / 3, 0, 1, 1.0F / 3}));
    Answer("k\n1 1 2 2\n0\n10\n0\n2\n7\n2\n2\n1 1 1 0 0\nn\nn\nn\n");
    EXPECT_EQ(Weights(), (std::vector<float>{1, 1, 1, 0, 0}));
}

TEST_F(SettingsDialogue, SpeciesAsTypes) {
    nSpp = 3;
    cstSppMap = dim2Dchar(tcst, nSpp);
    const char* const map[] = {"101", "000", "010", "001"};
    for (int t = 0; t < tcst; t++) std::copy(map[t], map[t] + nSpp, cstSppMap[t]);
    const ConsoleRun taken = Answer(std::string("y\n") + kRest);
    EXPECT_TRUE(OTUsTypesAreSpecies);
    EXPECT_EQ(Types(), (std::vector<int>{3, 5, 2, 3}));
    EXPECT_EQ(nGrPoly[0], 3);
    EXPECT_EQ(Count(taken.out, "Read group memberships"), 0);
    Answer(std::string("n\nk\n1 1 2 2\n") + kRest);
    EXPECT_FALSE(OTUsTypesAreSpecies);
    EXPECT_EQ(Types(), (std::vector<int>{1, 1, 2, 2}));
}

TEST_F(SettingsDialogue, TaxaOfThePhylogenyAreTheTypes) {
    hasPhylogeny = 1;
    for (int analysis = 0; analysis < 2; analysis++) Answer(std::string("k\n6 6 2 4\n") + kRest);
    EXPECT_EQ(includePhylogeny, 1);
    ASSERT_NE(partition_OTUs_Phyl, nullptr);
    EXPECT_EQ(std::vector<int>(partition_OTUs_Phyl, partition_OTUs_Phyl + tcst),
              (std::vector<int>{6, 6, 2, 4}));
    EXPECT_EQ(nTaxa, 3);
    EXPECT_EQ(fuzzyPhyl, 1);
}

TEST_F(SettingsDialogue, RankingAsksForNoTestsAndNoReport) {
    optmain = 'K';
    opt_struct = 9;
    const ConsoleRun divergence = Answer("k\n1 1 2 2\n1\n1\n6\n1\ny\n");
    EXPECT_EQ(divergence.raised, 0);
    EXPECT_FALSE(optRndTests);
    EXPECT_TRUE(optUnitTotalAdjust2);
    EXPECT_EQ(Count(divergence.out, "Trait-based scaling-up"), 0);
    EXPECT_EQ(Count(divergence.out, "iterations"), 0);
    EXPECT_EQ(Count(divergence.out, "printout"), 0);
    opt_struct = 10;
    const ConsoleRun convergence = Answer("1\n1\n");
    EXPECT_EQ(convergence.raised, 0);
    EXPECT_EQ(traitBasedOpt, 2);
    EXPECT_EQ(fuzzy, kFuzzyTypes);
    EXPECT_FALSE(optUnitTotalAdjust2);
    EXPECT_EQ(Count(convergence.out, "?"), 0);
}

// The answers run out: letters end with the error of an ended stream, numbers never come.
TEST_F(SettingsDialogue, EndOfTheAnswers) {
    EXPECT_EQ(Answer("").raised, 2);
    const ConsoleRun groups = Answer("k\n1 1");
    EXPECT_TRUE(groups.rests);
    EXPECT_EQ(Count(groups.err, "\nEnd of file teclado\n"), 1);
    EXPECT_EQ(Answer("f\n").raised, 2);
    EXPECT_TRUE(Answer("k\n1 1 2 2\n0\n10\n1\nf\n").rests);
}
