#include "TSLIFFM2/formda.h"

#include <utility>

#include "tessel/in_process.h"

namespace {

// A data set with everything in it, as the writer lays it out. 2 traits, 2 communities, 3 OTUs.
const std::string kHead =
    "Plots of 1998 \n2 \nheight\tgrowth\t\n 3\t 2\t\n0\t0\t\n 3\t 2\t\n2 \nplotA\tplotB\t\n3 \n"
    "0\t0\t\n0\t0\t0\t0\t0\t0\t0\t\n\n";
const std::string kTables =
    "1.25\t1\t\n-999\t2\t\n0.333333\t1\t\n\n"
    "10\t0\t\n2.5\t1e+06\t\n0\t7\t\n\n";
const std::string kEnv =
    "2 \n97Sep08 \n5 \n3\t1\t\npH\tgrazed\t\nE.txt \n  6.25\t  -999\t\n     1\t     0\t\n";
const std::string kSpecies = "2 \nspp.txt \nPoa annua L.\nStipa\n11\n01\n10\n10\n01\nSMW 4\n";
const std::string kPhylogeny = "1\n3\n0\t2\t4\t\n2\t0\t0.5\t\n4\t0.5\t0\t\n";
const std::string kStamp = "Wed Jul  7 10:00:00 2017\n";
const std::string kWhole =
    kHead + "25Jun2016 \n" + kTables + kEnv + kSpecies + kPhylogeny + "1\n1\t2\t\n" + kStamp;

/// A small data set without E, species, phylogeny and groups: what stands after W is given.
std::string Small(const std::string& afterW) {
    return kHead + "25Jun2016 \n" + kTables + afterW;
}

struct FormdaTest : InProcess {
    std::string WrittenBack() {
        const ConsoleRun run = WithConsole(
            "", [](FILE*) { WriteFormda(tcst, "outFormda.txt", dataName, csm_Float, cadat); });
        EXPECT_EQ(run.raised, 0);
        return folder_.Read("outFormda.txt");
    }
};

std::string WithoutStamp(const std::string& text) {
    return text.substr(0, text.find_last_of('\n', text.size() - 2) + 1);
}

TEST_F(FormdaTest, WritesBackWhatItRead) {
    dirtyOrig = 1;
    ASSERT_EQ(Open(kWhole).raised, 0);
    EXPECT_EQ(Ints({dirtyOrig, SMWSize, temEnvQuant, temEnvQual, temEnvBin, phylogenyOTUs}),
              Ints({0, 4, 1, 0, 1, 3}));
    EXPECT_EQ(Texts({dataName, chLabel[1], reLabel[0], envLabel[1], envName, spp[0]}),
              Texts({"Plots of 1998 ", "growth", "plotA", "grazed", "E.txt", "Poa annua L."}));
    EXPECT_EQ(Cells(env, 2, 2), (std::vector<float>{6.25F, 1, -999, 0}));
    EXPECT_EQ(groupCst, groupCstP[0]);
    ncst[0] = 3;         // neither the numbers of OTUs
    chrange[0] = 1.25F;  // nor the ranges go to the file
    // Title and name of the species file are lines: each keeps the blank that ends it.
    const std::string grown = Replaced(Replaced(WithoutStamp(kWhole), "1998 \n", "1998  \n"),
                                       "spp.txt \n", "spp.txt  \n");
    EXPECT_EQ(WithoutStamp(WrittenBack()), grown);
    ASSERT_EQ(Open(kWhole).raised, 0);  // over the data set in memory
    EXPECT_EQ(ncst[0], 0);
    ASSERT_EQ(Open(Small("0 \n0 \nSMW 1\n0\n0\n" + kStamp)).raised, 0);
    EXPECT_EQ(Ints({temEnvQuant, temEnvQual, temEnvBin}), Ints(3, 0));
    EXPECT_TRUE(Contains(WrittenBack(), "0\t7\t\n\n0 \n0 \nSMW 1\n0\n0\n"));
}

TEST_F(FormdaTest, NumbersThatAreNoneAreWrittenWithoutSign) {
    for (const std::string& F : {kPhylogeny, std::string("1\n2\n1\n3\t\n0.5\n1\n2\n")}) {
        std::string text = Replaced(kWhole, kPhylogeny, F);
        for (const char* number : {"1.25", "10", "6.25", "0.5"})
            text = Replaced(text, number, "-nan");
        ASSERT_EQ(Open(text).raised, 0);
        text = WrittenBack();
        EXPECT_EQ(std::pair(Count(text, "nan"), Count(text, "-nan")), std::pair(4, 0));
    }
}

TEST_F(FormdaTest, FormOf2008HasNoTraitGroups) {
    hasTraitGroups = 1;
    ASSERT_EQ(Open(Replaced(kWhole, "25Jun2016", "18Jan2008")).raised, 0);
    EXPECT_EQ(hasTraitGroups, 0);
    EXPECT_EQ(phylogenyRese[0][2], 4.0);
    const std::string upgraded = WrittenBack();
    EXPECT_TRUE(Contains(upgraded, "\n25Jun2016 \n"));
    EXPECT_TRUE(Contains(upgraded, "4\t0.5\t0\t\n0\n"));
}

TEST_F(FormdaTest, OldestFormInterleavesStatesAndQuantities) {
    const std::string tail = "1 \npH\nE.txt\n6.25 5\n0 \n" + kStamp;
    ASSERT_EQ(Open(kHead + "0112 10 0\n03.5 2.5 1\n7 0 4\n" + tail).raised, 0);
    // The third word falls short.
    EXPECT_EQ(Cells(csm_Float, 3, 2), (std::vector<float>{1, 12, 3, 0.5F, 7, 0}));
    EXPECT_EQ(Cells(cadat, 3, 2), (std::vector<float>{10, 0, 2.5F, 1, 0, 4}));
    // No types with matrix E, no marker before the time stamp.
    EXPECT_STREQ(envLabel[0], "pH");
    EXPECT_EQ(Ints({optEnvVarType, envVarType[0], temEnvQuant, SMWSize, hasPhylogeny}),
              Ints({2, 3, 1, 1, 0}));
    EXPECT_EQ(env[1][0], 5.0F);
}

TEST_F(FormdaTest, LongWordsAreCutAndStrayMapCharactersSkipped) {
    std::string text = kWhole;
    for (const auto& [word, longWord] : {std::pair("height\t", "heightOfTheFirstLeaf\t"),
                                         {"plotA\t", "plotNumberOne\t"},
                                         {"grazed", "grazedByCattle"},
                                         {"\n11\n01\n", "\n1x1\n01\n"}})
        text = Replaced(text, word, longWord);
    const ConsoleRun run = Open(Replaced(text, "Poa annua L.", "Poa" + std::string(67, 'a')));
    ASSERT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "\nIncorrect input = x. Reenter.\nAccepted input: 0 1\n");
    EXPECT_EQ(
        Texts({chLabel[0], reLabel[0], envLabel[1], spp[0], spp[1]}),
        Texts({"heightOfTh", "plotNumber", "grazedByCa", "Poa" + std::string(67, 'a'), "Stipa"}));
    EXPECT_EQ(sppRelMap[0][1], '1');
    ASSERT_EQ(Open(Replaced(kWhole, "E.txt \n", "E.txt other E.txt  \n")).raised, 0);
    EXPECT_STREQ(envName, "E.txt other E.txt");
    ASSERT_EQ(Open(Replaced(kWhole, "E.txt \n", std::string(700, 'x') + "\n")).raised, 0);
    EXPECT_EQ(std::strlen(envName), sizeof(envName) - 1);
    EXPECT_EQ(env[0][0], 6.25F);
}

