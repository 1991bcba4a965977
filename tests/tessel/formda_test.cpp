#include "TSLIFFM2/formda.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

// A data set with everything in it, as the writer lays it out. 2 traits, 2 communities, 3 OTUs.
const std::string kHead =
    "Plots of 1998 \n2 \nheight\tgrowth\t\n 3\t 2\t\n0\t0\t\n 3\t 2\t\n2 \nplotA\tplotB\t\n3 \n"
    "0\t0\t\n0\t0\t0\t0\t0\t0\t0\t\n\n";
const std::string kTables =
    "1.25\t1\t\n-999\t2\t\n0.333333\t1\t\n\n"
    "10\t0\t\n2.5\t1e+06\t\n0\t7\t\n\n";
const std::string kEnv = "2 \n97Sep08 \n5 \n3\t1\t\npH\tgrazed\t\nE.txt \n  6.25\t  -999\t\n";
const std::string kEnvEnd = "     1\t     0\t\n";
const std::string kSpecies = "2 \nspp.txt \nPoa annua L.\nStipa\n11\n01\n10\n10\n01\nSMW 4\n";
const std::string kPhylogeny = "1\n3\n0\t2\t4\t\n2\t0\t0.5\t\n4\t0.5\t0\t\n";
const std::string kGroups = "1\n1\t2\t\n";
const std::string kStamp = "Wed Jul  7 10:00:00 2017\n";

std::string Whole(const std::string& versionWord = "25Jun2016 \n") {
    return kHead + versionWord + kTables + kEnv + kEnvEnd + kSpecies + kPhylogeny + kGroups +
           kStamp;
}

/// A small data set without E, species, phylogeny and groups: what stands after W is given.
std::string Small(const std::string& afterW) {
    return kHead + "25Jun2016 \n" + kTables + afterW;
}

class FormdaTest : public testing::Test {
  protected:
    FormdaTest() { std::strcpy(whichFormda, "dataFormda.txt"); }

    /// Writes the text to the data file, if one is given, and reads it.
    ConsoleRun Open(const std::string& text) {
        folder_.Write(whichFormda, text);
        return WithConsole("", [](FILE*) { OpenFormda(1); });
    }

    std::string WrittenBack() {
        const ConsoleRun run = WithConsole(
            "", [](FILE*) { WriteFormda(tcst, "outFormda.txt", dataName, csm_Float, cadat); });
        EXPECT_EQ(run.raised, 0);
        return folder_.Read("outFormda.txt");
    }

    TempFolder folder_;
    WorkingIn working_{folder_.path()};
};

std::string WithoutStamp(const std::string& text) {
    return text.substr(0, text.find_last_of('\n', text.size() - 2) + 1);
}

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    const std::size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), by);
}

TEST_F(FormdaTest, LoadsEveryBlock) {
    dirtyOrig = 1;
    ASSERT_EQ(Open(Whole()).raised, 0);
    EXPECT_EQ(dirtyOrig, 0);
    EXPECT_STREQ(dataName, "Plots of 1998 ");
    EXPECT_EQ(std::vector<int>({nch, ncsm, tcst, nSpp, nenv, SMWSize}),
              std::vector<int>({2, 2, 3, 2, 2, 4}));
    EXPECT_STREQ(chLabel[1], "growth");
    EXPECT_STREQ(reLabel[0], "plotA");
    EXPECT_EQ(chtype[1], 2);
    EXPECT_EQ(onsta[0], 3);
    EXPECT_EQ(csm_Float[1][0], -999.0F);
    EXPECT_EQ(csm_Float[2][0], 0.333333F);
    EXPECT_EQ(cadat[1][1], 1e6F);
    EXPECT_EQ(env[0][0], 6.25F);
    EXPECT_EQ(env[1][0], -999.0F);
    EXPECT_EQ(env[0][1], 1.0F);
    EXPECT_STREQ(envName, "E.txt");
    EXPECT_EQ(std::vector<int>({optEnvVarType, temEnvQuant, temEnvQual, temEnvBin}),
              std::vector<int>({5, 1, 0, 1}));
    EXPECT_STREQ(spp[0], "Poa annua L.");
    EXPECT_EQ(sppRelMap[1][0], '0');
    EXPECT_EQ(cstSppMap[2][1], '1');
    EXPECT_EQ(phylogenyRese[1][2], 0.5);
    EXPECT_EQ(phylogenyOTUs, 3);
    EXPECT_EQ(traitGroups[1], 2);
    EXPECT_EQ(groupCst, groupCstP[0]);
}

