// Bad input of every kind: the complaint to the character, the exit status, and the files that must
// not change.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <regex>
#include <string>
#include <vector>

#include "support/good_session.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace {

const std::string kQuit = "\nQuit and restart TESSEL.\n";
const std::string kEndOfFile = "\nEND OF FILE !!!\n" + kQuit;
const std::string kFailedOpening = "\nFAIL TO OPEN FILE !!!\n" + kQuit;
const std::string kFailedOutput = "\nFAIL TO PRINT ON FILE !!!\n" + kQuit;

std::string Repeated(const std::string& text, int times) {
    std::string repeated;
    while (times-- > 0) repeated += text;
    return repeated;
}

std::string Wrong(const std::string& input, const std::string& accepted) {
    return "\nIncorrect input = " + input + ". Reenter.\nAccepted input: " + accepted + "\n";
}

std::string CannotOpen(const std::string& name) {
    return "\ncan't open " + name + " \n";
}

std::string WithoutBells(std::string text) {
    std::erase(text, '\a');
    return text;
}

const std::string kCount = "1 to 2.14748e+09";
const std::string kIterations = "0 to 2.14748e+09";
const std::string kSeeds = "0 to 4.29497e+09";

/// The files of the good session and folders where files are looked for.
void Furnish(const TempFolder& folder) {
    WriteFiles(folder, GoodFiles());
    for (const char* name : {"folder", "folderTrk.txt", "folderFormda.txt"})
        std::filesystem::create_directory(folder.File(name));
}

/// All files but those whose name begins with `exempt`, and the content of each.
FilesByName FilesIn(const TempFolder& folder, const std::string& exempt = "new") {
    FilesByName files;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        const std::string name = entry.path().filename().string();
        if (entry.is_regular_file() && name.rfind(exempt, 0) != 0) files[name] = folder.Read(name);
    }
    return files;
}

/// What the session `new` wrote, less times.
FilesByName Results(const TempFolder& folder) {
    FilesByName results;
    for (const char* suffix : {"Trk.txt", "Formda.txt", "Prinda.txt", "RDa.txt"})
        results[suffix] = Masked(folder.Read(std::string("new") + suffix));
    return results;
}

std::string WithAnswer(const std::string& prompt, const std::string& answer) {
    std::vector<Step> session = GoodSession();
    int found = 0;
    for (Step& step : session)
        if (step.prompt == prompt) {
            step.answer = answer;
            found++;
        }
    EXPECT_EQ(found, 1) << prompt;
    return Answers(session);
}

std::string AnswerTo(const std::string& prompt) {
    for (const Step& step : GoodSession())
        if (step.prompt == prompt) return step.answer;
    return "";
}

/// An answer that is not taken, typed before the good one.
struct Mistake {
    std::string prompt;
    std::string typed;
    std::string complaint;
};

