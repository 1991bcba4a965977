// Runs that were killed or asked to end go on where they were, as if nothing had been.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <random>

#include "support/formda_text.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

const std::string kFolder = "sRank_XE.T/", kCheckpoint = "sRank_XE.T.checkpoint";

/// The ranking stopped by the signal after so many seconds: its exit status, its words in `said`.
int Rank(const TempFolder& folder, const std::string& options, const std::string& signal,
         double seconds) {
    const std::string command = "cd " + folder.path().string() +
                                " && TESSEL_CHECKPOINT_SECONDS=0.01 exec timeout --preserve-status"
                                " -s " +
                                signal + " " + std::to_string(seconds) +
                                " " TESSEL_PROGRAM
                                " rank s --criterion XE.T --sizes 1-4 --test 9 " +
                                options + " >said 2>&1";
    const int status = std::system(command.c_str());
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
}

/// What a run has left, which is then taken away.
std::string TakeResults(const TempFolder& folder) {
    std::string results = Masked(folder.Read("sChRank_TDAP.txt"));
    for (const char* table : {"ranked", "best", "null", "test"})
        results += folder.Read(kFolder + table + ".csv");
    std::filesystem::remove_all(folder.File(kFolder));
    std::filesystem::remove(folder.File("sChRank_TDAP.txt"));
    EXPECT_FALSE(folder.Has(kCheckpoint));
    return results;
}

}  // namespace

TEST(Checkpoint, ARankingStoppedAnywhereGoesOn) {
    const TempFolder folder;
    FormdaText data;
    for (int i = 0; i < 30; i++) {
        data.B.emplace_back();
        for (int k = 0; k < 16; k++) data.B.back().push_back((i * (k + 3) + k * k) % 17);
        data.W.push_back({i % 3 + 1.0, i % 5 + 0.0, i % 7 + 0.0, i % 2 + 1.0, i % 4 + 0.0});
    }
    data.E = {{1}, {2}, {4}, {3}, {7}};
    folder.Write("sFormda.txt", FormdaOf(data));
    folder.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
    ASSERT_EQ(Rank(folder, "--seed 3", "KILL", 250), 0) << folder.Read("said");
    const std::string expected = TakeResults(folder);

    std::mt19937 random(1);
    int wentOn = 0;
    for (int death = 0; death < 200; death++) {
        const int kind = int(random() % 3);
        const int status = Rank(folder, "--seed 3", std::vector{"KILL", "TERM", "INT"}[kind],
                                double(random() % 150 + 5) / 1000);
        wentOn += Contains(folder.Read("said"), "Going on");
        if (status == 0)
            ASSERT_EQ(TakeResults(folder), expected) << death;
        else
            ASSERT_EQ(status, std::vector{137, 143, 130}[kind]) << folder.Read("said");
    }
    EXPECT_GT(wentOn, 0);
    for (double seconds = 0.1; !folder.Has(kCheckpoint); seconds *= 1.3)
        if (Rank(folder, "--seed 3", "TERM", seconds) == 0) TakeResults(folder);
    EXPECT_EQ(Rank(folder, "--seed 4", "KILL", 250), 1);
    EXPECT_TRUE(Contains(folder.Read("said"), "other data or settings left this checkpoint"));
    ASSERT_EQ(Rank(folder, "--seed 3", "KILL", 250), 0) << folder.Read("said");
    EXPECT_EQ(TakeResults(folder), expected);
}
