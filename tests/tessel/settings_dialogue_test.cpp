#include "TSLIF/settings_dialogue.h"

#include <algorithm>

#include "tessel/in_process.h"

namespace {

constexpr char kNestingSource[] =
    "Read nesting group memberships from file (f) or from the keyboard (k)? f/k ";

/// Answers of an unrestricted analysis behind the partition: crisp, 10 iterations, seed 7,
/// Procrustes, all traits, W as it is, no details.
const std::string kRest = "0\n10\n0\n2\n7\n2\n1\nn\nn\n";

Ints Types() {
    return Entries(partition_OTUs, tcst);
}

std::vector<float> Weights() {
    return Entries(weight, nch);
}

/// Four OTUs of type 5 with five traits.
struct SettingsDialogue : InProcess {
    SettingsDialogue() { Load(); }

    void Load(const std::string& species = "0\n") {
        FormdaText data{Rows(4, {1, 2, 3, 4, 5}), Rows(4, {1})};
        data.traitLabels = "t1 t2 t3 t4 t5";
        data.species = species;
        EXPECT_EQ(Open(FormdaOf(data)).raised, 0);
        InitGlobals();
        std::strcpy(whichPrinda, "sPrinda.txt");
        std::strcpy(sessionShortName, "s");
        optmain = 'H';
        opt_struct = rese_opt = 0;
        std::fill_n(partition_OTUs, tcst, 5);
    }

    ConsoleRun Answer(const std::string& answers) { return Typed(answers, SettingsHierarchy); }
};

}  // namespace

TEST_F(SettingsDialogue, AsksEverySettingInOrder) {
    folder_.Write("sPrinda.txt", "an earlier report\n");
    const ConsoleRun run =
        Answer("k\n3.9 1 1 2\n1\n999\n1\nk\n4 4 8 8\n2\n4294967295\n1\n8\n2\n1 0 1 1 0\ny\ny\na\n");
    EXPECT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.out + "\n", ReadWholeFile(TESSEL_TEST_DATA "/settings_dialogue.txt"));
    EXPECT_EQ(Types(), (Ints{3, 1, 1, 2}));
    EXPECT_EQ(Entries(nGrPoly, nch), (Ints{3, 2, 2, 2, 2}));
    EXPECT_EQ(Entries(nchor, nch), (Ints{1, 2, 3, 4, 5}));
    EXPECT_EQ(Entries(nestingMembershipOTUs, tcst), (Ints{4, 4, 8, 8}));
    EXPECT_EQ(Weights(), (std::vector<float>{1, 0, 1, 1, 0}));
    EXPECT_EQ(Ints({fuzzy, niter, rese_opt, whichObj, includePhylogeny}),
              Ints({kFuzzyTypes, 999, 8, 114, 0}));
    EXPECT_EQ(rseed, 4294967295UL);
    EXPECT_TRUE(optRndTests && optUnitTotalAdjust2 && printDetail);
    EXPECT_STREQ(prindaMode, "a");
    EXPECT_EQ(partition_OTUs_Phyl, nullptr);
}

TEST_F(SettingsDialogue, FilesOfTypes) {
    folder_.Write("types.txt", "groups: 1 2\r\n2 1");
    const ConsoleRun again = Answer("f\nabsent.txt\nf\ntypes.txt\n" + kRest);
    EXPECT_EQ(again.err, "\ncan't open absent.txt \n");
    EXPECT_EQ(Count(again.out, "Enter name of file containing group memberships: "), 2);
    EXPECT_EQ(Types(), (Ints{1, 2, 2, 1}));
    // A short one keeps the types before it and stops the nesting question.
    Load();
    folder_.Write("short.txt", "1 2");
    const ConsoleRun plain = Answer("f\nshort.txt\n" + kRest);
    EXPECT_FALSE(plain.rests);
    EXPECT_EQ(plain.err, "\nEnd of file short.txt\n");
    EXPECT_EQ(Types(), (Ints{1, 2, 5, 5}));
    EXPECT_EQ(nGrPoly[0], 3);
    const ConsoleRun nested = Answer("f\nshort.txt\n0\n10\n1\nk\n1 1 1 1\n");
    EXPECT_TRUE(nested.rests);
    EXPECT_EQ(Count(nested.out, "Enter the nesting group"), 0);
}