std::vector<Mistake> Mistakes() {
    const std::string x200(200, 'x');
    std::vector<Mistake> mistakes = {
        {"main menu", "q", Wrong("q", "N O S A X")},
        {"main menu", "7", Wrong("7", "N O S A X")},
        {"main menu", std::string(200, 'q'), Repeated(Wrong("q", "N O S A X"), 200)},
        {"data option", "5", Wrong("5", "1 2 3 4")},
        {"data option", "1.5", Wrong("1.5", "1 2 3 4")},
        {"data option", "nan", Wrong("nan", "1 2 3 4")},
        {"data option", "-inf", Wrong("-inf", "1 2 3 4")},
        {"data option", "99999999999999999999", Wrong("1e+20", "1 2 3 4")},
        {"data option", std::string(200, '9'), Wrong("1e+200", "1 2 3 4")},
        {"data option", "three", ""},
        {"data option", x200, ""},
        {"data option", "2\nabsent", CannotOpen("absentFormda.txt")},
        {"data option", "2\nfolder", CannotOpen("folderFormda.txt")},
        {"data option", "3\nabsent", CannotOpen("absentFormda.txt")},
        {"data option", "3\nold\nabsent", CannotOpen("absentFormda.txt")},
        {"file B", "absent.txt", CannotOpen("absent.txt")},
        {"file B", "folder", CannotOpen("folder")},
        {"file B", "/", CannotOpen("/")},
        {"file B", "\n  \t", ""},
        // 41 characters are taken at a time.
        {"file B", x200,
         Repeated(CannotOpen(std::string(41, 'x')), 4) + CannotOpen(std::string(36, 'x'))},
        {"F 0/1", "2", Wrong("2", "0 1")},
        {"file F", "B.txt.", CannotOpen("B.txt.")},
        {"file W", "folder", CannotOpen("folder")},
        {"species 0/1", "yes", ""},
        {"species file", "no such file", CannotOpen("no such file")},
        {"E 0/1", "-1", Wrong("-1", "0 1")},
        {"file E", "folder", CannotOpen("folder")},
        {"OTUs", "0", Wrong("0", kCount)},
        {"OTUs", "-5", Wrong("-5", kCount)},
        {"OTUs", "0.99", Wrong("0.99", kCount)},
        {"OTUs", "nan", Wrong("nan", kCount)},
        {"OTUs", "inf", Wrong("inf", kCount)},
        {"OTUs", "2147483648", Wrong("2.14748e+09", kCount)},
        {"OTUs", "many", ""},
        {"traits", "0", Wrong("0", kCount)},
        {"trait labels", "3", Wrong("3", "1 2")},
        {"format of B", "1.0001", Wrong("1.0001", "1 2")},
        {"source of types", "x", Wrong("x", "f k")},
        {"source of types", "f\nabsent.txt", CannotOpen("absent.txt")},
        {"source of types", "f\nfolder", CannotOpen("folder")},
        {"source of types", "f\n" + x200, CannotOpen(std::string(41, 'x'))},
        {"trait types", "nan", Wrong("nan", "1 2 3 4")},
        {"trait types", "5 2.5 inf",
         Wrong("5", "1 2 3 4") + Wrong("2.5", "1 2 3 4") + Wrong("inf", "1 2 3 4")},
        {"types correct", "?", Wrong("?", "y n")},
        {"trait groups", "2", Wrong("2", "0 1")},
        {"format of F", "4", Wrong("4", "1 2 3")},
        {"communities", "0", Wrong("0", kCount)},
        {"community labels", "0", Wrong("0", "1 2")},
        {"format of W", "nan", Wrong("nan", "1 2 3")},
        {"species labels", "3", Wrong("3", "1 2")},
        {"variables", "-2147483649", Wrong("-2.14748e+09", kCount)},
        {"variable labels", "1e1", Wrong("10", "1 2")},
        {"kind of E", "6", Wrong("6", "1 2 3 4 5")},
        {"order of E", "c", Wrong("c", "n t")},
        {"session menu", "h", Wrong("h", "V S C")},
        {"community menu", "V", Wrong("v", "H K C")},
        {"species as types", "1", Wrong("1", "y n")},
        {"source of groups", "d", Wrong("d", "f k")},
        {"group file", "absent.txt\nf", CannotOpen("absent.txt")},
        {"group file", "folder\nf", CannotOpen("folder")},
        {"group file", x200 + "\nf", CannotOpen(std::string(99, 'x'))},
        {"fuzzy", "3", Wrong("3", "0 1")},
        {"iterations", "-1", Wrong("-1", kIterations)},
        {"iterations", "nan", Wrong("nan", kIterations)},
        {"iterations", "1e10", Wrong("1e+10", kIterations)},
        {"restriction", "2", Wrong("2", "0 1")},
        {"source of nesting", "1", Wrong("1", "f k")},
        {"seed option", "0", Wrong("0", "1 2")},
        {"seed", "-1", Wrong("-1", kSeeds)},
        {"seed", "nan", Wrong("nan", kSeeds)},
        {"seed", "inf", Wrong("inf", kSeeds)},
        {"seed", "4294967296", Wrong("4.29497e+09", kSeeds)},
        {"seed", "seven", ""},
        {"iterations", "n", ""},
        {"congruence", "4", Wrong("4", "1 2 3")},
        {"resemblance", "5", Wrong("5", "6 7 8 9 10")},
        {"resemblance", "6.5", Wrong("6.5", "6 7 8 9 10")},
        {"trait option", "0", Wrong("0", "1 2")},
        {"select traits", "2", Wrong("2", "0 1")},
        {"select traits", "nan", Wrong("nan", "0 1")},
        {"standardize", "0", Wrong("0", "y n")},
        {"details", "?!", Wrong("?", "y n") + Wrong("!", "y n")},
        {"session menu again", "x", Wrong("x", "V S C")},
        {"main menu again", "O\nabsent", CannotOpen("absentTrk.txt")},
        {"main menu again", "O\nfolder", CannotOpen("folderTrk.txt")},
        {"main menu again", "N\nfolder", CannotOpen("folderTrk.txt")},
    };
    for (const Step& step : GoodSession()) mistakes.push_back({step.prompt, "\n \t", ""});
    return mistakes;
}

