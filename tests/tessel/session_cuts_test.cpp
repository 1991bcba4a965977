// The answers of a whole session, cut: wherever the input ends, the program comes to rest, and no
// file of the user or of an earlier session is harmed.

#include <gtest/gtest.h>

#include "support/good_session.h"
#include "tessel/in_process.h"

namespace {

struct SessionCuts : InProcess {
    SessionCuts() { WriteFiles(folder_, GoodFiles()); }

    void ExpectFilesUnharmed(const std::string& answers) {
        for (const auto& [name, content] : GoodFiles())
            EXPECT_EQ(folder_.Read(name), content) << name << " after " << answers;
    }

    void ExpectEveryCutToRest(const std::string& whole, const std::string& result) {
        const ConsoleRun well = RunWhole(whole);
        EXPECT_EQ(well.exitStatus, 0);
        EXPECT_EQ(well.err, "");
        EXPECT_TRUE(Contains(well.out, result)) << well.out;
        ExpectFilesUnharmed("all answers");
        for (std::size_t length = 0; length + 2 < whole.size(); length++) {
            const std::string answers = whole.substr(0, length);
            const ConsoleRun run = RunWhole(answers);
            EXPECT_TRUE(run.rests) << answers << run.exitStatus << run.raised;
            // A letter or a line ends by code 2, a number by the reader's own message.
            EXPECT_TRUE(Contains(run.err, "END OF FILE !!!") || Contains(run.err, "\nEnd of file "))
                << answers << run.err;
            EXPECT_LT(run.out.size() + run.err.size(), 20000U) << answers;
            ExpectFilesUnharmed(answers);
        }
    }
};

}  // namespace

TEST_F(SessionCuts, EveryCutComesToRest) {
    ExpectEveryCutToRest(Answers(GoodSession()), "Results on file newPrinda.txt");
    ExpectEveryCutToRest(
        "N new 2 old 2 2 2 k b a y 2 2 k 3 2 y 3 2 2 k u v y n k u v u y 1 y V C C X\n",
        "SET GROUP PARTITION");
    ExpectEveryCutToRest(
        "N new 2 old 2 1 1 4 2 u y 1 1 n C N new 2 old 2 1 1 5 2 2 1 k v y y C X\n",
        "with 3 communities, has been created.");
}
