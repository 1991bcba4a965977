#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "iflibG/iflibG.h"
#include "mxlibDim/scoped.h"
#include "mxlibOut/mxlibOut.h"
#include "support/console.h"

namespace {

std::string Printed(const std::function<void(FILE*)>& print) {
    FILE* stream = std::tmpfile();
    print(stream);
    std::rewind(stream);
    std::string text;
    for (int c = std::fgetc(stream); c != EOF; c = std::fgetc(stream)) text.push_back(char(c));
    std::fclose(stream);
    return text;
}

class Matrices : public ::testing::Test {
  protected:
    Matrices() : full(2, 3) {
        const double values[2][3] = {{1.0, -2.5, 1.0 / 3.0}, {1234567.0, 0.0, 4.0}};
        for (int i = 0; i < 2; i++)
            for (int j = 0; j < 3; j++) full[i][j] = values[i][j];
    }
    ScopedMatrix<double> full;
};

TEST_F(Matrices, ColumnsAreAsWideAsTheWidestElement) {
    EXPECT_EQ(GetWidthMax(2, 3, full, 4), 9);
    int width = 0;
    EXPECT_EQ(Printed([&](FILE* s) { width = PrintMatrix(s, 2, 3, full, 4, 0); }),
              "        1\t     -2.5\t   0.3333\t\n1.235e+06\t        0\t        4\t\n");
    EXPECT_EQ(width, 9);
    EXPECT_EQ(Printed([&](FILE* s) { EXPECT_EQ(PrintMatrixFloat(s, 0, 3, full, 4, 0), 0); }), "");
    EXPECT_EQ(Printed([&](FILE* s) { PrintMatrixTab(s, 2, 3, full, 6); }),
              "1\t-2.5\t0.333333\t\n1.23457e+06\t0\t4\t\n");
}

TEST_F(Matrices, RowsBreakWhereTheyExceedTheWidth) {
    ScopedMatrix<float> row(1, 5);
    for (int j = 0; j < 5; j++) row[0][j] = float(j);
    maxColsPrint = 10;
    const std::string text = Printed([&](FILE* s) { PrintMatrix(s, 1, 5, row, 6, 4); });
    maxColsPrint = 2147483647;
    EXPECT_EQ(text, "   0\t   1\t   2\t\n    \t   3\t   4\t\n");
}

TEST_F(Matrices, HalvesAndVectors) {
    ScopedMatrix<float> square(3, 3);
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++) square[i][j] = float(10 * i + j);
    EXPECT_EQ(Printed([&](FILE* s) { PrintLowerHalfMatrixTab(s, 3, square, 6); }),
              "0\t\n10\t11\t\n20\t21\t22\t\n");
    const int groups[] = {5, 6};
    const int order[] = {2, 1};
    const double values[] = {0.125, 2.0 / 3.0};
    EXPECT_EQ(Printed([&](FILE* s) { PrintVectorTab(s, 2, groups, nullptr); }), "5\t6\t\n");
    EXPECT_EQ(Printed([&](FILE* s) { PrintVectorTab(s, 2, groups, order); }), "6\t5\t\n");
    EXPECT_EQ(Printed([&](FILE* s) { PrintVectorTab(s, 2, values, 3, order); }),
              "0.667\t0.125\t\n");
    EXPECT_EQ(Printed([&](FILE* s) { PrintVectorTab(s, 0, groups, order); }), "\n");
}

TEST(ProgressLine, TakesEightyColumnsAndIsTakenOff) {
    const std::string text = "Permutation test: 1 of 1000";
    const std::string line = std::string(40 - text.size(), ' ') + text + std::string(40, ' ');
    ConsoleRun run = WithConsole("", [&](FILE*) {
        InitIFLibG();
        t2 -= 100;
        HandleEventInfoWhere2(text.c_str());
        t2 += 1000000;  // as if the last update were still to come: fewer than 5 ticks
        HandleEventInfoWhere2("nothing");
        t2 -= 2000000;
        HandleEventInfoWhere2(text.c_str());
        ClearLine();
        ClearLine();
    });
    const std::string off(80, '\b');
    EXPECT_EQ(run.out, line + off + line + off);
}

}  // namespace
