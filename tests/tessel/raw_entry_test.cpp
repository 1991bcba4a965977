#include "TSLIFFMT/raw_entry.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "mxlibDim/failure.h"
#include "tessel/in_process.h"

namespace {

using Floats = std::vector<float>;

/// Numbers at the head of a file.
Floats NumbersIn(const std::string& file) {
    std::ifstream stream(file);
    return {std::istream_iterator<float>(stream), {}};
}

struct RawEntry : InProcess {
    RawEntry() {
        std::strcpy(whichFormda, "rawFormda.txt");
        folder_.Write("B", "1 2\n3 4\n5 6\n");
        folder_.Write("W", "1 0 2\n0 3 4\n");
    }

    /// The dialogue, which must leave no table behind, and the data set that it wrote.
    ConsoleRun Enter(const std::string& answers) {
        ConsoleRun run = Typed(answers, IFFormat);
        EXPECT_TRUE(chLabel == nullptr && csm_Float == nullptr && cadat == nullptr &&
                    reLabel == nullptr && env == nullptr && spp == nullptr && cstSppMap == nullptr);
        if (run.raised == 0 && !run.rests) OpenFormda(1);
        return run;
    }

    /// Three OTUs by two traits, two communities: the files beside B and W, the layouts of B and W
    /// and, before W, of F, and the answers on E.
    ConsoleRun EnterPlain(const std::string& B = "1 2", const std::string& W = "1 1") {
        return Enter("B\n0\nW\n0\n0\n3 2 " + B + " k 3 1 y 0 2 " + W);
    }
    ConsoleRun EnterPhylogeny(const std::string& F, const std::string& format) {
        folder_.Write("F", F);
        return Enter("B\n1 F\nW\n0\n0\n3 2 1 2 k 3 1 y 0 " + format + " 2 1 1");
    }
    ConsoleRun EnterEnvironment(const std::string& E, const std::string& answers) {
        folder_.Write("E", E);
        return Enter("B\n0\nW\n0\n1 E\n3 2 1 2 k 3 1 y 0 2 1 1 " + answers);
    }

