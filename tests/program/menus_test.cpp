#include <gtest/gtest.h>

#include <string>

#include "support/run_program.h"
#include "support/temp_folder.h"

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

/// Two traits, three communities, four OTUs, one ecological variable.
constexpr char kFormda[] =
    "meadow \n2 \nheight\tarea\t\n 3\t 3\t\n0\t0\t\n 4\t 4\t\n3 \na\tb\tc\t\n4 \n0\t0\t0\t\n"
    "0\t0\t0\t0\t0\t0\t0\t\n\n25Jun2016 \n"
    "2.385\t0.21\t\n1.175\t0.38\t\n3.81\t0.47\t\n0.62\t0.93\t\n\n"
    "3\t0\t1\t\n0\t2\t1\t\n1\t1\t0\t\n4\t0\t2\t\n\n"
    "1 \n97Sep08 \n1 \n3\t\nwater\t\nE.txt \n   1.5\t  2.25\t  0.75\t\n"
    "0 \nSMW 1\n0\n0\nMon Jan  1 00:00:00 2024\n";

int Count(const std::string& text, const std::string& part) {
    int found = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1))
        found++;
    return found;
}

std::string WithoutBells(std::string text) {
    std::erase(text, '\a');
    return text;
}

}  // namespace

TEST(Menus, StartAndExit) {
    const TempFolder folder;
    const ProgramRun run = RunProgram(folder, "x\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out, kLine + "\n" + kVersion + "\n\n" + kLine + "\n" + kMainMenu + "\n\n");
    EXPECT_EQ(run.err, "");
}

// The letter A has no line in the menu; the complaint shows it.
TEST(Menus, WrongLetters) {
    const TempFolder folder;
    const ProgramRun run = RunProgram(folder, "Q 7\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err,
              "\nIncorrect input = q. Reenter.\nAccepted input: N O S A X\n"
              "\nIncorrect input = 7. Reenter.\nAccepted input: N O S A X\n");
    EXPECT_EQ(Count(run.out, "Main menu:"), 1);
}

TEST(Menus, SessionNamesAreCut) {
    const TempFolder folder;
    const ProgramRun run = RunProgram(
        folder, "N\nabcdefghijklmnopqrstuvwxyz\n2\nABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789\n4\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(folder.Has("abcdefghijklmnopqrstuTrk.txt"));
    EXPECT_EQ(Count(run.out, "DATA FOR SESSION" + std::string(33, ' ') + "abcdefghijklmnopqrstu\n"),
              1);
    EXPECT_EQ(run.err, "\ncan't open ABCDEFGHIJKLMNOPQRSTUVWXYZ01234Formda.txt \n");
    EXPECT_EQ(Count(run.out, "DATA FOR SESSION"), 1);
    EXPECT_EQ(Count(run.out, kDataOptions), 2);
}

TEST(Menus, AbsentSessionLeadsBack) {
    const TempFolder folder;
    const ProgramRun run = RunProgram(folder, "O\nnone\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "\ncan't open noneTrk.txt \n");
    EXPECT_EQ(Count(run.out, kMainMenu), 2);
    EXPECT_FALSE(folder.Has("noneTrk.txt"));
}

TEST(Menus, NewSessionEmptiesTheTrackFile) {
    const TempFolder folder;
    folder.Write("mTrk.txt", "mFormda.txt\n07Jul17\n");
    folder.Write("mFormda.txt", kFormda);
    const ProgramRun run = RunProgram(folder, "N\nm\n4\nO\nm\n4\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Count(run.out, "DATA FOR SESSION"), 2);
    EXPECT_TRUE(folder.Has("mTrk.txt"));
    EXPECT_EQ(folder.Read("mTrk.txt"), "");
    EXPECT_EQ(folder.Read("mFormda.txt"), kFormda);
}

TEST(Menus, DataOfAnotherSession) {
    const TempFolder folder;
    folder.Write("mFormda.txt", kFormda);
    const ProgramRun run = RunProgram(folder,
                                      "N\nnew\n2\nm\n3\n"  // back to the options
                                      "2\nm\n1\n"          // as it is
                                      "v\nc\nC\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(Count(run.out, "DATA FOR SESSION"), 1);
    EXPECT_EQ(Count(run.out, kDataOptions), 2);
    EXPECT_EQ(Count(run.out,
                    "\nUse file mFormda.txt:\n   1  as it is \n   2  modified \n"
                    "   3  return to main menu \nType option no.: \n\n"),
              2);
    EXPECT_EQ(Count(run.out, "\n\nSESSION MENU" + std::string(55, ' ') + "new\n" + kLine +
                                 "\nOptions:\n   V  analysis of community structures\n"
                                 "   S  set preferences\n   C  return to main menu \n"
                                 "Type option: \n\n"),
              2);
    EXPECT_EQ(Count(run.out, kLine + "\nOptions:\n   H  functional analysis \n"
                                     "   K  ranking traits (find optimal trait subset) \n"
                                     "   C  return to session menu \nType option: \n"),
              1);
    EXPECT_EQ(folder.Read("newTrk.txt"), "mFormda.txt\n07Jul17\n");
    EXPECT_FALSE(folder.Has("newFormda.txt"));
}

TEST(Menus, AnalysisIsRecordedAndContinued) {
    const TempFolder folder;
    folder.Write("mFormda.txt", kFormda);
    folder.Write("mTrk.txt", "mFormda.txt\n07Jul17\n");
    const std::string settings = "k\n1 1 2 2\n0\n5\n0\n2\n7\n1\n10\n1\ny\nn\n";
    const ProgramRun run =
        RunProgram(folder, "O\nm\nV\nH\n" + settings + "H\n" + settings + "a\nC\nC\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(Count(run.out, "\n\nResults on file mPrinda.txt\n"), 2);
    EXPECT_EQ(Count(run.out, "This session has a previous mPrinda.txt file."), 1);
    const std::string track = folder.Read("mTrk.txt");
    EXPECT_EQ(track.find("mFormda.txt\n07Jul17\nNULL\nNULL\nNULL\nmHie.txt\nNULL\n"), 0U);
    EXPECT_EQ(Count(folder.Read("mPrinda.txt"), "EXPLORATION OF COMMUNITY DATA"), 2);
    const ProgramRun later = RunProgram(folder, "O\nm\nC\nX\n");
    EXPECT_EQ(later.status, 0);
    EXPECT_EQ(later.err, "");
    EXPECT_EQ(folder.Read("mTrk.txt"), track);
}

TEST(Menus, DerivingAndMergingThatMakeNothingLeadBackToTheOptions) {
    const TempFolder folder;
    folder.Write("mFormda.txt", kFormda);
    const ProgramRun run = RunProgram(folder, "N\nnew\n3\nm\nabsent\n3\nabsent\n4\nX\n");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(WithoutBells(run.err),
              "\ncan't open absentFormda.txt \n\ncan't open absentFormda.txt \n");
    EXPECT_EQ(Count(run.out, kDataOptions), 3);
    EXPECT_EQ(Count(run.out, "Second session name: "), 1);
    EXPECT_EQ(folder.Read("newTrk.txt"), "");
}

TEST(Menus, ErrorsEndTheProgram) {
    const TempFolder folder;
    folder.Write("goneTrk.txt", "goneFormda.txt\n07Jul17\n");
    const ProgramRun gone = RunProgram(folder, "O\ngone\n\n", 10);
    EXPECT_EQ(gone.status, 1);
    EXPECT_EQ(WithoutBells(gone.err),
              "\ncan't open goneFormda.txt \n\nFAIL TO OPEN FILE !!!\n\nQuit and restart "
              "TESSEL.\n");
    const std::string whole = kFormda;
    folder.Write("cutTrk.txt", "cutFormda.txt\n07Jul17\n");
    folder.Write("cutFormda.txt", whole.substr(0, whole.size() / 2));
    const ProgramRun cut = RunProgram(folder, "O\ncut\n\n", 10);
    EXPECT_EQ(cut.status, 1);
    EXPECT_EQ(WithoutBells(cut.err),
              "\nfile cutFormda.txt \nEND OF FILE !!!\n\nQuit and restart TESSEL.\n");
}

// Answers from a file that runs out used to be the classic way to a full disk or a busy processor.
TEST(Menus, EndOfInputIsAtRest) {
    for (const std::string answers :
         {"", "N\n", "N\ns\n", "N\ns\n2\nm", "N\ns\n2\nm\n1\n", "N\ns\n2\nm\n1\nV\n",
          "N\ns\n2\nm\n1\nV\nH\nk\n1 2\n", "O\nnone"}) {
        const TempFolder folder;
        folder.Write("mFormda.txt", kFormda);
        const ProgramRun run = RunProgram(folder, answers, 0.8);
        EXPECT_TRUE(run.timedOut) << answers;
        EXPECT_LT(run.cpuSeconds, 0.2) << answers;
        EXPECT_LT(run.out.size() + run.err.size(), 10000U) << answers;
        EXPECT_NE(run.err, "") << answers;
    }
}
