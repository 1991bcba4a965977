#include "TSLIFFMT/raw_entry.h"

#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/shell.h"
#include "TSLIFFM2/formda.h"
#include "mxlibDim/failure.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

std::string Repeated(const std::string& text, int times) {
    std::string repeated;
    for (int i = 0; i < times; i++) repeated += text;
    return repeated;
}

bool Contains(const std::string& text, const std::string& part) {
    return text.find(part) != std::string::npos;
}

/// Numbers at the head of a file.
std::vector<float> NumbersIn(const std::string& file) {
    std::ifstream stream(file);
    return {std::istream_iterator<float>(stream), {}};
}

/// The first rows x cols numbers of a table, by rows.
template <class T>
std::vector<float> Cells(T** table, int rows, int cols) {
    std::vector<float> cells;
    for (int i = 0; i < rows; i++)
        for (int j = 0; j < cols; j++) cells.push_back(static_cast<float>(table[i][j]));
    return cells;
}

class RawEntry : public testing::Test {
  protected:
    RawEntry() {
        std::strcpy(whichFormda, "rawFormda.txt");
        hasPhylogeny = phylogenyMatrixType = 0;
        folder_.Write("B", "1 2\n3 4\n5 6\n");
        folder_.Write("W", "1 0 2\n0 3 4\n");
    }
    ~RawEntry() override {
        FreeGlobals2();
        hasPhylogeny = phylogenyMatrixType = 0;
    }

    /// The dialogue, which must leave no table behind, and the data set that it wrote.
    ConsoleRun Enter(const std::string& answers) {
        ConsoleRun run = WithConsole(answers, [](FILE*) {
            in = stdin;
            out = stdout;
            IFFormat();
        });
        EXPECT_TRUE(chLabel == nullptr && csm_Float == nullptr && cadat == nullptr &&
                    reLabel == nullptr && env == nullptr && spp == nullptr && cstSppMap == nullptr);
        if (run.raised == 0 && !run.rests) OpenFormda(1);
        return run;
    }

    /// Three OTUs by two traits, two communities, nothing else; `W` answers the questions on W.
    ConsoleRun EnterPlain(const std::string& B = "1 2", const std::string& W = "1 1") {
        return Enter("B\n0\nW\n0\n0\n3 2 " + B + " k 3 1 y 0 2 " + W);
    }

    /// The same with a matrix F.
    ConsoleRun EnterPhylogeny(const std::string& format) {
        return Enter("B\n1 F\nW\n0\n0\n3 2 1 2 k 3 1 y 0 " + format + " 2 1 1");
    }

    /// The same with a matrix E of so many variables.
    ConsoleRun EnterEnvironment(const std::string& answers) {
        return Enter("B\n0\nW\n0\n1 E\n3 2 1 2 k 3 1 y 0 2 1 1 " + answers);
    }

    void ExpectExample(const std::string& example) {
        const std::string folder = std::string(TESSEL_EXAMPLES) + "/" + example + "/";
        const std::vector<float> W = NumbersIn(folder + "W.txt");
        std::vector<float> transposed;
        for (int c = 0; c < ncsm; c++)
            for (int i = 0; i < tcst; i++) transposed.push_back(cadat[i][c]);
        EXPECT_EQ(W, transposed);
        EXPECT_EQ(NumbersIn(folder + "B.txt"), Cells(csm_Float, tcst, nch));
        EXPECT_EQ(NumbersIn(folder + "E.txt"), Cells(env, ncsm, nenv));
    }

    TempFolder folder_;
    WorkingIn working_{folder_.path()};
};