    ConsoleRun EnterExample(const std::string& example, const std::string& answers) {
        std::filesystem::copy(std::string(TESSEL_EXAMPLES) + "/" + example, ".");
        const ConsoleRun run = Enter(answers);
        EXPECT_EQ(run.raised, 0);
        EXPECT_EQ(run.err, "");
        Floats W;
        for (int c = 0; c < ncsm; c++)
            for (int i = 0; i < tcst; i++) W.push_back(cadat[i][c]);
        EXPECT_EQ(NumbersIn("W.txt"), W);
        EXPECT_EQ(NumbersIn("B.txt"), Cells(csm_Float, tcst, nch));
        EXPECT_EQ(NumbersIn("E.txt"), Cells(env, ncsm, nenv));
        return run;
    }
};

TEST_F(RawEntry, AravoAsItsReadmeTells) {
    EnterExample("aravo", "B.txt\n0\nW.txt\n1\nspp.txt\n1\nE.txt\n82 8 2 2 k " + Repeated("3 ", 8) +
                              "y 0 75 2 1 2 4 2 2 n");
    EXPECT_EQ(Ints({tcst, nch, ncsm, nenv, nSpp, SMWSize, hasTraitGroups, hasPhylogeny}),
              Ints({82, 8, 75, 4, 82, 1, 0, 0}));
    EXPECT_EQ(
        Texts({chLabel[7], spp[0], std::string(cstSppMap[1], 3), dataName, envName, whichSpp}),
        Texts({"Seed", "Agru Agrostis rupestris All.", "010", "B.txt ", "E.txt", "spp.txt "}));
}

TEST_F(RawEntry, MafraghWithPhylogenyAndGroups) {
    const ConsoleRun run = EnterExample(
        "mafragh",
        "B.txt\n1\nF.txt\nW.txt\n0\n1\nE.txt\n56 14 2 2 k 1 1 1 1 1 1 1 3 3 3 3 4 4 4 y "
        "1 k 1 1 1 2 2 2 2 3 4 5 6 7 8 9 y 1 97 2 1 11 2 2 n");
    EXPECT_TRUE(Contains(run.out, "by 56 OTUs (e.g. as given by PHYLOCOM)\n"));
    EXPECT_TRUE(Contains(run.out,
                         "\nPhylogenetic distances were normalized to values in the range "
                         "[0,1] by Dnorm = D/Dmax\n"));
    const Floats F = NumbersIn("F.txt"), stored = Cells(phylogenyRese, tcst, tcst);
    ASSERT_EQ(F.size(), stored.size());
    const float largest = *std::ranges::max_element(F);
    for (std::size_t i = 0; i < F.size(); i++) ASSERT_NEAR(F[i] / largest, stored[i], 1e-6);
    EXPECT_EQ(Ints({phylogenyMatrixType, chtype[13], hasTraitGroups, traitGroups[3],
                    traitGroups[13], onsta[0]}),
              Ints({3, 4, 1, 2, 9, 2}));
}

TEST_F(RawEntry, AsksInTheWordsOfTheDialogue) {
    folder_.Write("E", "1 2");
    const ConsoleRun run = Enter("absent\nB\n0\nW\n0\n1 E\n3 2 1 2 k 3 1 y 0 2 1 1 1 1 3");
    const std::string count = lineL + std::string("\n");
    for (const std::string& part :
         {std::string("should be always specified.\nEnter data file name: \aEnter data "
                      "file name: A matrix (F) with phylogenetic resemblances of the "
                      "OTUs 0/1\tA matrix (W) with records"),
          count + "Number of OTUs: Enter number of traits (characters): Labels for traits: \n"
                  "   1  given by default \n   2  read labels at the end of file B\n"
                  "Type option no.: ",
          std::string("4 for ordinal): \nTraits:     \t         1\t         2\t\n"),
          count + "Number of environmental variables: Labels for environmental variables: \n"
                  "   1  given by default\n   2  read labels at the end of file E\n"})
        EXPECT_TRUE(Contains(run.out, part)) << part;
    EXPECT_FALSE(Contains(run.out, "Data entered by communities"));
    EXPECT_EQ(Ints({optEnvVarType, envVarType[0]}), Ints({3, 2}));
    EXPECT_EQ(Cells(env, 2, 1), Floats({1, 2}));
}

TEST_F(RawEntry, TextBetweenTheNumbersIsSkipped) {
    folder_.Write("B",
                  "trait OTU-a\r\n1; 3; 5\r\n-999 , 4e0 6 height \tlongerthan10characters\r\n");
    folder_.Write("W", "plots: 1 0 2 x 0 3 4 P1 P2");
    ASSERT_EQ(EnterPlain("2 1", "2 2").raised, 0);
    EXPECT_EQ(Cells(csm_Float, 3, 2), Floats({1, -999, 3, 4, 5, 6}));
    EXPECT_EQ(Cells(cadat, 3, 2), Floats({1, 0, 2, 0, 3, 4}));
    EXPECT_EQ(Texts({chLabel[0], chLabel[1], reLabel[1]}), Texts({"height", "longerthan", "P2"}));
}

TEST_F(RawEntry, WAsAVectorOfTheOTUsOfEachCommunity) {
    folder_.Write("W", "7 8 9 P1 P2");
    ASSERT_EQ(EnterPlain("1 2", "2 3 k 1 2 y").raised, 0);
    EXPECT_EQ(Cells(cadat, 3, 2), Floats({7, 0, 0, 8, 0, 9}));
    // More OTUs than there are: the surplus is read and dropped, so that the labels are found.
    folder_.Write("W", "7 8 9 10 11 P1 P2");
    ASSERT_EQ(EnterPlain("1 2", "2 3 k 4 1 y").raised, 0);
    EXPECT_EQ(Cells(cadat, 3, 2), Floats({7, 0, 8, 0, 9, 0}));
    EXPECT_STREQ(reLabel[1], "P2");
    // A number of OTUs that no file could hold ends with the file.
    EXPECT_EQ(EnterPlain("1 2", "1 3 k -5 2147483647 y").err, "\nEnd of file W\n");
    EXPECT_EQ(Cells(cadat, 3, 2), Floats({0, 7, 0, 8, 0, 9}));
}

TEST_F(RawEntry, ShortFilesAreToldOnceAndLeaveMissingValues) {
    folder_.Write("B", "1 2 3");
    folder_.Write("W", "1 0 2 0 3");
    folder_.Write("F", "0 2 4 2");
    const ConsoleRun run = Enter("B\n1 F\nW\n0\n0\n3 2 2 2 k 3 1 y 0 1 2 2 1");
    ASSERT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "\nEnd of file B\n\nEnd of file F\n\nEnd of file W\n");
    EXPECT_EQ(Cells(csm_Float, 3, 2), Floats({1, 2, 3, -999, -999, -999}));
    EXPECT_EQ(Cells(cadat, 3, 2), Floats({1, 0, 0, 3, 2, -999}));
    EXPECT_EQ(Cells(phylogenyRese, 3, 3), Floats({0, 0.5, 1, 0.5, -999, -999, -999, -999, -999}));
    EXPECT_TRUE(Contains(run.out, "Traits:     \t          \t          \t\n"));
    // Empty labels go through the data file without shifting what follows them.
    EXPECT_EQ(Texts({chLabel[1], reLabel[0]}), Texts({"", ""}));
    EXPECT_EQ(onsta[0], 3);
    folder_.Write("B", "1 2 3 4 5 6 height");
    folder_.Write("W", "1 0 2 0 3 4");
    EXPECT_EQ(EnterPlain("2 2").err, "\nEnd of file B\n");
    EXPECT_EQ(Texts({chLabel[0], chLabel[1]}), Texts({"height", ""}));
}

