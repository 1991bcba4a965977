// Bad input of every kind: the complaint to the character, the exit status, and the files that must
// not change.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <regex>

#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

namespace fs = std::filesystem;

const std::string kQuit = " !!!\n\nQuit and restart TESSEL.\n";
const std::string kFailedOpening = "\nFAIL TO OPEN FILE" + kQuit;
const std::string kFailedOutput = "\nFAIL TO PRINT ON FILE" + kQuit;

std::string Wrong(const std::string& input, const std::string& accepted) {
    return "\nIncorrect input = " + input + ". Reenter.\nAccepted input: " + accepted + "\n";
}

std::string CannotOpen(const std::string& name) {
    return "\ncan't open " + name + " \n";
}

std::string EndOf(const std::string& file) {
    return "\nEnd of file " + file + "\n";
}

std::string Unreadable(const std::string& file) {
    return "\nfile " + file + " \nEND OF FILE" + kQuit;
}

/// All files but those of the session `new`, and the content of each.
FilesByName OtherFiles(const TempFolder& folder) {
    FilesByName files;
    for (const auto& entry : fs::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && name.rfind("new", 0) != 0) files[name] = folder.Read(name);
    }
    return files;
}

/// What the session `new` wrote, less times.
FilesByName Results(const TempFolder& folder) {
    FilesByName results;
    for (const char* suffix :
         {"Trk.txt", "Formda.txt", "Prinda.txt", "RDa.txt", "ChRank_PSAP_X_T.txt"})
        results[suffix] = Masked(folder.Read(std::string("new") + suffix));
    return results;
}

/// The good session with `typed` before the answer to a prompt.
std::string With(const std::string& prompt, const std::string& typed) {
    std::vector<Step> session = GoodSession();
    const auto step = std::ranges::find(session, prompt, &Step::prompt);
    EXPECT_NE(step, session.end()) << prompt;
    step->answer = typed + "\n" + step->answer;
    return Answers(session);
}

const std::string kFolder = "(a folder of this name)", kFull = "(a full device)";

/// A file as it should not be, how the session takes it, and the status with which it ends:
/// kStopped when it comes to rest.
struct Damage {
    std::string file, content, complaint;
    int status = 0;
    std::string answers = ::Answers(GoodSession());
};

/// Runs the program on the files of the good session, of which one is damaged.
struct SessionRun {
    explicit SessionRun(const std::string& answers, const Damage& damage = {}) {
        WriteFiles(folder, GoodFiles());
        for (const char* name : {"folder", "folderTrk.txt", "folderFormda.txt"})
            fs::create_directory(folder.File(name));
        fs::create_symlink("/dev/zero", folder.File("zero"));
        if (!damage.file.empty()) fs::remove(folder.File(damage.file));
        if (damage.content == kFolder)
            fs::create_directory(folder.File(damage.file));
        else if (damage.content == kFull)
            fs::create_symlink("/dev/full", folder.File(damage.file));
        else if (!damage.file.empty())
            folder.Write(damage.file, damage.content);
        const FilesByName before = OtherFiles(folder);
        program = RunProgram(folder, answers, damage.status == kStopped ? 0.5 : 20);
        EXPECT_EQ(OtherFiles(folder), before);
        EXPECT_LT(program.cpuSeconds, damage.status == kStopped ? 0.2 : 5.0);
        static const std::regex singular("gaussj: Singular Matrix-[12]");
        complaint = WithoutBells(std::regex_replace(program.err, singular, ""));
    }

    TempFolder folder;
    ProgramRun program;
    std::string complaint;
};

void ExpectTakenAsTold(const std::vector<Damage>& rows) {
    for (const Damage& damage : rows) {
        SCOPED_TRACE(damage.file + ":\n" + damage.content);
        const SessionRun run(damage.answers, damage);
        EXPECT_EQ(run.complaint, damage.complaint);
        EXPECT_EQ(run.program.status, damage.status);
    }
}

std::string Garbage(unsigned seed, int size) {
    std::mt19937 generator(seed);
    std::string bytes;
    while (size-- > 0) bytes.push_back(static_cast<char>(generator() % 256));
    return bytes;
}

}  // namespace

