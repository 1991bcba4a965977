#include <gtest/gtest.h>

#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

const std::string kLine(70, '-');
const std::string kVersion =
    "CHARACTER-BASED COMMUNITY ANALYSIS                    TESSEL v.2.11.08";
const std::string kMainMenu = "\n\n\n\n" + kVersion + "\n" + kLine +
                              "\nMain menu:\n   N  start new session\n"
                              "   O  attach to old session\n   S  set preferences\n"
                              "   X  exit \n" +
                              kLine + "\nType option: ";
const std::string kDataOptions =
    "Options:\n   1  format raw data \n   2  use formatted data from another session\n"
    "   3  merge formatted data from two sessions\n   4  return to main menu \n"
    "Type option no.: ";

/// The program in a folder with the files of the session `old`.
struct Menus : testing::Test {
    Menus() { WriteFiles(folder_, GoodFiles()); }

    /// A run that ends well, after the complaints.
    std::string ScreenOf(const std::string& answers, const std::string& complaints = "") {
        const ProgramRun run = RunProgram(folder_, answers, 20);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(WithoutBells(run.err), complaints);
        return run.out;
    }

    TempFolder folder_;
};

}  // namespace

TEST_F(Menus, StartAndExit) {
    EXPECT_EQ(ScreenOf("x\n"),
              kLine + "\n" + kVersion + "\n\n" + kLine + "\n" + kMainMenu + "\n\n");
}

TEST_F(Menus, SessionNamesAreCut) {
    const std::string screen =
        ScreenOf("N\nabcdefghijklmnopqrstuvwxyz\n2\nABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789\n4\nX\n",
                 "\ncan't open ABCDEFGHIJKLMNOPQRSTUVWXYZ01234Formda.txt \n");
    EXPECT_TRUE(folder_.Has("abcdefghijklmnopqrstuTrk.txt"));
    EXPECT_EQ(Count(screen, "DATA FOR SESSION" + std::string(33, ' ') + "abcdefghijklmnopqrstu\n"),
              1);
    EXPECT_EQ(Count(screen, kDataOptions), 2);
}

TEST_F(Menus, NewSessionEmptiesTheTrackFile) {
    const std::string screen = ScreenOf("N\nold\n4\nO\nold\n4\nX\n");
    EXPECT_EQ(Count(screen, "DATA FOR SESSION"), 2);
    EXPECT_EQ(Count(screen, kMainMenu), 3);
    EXPECT_TRUE(folder_.Has("oldTrk.txt"));
    EXPECT_EQ(folder_.Read("oldTrk.txt"), "");
    EXPECT_EQ(folder_.Read("oldFormda.txt"), GoodFiles()["oldFormda.txt"]);
}

TEST_F(Menus, DataOfAnotherSession) {
    const std::string screen = ScreenOf(
        "N\nnew\n3\nold\nabsent\n3\nabsent\n"  // each time back to the options,
        "2\nold\n3\n"                          // and here too
        "2\nold\n1\n"                          // as it is
        "v\nc\nC\nX\n",
        Repeated("\ncan't open absentFormda.txt \n", 2));
    EXPECT_EQ(Count(screen, "Second session name: "), 1);
    EXPECT_EQ(Count(screen, "DATA FOR SESSION"), 1);
    EXPECT_EQ(Count(screen, kDataOptions), 4);
    EXPECT_EQ(Count(screen,
                    "\nUse file oldFormda.txt:\n   1  as it is \n   2  modified \n"
                    "   3  return to main menu \nType option no.: \n\n"),
              2);
    EXPECT_EQ(Count(screen, "\n\nSESSION MENU" + std::string(55, ' ') + "new\n" + kLine +
                                "\nOptions:\n   V  analysis of community structures\n"
                                "   S  set preferences\n   C  return to main menu \n"
                                "Type option: \n\n"),
              2);
    EXPECT_EQ(Count(screen, kLine + "\nOptions:\n   H  functional analysis \n"
                                    "   K  ranking traits (find optimal trait subset) \n"
                                    "   C  return to session menu \nType option: \n"),
              1);
    EXPECT_EQ(folder_.Read("newTrk.txt"), "oldFormda.txt\n07Jul17\n");
    EXPECT_FALSE(folder_.Has("newFormda.txt"));
}

TEST_F(Menus, AnalysisIsRecordedAndContinued) {
    const std::string settings = "H\nk\n1 1 2\n0\n5\n0\n2\n7\n1\n10\n1\ny\nn\n";
    const std::string screen =
        ScreenOf("O\nold\nV\n" + settings + "a\n" + settings + "a\nC\nC\nX\n");
    EXPECT_EQ(Count(screen, "\n\nResults on file oldPrinda.txt\n"), 2);
    EXPECT_EQ(Count(screen, "This session has a previous oldPrinda.txt file."), 2);
    const std::string track = folder_.Read("oldTrk.txt");
    EXPECT_EQ(track.find("oldFormda.txt\n07Jul17\nNULL\nNULL\nNULL\noldHie.txt\nNULL\n"), 0U);
    EXPECT_EQ(Count(folder_.Read("oldPrinda.txt"), "EXPLORATION OF COMMUNITY DATA"), 2);
    ScreenOf("O\nold\nC\nX\n");
    EXPECT_EQ(folder_.Read("oldTrk.txt"), track);
}

// Answers from a file that runs out used to be the classic way to a full disk or a busy processor.
// The in-process cuts of a session try every place; here a letter, a line, a number, a nesting
// file.
TEST_F(Menus, EndOfInputIsAtRest) {
    for (const std::string answers :
         {"", "O\nnone", "N\ns\n2\nold\n1\nV\nH\nk\n1 2\n",
          "N\ns\n2\nold\n1\nV\nH\nk\n1 1 2\n0\n5\n1\nf\nabsent.txt\nk\n"}) {
        const ProgramRun run = RunProgram(folder_, answers, 0.4);
        EXPECT_TRUE(run.timedOut) << answers;
        EXPECT_LT(run.cpuSeconds, 0.1) << answers;
        EXPECT_LT(run.out.size() + run.err.size(), 10000U) << answers;
        EXPECT_NE(run.err, "") << answers;
    }
}