/// A damaged file of the session, or one in the way; how the session ends then.
struct Damage {
    std::string file, content, complaint;
    int status = 0;
};

std::string Garbage(unsigned seed, int size) {
    std::mt19937 generator(seed);
    std::string bytes;
    while (size-- > 0) bytes.push_back(static_cast<char>(generator() % 256));
    return bytes;
}

std::string EndOf(const std::string& file) {
    return "\nEnd of file " + file + "\n";
}

std::string Unreadable(const std::string& file) {
    return "\nfile " + file + " " + kEndOfFile;
}

std::vector<Damage> DamagedRawFiles() {
    const FilesByName good = GoodFiles();
    std::vector<Damage> rows = {
        // The readers of B, F and W go on with missing values, those of E and the names do not.
        {"B.txt", "1 2 3\n4 5", EndOf("B.txt")},
        {"F.txt", "0 .5 .5", EndOf("F.txt")},
        {"W.txt", "1", EndOf("W.txt")},
        {"E.txt", "1 2 3", Unreadable("E.txt"), 1},
        {"spp.txt", "Poa\nStipa\n", Unreadable("spp.txt"), 1},
        {"B.txt", "", EndOf("B.txt")},
        {"F.txt", "\n\n", EndOf("F.txt")},
        {"W.txt", "no number here", EndOf("W.txt")},
        {"E.txt", "", Unreadable("E.txt"), 1},
        {"spp.txt", "\t\n \n", Unreadable("spp.txt"), 1},
        {"E.txt", "1 2 3 four 5 6 7 8 a b", Unreadable("E.txt"), 1},
        {"E.txt", "1,5 2 2,25 1 0,75 3 3,1 1 a b", Unreadable("E.txt"), 1},
        {"E.txt", "1 2 3 4 5 6 7 8 only", Unreadable("E.txt"), 1},
        {"B.txt", "1 0 1 2 1 2 3 0 3 4 1 1 5 0 2 a", EndOf("B.txt")},
        {"types.txt", "1 1", EndOf("types.txt"), -1},
        {"types.txt", "", EndOf("types.txt"), -1},
        {"types.txt", "nan inf", EndOf("types.txt"), -1},
        {"types.txt", "a1 b1 c2 d2 e2", ""},
        {"types.txt", "99999999999999999999 -99999999999999999999 1 1 1", ""},
        {"spp.txt", Repeated(std::string(200, 'x') + "\n", 5), ""},
    };
    for (const char* file : {"B.txt", "F.txt", "W.txt", "E.txt"})
        for (const char* number : {"nan", "inf", "-inf", "1e38", "1e400", "1e-42", "-999", "0"})
            rows.push_back({file, Repeated(std::string(number) + "\n", 25) + " a b c d", ""});
    for (const char* file : {"B.txt", "F.txt", "W.txt"}) {
        std::string text = good.at(file);
        rows.push_back({file, "some words before " + text, ""});
        std::replace(text.begin(), text.end(), '\n', '\r');
        rows.push_back({file, text, ""});
    }
    return rows;
}

