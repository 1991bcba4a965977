#include "TSLIF/catch_point.h"

#include <cctype>
#include <cstdio>
#include <new>
#include <utility>

#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/terminal.h"

namespace {

constexpr const char* kBell = "\a";

bool IsLetter(int c) {
    return std::isalpha(c) != 0;
}

bool IsLineEnd(int c) {
    return c == '\n';
}

struct ErrorEnding {
    int code;
    const char* message;
    bool (*endsWait)(int c);  ///< the character that ends the wait before the process ends
};

constexpr ErrorEnding kErrorEndings[] = {
    {kOutOfMemory, "\nOUT OF MEMORY !!!\n", IsLetter},
    {kEndOfFile, "\nEND OF FILE !!!\n", IsLineEnd},
    {kFailedOutput, "\nFAIL TO PRINT ON FILE !!!\n", IsLetter},
    {kFailedOpening, "\nFAIL TO OPEN FILE !!!\n", IsLineEnd},
};

/// Reads standard input up to a character that ends the wait. Input that has ended never brings
/// one.
void WaitFor(bool (*endsWait)(int c)) {
    FlushScreen();
    for (;;) {
        const int c = InputFinished() ? EOF : std::fgetc(stdin);
        if (c == EOF) {
            SetInputFinished(true);
            RestForever();
        }
        if (endsWait(c)) return;
    }
}

void ActOnError(const RaisedError& error) {
    if (error.code == kBackToMainMenu) {
        std::fputs(kBell, ErrorStream());
        Wait();
        return;
    }
    for (const ErrorEnding& ending : kErrorEndings)
        if (ending.code == error.code) {
            std::fprintf(ErrorStream(), "%s\nQuit and restart TESSEL.\n%s", ending.message, kBell);
            if (!error.reason.empty()) TellPerson(error.reason.c_str());
            WaitFor(ending.endsWait);
        }
    EndProgram(1);
}

}  // namespace

void RunWithCatchPoint(const std::function<void()>& body) {
    RaisedError error = {};
    try {
        body();
        return;
    } catch (RaisedError& raised) {
        error = std::move(raised);
    } catch (const std::bad_alloc&) {
        error.code = kOutOfMemory;
    }
    // Outside the handler, so that what the waits throw in a test is no exception within one.
    ActOnError(error);
}