TEST_F(RawEntry, AravoAsItsReadmeTells) {
    for (const char* file : {"B.txt", "W.txt", "E.txt", "spp.txt"})
        std::filesystem::copy(std::string(TESSEL_EXAMPLES "/aravo/") + file, ".");
    const ConsoleRun run = Enter("B.txt\n0\nW.txt\n1\nspp.txt\n1\nE.txt\n82 8 2 2 k " +
                                 Repeated("3 ", 8) + "y 0 75 2 1 2 4 2 2 n");
    ASSERT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(std::vector({tcst, nch, ncsm, nenv, nSpp, SMWSize}),
              std::vector({82, 8, 75, 4, 82, 1}));
    ExpectExample("aravo");
    EXPECT_STREQ(chLabel[7], "Seed");
    EXPECT_STREQ(spp[0], "Agru Agrostis rupestris All.");
    EXPECT_EQ(std::string(cstSppMap[1], 3), "010");
    EXPECT_STREQ(dataName, "B.txt ");
    EXPECT_STREQ(envName, "E.txt");
    EXPECT_STREQ(whichSpp, "spp.txt ");
    EXPECT_EQ(hasTraitGroups + hasPhylogeny, 0);
}

TEST_F(RawEntry, MafraghWithPhylogenyAndGroups) {
    for (const char* file : {"B.txt", "W.txt", "E.txt", "F.txt"})
        std::filesystem::copy(std::string(TESSEL_EXAMPLES "/mafragh/") + file, ".");
    const ConsoleRun run = Enter(
        "B.txt\n1\nF.txt\nW.txt\n0\n1\nE.txt\n56 14 2 2 k 1 1 1 1 1 1 1 3 3 3 3 4 4 4 y "
        "1 k 1 1 1 2 2 2 2 3 4 5 6 7 8 9 y 1 97 2 1 11 2 2 n");
    ASSERT_EQ(run.raised, 0);
    ExpectExample("mafragh");
    EXPECT_EQ(phylogenyMatrixType, 3);
    EXPECT_TRUE(Contains(run.out, "by 56 OTUs (e.g. as given by PHYLOCOM)\n"));
    EXPECT_TRUE(Contains(run.out,
                         "\nPhylogenetic distances were normalized to values in the range "
                         "[0,1] by Dnorm = D/Dmax\n"));
    std::vector<float> F = NumbersIn("F.txt");
    const float largest = *std::max_element(F.begin(), F.end());
    const std::vector<float> stored = Cells(phylogenyRese, tcst, tcst);
    ASSERT_EQ(F.size(), stored.size());
    for (std::size_t i = 0; i < F.size(); i++) ASSERT_NEAR(F[i] / largest, stored[i], 1e-6);
    EXPECT_EQ(chtype[13], 4);
    EXPECT_EQ(std::vector({hasTraitGroups, traitGroups[3], traitGroups[13]}),
              std::vector({1, 2, 9}));
    EXPECT_EQ(onsta[0], 2);
}

TEST_F(RawEntry, AsksInTheWordsOfTheDialogue) {
    folder_.Write("E", "1 2");
    const ConsoleRun run = Enter("absent\nB\n0\nW\n0\n1 E\n3 2 1 2 k 3 1 y 0 2 1 1 1 1 3");
    const std::string count = lineL + std::string("\n");
    EXPECT_TRUE(Contains(run.out,
                         "should be always specified.\nEnter data file name: \aEnter data "
                         "file name: A matrix (F) with phylogenetic resemblances of the "
                         "OTUs 0/1\tA matrix (W) with records"));
    EXPECT_TRUE(Contains(run.out, count + "Number of OTUs: Enter number of traits (characters): "
                                          "Labels for traits: \n   1  given by default \n   2  "
                                          "read labels at the end of file B\nType option no.: "));
    EXPECT_TRUE(Contains(run.out, "4 for ordinal): \nTraits:     \t         1\t         2\t\n"));
    EXPECT_TRUE(Contains(run.out, count + "Number of environmental variables: Labels for "
                                          "environmental variables: \n   1  given by default\n"
                                          "   2  read labels at the end of file E\n"));
    EXPECT_FALSE(Contains(run.out, "Data entered by communities"));
    EXPECT_EQ(std::vector({optEnvVarType, envVarType[0]}), std::vector({3, 2}));
    EXPECT_EQ(Cells(env, 2, 1), std::vector({1.0F, 2.0F}));
}

