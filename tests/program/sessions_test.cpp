// Whole sessions, each written down in a file of tests/data/sessions, part by part. The first word
// of a part's heading says what its text is:
//
//   file NAME    a file of the user;  gone NAME  takes one away;  change NAME  puts in it what
//   stands
//                behind "=>" for what stands before
//   typed        what is typed, as one run of the program
//   screen, complaints, NAME    the whole screen, standard error or file after the run; a line of
//                three dots stands for anything
//   in NAME      what that file (or the screen) holds, pieces that follow each other, dots as above
//   ends HOW     1 or "at rest"; a run that says nothing ends by 0, and complains of nothing

#include <gtest/gtest.h>

#include "support/parts.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

namespace fs = std::filesystem;

/// Expects the pieces between the dots in their order; the first and the last stand at the ends of
/// a `whole` text.
void ExpectText(const std::string& text, const std::string& expected, bool whole) {
    const std::string dots = "...\n";
    std::size_t at = 0, from = 0;
    for (std::size_t to = 0; to != std::string::npos; from = to + dots.size()) {
        to = expected.find(dots, from);
        std::string piece = expected.substr(from, to - from);
        if (!whole && to == std::string::npos) piece.pop_back();
        const std::size_t found = whole && to == std::string::npos && text.ends_with(piece)
                                      ? text.size() - piece.size()
                                      : text.find(piece, at);
        ASSERT_NE(found, std::string::npos) << "no\n" << piece << "in\n" << text.substr(at);
        if (whole && from == 0) {
            ASSERT_EQ(found, 0U) << text;
        }
        at = found + piece.size();
    }
    if (whole) {
        EXPECT_EQ(text.substr(at), "");
    }
}

class Sessions : public testing::TestWithParam<std::string> {
  protected:
    std::string TextOf(const std::string& name) const {
        const std::string text = name == "screen"       ? run_.out
                                 : name == "complaints" ? run_.err
                                                        : folder_.Read(name);
        const std::string masked = Masked(name == "complaints" ? WithoutBells(text) : text);
        return masked.empty() || masked.back() == '\n' ? masked : masked + "\n";
    }

    void Change(const std::string& name, const std::string& text) const {
        const std::string arrow = "=>\n";
        const std::size_t at = text.find(arrow);
        folder_.Write(
            name, Replaced(folder_.Read(name), text.substr(0, at), text.substr(at + arrow.size())));
    }

    /// One run of the program; what follows up to the next one is expected of it.
    void Type(const std::vector<Part>& parts, std::size_t at) {
        int status = 0;
        bool complains = false;
        for (std::size_t next = at + 1; next < parts.size() && parts[next].verb != "typed";
             next++) {
            if (parts[next].verb == "ends") status = parts[next].name == "1" ? 1 : kStopped;
            complains |= parts[next].verb == "complaints";
        }
        run_ = RunProgram(folder_, parts[at].text, status == kStopped ? 0.4 : 60);
        EXPECT_EQ(run_.status, status) << run_.out;
        if (!complains) {
            EXPECT_EQ(TextOf("complaints"), "");
        }
    }

    const TempFolder folder_;
    ProgramRun run_;
};

TEST_P(Sessions, GoAsWrittenDown) {
    const std::vector<Part> parts = PartsOf(TESSEL_TEST_DATA "/sessions/" + GetParam() + ".txt");
    for (std::size_t i = 0; i < parts.size(); i++) {
        const auto& [verb, name, text] = parts[i];
        SCOPED_TRACE(verb + " " + name + " after typing " + (i > 0 ? parts[i - 1].text : ""));
        if (verb == "file")
            folder_.Write(name, text);
        else if (verb == "change")
            Change(name, text);
        else if (verb == "gone")
            EXPECT_TRUE(fs::remove_all(folder_.File(name)) > 0);
        else if (verb == "typed")
            Type(parts, i);
        else if (verb != "ends")
            ExpectText(TextOf(verb == "in" ? name : verb), text, verb != "in");
        if (HasFatalFailure()) return;
    }
}

std::vector<std::string> NamesOfSessions() {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(TESSEL_TEST_DATA "/sessions"))
        names.push_back(entry.path().stem().string());
    return names;
}

INSTANTIATE_TEST_SUITE_P(Each, Sessions, testing::ValuesIn(NamesOfSessions()),
                         [](const auto& session) { return session.param; });

}  // namespace
