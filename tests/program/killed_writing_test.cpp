// The program killed at any moment, most of them while it writes: each file of the user's data is
// the old one or the new one, whole.

#include <gtest/gtest.h>
#include <signal.h>

#include <filesystem>
#include <random>

#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

namespace fs = std::filesystem;

/// Answers that make the program write `file` over and over, one content after the other.
struct Rewriting {
    const char* file;
    std::string start, first, second, end;
};

std::string Table(int rows, int cols) {
    std::string row;
    for (int j = 0; j < cols; j++) row += std::to_string(j % 7) + " ";
    return Repeated(row + "\n", std::size_t(rows));
}

void WriteTables(const TempFolder& folder) {
    WriteFiles(folder, GoodFiles());
    folder.Write("B.txt", Table(2000, 3));
    folder.Write("W.txt", Table(2000, 8));
    folder.Write("less.txt", Table(1200, 8));
}

/// Raw entry of a session with as many OTUs, and the way back to the main menu.
std::string RawEntry(const std::string& W, const std::string& OTUs) {
    return "N\nnew\n1\nB.txt\n0\n" + W + "\n0\n0\n" + OTUs +
           "\n3\n1\n2\nk\n3 3 3\ny\n0\n8\n1\n2\nC\n";
}

std::string Analysis(const std::string& resemblance) {
    return "H\nk\n1 1 2\n0\n1\n0\n2\n7\n1\n" + resemblance + "\n1\ny\nn\nw\n";
}

std::string ContentAfter(const TempFolder& folder, const Rewriting& rewriting,
                         const std::string& answers) {
    const ProgramRun run = RunProgram(folder, rewriting.start + answers + rewriting.end);
    EXPECT_EQ(run.status, 0) << run.err;
    return Masked(folder.Read(rewriting.file));
}

/// Files that the program had begun when it died. They are removed.
int TakeUnfinished(const TempFolder& folder) {
    int found = 0;
    for (const auto& entry : fs::directory_iterator(folder.path()))
        if (Contains(entry.path().string(), ".tmp")) found += int(fs::remove(entry.path()));
    return found;
}

}  // namespace

TEST(KilledWriting, LeavesTheOldFileOrTheNewOneWhole) {
    const Rewriting rewritings[] = {
        {"TESSEL.prf", "", "S\nT\nn\nF\n3\nn\nC\n", "S\nT\nn\nF\n14\ny\nC\n", "X\n"},
        {"newFormda.txt", "", RawEntry("W.txt", "2000"), RawEntry("less.txt", "1200"), "X\n"},
        {"oldTrk.txt", "O\nold\nV\n", Analysis("10"), Analysis("9"), "C\nC\nX\n"},
    };
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> moments(0.01, 0.09);
    for (const Rewriting& rewriting : rewritings) {
        const TempFolder folder;
        WriteTables(folder);
        const std::string first = ContentAfter(folder, rewriting, rewriting.first);
        const std::string second = ContentAfter(folder, rewriting, rewriting.second);
        ASSERT_NE(first, second);
        const std::string again =
            rewriting.start + Repeated(rewriting.first + rewriting.second, 4000);
        int dyingWhileWriting = 0;
        for (int death = 0; death < 30; death++) {
            EXPECT_TRUE(RunProgram(folder, again, moments(generator), SIGKILL).timedOut);
            const std::string left = Masked(folder.Read(rewriting.file));
            EXPECT_TRUE(left == first || left == second) << rewriting.file << ":\n" << left;
            dyingWhileWriting += TakeUnfinished(folder);
        }
        EXPECT_GT(dyingWhileWriting, 0) << rewriting.file;
        EXPECT_EQ(ContentAfter(folder, rewriting, rewriting.first), first);
    }
}