TEST(BadInput, MistakesAtEachPromptLeaveNoTrace) {
    const FilesByName expected = Results(SessionRun(Answers(GoodSession())).folder);
    const std::string x200(200, 'x');
    struct Mistake {
        std::string prompt, typed, complaint;
    };
    // Rankings before the analyses, of other criteria and of the same.
    const std::string types = "n\nk\n1 2 3 1 2\n0\n", rest = "1\nn\n1\n3\nn\nK\n";
    const std::string rankings = "K\n10\n1\n1\n2\n2\nn\nK\n15\n" + types + "1\n6\n" + rest +
                                 "21\n" + types + "3\n" + rest + "12\n" + types + "2\n" + rest;
    // Blanks, and what is not in the list.
    std::vector<Mistake> mistakes;
    for (const auto& [prompt, accepted, answer] : GoodSession()) {
        const bool isRange = Contains(accepted, "to");
        std::vector<std::string> wrong = {"nan", "inf", "-2", "99", "2.5"};
        if (accepted.empty()) wrong.clear();
        if (isRange) wrong = {"nan", "-inf", "-2", "1e+20"};
        if (!isRange && accepted.find_first_not_of("0123456789 ") != std::string::npos)
            wrong = {"?", "7"};
        Mistake mistake{prompt, "\n \t", ""};
        for (const std::string& word : wrong) {
            mistake.typed += " " + word;
            mistake.complaint += Wrong(word, accepted);
        }
        mistakes.push_back(mistake);
    }
    for (const char* prompt : {"file B", "file F", "file W", "species file", "file E"})
        mistakes.push_back({prompt, "no such file\nfolder\n/\nzero",
                            CannotOpen("no such file") + CannotOpen("folder") + CannotOpen("/") +
                                CannotOpen("zero")});
    // Names of other files and of sessions, and what is not echoed as it was typed.
    for (const auto& [prompt, typed, name] :
         std::vector<Mistake>{{"data option", "2\nabsent", "absentFormda.txt"},
                              {"data option", "2\nfolder", "folderFormda.txt"},
                              {"source of types", "f\nfolder", "folder"},
                              {"source of types", "f\n" + x200, std::string(41, 'x')},
                              {"group file", "absent.txt\nf", "absent.txt"},
                              {"group file", "zero\nf", "zero"},
                              {"group file", "folder\nf", "folder"},
                              {"group file", x200 + "\nf", std::string(99, 'x')},
                              {"main menu again", "O\nabsent", "absentTrk.txt"},
                              {"main menu again", "O\nfolder", "folderTrk.txt"},
                              {"main menu again", "N\nfolder", "folderTrk.txt"}})
        mistakes.push_back({prompt, typed, CannotOpen(name)});
    const std::vector<Mistake> others = {
        {"community menu", rankings.substr(0, rankings.size() - 3), ""},
        {"main menu", std::string(200, 'q'), Repeated(Wrong("q", "N O S A X"), 200)},
        {"data option", "99999999999999999999", Wrong("1e+20", "1 2 3 4")},
        {"data option", std::string(200, '9'), Wrong("1e+200", "1 2 3 4")},
        {"data option", "three", ""},
        {"data option", x200, ""},
        // 41 characters are taken at a time.
        {"file B", x200,
         Repeated(CannotOpen(std::string(41, 'x')), 4) + CannotOpen(std::string(36, 'x'))},
        {"OTUs", "0 0.99", Wrong("0", "1 to 2.14748e+09") + Wrong("0.99", "1 to 2.14748e+09")},
        {"variables", "2147483648", Wrong("2.14748e+09", "1 to 2.14748e+09")},
        {"seed", "4294967296", Wrong("4.29497e+09", "0 to 4.29497e+09")},
        {"seed", "seven", ""},
    };
    mistakes.insert(mistakes.end(), others.begin(), others.end());
    for (const Mistake& mistake : mistakes) {
        SCOPED_TRACE(mistake.prompt + ": " + mistake.typed);
        const SessionRun run(With(mistake.prompt, mistake.typed));
        EXPECT_EQ(run.complaint, mistake.complaint);
        EXPECT_EQ(run.program.status, 0);
        EXPECT_EQ(Results(run.folder), expected);
    }
}

// The readers of B, F and W go on with missing values, those of E and the names do not.
TEST(BadInput, DamagedRawFiles) {
    std::vector<Damage> rows = {
        {"types.txt", "nan inf", EndOf("types.txt"), kStopped},
        {"types.txt", "a1 b1 c2 d2 e2", ""},
        {"types.txt", "99999999999999999999 -99999999999999999999 1 1 1", ""},
        {"spp.txt", Repeated(std::string(200, 'x') + "\n", 5), ""},
        {"spp.txt", "Poa\nStipa\n", Unreadable("spp.txt"), 1},
    };
    for (const char* text : {"", "1 2 3 four 5 6 7 8 a b", "1 2 3 4 5 6 7 8 only"})
        rows.push_back({"E.txt", text, Unreadable("E.txt"), 1});
    for (const char* file : {"B.txt", "F.txt", "W.txt", "E.txt"})
        for (const char* number : {"nan", "-inf", "1e38", "1e400", "1e-42"})
            rows.push_back({file, Repeated(std::string(number) + "\n", 25) + " a b c d", ""});
    for (const char* file : {"B.txt", "F.txt", "W.txt"}) {
        rows.push_back({file, "", EndOf(file)});
        std::string text = "some words before " + GoodFiles()[file];
        std::ranges::replace(text, '\n', '\r');
        rows.push_back({file, text, ""});
    }
    ExpectTakenAsTold(rows);
}