TEST_F(RawEntry, TextBetweenTheNumbersIsSkipped) {
    folder_.Write("B",
                  "trait OTU-a\r\n1; 3; 5\r\n-999 , 4e0 6 height \tlongerthan10characters\r\n");
    folder_.Write("W", "plots: 1 0 2 x 0 3 4 P1 P2");
    ASSERT_EQ(EnterPlain("2 1", "2 2").raised, 0);
    EXPECT_EQ(Cells(csm_Float, 3, 2), std::vector<float>({1, -999, 3, 4, 5, 6}));
    EXPECT_EQ(Cells(cadat, 3, 2), std::vector<float>({1, 0, 2, 0, 3, 4}));
    EXPECT_STREQ(chLabel[0], "height");
    EXPECT_STREQ(chLabel[1], "longerthan");
    EXPECT_STREQ(reLabel[1], "P2");
}

TEST_F(RawEntry, WAsAVectorOfTheOTUsOfEachCommunity) {
    folder_.Write("W", "7 8 9 P1 P2");
    ASSERT_EQ(EnterPlain("1 2", "2 3 k 1 2 y").raised, 0);
    EXPECT_EQ(Cells(cadat, 3, 2), std::vector<float>({7, 0, 0, 8, 0, 9}));
    // More OTUs than there are: the surplus is read and dropped, so that the labels are found.
    folder_.Write("W", "7 8 9 10 11 P1 P2");
    ASSERT_EQ(EnterPlain("1 2", "2 3 k 4 1 y").raised, 0);
    EXPECT_EQ(Cells(cadat, 3, 2), std::vector<float>({7, 0, 8, 0, 9, 0}));
    EXPECT_STREQ(reLabel[1], "P2");
    // A number of OTUs that no file could hold ends with the file.
    const ConsoleRun run = EnterPlain("1 2", "1 3 k -5 2147483647 y");
    EXPECT_EQ(run.err, "\nEnd of file W\n");
    EXPECT_EQ(Cells(cadat, 3, 2), std::vector<float>({0, 7, 0, 8, 0, 9}));
}

TEST_F(RawEntry, ShortFilesAreToldOnceAndLeaveMissingValues) {
    folder_.Write("B", "1 2 3");
    folder_.Write("W", "1 0 2 0 3");
    folder_.Write("F", "0 2 4 2");
    const ConsoleRun run = Enter("B\n1 F\nW\n0\n0\n3 2 2 2 k 3 1 y 0 1 2 2 1");
    ASSERT_EQ(run.raised, 0);
    EXPECT_EQ(run.err, "\nEnd of file B\n\nEnd of file F\n\nEnd of file W\n");
    EXPECT_EQ(Cells(csm_Float, 3, 2), std::vector<float>({1, 2, 3, -999, -999, -999}));
    EXPECT_EQ(Cells(cadat, 3, 2), std::vector<float>({1, 0, 0, 3, 2, -999}));
    EXPECT_EQ(Cells(phylogenyRese, 3, 3),
              std::vector<float>({0, 0.5, 1, 0.5, -999, -999, -999, -999, -999}));
    EXPECT_TRUE(Contains(run.out, "Traits:     \t          \t          \t\n"));
    // Empty labels go through the data file without shifting what follows them.
    EXPECT_STREQ(chLabel[1], "");
    EXPECT_STREQ(reLabel[0], "");
    EXPECT_EQ(onsta[0], 3);
}

TEST_F(RawEntry, MissingLabelsAreToldOnce) {
    folder_.Write("B", "1 2 3 4 5 6 height");
    const ConsoleRun run = EnterPlain("2 2");
    EXPECT_EQ(run.err, "\nEnd of file B\n");
    EXPECT_STREQ(chLabel[0], "height");
    EXPECT_STREQ(chLabel[1], "");
}

