// What commands say of wrong input and of odd data, as tests/data/told.txt holds it part by part:
//
//   file NAME         a file of the user;  change NAME  puts in it what stands behind "=>" for what
//                     stands before;  nothing  takes all away
//   example NAME      the session of an example;  run COMMAND  adds the files of a command
//   refused COMMAND   cases, a line each: "{file: old -> new} more words =STATUS> told" runs the
//                     command with more words (~ for a blank in one) after a change in a file (in
//                     all of it without an arrow); its one line of complaint holds what is told,
//                     and no file changes
//   found, warned     such cases of a command that succeeds, with the number of its findings or
//                     warnings
//   same              such cases that leave the files of a dialogue, typed behind =0>, that makes
//                     the session `new`

#include <algorithm>
#include <regex>

#include "support/parts.h"
#include "tessel/example_session.h"

namespace {

/// \n, \xEF and \\ for what they stand for.
std::string Unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); i++) {
        const bool escapes = text[i] == '\\';
        i += escapes;
        if (escapes && text[i] == 'x')
            plain += char(std::stoi(text.substr(i + 1, 2), nullptr, 16)), i += 2;
        else
            plain += escapes && text[i] == 'n' ? '\n' : text[i];
    }
    return plain;
}

struct Told : ExampleSession {
    void Expect(const std::string& verb, const std::string& command, const std::string& line) {
        SCOPED_TRACE(verb + " " + command + " " + line);
        static const std::regex form(R"((?:\{(\S+): (?:(.*) -> )?(.*)\} ?)?(.*?) ?=(\d)> ?(.*))");
        std::smatch parts;
        ASSERT_TRUE(std::regex_match(line, parts, form));
        FilesByName files = files_;
        std::string& file = files[parts[1]];
        file = parts[2].matched ? Replaced(file, Unescaped(parts[2]), Unescaped(parts[3]))
                                : Unescaped(parts[3]);
        files.erase("");
        FilesByName expected;
        if (verb == "same") {
            WriteFiles(folder_, files_);
            EXPECT_EQ(RunWhole(parts[6]).exitStatus, 0);
            expected = TakeFiles();
        } else {
            WriteFiles(folder_, files);
            expected = TakeFiles();
        }
        Clean();
        WriteFiles(folder_, files);
        std::istringstream words(command + " " + parts[4].str());
        Texts all;
        while (words >> all.emplace_back()) std::ranges::replace(all.back(), '~', ' ');
        all.pop_back();
        const CommandRun run = RunCommand(all);
        FilesByName left = TakeFiles();
        const std::string begin = verb == "found"    ? "Looks wrong: "
                                  : verb == "warned" ? "TESSEL: warning: "
                                                     : "TESSEL: ";
        const std::string text = verb == "found" ? run.out : run.err + run.out;
        const int number = std::stoi(parts[5]);
        EXPECT_EQ(run.status, verb == "refused" ? number : 0);
        EXPECT_EQ(Count(run.err, "\n"), Count(run.err, "TESSEL: "));
        if (verb == "same") {
            left.erase("newNames.csv");
            left[parts[1]] = expected[parts[1]];
        } else {
            const int warnings = verb == "refused" ? Count(text, "TESSEL: warning: ") : 0;
            EXPECT_EQ(Count(text, begin), verb == "refused" ? 1 + warnings : number) << text;
            EXPECT_TRUE(
                Contains(text, (number > 0 && verb == "found" ? begin : "") + parts[6].str()))
                << text;
        }
        EXPECT_TRUE(left == expected || verb == "warned");
    }

    FilesByName files_;
};

}  // namespace

TEST_F(Told, AsWrittenDown) {
    for (const auto& [verb, name, text] : PartsOf(TESSEL_TEST_DATA "/told.txt")) {
        if (verb == "file") {
            files_[name] = text;
        } else if (verb == "change") {
            const std::size_t arrow = text.find("=>\n");
            files_[name] = Replaced(files_[name], text.substr(0, arrow), text.substr(arrow + 3));
        } else if (verb == "nothing") {
            files_.clear();
        } else if (verb == "example") {
            files_ = Session(name);
        } else if (verb == "run") {
            WriteFiles(folder_, files_);
            EXPECT_EQ(RunCommand(name).status, 0);
            for (const auto& [file, content] : TakeFiles()) files_[file] = content;
        } else {
            std::istringstream lines(text);
            for (std::string line; std::getline(lines, line);)
                if (!line.empty() && line[0] != '#') Expect(verb, name, line);
        }
    }
}