TEST_F(FormdaTest, WritesBackWhatItRead) {
    ASSERT_EQ(Open(Whole()).raised, 0);
    ncst[0] = 3;         // neither the numbers of OTUs
    chrange[0] = 1.25F;  // nor the ranges go to the file
    // Title and name of the species file are lines: each keeps the blank that ends it.
    const std::string grown = Replaced(Replaced(WithoutStamp(Whole()), "1998 \n", "1998  \n"),
                                       "spp.txt \n", "spp.txt  \n");
    EXPECT_EQ(WithoutStamp(WrittenBack()), grown);
    ASSERT_EQ(Open(Whole()).raised, 0);  // over the data set in memory
    EXPECT_EQ(ncst[0], 0);

    ASSERT_EQ(Open(Small("0 \n0 \nSMW 1\n0\n0\n" + kStamp)).raised, 0);
    EXPECT_EQ(std::vector<int>({temEnvQuant, temEnvQual, temEnvBin}), std::vector<int>(3, 0));
    EXPECT_NE(WrittenBack().find("0\t7\t\n\n0 \n0 \nSMW 1\n0\n0\n"), std::string::npos);
}

TEST_F(FormdaTest, NameOfMatrixEMayHoldSeveralWords) {
    const std::string joined = Replaced(Whole(), "E.txt \n", "E.txt other E.txt  \n");
    ASSERT_EQ(Open(joined).raised, 0);
    EXPECT_STREQ(envName, "E.txt other E.txt");
    EXPECT_EQ(env[0][0], 6.25F);
    const std::string endless = Replaced(Whole(), "E.txt \n", std::string(700, 'x') + "\n");
    ASSERT_EQ(Open(endless).raised, 0);
    EXPECT_EQ(std::strlen(envName), sizeof(envName) - 1);
    EXPECT_EQ(env[0][0], 6.25F);
}

TEST_F(FormdaTest, FormOf2008HasNoTraitGroups) {
    hasTraitGroups = 1;
    ASSERT_EQ(Open(Whole("18Jan2008 \n")).raised, 0);
    EXPECT_EQ(hasTraitGroups, 0);
    EXPECT_EQ(phylogenyRese[0][2], 4.0);
    const std::string upgraded = WrittenBack();
    EXPECT_NE(upgraded.find("\n25Jun2016 \n"), std::string::npos);
    EXPECT_NE(upgraded.find("4\t0.5\t0\t\n0\n"), std::string::npos);
}

TEST_F(FormdaTest, OldestFormInterleavesStatesAndQuantities) {
    const std::string tail = "1 \npH\nE.txt\n6.25 5\n0 \n" + kStamp;
    ASSERT_EQ(Open(kHead + "0112 10 0\n03.5 2.5 1\n7 0 4\n" + tail).raised, 0);
    const float B[3][2] = {{1, 12}, {3, 0.5}, {7, 0}};  // the third word falls short
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 2; j++) EXPECT_EQ(csm_Float[i][j], B[i][j]) << i << j;
    EXPECT_EQ(cadat[1][0], 2.5F);
    EXPECT_EQ(cadat[2][1], 4.0F);
    // No types with matrix E, no marker before the time stamp.
    EXPECT_STREQ(envLabel[0], "pH");
    EXPECT_EQ(std::vector<int>({optEnvVarType, envVarType[0], temEnvQuant}),
              std::vector<int>({2, 3, 1}));
    EXPECT_EQ(env[1][0], 5.0F);
    EXPECT_EQ(std::vector<int>({SMWSize, hasPhylogeny, hasTraitGroups}),
              std::vector<int>({1, 0, 0}));
}

TEST_F(FormdaTest, PhylogenyOfOtherTypes) {
    ASSERT_EQ(Open(Small("0\n0\nSMW 1\n1\n0\n0\n" + kStamp)).raised, 0);
    ASSERT_NE(phylogenyRese, nullptr);
    EXPECT_EQ(phylogenyRese[2][2], 0.0);
    EXPECT_NE(WrittenBack().find("SMW 1\n1\n0\n0\n"), std::string::npos);

    const std::string clades = "2\n2\n3\t1\t\n0.5\t1\t\n0\t1\t\n2\t0\t\n";
    ASSERT_EQ(Open(Small("0\n0\nSMW 1\n1\n" + clades + "0\n" + kStamp)).raised, 0);
    EXPECT_EQ(phylogenyVarType[0], 3);
    EXPECT_EQ(phylogenyData[2][0], 2.0F);
    EXPECT_NE(WrittenBack().find("\n1\n" + clades + "0\n"), std::string::npos);
}

TEST_F(FormdaTest, PhylogenyLeftFromASmallerDataSetIsFilledWithZeros) {
    ASSERT_EQ(Open(Whole()).raised, 0);
    const std::string larger = Replaced(Replaced(Small("0\n0\nSMW 1\n0\n0\n"), "3 \n0", "4 \n0"),
                                        "\n10\t0", "\n1\t2\t\n10\t0\t\n9\t9\t\n");
    ASSERT_EQ(Open(Replaced(larger, "\n\n1\t2", "\n1\t2")).raised, 0);
    ASSERT_EQ(tcst, 4);
    ASSERT_EQ(phylogenyOTUs, 3);
    hasPhylogeny = 1;
    EXPECT_NE(
        WrittenBack().find("1\n3\n0\t2\t4\t0\t\n2\t0\t0.5\t0\t\n4\t0.5\t0\t0\t\n0\t0\t0\t0\t"),
        std::string::npos);
}

