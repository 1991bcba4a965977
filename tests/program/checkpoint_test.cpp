// Runs that were killed or asked to end go on where they were, as if nothing had been.

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "support/formda_text.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

struct Interrupted {
    std::string command, checkpoint, report, tables;
    std::vector<std::string> names;
    TempFolder folder = {};

    /// The command stopped by the signal after so many seconds: its exit status. Its words stand in
    /// `said`.
    int Run(const std::string& seed, const std::string& signal, double seconds) const {
        const std::string line = "cd " + folder.path().string() +
                                 " && TESSEL_CHECKPOINT_SECONDS=0.01 exec timeout --preserve-status"
                                 " -s " +
                                 signal + " " + std::to_string(seconds) + " " TESSEL_PROGRAM " " +
                                 command + " --seed " + seed + " >said 2>&1";
        int status = std::system(line.c_str());
        while (Contains(folder.Read("said"), " another ") && status != 0 &&
               !Contains(folder.Read("said"), "checkpoint"))  // a killed one is not gone yet
            status = std::system(line.c_str());
        return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
    }

    /// What a run has left, which is then taken away.
    std::string TakeResults() const {
        std::string results = Masked(folder.Read(report));
        for (const std::string& name : names) results += folder.Read(tables + "/" + name);
        std::filesystem::remove_all(folder.File(tables));
        std::filesystem::remove(folder.File(report));
        std::filesystem::remove(folder.File("OTUs_Simulated.txt"));
        EXPECT_FALSE(folder.Has(checkpoint));
        return results;
    }

    void StopAtRandomMoments() const {
        const auto start = std::chrono::steady_clock::now();
        ASSERT_EQ(Run("3", "KILL", 250), 0) << folder.Read("said");
        const std::chrono::duration<double> whole = std::chrono::steady_clock::now() - start;
        const std::string expected = TakeResults();
        const double longest = std::min(whole.count() / 2, 1.0);  // a busy machine takes its time
        std::mt19937 random(1);
        int wentOn = 0;
        for (int death = 0; death < 100 || (wentOn == 0 && death < 300); death++) {
            const int kind = int(random() % 3);
            const int status = Run("3", std::vector{"KILL", "TERM", "INT"}[kind],
                                   0.005 + double(random() % 1000) / 1000 * longest);
            wentOn += Contains(folder.Read("said"), "Going on");
            // A run may be stopped when all is done, just before its end.
            if (status == 0 || (!folder.Has(checkpoint) && folder.Has(report)))
                ASSERT_EQ(TakeResults(), expected) << death;
            else
                ASSERT_EQ(status, (std::vector{137, 143, 130}[kind])) << folder.Read("said");
        }
        EXPECT_GT(wentOn, 0);
        for (int tenth = 1; !folder.Has(checkpoint); tenth = tenth % 10 + 1) {
            Run("3", "TERM", tenth * whole.count() / 10);
            if (!folder.Has(checkpoint) && folder.Has(report)) TakeResults();
        }
        EXPECT_EQ(Run("4", "KILL", 250), 1);
        EXPECT_TRUE(Contains(folder.Read("said"), "other data or settings left this checkpoint"));
        ASSERT_EQ(Run("3", "KILL", 250), 0) << folder.Read("said");
        EXPECT_EQ(TakeResults(), expected);
    }
};

}  // namespace

TEST(Checkpoint, ARankingStoppedAnywhereGoesOn) {
    const Interrupted run = {"rank s --criterion XE.T --sizes 1-4 --test 9",
                             "sRank_XE.T.checkpoint",
                             "sChRank_TDAP.txt",
                             "sRank_XE.T",
                             {"ranked.csv", "best.csv", "null.csv", "test.csv"}};
    FormdaText data;
    for (int i = 0; i < 30; i++) {
        data.B.emplace_back();
        for (int k = 0; k < 16; k++) data.B.back().push_back((i * (k + 3) + k * k) % 17);
        data.W.push_back({i % 3 + 1.0, i % 5 + 0.0, i % 7 + 0.0, i % 2 + 1.0, i % 4 + 0.0});
    }
    data.E = {{1}, {2}, {4}, {3}, {7}};
    run.folder.Write("sFormda.txt", FormdaOf(data));
    run.folder.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
    run.StopAtRandomMoments();
}

TEST(Checkpoint, ASimulationStoppedAnywhereGoesOn) {
    const Interrupted run = {"simulate neutral.toml --data-sets 300 --steps 60 --iterations 100",
                             "Simulated.checkpoint",
                             "FinalSimulatedData.txt",
                             "SimulatedTables",
                             {"statistics.csv", "rates.csv"}};
    for (const auto& file : std::filesystem::directory_iterator(TESSEL_EXAMPLES "/simulation"))
        std::filesystem::copy_file(file, run.folder.File(file.path().filename().string()));
    run.StopAtRandomMoments();
}
