#include "TSLGLOB/shell.h"

#include <filesystem>
#include <memory>

#include "TSLIF/catch_point.h"
#include "TSLIFFM2/track.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/terminal.h"
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

// A file that is not there, one that cannot be read, a full disk. Scripted runs do not see the
// reason: all other tests look for the bytes without it.
TEST_F(Shell, APersonIsToldTheReason) {
    const std::shared_ptr<void> restore(nullptr, [](void*) { personHook = nullptr; });
    personHook = [] { return true; };
    EXPECT_EQ(WithConsole("", [](FILE*) { fopenck("absent", nullptr, "r"); }).err,
              "\ncan't open absent \nNo such file or directory\n");
    const auto readNothing = [](FILE*) {
        float number = 0.0F;
        freadck(fopenck("/proc/self/mem", nullptr, "r"), "%f", &number, "f");
    };
    EXPECT_EQ(WithConsole("", readNothing).err, "\ncan't read f \nInput/output error\n\nfile f ");
    for (const char* name : {"TESSEL.prf", "aTrk.txt"})
        std::filesystem::create_symlink("/dev/full", name);
    EXPECT_EQ(RunWhole("S\nC\nx\n").err,
              "TESSEL.prf cannot be read: the defaults hold, with two-tailed tests.\n"
              "\nFAIL TO PRINT ON FILE !!!\n\nQuit and restart TESSEL.\n\a"
              "TESSEL.prf: No space left on device\n");
    std::strcpy(whichTrack, "aTrk.txt");
    EXPECT_EQ(WithConsole("", [](FILE*) { WriteTrack(0); }).err,
              "\ncan't write aTrk.txt \n\aNo space left on device\n");
}
