#include "TSLIF2/console.h"

#include <gtest/gtest.h>

#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/scoped.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

/// The prompts with `answers` typed, in the folder.
ConsoleRun Ask(const TempFolder& folder, const std::string& answers, void (*body)()) {
    WorkingIn working(folder.path());
    return WithConsole(answers, [&](FILE*) {
        in = stdin;
        out = stdout;
        body();
    });
}

const std::string kSource = "Read input from file (f) or from the keyboard (k)? f/k ";
const std::string kErased(57, '\b');

TEST(LongInput, MinusOneAndNoStartOver) {
    TempFolder folder;
    ConsoleRun run = Ask(folder, "k 1 -1 k 3 9 4 n k 2 1 y", [] {
        int types[2];
        EXPECT_EQ(ReadLongInput(2, types, "trait types", "1 2 3 4 -1"), 1);
        EXPECT_EQ(types[0], 2);
        EXPECT_EQ(types[1], 1);
    });
    const std::string enter = kSource + kErased + "Enter trait types: \t";
    EXPECT_EQ(run.out, enter + "\n" + enter + "\aAre these correct? y/n " + enter +
                           "Are these correct? y/n ");
}

TEST(LongInput, IntegersFromAFileThatMayBeMissingOrShort) {
    TempFolder folder;
    folder.Write("groups.txt", "1 2");
    ConsoleRun run = Ask(folder, "f absent f groups.txt y", [] {
        int groups[3];
        ReadLongInput(3, groups, "trait groups", nullptr);
        EXPECT_EQ(groups[1], 2);
        EXPECT_EQ(groups[2], 0);
    });
    const std::string name = kSource + kErased + "Enter name of file containing trait groups: ";
    EXPECT_EQ(run.out,
              name + "\a\n" + name + "\atrait groups:\t1\t2\t0\t\nAre these correct? y/n ");
    EXPECT_EQ(run.err, "\ncan't open absent \n\nEnd of file groups.txt\n");
}

TEST(LongInput, LabelsAreCutToTheirWidth) {
    TempFolder folder;
    folder.Write("labels.txt", "abcdef g\n");
    ConsoleRun run = Ask(folder, "f labels.txt n k one sevens y", [] {
        ScopedMatrix<char> labels(2, 5);
        ReadLongInput(2, 4, labels, "labels");
        EXPECT_STREQ(labels[0], "one");
        EXPECT_STREQ(labels[1], "seve");
    });
    EXPECT_NE(run.out.find("Enter name of file containing the labels: labels:\tabcd\tg\t\n"),
              std::string::npos);
    EXPECT_EQ(Ask(folder, "k one",
                  [] {
                      ScopedMatrix<char> labels(2, 5);
                      ReadLongInput(2, 4, labels, "labels");
                  })
                  .raised,
              2);
}

TEST(DataFileName, IsAskedUntilTheFileOpens) {
    TempFolder folder;
    folder.Write("my data.txt", "1");
    ConsoleRun run = Ask(folder, "no file\n.\n   my data.txt\n", [] {
        char name[42];
        FILE* file = ReadDataFileName(name);
        EXPECT_STREQ(name, "my data.txt");
        std::fclose(file);
    });
    EXPECT_EQ(run.out, "Enter data file name: \aEnter data file name: \aEnter data file name: ");
    EXPECT_EQ(run.err, "\ncan't open no file \n\ncan't open . \n");
}

TEST(ReportMode, IsAskedOnlyForAReportThatExists) {
    TempFolder folder;
    ConsoleRun fresh = Ask(folder, "", [] { GetPrindaMode("sPrinda.txt"); });
    EXPECT_EQ(fresh.out, "");
    EXPECT_STREQ(prindaMode, "w");
    folder.Write("sPrinda.txt", "report");
    ConsoleRun run = Ask(folder, "A", [] { GetPrindaMode("sPrinda.txt"); });
    EXPECT_EQ(run.out,
              "\nThis session has a previous sPrinda.txt file.\nOptions:\n"
              "   w  erase file and create a new one\n   a  append results to same file\n"
              "Type option: ");
    EXPECT_STREQ(prindaMode, "a");
    Ask(folder, "w", [] { GetPrindaMode("sPrinda.txt"); });
    EXPECT_STREQ(prindaMode, "w");
}

}  // namespace
