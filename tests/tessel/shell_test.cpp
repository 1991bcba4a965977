#include "TSLGLOB/shell.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <string>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/session_files.h"
#include "TSLGLOB/settings.h"
#include "TSLIF/catch_point.h"
#include "TSLIF/menus.h"
#include "mxlibDim/failure.h"
#include "mxlibOut/mxlibOut.h"
#include "support/console.h"

namespace {

template <int code>
void Raise() {
    RaiseError(code);
}

ConsoleRun Catch(void (*body)(), const std::string& answers, std::string* unread = nullptr) {
    return WithConsole(answers, [&](FILE* stream) {
        in = stream;
        out = stdout;
        try {
            RunWithCatchPoint(body);
        } catch (...) {
            if (unread != nullptr)
                for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream))
                    unread->push_back(char(c));
            throw;
        }
    });
}

std::string Heading(const char* title) {
    return WithConsole("",
                       [title](FILE*) {
                           out = stdout;
                           Menu(title);
                       })
        .out;
}

}  // namespace

TEST(CatchPoint, EachCodeHasItsMessageWaitAndStatus) {
    const struct {
        void (*body)();
        const char* message;
        const char* unread;  // of "1\n2z\n3": what the wait leaves
    } cases[] = {{Raise<1>, "OUT OF MEMORY", "\n3"},
                 {Raise<2>, "END OF FILE", "2z\n3"},
                 {Raise<3>, "FAIL TO PRINT ON FILE", "\n3"},
                 {Raise<4>, "FAIL TO OPEN FILE", "2z\n3"}};
    for (const auto& item : cases) {
        std::string unread;
        const ConsoleRun run = Catch(item.body, "1\n2z\n3", &unread);
        EXPECT_EQ(run.err,
                  "\n" + std::string(item.message) + " !!!\n\nQuit and restart TESSEL.\n\a");
        EXPECT_EQ(run.exitStatus, 1);
        EXPECT_EQ(unread, item.unread);
        EXPECT_TRUE(Catch(item.body, "1 2").rests) << item.message;
    }
}

TEST(CatchPoint, GivingUpASessionReturns) {
    const ConsoleRun run = Catch(Raise<5>, "x\n");
    EXPECT_EQ(run.err, "\a");
    EXPECT_EQ(run.exitStatus, -1);
    EXPECT_FALSE(run.rests);
}

TEST(Shell, HeadingIsSeventyColumnsWide) {
    std::strcpy(sessionName, "meadow");
    std::strcpy(sessionShortName, "meadow");
    EXPECT_EQ(Heading("SESSION MENU"),
              "\n\nSESSION MENU" + std::string(52, ' ') + "meadow\n" + std::string(70, '-') + "\n");
    std::strcpy(sessionName, "NULL");
    EXPECT_EQ(Heading("X"), "\n\nX" + std::string(46, ' ') + "\n" + std::string(70, '-') + "\n");
    sessionName[0] = sessionShortName[0] = '\0';
}

TEST(Shell, InitGlobalsSetsDefaults) {
    sDigits = 3;
    maxColsPrint = 80;
    saveStruct = saveRndData = showMemory = drawProfPtsOpt = 'y';
    countDoubleAbsence = 0;
    sqrtDissimOpt_RaoTraits = false;
    sqrtDissimOpt_RaoPhyl = true;
    SMWSize = profileType = whichLevelGrCST = 5;
    nGroups = nPart = nCstGroups = nPartCst = rndTestOpt = nProcessors = 7;
    maxComponents = 2;
    biplotCorrThreshold = 0.1F;
    InitGlobals();
    EXPECT_EQ(sDigits, 6);
    EXPECT_EQ(maxColsPrint, 2147483647);
    for (const char option : {saveStruct, saveRndData, showMemory, drawProfPtsOpt})
        EXPECT_EQ(option, 'n');
    EXPECT_EQ(countDoubleAbsence, 1);
    EXPECT_TRUE(sqrtDissimOpt_RaoTraits);
    EXPECT_FALSE(sqrtDissimOpt_RaoPhyl);
    EXPECT_TRUE(BealsIncludeOpt && twoTailedTestMantel);
    EXPECT_EQ(overfitFactorPCARegr, 2.0);
    for (const int one : {SMWSize, profileType, whichLevelGrCST}) EXPECT_EQ(one, 1);
    for (const int none : {nGroups, nPart, nCstGroups, nPartCst, rndTestOpt, nProcessors})
        EXPECT_EQ(none, 0);
    EXPECT_EQ(maxComponents, 6);
    EXPECT_EQ(biplotCorrThreshold, 0.6F);
}