TEST_F(RawEntry, DistancesAreNormalisedByTheUpperTriangle) {
    EnterPhylogeny("0 1.5 0.6 9 0 0.3 0.6 0.3 0", "1");
    EXPECT_EQ(Cells(phylogenyRese, 3, 3), Floats({0, 1, 0.4F, 6, 0, 0.2F, 0.4F, 0.2F, 0}));
    EXPECT_EQ(phylogenyMatrixType, 3);
    EXPECT_FALSE(Contains(EnterPhylogeny("0 1 0.6 9 0 0.3 0.6 0.3 0", "1").out, "normalized"));
    EXPECT_EQ(phylogenyRese[1][0], 9);
    EnterPhylogeny("1 1.5 0.6 9 1 0.3 0.6 0.3 1", "2");
    EXPECT_EQ(phylogenyRese[0][1], 1.5);
    EXPECT_EQ(phylogenyMatrixType, 1);
}

TEST_F(RawEntry, AHalfMatrixLeavesTheTypeAsItWas) {
    EnterPhylogeny("1 0.5 1 0.25 0.75 1", "3");
    EXPECT_EQ(Ints({hasPhylogeny, phylogenyMatrixType}), Ints({1, 0}));
    EXPECT_EQ(Cells(phylogenyRese, 3, 3), Floats(9, 0));
    phylogenyMatrixType = 1;
    EnterPhylogeny("1 0.5 1 0.25 0.75 1", "3");
    EXPECT_EQ(Cells(phylogenyRese, 3, 3), Floats({1, 0.5, 0.25, 0.5, 1, 0.75, 0.25, 0.75, 1}));
    // The flag and the matrix outlive an entry without F.
    EnterPlain();
    EXPECT_EQ(Ints({hasPhylogeny, phylogenyMatrixType}), Ints({1, 1}));
    EXPECT_EQ(phylogenyRese[2][1], 0.75);
}

