#include "TSLGLOB/shell.h"

#include "TSLIF/catch_point.h"
#include "mxlibDim/failure.h"
#include "mxlibOut/mxlibOut.h"
#include "tessel/in_process.h"

namespace {

using Shell = InProcess;

template <int code>
void Raise() {
    RaiseError(code);
}

/// The body behind a catch point; `unread` gets what it leaves of the answers.
ConsoleRun Catch(void (*body)(), const std::string& answers, std::string* unread) {
    return Typed(answers, [&] {
        try {
            RunWithCatchPoint(body);
        } catch (...) {
            for (int c = std::fgetc(in); c != EOF; c = std::fgetc(in)) unread->push_back(char(c));
            throw;
        }
    });
}

}  // namespace

TEST_F(Shell, EachErrorCodeHasItsMessageWaitAndStatus) {
    const struct {
        void (*body)();
        const char* message;
        const char* unread;  // of "1\n2z\n3": what the wait leaves
    } cases[] = {{Raise<1>, "OUT OF MEMORY", "\n3"},
                 {Raise<2>, "END OF FILE", "2z\n3"},
                 {Raise<3>, "FAIL TO PRINT ON FILE", "\n3"},
                 {Raise<4>, "FAIL TO OPEN FILE", "2z\n3"}};
    std::string ignored;
    for (const auto& item : cases) {
        std::string unread;
        const ConsoleRun run = Catch(item.body, "1\n2z\n3", &unread);
        EXPECT_EQ(run.err,
                  "\n" + std::string(item.message) + " !!!\n\nQuit and restart TESSEL.\n\a");
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_EQ(unread, item.unread);
        EXPECT_TRUE(Catch(item.body, "1 2", &ignored).rests) << item.message;
    }
    const ConsoleRun givenUp = Catch(Raise<5>, "x\n", &ignored);  // a session; the body returns
    EXPECT_EQ(givenUp.err, "\a");
    EXPECT_EQ(givenUp.exitStatus, -1);
    EXPECT_FALSE(givenUp.rests);
}

TEST_F(Shell, HeadingIsSeventyColumnsWide) {
    const auto heading = [](const char* title) { return Typed("", [&] { Menu(title); }).out; };
    const std::string line = std::string(70, '-') + "\n";
    std::strcpy(sessionName, "meadow");
    std::strcpy(sessionShortName, "meadow");
    EXPECT_EQ(heading("SESSION MENU"),
              "\n\nSESSION MENU" + std::string(52, ' ') + "meadow\n" + line);
    std::strcpy(sessionName, "NULL");
    EXPECT_EQ(heading("X"), "\n\nX" + std::string(46, ' ') + "\n" + line);
}
