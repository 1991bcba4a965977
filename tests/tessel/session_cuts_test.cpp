// The answers of a whole session, cut: wherever the input ends, the program exits or comes to rest,
// and no file of the user or of an earlier session is harmed.

#include <gtest/gtest.h>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "mxlibDim/dim.h"
#include "support/console.h"
#include "support/good_session.h"

namespace {

ConsoleRun RunWhole(const std::string& answers) {
    FreeGlobals2();
    hasPhylogeny = phylogenyMatrixType = 0;
    return WithConsole(answers, [](FILE*) {
        free1D(gSpareBlockPtr);
        mainInit();
    });
}

class SessionCuts : public testing::Test {
  protected:
    SessionCuts() { WriteFiles(folder_, GoodFiles()); }
    ~SessionCuts() override {
        FreeGlobals2();
        hasPhylogeny = phylogenyMatrixType = 0;
    }

    void ExpectFilesUnharmed(const std::string& answers) {
        for (const auto& [name, content] : GoodFiles())
            EXPECT_EQ(folder_.Read(name), content) << name << " after " << answers;
    }

    TempFolder folder_;
    WorkingIn here_{folder_.path()};
};

}  // namespace

TEST_F(SessionCuts, TheWholeSessionEndsWell) {
    const ConsoleRun run = RunWhole(Answers(GoodSession()));
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_EQ(run.err, "");
    EXPECT_NE(run.out.find("Results on file newPrinda.txt"), std::string::npos);
    ExpectFilesUnharmed("all answers");
}

TEST_F(SessionCuts, EveryCutComesToRest) {
    const std::string whole = Answers(GoodSession());
    for (std::size_t length = 0; length + 2 < whole.size(); length++) {
        const std::string answers = whole.substr(0, length);
        const ConsoleRun run = RunWhole(answers);
        EXPECT_TRUE(run.rests) << answers << run.exitStatus << run.raised;
        // A letter or a line ends by code 2, a number by the reader's own message.
        EXPECT_TRUE(run.err.find("END OF FILE !!!") != std::string::npos ||
                    run.err.find("\nEnd of file ") != std::string::npos)
            << answers << run.err;
        EXPECT_LT(run.out.size() + run.err.size(), 20000U) << answers;
        ExpectFilesUnharmed(answers);
    }
}
