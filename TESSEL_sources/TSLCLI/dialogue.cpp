// The dialogue with its answers from a file: the same screen and files, but where the answers run
// out or the session fails the process ends.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdio>
#include <fstream>
#include <memory>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "TSLCLI/commands.h"
#include "TSLCLI/failure.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/standard_streams.h"

namespace {

bool IsGraphic(char c) {
    return std::isgraph(static_cast<unsigned char>(c)) != 0;
}

/// The console's screen for the length of a scope: it passes on what it is given and keeps the last
/// of it. Readers flush the screen before they read, so that what comes in one piece is
/// what was said since the answer before: the question that was asked last.
class Screen {
  public:
    Screen() {
        consoleStreams.screen = kept_;
        consoleStreams.screenFlushed = [this] { PassOn(); };
    }
    ~Screen() {
        try {
            PassOn();
        } catch (const std::bad_alloc&) {  // the last words are lost
        }
        consoleStreams = {};
        out = stdout;
    }
    Screen(const Screen&) = delete;
    Screen& operator=(const Screen&) = delete;

    /// The last line that is not empty; before it the line over the options of a menu.
    std::string Question();

  private:
    void PassOn() {
        const std::string text = kept_.Take();
        if (std::any_of(text.begin(), text.end(), IsGraphic)) said_ = text;
        // Failures stay with the stream behind, where the command line looks for them.
        if (!quiet) std::fwrite(text.data(), 1, text.size(), stdout);
        if (!quiet) std::fflush(stdout);
    }

    KeptOutput kept_;
    std::string said_;
};

bool IsOption(const std::string& line) {
    return line.front() == ' ' || line.front() == '\t';
}

std::string Screen::Question() {
    PassOn();
    std::vector<std::string> lines;
    std::istringstream text(said_);
    for (std::string line; std::getline(text, line);)
        if (!OneLine(line).empty()) lines.push_back(line);
    if (lines.empty()) return "";
    std::size_t above = lines.size() - 1;
    while (above > 0 && IsOption(lines[above - 1])) above--;
    const std::string question = OneLine(lines.back());
    const bool hasHeading = above > 0 && above < lines.size() - 1;
    return hasHeading ? OneLine(lines[above - 1]) + " ... " + question : question;
}

/// What ended the dialogue.
struct Left {
    enum Way { kExit, kError, kInputEnded } way;
};

[[noreturn]] void LeaveAtEnd(int status) {
    throw Left{status == 0 ? Left::kExit : Left::kError};
}

[[noreturn]] void LeaveAtRest() {
    throw Left{Left::kError};
}

[[noreturn]] void LeaveAtEndOfInput() {
    throw Left{Left::kInputEnded};
}

/// The ways out of the dialogue that leave the process running.
struct EndingsAsExceptions {
    EndingsAsExceptions() { processEndings = {LeaveAtEnd, LeaveAtRest, LeaveAtEndOfInput}; }
    ~EndingsAsExceptions() { processEndings = kept; }
    EndingsAsExceptions(const EndingsAsExceptions&) = delete;
    EndingsAsExceptions& operator=(const EndingsAsExceptions&) = delete;

    ProcessEndings kept = processEndings;
};

/// The file and the line up to which it was read, which a pipe does not tell.
std::string Place(const std::string& answers) {
    const long end = std::ftell(stdin);
    if (end <= 0) return answers;
    std::ifstream file(answers);
    int line = 0;
    bool inLine = false;
    for (long k = 0; k < end; k++) {
        const int c = file.get();
        if (!inLine) line++;
        inLine = c != '\n';
    }
    return answers + ", line " + std::to_string(line);
}

void RunDialogue(const std::string& answers) {
    if (std::freopen(answers.c_str(), "r", stdin) == nullptr)
        FailRun(answers + ": the answers cannot be read");
    SetInputFinished(false);
    Screen screen;
    const EndingsAsExceptions endings;
    try {
        mainInit();
    } catch (const Left& left) {
        const std::string question = ", at the question \"" + screen.Question() + "\"";
        if (left.way == Left::kInputEnded)
            FailRun(Place(answers) + ": the answers run out" + question +
                    ": add those that follow, down to the X of the main menu");
        if (left.way == Left::kError)
            FailRun(Place(answers) + ": the dialogue ended with an error" + question);
    }
}

}  // namespace

CommandAction AddDialogue(CLI::App& command) {
    const auto answers = std::make_shared<std::string>();
    command
        .add_option("--answers", *answers,
                    "File with what would be typed, as for TESSEL < FILE; where it runs out the "
                    "command fails instead of waiting")
        ->type_name("FILE")
        ->required()
        ->check(CLI::Validator(CLI::ExistingFile).description(""));
    return [answers] { RunDialogue(*answers); };
}
