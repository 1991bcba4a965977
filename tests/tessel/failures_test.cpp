// The ways out of a session that no answer brings about: errors by their codes, a disk that is
// full.

#include <signal.h>
#include <sys/resource.h>

#include <memory>
#include <tuple>

#include "TSLIF/catch_point.h"
#include "TSLIF2/preferences.h"
#include "TSLIFFM2/track.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/terminal.h"
#include "support/text.h"
#include "tessel/in_process.h"

namespace {

namespace fs = std::filesystem;

using Failures = InProcess;

template <int code>
void Raise() {
    RaiseError(code);
}

TEST_F(Failures, EachErrorCodeHasItsMessageWaitAndStatus) {
    const std::tuple<void (*)(), const char*, const char*> cases[] = {
        {Raise<1>, "OUT OF MEMORY", "\n3"},  // last: what the wait leaves of "1\n2z\n3"
        {Raise<2>, "END OF FILE", "2z\n3"},
        {Raise<3>, "FAIL TO PRINT ON FILE", "\n3"},
        {Raise<4>, "FAIL TO OPEN FILE", "2z\n3"}};
    for (const auto& [raise, message, left] : cases) {
        const auto body = raise;
        std::string unread;
        const ConsoleRun run = WithConsole("1\n2z\n3", [&](FILE* stream) {
            try {
                RunWithCatchPoint(body);
            } catch (...) {
                for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream))
                    unread += char(c);
                throw;
            }
        });
        EXPECT_EQ(run.err, "\n" + std::string(message) + " !!!\n\nQuit and restart TESSEL.\n\a");
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_EQ(unread, left);
    }
    const ConsoleRun givenUp = Typed("x\n", [] { RunWithCatchPoint(Raise<5>); });
    EXPECT_EQ(givenUp.err, "\a");
    EXPECT_EQ(Ints({givenUp.exitStatus, givenUp.rests}), Ints({-1, 0}));
}

// A disk that fills up cost the file that was there.
TEST_F(Failures, OutputThatFailsLeavesTheOldFiles) {
    std::strcpy(whichTrack, "plotsTrk.txt");
    ASSERT_EQ(Open(FormdaOf({Rows(4, {1, 2}), Rows(4, {1, 2, 3})})).raised, 0);
    const auto writeData = [] { WriteFormda(tcst, whichFormda, dataName, csm_Float, cadat); };
    const std::tuple<const char*, void (*)(), int, const char*> cases[] = {
        {TESSELPrefsName, WritePreferences, 3, ""},
        {whichFormda, writeData, 3, ""},
        {whichTrack, [] { WriteTrack(1); }, 0, "\ncan't write plotsTrk.txt \n\a"}};
    signal(SIGXFSZ, SIG_IGN);
    rlimit room;
    getrlimit(RLIMIT_FSIZE, &room);
    const rlimit full{100, room.rlim_max};
    for (const auto& [name, write, raised, message] : cases) {
        folder_.Write(name, "old");
        const auto body = write;
        const ConsoleRun run = Typed("", [&] {
            setrlimit(RLIMIT_FSIZE, &full);
            const std::shared_ptr<void> restore(nullptr,
                                                [&](void*) { setrlimit(RLIMIT_FSIZE, &room); });
            body();
        });
        EXPECT_EQ(run.raised, raised) << name;
        EXPECT_EQ(run.err, message);
        EXPECT_EQ(folder_.Read(name), "old");
        EXPECT_FALSE(folder_.Has(std::string(name) + ".tmp"));
        // With room again the file is replaced; a link and the permissions stay.
        const auto mode = fs::perms::owner_read | fs::perms::owner_write;
        fs::rename(name, "real");
        fs::permissions("real", mode);
        fs::create_symlink("real", name);
        write();
        EXPECT_TRUE(fs::is_symlink(name));
        EXPECT_GT(fs::file_size("real"), 100U);
        EXPECT_EQ(fs::status("real").permissions(), mode);
        fs::remove("real");
    }
}

// A file that is not there, one that cannot be read, a full disk. Scripted runs do not see the
// reason: all other tests look for the bytes without it.
TEST_F(Failures, APersonIsToldTheReason) {
    const std::shared_ptr<void> restore(nullptr, [](void*) { personHook = nullptr; });
    personHook = [] { return true; };
    EXPECT_EQ(Typed("", [] { fopenck("absent", nullptr, "r"); }).err,
              "\ncan't open absent \nNo such file or directory\n");
    const auto readNothing = [] {
        float number = 0.0F;
        freadck(fopenck("/proc/self/mem", nullptr, "r"), "%f", &number, "f");
    };
    EXPECT_EQ(Typed("", readNothing).err, "\ncan't read f \nInput/output error\n\nfile f ");
    for (const char* name : {"TESSEL.prf", "aTrk.txt"}) fs::create_symlink("/dev/full", name);
    EXPECT_EQ(RunWhole("S\nC\nx\n").err,
              "TESSEL.prf cannot be read: the defaults hold, with two-tailed tests.\n"
              "\nFAIL TO PRINT ON FILE !!!\n\nQuit and restart TESSEL.\n\a"
              "TESSEL.prf: No space left on device\n");
    std::strcpy(whichTrack, "aTrk.txt");
    EXPECT_EQ(Typed("", [] { WriteTrack(0); }).err,
              "\ncan't write aTrk.txt \n\aNo space left on device\n");
}

}  // namespace