TEST_F(RawEntry, EquallyNamedOTUsAreOneSpecies) {
    folder_.Write("spp", "Poa annua\r\n\nPoa angustifolia\nPoa annua\n");
    const std::string start = "B\n0\nW\n1 spp\n0\n3 2 1 2 k 3 1 y 0 2 1 1 ";
    ASSERT_EQ(Enter(start + "2").raised, 0);
    ASSERT_EQ(nSpp, 2);
    // The first OTU is in plot 1, the third in both.
    EXPECT_EQ(Texts({spp[1], {cstSppMap[2], 2}, {sppRelMap[0], 2}, {sppRelMap[1], 2}}),
              Texts({"POan Poa angustifolia", "10", "11", "01"}));
    Enter(start + "1");
    EXPECT_STREQ(spp[0], "Poa annua");
}

TEST_F(RawEntry, MatrixEByVariablesAndItsLabels) {
    ASSERT_EQ(EnterEnvironment("1 2 3 4 pH slopeOfThePlot", "2 2 1 t").raised, 0);
    EXPECT_EQ(Cells(env, 2, 2), Floats({1, 3, 2, 4}));
    EXPECT_STREQ(envLabel[1], "slopeOfThe");
    EXPECT_EQ(Ints({optEnvVarType, envVarType[1]}), Ints({1, 3}));
    EnterEnvironment("1 2 3 4 pH slope", "2 1 4 n");
    EXPECT_EQ(Ints({optEnvVarType, envVarType[1]}), Ints({4, 1}));
    EXPECT_STREQ(envLabel[1], "2");
}

TEST_F(RawEntry, VariablesToldAsMixedHaveToBe) {
    const std::string question = "Data not mixed as indicated!!!\nWish to correct manually? y/n ";
    for (const auto& [types, kind] : {std::pair("4 3", 2), {"1 1", 4}, {"2 2", 3}}) {
        const auto run = EnterEnvironment("1 2 3 4", std::string("2 1 5 k ") + types + " y n n");
        EXPECT_TRUE(Contains(run.out, "Variable:    \t" + std::string(22, ' ') + "Read"));
        EXPECT_TRUE(Contains(run.out, question));
        EXPECT_EQ(optEnvVarType, kind);
    }
    // What an earlier answer set counts: binary before and ordinal now are mixed.
    EXPECT_EQ(Count(EnterEnvironment("1 2 3 4", "2 1 5 k 1 1 y y k 4 4 y n").out, question), 1);
    EXPECT_EQ(Ints({optEnvVarType, envVarType[0]}), Ints({5, 4}));
}

TEST_F(RawEntry, LeadingMissingValuesOfEAreWarnedOfOneByOne) {
    folder_.Write("W", "1 0 2 0 3 4 P1 P2");
    folder_.Write("E", "-999 -999 1\n2 -999 -999\n");
    const ConsoleRun run = Enter("B\n0\nW\n0\n1 E\n3 2 1 2 k 3 1 y 0 2 2 1 3 1 1 n");
    const std::string warning =
        "\nPlease check matrix E. Sampling unit P1 has all values missing (-999), which will "
        "generate unreliable results.";
    EXPECT_TRUE(Contains(run.out, warning + warning));
    EXPECT_EQ(Count(run.out, "Please check matrix E"), 2);
}

TEST_F(RawEntry, RefusesCountsBeyondAllReason) {
    const std::string most = "2147483647";
    for (const std::string& counts :
         {most + " " + most, most + " 1", "1 " + most, "3 2 1 2 k 3 1 y 0 " + most})
        EXPECT_EQ(Enter("B\n0\nW\n0\n0\n" + counts).raised, kOutOfMemory) << counts;
    EXPECT_EQ(EnterEnvironment("1 2", most).raised, kOutOfMemory);
}

}  // namespace