std::vector<Damage> DamagedSessionFiles() {
    const FilesByName good = GoodFiles();
    const std::string& formda = good.at("oldFormda.txt");
    return {
        {"oldFormda.txt", "", Unreadable("oldFormda.txt"), 1},
        {"oldFormda.txt", "\n\n\n", Unreadable("oldFormda.txt"), 1},
        {"oldFormda.txt", "T\n-2\n", Unreadable("oldFormda.txt"), 1},
        {"oldFormda.txt", "T\n99999999999\na", Unreadable("oldFormda.txt"), 1},
        {"oldFormda.txt", std::string(5000, '\0'), Unreadable("oldFormda.txt"), 1},
        {"oldFormda.txt", Garbage(3, 5000), Unreadable("oldFormda.txt"), 1},
        {"oldFormda.txt", formda.substr(0, formda.size() / 2), Unreadable("oldFormda.txt"), 1},
        {"oldTrk.txt", "goneFormda.txt\n07Jul17\n", CannotOpen("goneFormda.txt") + kFailedOpening,
         1},
        {"oldTrk.txt", "folderFormda.txt\n07Jul17\n",
         CannotOpen("folderFormda.txt") + kFailedOpening, 1},
        {"oldTrk.txt", std::string(300, 'x'), CannotOpen(std::string(47, 'x')) + kFailedOpening, 1},
        {"oldTrk.txt", "oldFormda.txt\n", Unreadable("oldTrk.txt"), 1},
        {"oldTrk.txt", "oldFormda.txt\n07Jul17\nNULL\nNULL\n", Unreadable("oldTrk.txt"), 1},
        {"oldTrk.txt", "oldFormda.txt\n07Jul17\n" + Repeated("1 ", 60), Unreadable("oldTrk.txt"),
         1},
        {"oldTrk.txt", "oldFormda.txt\n07Jul17\n" + Garbage(4, 300), Unreadable("oldTrk.txt"), 1},
        {"oldTrk.txt", "oldFormda.txt\n01Jan05\n" + Repeated("x ", 60), ""},
        {"oldTrk.txt", "oldFormda.txt\n" + std::string(300, 'v'), ""},
    };
}

}  // namespace

TEST(BadInput, MistakesAtEachPromptLeaveNoTrace) {
    FilesByName expected;
    {
        const TempFolder folder;
        Furnish(folder);
        const ProgramRun run = RunProgram(folder, Answers(GoodSession()), 20);
        ASSERT_EQ(run.status, 0);
        ASSERT_EQ(run.err, "");
        expected = Results(folder);
    }
    for (const Mistake& mistake : Mistakes()) {
        SCOPED_TRACE(mistake.prompt + ": " + mistake.typed);
        const TempFolder folder;
        Furnish(folder);
        const FilesByName before = FilesIn(folder);
        const std::string answer = mistake.typed + "\n" + AnswerTo(mistake.prompt);
        const ProgramRun run = RunProgram(folder, WithAnswer(mistake.prompt, answer), 20);
        EXPECT_EQ(WithoutBells(run.err), mistake.complaint);
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(Results(folder), expected);
        EXPECT_EQ(FilesIn(folder), before);
    }
}

TEST(BadInput, DamagedRawFiles) {
    static const std::regex singular("gaussj: Singular Matrix-[12]");
    for (const Damage& damage : DamagedRawFiles()) {
        SCOPED_TRACE(damage.file + ":\n" + damage.content);
        const TempFolder folder;
        Furnish(folder);
        folder.Write(damage.file, damage.content);
        const FilesByName before = FilesIn(folder);
        const ProgramRun run =
            RunProgram(folder, Answers(GoodSession()), damage.status < 0 ? 0.5 : 20);
        EXPECT_EQ(WithoutBells(std::regex_replace(run.err, singular, "")), damage.complaint);
        EXPECT_EQ(run.status, damage.status);
        EXPECT_EQ(run.timedOut, damage.status < 0);
        EXPECT_LT(run.cpuSeconds, 5.0);
        EXPECT_EQ(FilesIn(folder), before);
        if (damage.status == 1) {
            EXPECT_FALSE(folder.Has("newFormda.txt"));
        }
    }
}

TEST(BadInput, RawFilesOfRandomBytes) {
    for (unsigned seed = 1; seed <= 24; seed++)
        for (const char* file : {"B.txt", "F.txt", "W.txt", "E.txt", "spp.txt"}) {
            SCOPED_TRACE(std::string(file) + " of seed " + std::to_string(seed));
            const TempFolder folder;
            Furnish(folder);
            folder.Write(file, Garbage(seed, 400));
            const FilesByName before = FilesIn(folder);
            const ProgramRun run = RunProgram(folder, Answers(GoodSession()), 20);
            EXPECT_TRUE(run.status == 0 || WithoutBells(run.err) == Unreadable(file)) << run.err;
            EXPECT_EQ(FilesIn(folder), before);
            if (seed > 4) break;
        }
}