// A data file that was cut short ended in a release of tables by the counts of another file.
TEST_F(FormdaTest, EveryCutEndsAtTheEndOfTheFileOrLoads) {
    for (std::size_t cut = 0; cut < kWhole.size(); cut++) {
        if (kWhole[cut] != '\n' && kWhole[cut] != '\t') continue;
        const ConsoleRun run = Open(kWhole.substr(0, cut));
        const bool isComplete = cut > kWhole.find("1\n1\t2\t\nWed") + 3;
        EXPECT_EQ(run.raised, isComplete ? 0 : 2) << "cut at " << cut;
        EXPECT_EQ(run.err, isComplete ? "" : "\nfile dataFormda.txt ");
        if (cut % 3 == 0) FreeGlobals2();
        const int between = cut % 2 == 0 ? Open(Small("0\n0\nSMW 1\n0\n0\n")).raised : 0;
        EXPECT_EQ(between, 0);
    }
}

TEST_F(FormdaTest, CountsThatLieEndAsWordsThatDoNotConvert) {
    // Each count too small, at its least, or more than the file can hold.
    std::vector<std::pair<std::string, std::string>> lies = {{"3 \n0", "0 \n0"},
                                                             {"3 \n0", "200 \n0"},
                                                             {"1\n3\n0\t", "1\n2\n-1\t"},
                                                             {"1\n3\n0\t", "1\n2\n99999999\t"},
                                                             {"growth\t\n 3", "growth\t\n x"}};
    for (const std::string place : {"1998 \n2 ", "2 \nplotA", "2 \n97Sep08", "2 \nspp.txt"})
        for (const char* count : {"-2", "77777777", "4294967298"})
            lies.emplace_back(place, Replaced(place, "2", count));
    for (const auto& [truth, lie] : lies) {
        const ConsoleRun run = Open(Replaced(kWhole, truth, lie));
        EXPECT_EQ(run.raised, 2) << lie;
        EXPECT_EQ(run.err, "\nfile dataFormda.txt ") << lie;
        EXPECT_EQ(run.out, "\a") << lie;
    }
}

// Twenty thousand OTUs and a phylogeny without a matrix asked for gigabytes that no line backs.
TEST_F(FormdaTest, MatrixOfZerosIsBounded) {
    FormdaText many{Rows(20000, {1}), Rows(20000, {1})};
    EXPECT_EQ(Open(FormdaOf(many)).raised, 0);
    many.phylogeny = "1\n0\n";
    EXPECT_EQ(Open(FormdaOf(many)).raised, 2);
}

}  // namespace