TEST_F(RawEntry, DistancesAreNormalisedByTheUpperTriangle) {
    folder_.Write("F", "0 1.5 0.6 9 0 0.3 0.6 0.3 0");
    ConsoleRun run = EnterPhylogeny("1");
    EXPECT_EQ(Cells(phylogenyRese, 3, 3),
              std::vector<float>({0, 1, 0.4F, 6, 0, 0.2F, 0.4F, 0.2F, 0}));
    EXPECT_EQ(phylogenyMatrixType, 3);
    folder_.Write("F", "0 1 0.6 9 0 0.3 0.6 0.3 0");
    run = EnterPhylogeny("1");
    EXPECT_EQ(phylogenyRese[1][0], 9);
    EXPECT_FALSE(Contains(run.out, "normalized"));
    folder_.Write("F", "1 1.5 0.6 9 1 0.3 0.6 0.3 1");
    EnterPhylogeny("2");
    EXPECT_EQ(phylogenyRese[0][1], 1.5);
    EXPECT_EQ(phylogenyMatrixType, 1);
}

TEST_F(RawEntry, AHalfMatrixLeavesTheTypeAsItWas) {
    folder_.Write("F", "1 0.5 1 0.25 0.75 1");
    EnterPhylogeny("3");
    EXPECT_EQ(std::vector({hasPhylogeny, phylogenyMatrixType}), std::vector({1, 0}));
    EXPECT_EQ(Cells(phylogenyRese, 3, 3), std::vector<float>(9, 0));
    phylogenyMatrixType = 1;
    EnterPhylogeny("3");
    EXPECT_EQ(Cells(phylogenyRese, 3, 3),
              std::vector<float>({1, 0.5, 0.25, 0.5, 1, 0.75, 0.25, 0.75, 1}));
    // The flag and the matrix outlive an entry without F.
    EnterPlain();
    EXPECT_EQ(std::vector({hasPhylogeny, phylogenyMatrixType}), std::vector({1, 1}));
    EXPECT_EQ(phylogenyRese[2][1], 0.75);
}

TEST_F(RawEntry, EquallyNamedOTUsAreOneSpecies) {
    folder_.Write("spp", "Poa annua\r\n\nPoa angustifolia\nPoa annua\n");
    const std::string start = "B\n0\nW\n1 spp\n0\n3 2 1 2 k 3 1 y 0 2 1 1 ";
    ASSERT_EQ(Enter(start + "2").raised, 0);
    ASSERT_EQ(nSpp, 2);
    EXPECT_STREQ(spp[1], "POan Poa angustifolia");
    EXPECT_EQ(std::string(cstSppMap[2], 2), "10");
    EXPECT_EQ(std::string(sppRelMap[0], 2), "11");  // the first OTU in plot 1, the third in both
    EXPECT_EQ(std::string(sppRelMap[1], 2), "01");
    Enter(start + "1");
    EXPECT_STREQ(spp[0], "Poa annua");
    folder_.Write("spp", "Poa annua\n");
    const ConsoleRun run = Enter(start + "1");
    EXPECT_EQ(run.raised, kEndOfFile);
    EXPECT_EQ(run.err, "\nfile spp ");
}

TEST_F(RawEntry, MatrixEByVariablesAndItsLabels) {
    folder_.Write("E", "1 2 3 4 pH slope");
    ASSERT_EQ(EnterEnvironment("2 2 1 t").raised, 0);
    EXPECT_EQ(Cells(env, 2, 2), std::vector<float>({1, 3, 2, 4}));
    EXPECT_STREQ(envLabel[1], "slope");
    EXPECT_EQ(std::vector({optEnvVarType, envVarType[1]}), std::vector({1, 3}));
    EnterEnvironment("2 1 4 n");
    EXPECT_EQ(std::vector({optEnvVarType, envVarType[1]}), std::vector({4, 1}));
    EXPECT_STREQ(envLabel[1], "2");
}

