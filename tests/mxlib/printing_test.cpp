#include <gtest/gtest.h>

#include <cfloat>
#include <chrono>
#include <climits>
#include <cmath>
#include <functional>
#include <string>
#include <thread>

#include "iflibG/iflibG.h"
#include "mxlibOut/mxlibOut.h"
#include "support/console.h"
#include "support/matrices.h"
#include "support/terminal.h"

namespace {

std::string Printed(const std::function<void()>& print) {
    return WithConsole("", [&](FILE*) { print(); }).out;
}

TEST(Printing, ColumnsAreAsWideAsTheWidestElementAndRowsBreak) {
    Table<double> full = {{1.0, -2.5, 1.0 / 3.0}, {1234567.0, 0.0, 4.0}};
    Table<float> row = {{0, 1, 2, 3, 4}};
    int width = 0;
    EXPECT_EQ(GetWidthMax(2, 3, full, 4), 9);
    EXPECT_EQ(Printed([&] { width = PrintMatrix(stdout, 2, 3, full, 4, 0); }),
              "        1\t     -2.5\t   0.3333\t\n1.235e+06\t        0\t        4\t\n");
    EXPECT_EQ(width, 9);
    EXPECT_EQ(Printed([&] { width = PrintMatrixFloat(stdout, 0, 3, full, 4, 0); }), "");
    EXPECT_EQ(width, 0);
    EXPECT_EQ(Printed([&] { PrintMatrixTab(stdout, 2, 3, full, 6); }),
              "1\t-2.5\t0.333333\t\n1.23457e+06\t0\t4\t\n");
    maxColsPrint = 10;
    const std::string text = Printed([&] { PrintMatrix(stdout, 1, 5, row, 6, 4); });
    maxColsPrint = 2147483647;
    EXPECT_EQ(text, "   0\t   1\t   2\t\n    \t   3\t   4\t\n");
}

TEST(Printing, HalvesAndVectors) {
    Table<float> square = {{0, 1, 2}, {10, 11, 12}, {20, 21, 22}};
    EXPECT_EQ(Printed([&] { PrintLowerHalfMatrixTab(stdout, 3, square, 6); }),
              "0\t\n10\t11\t\n20\t21\t22\t\n");
    const int groups[] = {5, 6}, order[] = {2, 1};
    const double values[] = {0.125, 2.0 / 3.0};
    EXPECT_EQ(Printed([&] { PrintVectorTab(stdout, 2, groups, nullptr); }), "5\t6\t\n");
    EXPECT_EQ(Printed([&] { PrintVectorTab(stdout, 2, groups, order); }), "6\t5\t\n");
    EXPECT_EQ(Printed([&] { PrintVectorTab(stdout, 2, values, 3, order); }), "0.667\t0.125\t\n");
    EXPECT_EQ(Printed([&] { PrintVectorTab(stdout, 0, groups, order); }), "\n");
    // The sign of a NaN, which differs by processor, made "-nan" and a wider column.
    Table<float> none = {{-NAN, 1}};
    EXPECT_EQ(Printed([&] { PrintMatrix(stdout, 1, 2, none, 6, 0); }), "nan\t  1\t\n");
    EXPECT_EQ(Printed([&] { PrintMatrixTab(stdout, 1, 2, none, 6); }), "nan\t1\t\n");
    const double noNumber[] = {-NAN};
    EXPECT_EQ(Printed([&] { PrintVectorTab(stdout, 1, noNumber, 6, nullptr); }), "nan\t\n");
    // No number of digits that a user can ask for takes long; this double has the most, 767.
    const double longest[] = {std::nextafter(2 * DBL_MIN, 0.0)};
    char all[800];
    std::snprintf(all, sizeof(all), "%.780g\t\n", longest[0]);
    EXPECT_EQ(Printed([&] { PrintVectorTab(stdout, 1, longest, INT_MAX, nullptr); }), all);
}

TEST(ProgressLine, TakesEightyColumnsAndIsTakenOff) {
    const std::string text = "Permutation test: 1 of 1000";
    const std::string line = std::string(40 - text.size(), ' ') + text + std::string(40, ' ');
    const std::string off(80, '\b');
    EXPECT_EQ(Printed([&] {
                  InitIFLibG();
                  t2 -= 100;
                  HandleEventInfoWhere2(text.c_str());
                  t2 += 1000000;  // as if the last update were still to come
                  HandleEventInfoWhere2("nothing");
                  t2 -= 2000000;
                  HandleEventInfoWhere2(text.c_str());
                  ClearLine();
                  ClearLine();
              }),
              line + off + line + off);
}

// Asking for the processor time at each step took a tenth of a short evaluation.
TEST(ProgressLine, IsDueTwelveTimesASecondAndBeforeASlowStepLasts) {
    constexpr int kSteps = 1000000;
    static int steps;
    steps = 0;
    progressHook = [](std::int64_t) { steps++; };
    int lines = 0;
    ProgressPace pace;
    const auto show = [&] {
        if (!pace.IsDue()) return;
        HandleEventInfoWhere2("step");
        lines++;
    };
    const std::string screen = Printed([&] {
        InitIFLibG();
        const auto start = std::chrono::steady_clock::now();
        while (steps < kSteps) show();
        const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
        EXPECT_LE(lines, 12 * seconds.count() + 1);
        lines = 0;
        for (int step = 0; step < 8; step++) {
            std::this_thread::sleep_for(std::chrono::milliseconds(100));
            show();
        }
    });
    progressHook = nullptr;
    EXPECT_GE(lines, 1);
    EXPECT_EQ(steps, kSteps + 8);
}

// Ten seconds of set-up without a sign of life looked like a hang.
TEST(ProgressLine, MovesAtATerminalWithinALongStep) {
    const auto steps = [] {
        const LongStep outer("Outer step");
        {
            const LongStep inner("Inner step");
            std::this_thread::sleep_for(std::chrono::milliseconds(1300));
        }
        HandleEventInfoWhere2("Slow iteration");
        std::this_thread::sleep_for(std::chrono::milliseconds(900));
    };
    Terminal terminal([&] {
        InitIFLibG();
        steps();
        std::printf("behind\n");
        std::fflush(stdout);
    });
    for (const char* text : {"Inner step  0.", "Inner step  1.", "Slow iteration  0."})
        EXPECT_TRUE(terminal.Shows(text)) << text;
    EXPECT_EQ(terminal.Finish(), 0);
    EXPECT_LT(terminal.longestSilence, 1.0);
    const std::string off(80, '\b');
    EXPECT_TRUE(terminal.screen.ends_with(off + std::string(80, ' ') + off + "behind\n"));
    EXPECT_EQ(Printed([] {
                  const LongStep step("Step");
                  std::this_thread::sleep_for(std::chrono::milliseconds(900));
              }),
              "");
}

}  // namespace