TEST_F(FormdaTest, LongWordsAreCutAndStrayMapCharactersSkipped) {
    std::string text = Replaced(Whole(), "height\t", "heightOfTheFirstLeaf\t");
    text = Replaced(text, "grazed", "grazedByCattle");
    text = Replaced(text, "Poa annua L.", "Poa" + std::string(67, 'a'));
    const ConsoleRun run = Open(Replaced(text, "\n11\n01\n", "\n1x1\n01\n"));
    ASSERT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "\nIncorrect input = x. Reenter.\nAccepted input: 0 1\n");
    EXPECT_STREQ(chLabel[0], "heightOfTh");
    EXPECT_STREQ(envLabel[1], "grazedByCa");
    EXPECT_EQ(std::strlen(spp[0]), 70U);
    EXPECT_STREQ(spp[1], "Stipa");
    EXPECT_EQ(sppRelMap[0][1], '1');
}

TEST_F(FormdaTest, NumbersThatAreNoneAreRead) {
    ASSERT_EQ(Open(Replaced(Replaced(Whole(), "1.25", "nan"), "2.5", "-inf")).raised, 0);
    EXPECT_TRUE(std::isnan(csm_Float[0][0]));
    EXPECT_TRUE(std::isinf(cadat[1][0]));
}

// A data file that was cut short ended in a release of tables by the counts of another file.
TEST_F(FormdaTest, EveryCutEndsAtTheEndOfTheFileOrLoads) {
    const std::string text = Whole();
    const std::string marks = kStamp.substr(0, 3);
    for (std::size_t cut = 0; cut < text.size(); cut++) {
        if (text[cut] != '\n' && text[cut] != '\t') continue;
        const ConsoleRun run = Open(text.substr(0, cut));
        const bool isComplete = cut > text.find(kGroups + marks) + 3;
        EXPECT_EQ(run.raised, isComplete ? 0 : 2) << "cut at " << cut;
        EXPECT_EQ(run.err, isComplete ? "" : "\nfile dataFormda.txt ");
        if (cut % 3 == 0) FreeGlobals2();
        if (cut % 2 == 0) {
            EXPECT_EQ(Open(Small("0\n0\nSMW 1\n0\n0\n")).raised, 0);
        }
    }
}

TEST_F(FormdaTest, CountsThatLieEndAsWordsThatDoNotConvert) {
    const std::pair<const char*, const char*> lies[] = {
        {"1998 \n2 ", "1998 \n-2 "},
        {"1998 \n2 ", "1998 \n0 "},
        {"1998 \n2 ", "1998 \n2147483647 "},
        {"1998 \n2 ", "1998 \n4294967298 "},
        {"2 \nplotA", "-1 \nplotA"},
        {"2 \nplotA", "400000000 \nplotA"},
        {"3 \n0", "0 \n0"},
        {"3 \n0", "90000000 \n0"},
        {"3 \n0", "200 \n0"},
        {"2 \n97Sep08", "-2 \n97Sep08"},
        {"2 \n97Sep08", "999999999 \n97Sep08"},
        {"2 \nspp.txt", "-2 \nspp.txt"},
        {"2 \nspp.txt", "77777777 \nspp.txt"},
        {"1\n3\n0\t", "1\n2\n99999999\t"},
        {"1\n3\n0\t", "1\n2\n-1\t"},
        {"growth\t\n 3", "growth\t\n x"},
    };
    for (const auto& [truth, lie] : lies) {
        const ConsoleRun run = Open(Replaced(Whole(), truth, lie));
        EXPECT_EQ(run.raised, 2) << lie;
        EXPECT_EQ(run.err, "\nfile dataFormda.txt ") << lie;
        EXPECT_EQ(run.out, "\a") << lie;
    }
}

// Twenty thousand OTUs and a phylogeny without a matrix asked for gigabytes that no line backs.
TEST_F(FormdaTest, MatrixOfZerosIsBounded) {
    std::string text = "T\n1\na\n3\n0\n1\n1\np\n20000\n0\n0 0 0 0 0 0 0\n25Jun2016\n";
    for (int i = 0; i < 40000; i++) text += "1\n";
    EXPECT_EQ(Open(text + "0\n0\nSMW 1\n0\n0\n").raised, 0);
    EXPECT_EQ(Open(text + "0\n0\nSMW 1\n1\n0\n0\n").raised, 2);
}

TEST_F(FormdaTest, FilesThatCannotBeOpenedOrWritten) {
    std::strcpy(whichFormda, "absent.txt");
    const ConsoleRun run = WithConsole("", [](FILE*) { OpenFormda(1); });
    EXPECT_EQ(run.raised, 4);
    EXPECT_EQ(run.err, "\ncan't open absent.txt \n");
    std::strcpy(whichFormda, "dataFormda.txt");
    ASSERT_EQ(Open(Whole()).raised, 0);
    for (const char* name : {"/dev/full", "absent/dataFormda.txt"}) {
        const ConsoleRun failed =
            WithConsole("", [name](FILE*) { WriteFormda(tcst, name, dataName, csm_Float, cadat); });
        EXPECT_EQ(failed.raised, 3) << name;
    }
}

}  // namespace