TEST_F(RawEntry, MatrixEIsReadStrictly) {
    for (const char* text : {"1 x 2 3 4", "1 2 3", "1 2 3 4 pH"}) {
        folder_.Write("E", text);
        const ConsoleRun run = EnterEnvironment("2 2 1 n");
        EXPECT_EQ(run.raised, kEndOfFile) << text;
        EXPECT_EQ(run.err, "\nfile E ");
    }
}

TEST_F(RawEntry, VariablesToldAsMixedHaveToBe) {
    folder_.Write("E", "1 2 3 4");
    const std::string question = "Data not mixed as indicated!!!\nWish to correct manually? y/n ";
    ConsoleRun run = EnterEnvironment("2 1 5 k 4 3 y n n");
    EXPECT_TRUE(Contains(run.out, "Variable:    \t" + Repeated(std::string(11, ' '), 2) + "Read"));
    EXPECT_TRUE(Contains(run.out, question));
    EXPECT_EQ(optEnvVarType, 2);
    EnterEnvironment("2 1 5 k 1 1 y n n");
    EXPECT_EQ(optEnvVarType, 4);
    EnterEnvironment("2 1 5 k 2 2 y n n");
    EXPECT_EQ(optEnvVarType, 3);
    // What an earlier answer set counts: binary before and ordinal now are mixed.
    run = EnterEnvironment("2 1 5 k 1 1 y y k 4 4 y n");
    EXPECT_EQ(run.out.find(question), run.out.rfind(question));
    EXPECT_EQ(std::vector({optEnvVarType, envVarType[0]}), std::vector({5, 4}));
}

TEST_F(RawEntry, LeadingMissingValuesOfEAreWarnedOfOneByOne) {
    folder_.Write("W", "1 0 2 0 3 4 P1 P2");
    folder_.Write("E", "-999 -999 1\n2 -999 -999\n");
    const ConsoleRun run = Enter("B\n0\nW\n0\n1 E\n3 2 1 2 k 3 1 y 0 2 2 1 3 1 1 n");
    const std::string warning =
        "\nPlease check matrix E. Sampling unit P1 has all values missing (-999), which will "
        "generate unreliable results.";
    EXPECT_TRUE(Contains(run.out, warning + warning));
    EXPECT_FALSE(Contains(run.out, warning + warning + warning));
    EXPECT_FALSE(Contains(run.out, "Sampling unit P2"));
}

TEST_F(RawEntry, EndsWhereverTheAnswersEnd) {
    folder_.Write("F", "0 1 2 1 0 1 2 1 0");
    folder_.Write("spp", "a\nb\nc\n");
    folder_.Write("E", "1 2 3 4");
    const std::string answers =
        "B\n1\nF\nW\n1\nspp\n1\nE\n3\n2\n1\n2\nk\n3 1\ny\n1\nk\n1 2\ny\n1\n2\n1\n3\nk\n1 2\ny\n2\n"
        "2\n1\n5\nk\n1 3\ny\nn\n";
    for (std::size_t end = 0; end + 2 < answers.size(); end++) {
        if (answers[end] != '\n') continue;
        const ConsoleRun run = Enter(answers.substr(0, end));
        EXPECT_TRUE(run.rests || run.raised == kEndOfFile) << answers.substr(0, end);
    }
    EXPECT_EQ(Enter(answers).raised, 0);
}

TEST_F(RawEntry, RefusesCountsBeyondAllReason) {
    const std::string most = "2147483647";
    const std::string plain = "B\n0\nW\n0\n0\n";
    EXPECT_EQ(Enter(plain + most + " " + most).raised, kOutOfMemory);
    EXPECT_EQ(Enter(plain + most + " 1").raised, kOutOfMemory);
    EXPECT_EQ(Enter(plain + "1 " + most).raised, kOutOfMemory);
    EXPECT_EQ(Enter(plain + "3 2 1 2 k 3 1 y 0 " + most).raised, kOutOfMemory);
    folder_.Write("E", "1 2");
    EXPECT_EQ(EnterEnvironment(most).raised, kOutOfMemory);
}

}  // namespace