TEST(BadInput, DamagedSessionFiles) {
    for (const Damage& damage : DamagedSessionFiles()) {
        SCOPED_TRACE(damage.file + ":\n" + damage.content);
        const TempFolder folder;
        Furnish(folder);
        folder.Write(damage.file, damage.content);
        const FilesByName before = FilesIn(folder);
        const ProgramRun run = RunProgram(folder, "O\nold\nV\nC\nC\nX\n", 20);
        EXPECT_EQ(WithoutBells(run.err), damage.complaint);
        EXPECT_EQ(run.status, damage.status);
        EXPECT_EQ(FilesIn(folder), before);
    }
}

// The question for nesting groups does not come again: the program rests, and is no burden.
TEST(BadInput, NestingFileThatDoesNotOpenBringsTheProgramToRest) {
    for (const char* name : {"absent.txt", "folder"}) {
        const TempFolder folder;
        Furnish(folder);
        const FilesByName before = FilesIn(folder);
        const ProgramRun run =
            RunProgram(folder, WithAnswer("source of nesting", std::string("f\n") + name), 0.5);
        EXPECT_TRUE(run.timedOut);
        EXPECT_LT(run.cpuSeconds, 0.2);
        EXPECT_EQ(WithoutBells(run.err), CannotOpen(name));
        EXPECT_EQ(FilesIn(folder), before);
    }
}

// A byte of the data file that a disk or an editor spoilt: the session loads or ends by its code.
TEST(BadInput, DataFileWithRandomBytesChanged) {
    std::mt19937 generator(20);
    for (int run = 0; run < 60; run++) {
        const TempFolder folder;
        Furnish(folder);
        std::string formda = folder.Read("oldFormda.txt");
        for (unsigned change = 0; change <= generator() % 3; change++)
            formda[generator() % formda.size()] = static_cast<char>(generator() % 256);
        folder.Write("oldFormda.txt", formda);
        const FilesByName before = FilesIn(folder);
        const ProgramRun program = RunProgram(folder, "O\nold\nC\nX\n", 20);
        if (program.status == 0)
            EXPECT_EQ(program.err, "") << formda;
        else
            EXPECT_EQ(WithoutBells(program.err), Unreadable("oldFormda.txt")) << formda;
        EXPECT_EQ(FilesIn(folder), before);
    }
}

namespace {

/// A place that takes no output: a folder of the file's name, or a link to a full device.
struct NoRoom {
    std::string file;
    bool full;
    std::string answers, complaint;
    int status;
};

std::vector<NoRoom> PlacesWithoutRoom() {
    const std::string raw = Answers(GoodSession());
    return {
        {"newTrk.txt", false, "N\nnew\nX\n", CannotOpen("newTrk.txt"), 0},
        {"newFormda.txt", false, raw, CannotOpen("newFormda.txt") + kFailedOutput, 1},
        {"newFormda.txt", true, raw, kFailedOutput, 1},
        {"newPrinda.txt", false, WithAnswer("details", "y\nw"),
         CannotOpen("newPrinda.txt") + kFailedOpening, 1},
        {"newRDa.txt", false, raw, CannotOpen("newRDa.txt"), 1},
        {"oldTrk.txt", false, "O\nold\nN\nold\nX\n", Repeated(CannotOpen("oldTrk.txt"), 2), 0},
    };
}

}  // namespace

TEST(BadInput, OutputThatFindsNoPlace) {
    for (const NoRoom& row : PlacesWithoutRoom()) {
        SCOPED_TRACE(row.file + (row.full ? ", full device" : ", folder"));
        const TempFolder folder;
        Furnish(folder);
        std::filesystem::remove(folder.File(row.file));
        if (row.full)
            std::filesystem::create_symlink("/dev/full", folder.File(row.file));
        else
            std::filesystem::create_directory(folder.File(row.file));
        const FilesByName before = FilesIn(folder);
        const ProgramRun run = RunProgram(folder, row.answers, 20);
        EXPECT_EQ(WithoutBells(run.err), row.complaint);
        EXPECT_EQ(run.status, row.status);
        EXPECT_EQ(FilesIn(folder), before);
    }
}
