#include "mxlibDim/reading.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cmath>
#include <string>
#include <vector>

#include "mxlibDim/dim.h"
#include "mxlibDim/failure.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

FILE* FileWith(const TempFolder& folder, const std::string& content) {
    folder.Write("f", content);
    return std::fopen(folder.File("f").c_str(), "r");
}

// A pipe without a writer and a device without an end kept the program for ever.
TEST(Opening, OnlyFilesOnADiskAreReadAndDevicesAreStillWritten) {
    const TempFolder folder;
    ASSERT_EQ(mkfifo(folder.File("pipe").c_str(), 0600), 0);
    for (const std::string& name :
         {folder.File("pipe"), std::string("/dev/zero"), folder.File("."), folder.File("absent")}) {
        const auto open = [&](FILE*) { EXPECT_EQ(fopenck(name.c_str(), nullptr, "r"), nullptr); };
        EXPECT_EQ(WithConsole("", open).err, "\ncan't open " + name + " \n");
    }
    FILE* const device = fopenck("/dev/null", nullptr, "w");
    ASSERT_NE(device, nullptr);
    EXPECT_EQ(std::fclose(device), 0);
}

TEST(Opening, AByteOrderMarkIsSkippedAndNothingElse) {
    const TempFolder folder;
    const char* const texts[][2] = {
        {"\xEF\xBB\xBFid", "id"}, {"\xEF\xBB\xBC", "\xEF\xBB\xBC"}, {"\xEF", "\xEF"}, {"id", "id"}};
    for (const auto& [text, left] : texts) {
        folder.Write("f", text);
        FILE* const file = fopenck(folder.File("f").c_str(), nullptr, "r");
        char read[8] = "";
        freadckWord(file, read, 7, "f");
        std::fclose(file);
        EXPECT_STREQ(read, left);
    }
}

// A word in n or i, as "nan" and "inf" begin, took the digit behind it along: "win 15" was 5.
TEST(Reading, WordsLikeNanAndInfTakeNoDigitAlong) {
    const TempFolder folder;
    FILE* file = FileWith(
        folder, "win 15\tCo-in 4i7 Stipa capillati\n-2 +n3 na0.5 infi\n6 -Inf x1.5e1,y9 NaN x");
    std::vector<double> numbers;
    const ConsoleRun run = WithConsole("", [&](FILE*) {
        for (double number = 0; freadck1(file, "%lf", &number, "f") == 1;)
            numbers.push_back(number);
    });
    EXPECT_TRUE(std::isnan(numbers.back()));
    numbers.pop_back();
    EXPECT_EQ(numbers, (std::vector<double>{15, 4, 7, -2, 3, 0.5, 6, -HUGE_VAL, 15, 9}));
    EXPECT_EQ(run.err + run.out, "\nEnd of file f\n\a");
}

TEST(Reading, AFieldThatDoesNotConvertRaisesEndOfFile) {
    const TempFolder folder;
    FILE* file = FileWith(folder, "12 99999999999 word");
    std::vector<int> numbers(3, 7);
    const ConsoleRun run = WithConsole("", [&](FILE*) {
        for (int& number : numbers) freadck(file, "%d", &number, "f");
    });
    EXPECT_EQ(numbers, (std::vector<int>{12, 2147483647, 7}));
    EXPECT_EQ(run.raised, kEndOfFile);
    EXPECT_EQ(run.err, "\nfile f ");
}

