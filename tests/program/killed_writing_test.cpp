// The program killed at any moment, most of them while it writes: each file of the user's data is
// the old one or the new one, whole.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "support/formda_text.h"
#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

/// Answers that make the program write `file` over and over, one content after the other.
struct Rewriting {
    std::string file, start, first, second, end;

    std::string ContentAfter(const TempFolder& folder, const std::string& answers) const {
        const ProgramRun run = RunProgram(folder, start + answers + end);
        EXPECT_EQ(run.status, 0) << run.err;
        return Masked(folder.Read(file));
    }
};

std::string RawEntry(const std::string& OTUs) {
    return "N\nnew\n1\nB.txt\n0\nW.txt\n0\n0\n" + OTUs + "\n3\n1\n2\nk\n3 3 3\ny\n0\n5\n1\n2\nC\n";
}

std::string Analysis(const std::string& resemblance) {
    return "H\nk\n1 1 2\n0\n1\n0\n2\n7\n1\n" + resemblance + "\n1\ny\nn\nw\n";
}

}  // namespace

TEST(KilledWriting, LeavesTheOldFileOrTheNewOneWhole) {
    const Rewriting rewritings[] = {
        {"TESSEL.prf", "", "S\nT\nn\nF\n3\nn\nC\n", "S\nT\nn\nF\n14\ny\nC\n", "X\n"},
        {"newFormda.txt", "", RawEntry("2000"), RawEntry("1200"), "X\n"},
        {"oldTrk.txt", "O\nold\nV\n", Analysis("10"), Analysis("9"), "C\nC\nX\n"},
        {"oldPrinda.txt", "O\nold\nV\n", Analysis("10"), Analysis("9"), "C\nC\nX\n"},
    };
    std::mt19937 generator(7);
    std::uniform_real_distribution<double> moments(0.01, 0.09);
    for (const auto& rewriting : rewritings) {
        const TempFolder folder;
        WriteFiles(folder, GoodFiles());
        for (const char* table : {"B.txt", "W.txt"})
            folder.Write(table, Repeated("1.5 0 2 3 1\n", 2000));
        const std::string first = rewriting.ContentAfter(folder, rewriting.first);
        const std::string second = rewriting.ContentAfter(folder, rewriting.second);
        ASSERT_NE(first, second);
        const std::string again =
            rewriting.start + Repeated(rewriting.first + rewriting.second, 4000);
        int diedWriting = 0;
        // A busy machine may take its time to begin.
        for (int death = 0; death < 30 || (diedWriting == 0 && death < 120); death++) {
            const double moment = moments(generator) * std::max(1, death / 15);
            const int status = RunProgram(folder, again, moment, "KILL").status;
            EXPECT_TRUE(status == 128 + 9 || status == 0) << status;  // 0: it was quicker
            const std::string left = Masked(folder.Read(rewriting.file));
            EXPECT_TRUE(left == first || left == second) << rewriting.file << ":\n" << left;
            diedWriting += std::filesystem::remove(folder.File(rewriting.file + ".tmp"));
        }
        EXPECT_GT(diedWriting, 0) << rewriting.file;
    }
}

// How far a ranking of hours has come can be read; the results of the last one stay meanwhile.
TEST(KilledWriting, ARankingUnderWayCanBeRead) {
    const TempFolder folder;
    FormdaText data;
    for (int i = 0; i < 30; i++) {
        data.B.emplace_back();
        for (int k = 0; k < 24; k++) data.B.back().push_back((i * (k + 3) + k * k) % 17);
        data.W.push_back({i % 3 + 1.0, i % 5 + 0.0, i % 7 + 0.0, i % 2 + 1.0, i % 4 + 0.0});
    }
    data.E = {{1}, {2}, {4}, {3}, {7}};
    folder.Write("sFormda.txt", FormdaOf(data));
    folder.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
    folder.Write("sChRank_TCAP.txt", "the last one\n");
    EXPECT_EQ(RunProgram(folder, "O s V K 10 1 6 1 n 1 24 n\n", 1.5, "KILL").status, 128 + 9);
    EXPECT_EQ(folder.Read("sChRank_TCAP.txt"), "the last one\n");
    EXPECT_TRUE(Contains(folder.Read("sChRank_TCAP.txt.tmp"), "optimal subset with 1 traits"));
}
