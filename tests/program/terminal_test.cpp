// What a person at a terminal is told, and scripted runs are not; one program at a time in a
// session.

#include "support/terminal.h"

#include <gtest/gtest.h>

#include "support/formda_text.h"
#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

struct AtTerminal : testing::Test {
    AtTerminal() { WriteFiles(folder_, GoodFiles()); }

    /// The screen of a whole run.
    std::string ScreenOf(const std::string& answers) {
        Terminal terminal(folder_);
        terminal.Type(answers);
        EXPECT_EQ(terminal.Finish(), 0) << terminal.screen;
        return terminal.screen;
    }

    TempFolder folder_;
};

const std::string kInUse = "\nsession old is in use by another program \n";
const std::string kLock = "oldTrk.txt.lock";

}  // namespace

// Preferences that did not count changed the probabilities without a word.
TEST_F(AtTerminal, UnusedPreferences) {
    const auto told = [&](const std::string& what) {
        const std::string line =
            "TESSEL.prf " + what + ": the defaults hold, with two-tailed tests.\n";
        EXPECT_EQ(Count(ScreenOf("X\n"), line), 1) << what;
        EXPECT_EQ(RunProgram(folder_, "X\n").err, "");
    };
    EXPECT_EQ(Count(ScreenOf("X\n"), "TESSEL.prf"), 0);
    folder_.Write("TESSEL.prf", "17Nov2016\n1\n");
    told("is of another version");
    std::filesystem::remove(folder_.File("TESSEL.prf"));
    std::filesystem::create_directory(folder_.File("TESSEL.prf"));
    told("cannot be read");
}

// A wrong count, or a line too many, showed nowhere.
TEST_F(AtTerminal, FindingsAtTheEndOfRawEntry) {
    const std::string left = ": 2 numbers are left behind the last one that was read.\n";
    const std::string sizes =
        "Data set: 5 OTUs, 3 traits, 4 communities, 2 ecological variables, 4 species, "
        "with a phylogeny\n";
    const FilesByName good = GoodFiles();
    const struct {
        std::string file, content, told;
    } cases[] = {
        {"B.txt", good.at("B.txt"), "\n" + sizes},
        {"B.txt", good.at("B.txt") + "0 7,x 3\n", "\nB.txt" + left + sizes},
        {"F.txt", good.at("F.txt") + "9,1e-3\n", "\nF.txt" + left + sizes},
        {"W.txt", Replaced(good.at("W.txt"), "c d", "1 2.5 c d 3 4"),
         "\nW.txt" + left + "Labels of communities that are numbers: 2 of 4: 1, 2.5\n" + sizes},
        {"E.txt", good.at("E.txt") + "5 6", "\nE.txt" + left + sizes},
        {"E.txt", Replaced(good.at("E.txt"), "water", "3"),
         "\nLabels of ecological variables that are numbers: 1 of 2: 3\n" + sizes},
        {"W.txt", "3 0 4 0 0\n0 2 1 0 0\n0 0 0 0 0\n0 0 2 0 0\na b c d\n",
         "\nCommunities without individuals: 1 of 4: c\nOTUs that occur nowhere: 2 of 5: 4, 5\n" +
             sizes}};
    const std::string answers = Replaced(Answers(GoodSession(), 31), "\nN\nV\n", "\nN\nC\nX\n");
    for (const auto& c : cases) {
        WriteFiles(folder_, good);
        folder_.Write(c.file, c.content);
        const std::string screen = ScreenOf(answers);
        EXPECT_EQ(Count(screen, "(T)?: " + c.told), 1) << c.file << c.told << screen;
        const ProgramRun scripted = RunProgram(folder_, answers);
        EXPECT_EQ(scripted.err, "");
        EXPECT_EQ(Count(scripted.out, sizes), 0);
    }
    folder_.Write("types.txt", "1 1 2 2 2 3 3\n");
    EXPECT_EQ(Count(ScreenOf("O\nnew\nV\nH n f types.txt 1 0 0 2 7 2 1 n n\nC\nC\nX\n"),
                    "types.txt" + left),
              1);
}

// The second program emptied the track file of a session at work, or took the first one's results.
TEST_F(AtTerminal, ASessionIsOpenInOneProgram) {
    const std::string track = folder_.Read("oldTrk.txt");
    const auto refused = [&](const std::string& letter) {
        const ProgramRun run = RunProgram(folder_, letter + "\nold\nN\nother\n4\nX\n");
        EXPECT_EQ(run.err, kInUse);
        EXPECT_EQ(Count(run.out, "Main menu:"), 3);
        EXPECT_EQ(folder_.Read("oldTrk.txt"), track);
        return run.status == 0;
    };
    Terminal first(folder_);
    first.Type("O\nold\n");
    ASSERT_TRUE(first.Shows("SESSION MENU"));
    EXPECT_TRUE(refused("O") && refused("N"));
    first.Type("C\nN\nold\n");  // into the session again, now without data
    ASSERT_TRUE(first.Shows("DATA FOR SESSION"));
    EXPECT_EQ(RunProgram(folder_, "O\nold\nX\n").err, kInUse);
    first.Type("4\n");
    ASSERT_TRUE(first.Shows("Main menu:"));
    EXPECT_FALSE(folder_.Has(kLock));
    folder_.Write("oldTrk.txt", track);

    // Any end gives the session back.
    first.Type("O\nold\n");
    ASSERT_TRUE(first.Shows("SESSION MENU"));
    first.Kill();
    first.Finish();
    EXPECT_TRUE(folder_.Has(kLock));
    const std::string visit = "O\nold\nC\nX\n";
    EXPECT_EQ(RunProgram(folder_, visit).err, "");
    EXPECT_FALSE(folder_.Has(kLock));
    // Where no lock is to be had, the session opens all the same.
    std::filesystem::create_directory(folder_.File(kLock));
    EXPECT_EQ(RunProgram(folder_, visit).err, "");
    EXPECT_TRUE(folder_.Has(kLock));
}

// The set-up of a large analysis stood still for the better part of a minute.
TEST_F(AtTerminal, ALongAnalysisTellsItsSteps) {
    constexpr int kOTUs = 800;  // so many that this step is long on any machine
    FormdaText data{{}, {}, {{1}, {3}, {2}}};
    data.phylogeny = "1\n3\n";
    std::string types;
    for (int i = 0; i < kOTUs; i++) {
        data.B.push_back({double(i % 7), double(i % 11)});
        data.W.push_back({double(i % 2), double(i % 3), double(i % 5)});
        for (int j = 0; j < kOTUs; j++) data.phylogeny += std::to_string(std::abs(i - j)) + " ";
        types += std::to_string(i % 3) + " ";
    }
    folder_.Write("bigFormda.txt", FormdaOf(data));
    folder_.Write("bigTrk.txt", "bigFormda.txt\n07Jul17\n");
    folder_.Write("bigTypes.txt", types);
    const std::string answers = "O\nbig\nV\nH f bigTypes.txt 1 2 0 2 7 2 1 n n\nC\nC\nX\n";
    const std::string step = "Principal coordinates of the phylogeny  0.";
    Terminal terminal(folder_);
    terminal.Type(answers);
    EXPECT_TRUE(terminal.Shows(step));
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_LT(terminal.longestSilence, 1.0);
    std::filesystem::remove(folder_.File("bigPrinda.txt"));
    EXPECT_EQ(Count(RunProgram(folder_, answers).out, step), 0);
}