TEST(Reading, FieldsEndAtTabsLineEndsAndTheirLimit) {
    TempFolder folder;
    FILE* file = FileWith(folder, " \r\n  two words\tnext\nspecies\tname\r\nabcdefgh");
    const struct {
        void (*read)(FILE*, int, char*, const char*);
        int limit;
        const char* text;
    } fields[] = {{freadlineck, 19, "two words"},
                  {freadlineck, 19, "next"},
                  {freadlineckTEMP, 19, "species name"},
                  {freadlineck, 5, "abcde"},
                  {freadlineck, 19, "fgh"},
                  {freadlineck, 0, ""}};
    char text[20];
    for (const auto& field : fields) {
        field.read(file, field.limit, text, "f");
        EXPECT_STREQ(text, field.text);
    }
    ConsoleRun run = WithConsole("", [&](FILE*) { freadlineck(file, 19, text, "f"); });
    EXPECT_EQ(run.raised, kEndOfFile);
    EXPECT_EQ(run.err, "\nfile f ");
}

TEST(Prompts, NumbersFollowTheAcceptedList) {
    const ConsoleRun run = WithConsole("2.5 abc 2.0\n0 -nan 1\n-7.25 1e3", [&](FILE* input) {
        EXPECT_EQ(ScanNumber(input, "input", "1 2 3"), 2.0);
        EXPECT_EQ(ScanNumber(input, "input", "-", 1.0, 2147483647.0), 1.0);
        EXPECT_EQ(ScanNumber(input, "input", ""), -7.25);
        EXPECT_EQ(ScanNumber(input, "input", nullptr), 1000.0);
    });
    EXPECT_EQ(run.err,
              "\nIncorrect input = 2.5. Reenter.\nAccepted input: 1 2 3\n"
              "\nIncorrect input = 0. Reenter.\nAccepted input: 1 to 2.14748e+09\n"
              "\nIncorrect input = nan. Reenter.\nAccepted input: 1 to 2.14748e+09\n");
}

TEST(Prompts, WordsFollowTheAcceptedAlternatives) {
    char text[6];
    ConsoleRun run = WithConsole("LONGWORD beta gamma", [&](FILE* input) {
        EXPECT_STREQ(ScanString(input, 5, text, nullptr, 1, "input"), "LONGW");
        EXPECT_STREQ(ScanString(input, 5, text, "alpha/BETA", 0, "input"), "beta");
        EXPECT_EQ(ScanString(input, 5, text, "alpha/beta", 1, "input"), nullptr);
        EXPECT_STREQ(text, "");
        EXPECT_EQ(ScanString(input, 5, text, nullptr, 1, "input"), nullptr);
    });
    EXPECT_EQ(run.err,
              "\nIncorrect input = gamma. Reenter.\nAccepted input: alpha/beta\n"
              "\nEnd of file input\n");
}

TEST(EndOfInput, LettersRaiseNumbersRestAndWaitsEnd) {
    EXPECT_EQ(WithConsole("", [](FILE* input) { ScanChar(input, "y n", "input"); }).raised,
              kEndOfFile);
    ConsoleRun number = WithConsole("x", [](FILE* input) { ScanNumber(input, "input", "1"); });
    EXPECT_TRUE(number.rests);
    EXPECT_EQ(number.err, "\nEnd of file input\n");
    EXPECT_FALSE(WithConsole("abc", [](FILE*) { Wait(); }).rests);
    WithConsole("ab\ncd", [](FILE* input) {
        Wait();
        EXPECT_EQ(std::fgetc(input), '\n') << "left for the next reader";
    });
    // The number at the end leaves the stream finished: later readers do not touch it.
    ConsoleRun after = WithConsole("", [](FILE* input) {
        EXPECT_EQ(ScanNumber(input, "input", nullptr), -999.0);
        ScanChar(input, nullptr, "input");
    });
    EXPECT_EQ(after.raised, kEndOfFile);
    EXPECT_EQ(after.err, "\nEnd of file input\n\nfile input ");
}

TEST(Integers, TruncateWithoutOverflow) {
    for (const auto& [number, integer] : {std::pair(2.9, 2),
                                          {-2.9, -2},
                                          {1e300, 2147483647},
                                          {-1e300, -2147483647 - 1},
                                          {std::nan(""), 0}})
        EXPECT_EQ(TruncateToInt(number), integer);
}

}  // namespace