TEST(BadInput, DamagedSessionFiles) {
    const std::string formda = GoodFiles()["oldFormda.txt"], track = GoodFiles()["oldTrk.txt"];
    std::vector<Damage> rows = {
        {"oldTrk.txt", std::string(300, 'x'), CannotOpen(std::string(47, 'x')) + kFailedOpening, 1},
        {"oldTrk.txt", "folderFormda.txt\n07Jul17\n",
         CannotOpen("folderFormda.txt") + kFailedOpening, 1},
        {"oldTrk.txt", "oldFormda.txt\n01Jan05\n" + Repeated("x ", 60), ""},
        {"oldTrk.txt", "oldFormda.txt\n" + std::string(300, 'v'), ""},
        {"TESSEL.prf", "", ""},
        {"TESSEL.prf", kFolder, ""},
    };
    for (const std::string& text : {std::string(), std::string(5000, '\0'), Garbage(3, 5000),
                                    formda.substr(0, formda.size() / 2)})
        rows.push_back({"oldFormda.txt", text, Unreadable("oldFormda.txt"), 1});
    for (const std::string& text :
         {std::string("oldFormda.txt\n"), track + "NULL\nNULL\n", track + Garbage(4, 300)})
        rows.push_back({"oldTrk.txt", text, Unreadable("oldTrk.txt"), 1});
    for (Damage& row : rows) row.answers = "O\nold\nV\nC\nC\nX\n";
    // Sources of a derived and of a merged data set.
    const std::string derive = "N\nnew\n2\nold\n2\n1 1 1 1 n\nC\nX\n";
    const std::string merge = "N\nnew\n3\nold\nold\n4\nX\n";
    for (const std::string& answers : {derive, merge})
        rows.push_back(
            {"oldFormda.txt", Garbage(3, 5000), Unreadable("oldFormda.txt"), 1, answers});
    rows.push_back(
        {"newFormda.txt", kFolder, CannotOpen("newFormda.txt") + kFailedOutput, 1, derive});
    ExpectTakenAsTold(rows);
}

// Some editors put one before every text, where it spoilt the first number or word.
TEST(BadInput, ByteOrderMarksChangeNothing) {
    const std::string answers = "O\nold\nC\n" + Answers(GoodSession());
    const SessionRun well(answers);
    const TempFolder folder;
    for (const auto& [name, content] : GoodFiles()) folder.Write(name, "\xEF\xBB\xBF" + content);
    const ProgramRun marked = RunProgram(folder, answers);
    EXPECT_EQ(marked.err, well.program.err);
    EXPECT_EQ(marked.status, 0);
    EXPECT_EQ(Results(folder), Results(well.folder));
}

TEST(BadInput, OutputThatFindsNoPlace) {
    const std::string raw = Answers(GoodSession());
    ExpectTakenAsTold({
        {"newTrk.txt", kFolder, CannotOpen("newTrk.txt"), 0, "N\nnew\nX\n"},
        {"newFormda.txt", kFolder, CannotOpen("newFormda.txt") + kFailedOutput, 1},
        {"newFormda.txt", kFull, kFailedOutput, 1},
        {"newPrinda.txt", kFolder, CannotOpen("newPrinda.txt") + kFailedOpening, 1,
         Replaced(raw, "y\ny\nK\n", "y\ny\nw\nK\n")},
        {"newRDa.txt", kFolder, CannotOpen("newRDa.txt"), 1},
        {"newChRank_PSAP_X_T.txt", kFolder, CannotOpen("newChRank_PSAP_X_T.txt") + kFailedOpening,
         1},
        {"TESSEL.prf", kFolder, CannotOpen("TESSEL.prf") + kFailedOutput, 1, "S\nC\nx\n"},
        {"TESSEL.prf", kFull, kFailedOutput, 1, "O\nold\nS\nC\nx\n"},
        {"newPrinda.txt", kFull, kFailedOutput, 1, Replaced(raw, "y\ny\nK\n", "y\ny\na\nK\n")},
        {"newChRank_PSAP_X_T.txt", kFull, kFailedOutput, 1},
        {"oldTrk.txt", kFolder, Repeated(CannotOpen("oldTrk.txt"), 2), 0, "O\nold\nN\nold\nX\n"},
    });
    // The report holds what came before the test.
    const SessionRun run(raw, {"newRDa.txt", kFolder, "", 1});
    EXPECT_TRUE(Contains(run.folder.Read("newPrinda.txt"), "Pooled performance matrix X"));
}
