#include "mxlibPar/side_by_side.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

// Every step runs once, a worker takes no two steps at a time, and the first error comes through.
TEST(ThreadsSideBySide, EachStepOnceAndTheFirstErrorWins) {
    for (const int workers : {1, 2, 3, 16}) {
        constexpr int kSteps = 1000;
        std::vector<int> runs(kSteps, 0), busy(workers, 0);
        const auto run = [&](bool fail) {
            RunSideBySide(kSteps, workers, [&](int k, int worker) {
                ASSERT_EQ(busy.at(worker)++, 0);
                runs[k]++;
                EXPECT_EQ(workers == 1 ? Threads() : 1, WorkersFor(Threads()));
                busy[worker]--;
                if (fail && k >= 700) throw std::runtime_error(std::to_string(k));
            });
        };
        run(false);
        EXPECT_EQ(runs, std::vector<int>(kSteps, 1));
        try {
            run(true);
            ADD_FAILURE();
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "700");
        }
    }
    SetThreads(5);
    EXPECT_EQ(WorkersFor(3), std::min(Threads(), 3));
    EXPECT_TRUE(Threads() == 5 || Threads() == 1);  // 1: without OpenMP
    SetThreads(0);
    EXPECT_EQ(WorkersFor(0), 1);
}