TEST_F(SettingsDialogue, NestingFile) {
    folder_.Write("short.txt", "3.7\nx 9");
    const std::string restricted = "k\n1 1 2 2\n0\n10\n1\nf\n";
    const ConsoleRun read = Answer(restricted + "short.txt\n2\n7\n2\n1\nn\nn\n");
    EXPECT_FALSE(read.rests);
    EXPECT_EQ(read.err, "\nEnd of file short.txt\n");
    EXPECT_EQ(Entries(nestingMembershipOTUs, tcst), (Ints{3, 9, 0, 0}));
    const ConsoleRun absent = Answer(restricted + "absent.txt\nk\n1 1 1 1\n");
    EXPECT_TRUE(absent.rests);
    EXPECT_EQ(absent.err, "\ncan't open absent.txt \n");
    EXPECT_EQ(Count(absent.out, kNestingSource), 1);
}

TEST_F(SettingsDialogue, MeasuresOfCongruence) {
    rese_opt = 6;
    const ConsoleRun procrustes = Answer("k\n1 1 2 2\n" + kRest);
    EXPECT_EQ(Ints({opt_ro, rese_opt}), Ints({kProcrustes, 6}));
    EXPECT_EQ(Count(procrustes.out, "Resemblance function option"), 0);
    EXPECT_STREQ(prindaMode, "w");
    temEnvQual = 1;  // a nominal variable in E leaves Mantel alone
    const ConsoleRun mantel = Answer("k\n1 1 2 2\n0\n10\n0\n2\n7\n2\n3\n1\n10\n1\nn\nn\n");
    EXPECT_EQ(Count(mantel.out, "\nMeasuring congruence using\n  1 matrix"), 3);
    EXPECT_EQ(mantel.err, "");
    EXPECT_EQ(Ints({opt_ro, rese_opt}), Ints({kMantel, 10}));
}

TEST_F(SettingsDialogue, WeightsByTraitGroups) {
    hasTraitGroups = 1;
    std::ranges::copy(Ints{4, 4, 4, 9, 4}, traitGroups);
    Answer("k\n1 1 2 2\n0\n10\n0\n2\n7\n2\n2\n1 1 0 1 1\ny\nn\nn\n");
    EXPECT_EQ(Weights(), (std::vector<float>{1.0F / 3, 1.0F / 3, 0, 1, 1.0F / 3}));
    Answer("k\n1 1 2 2\n0\n10\n0\n2\n7\n2\n2\n1 1 1 0 0\nn\nn\nn\n");
    EXPECT_EQ(Weights(), (std::vector<float>{1, 1, 1, 0, 0}));
}

TEST_F(SettingsDialogue, SpeciesAsTypes) {
    Load("3\nspp.txt\na\nb\nc\n1\n1\n1\n101\n000\n010\n001\n");
    const ConsoleRun taken = Answer("y\n" + kRest);
    EXPECT_TRUE(OTUsTypesAreSpecies);
    EXPECT_EQ(Types(), (Ints{3, 5, 2, 3}));
    EXPECT_EQ(nGrPoly[0], 3);
    EXPECT_EQ(Count(taken.out, "Read group memberships"), 0);
    Answer("n\nk\n1 1 2 2\n" + kRest);
    EXPECT_FALSE(OTUsTypesAreSpecies);
    EXPECT_EQ(Types(), (Ints{1, 1, 2, 2}));
}

TEST_F(SettingsDialogue, TaxaOfThePhylogenyAreTheTypes) {
    hasPhylogeny = 1;
    for (int analysis = 0; analysis < 2; analysis++) Answer("k\n6 6 2 4\n" + kRest);
    ASSERT_NE(partition_OTUs_Phyl, nullptr);
    EXPECT_EQ(Entries(partition_OTUs_Phyl, tcst), (Ints{6, 6, 2, 4}));
    EXPECT_EQ(Ints({includePhylogeny, nTaxa, fuzzyPhyl}), Ints({1, 3, 1}));
}
