#include "TSLIF2/console.h"

#include "mxlibDim/scoped.h"
#include "tessel/in_process.h"

namespace {

using Console = InProcess;

const std::string kSource = "Read input from file (f) or from the keyboard (k)? f/k ";
const std::string kErased(57, '\b');

TEST_F(Console, LongInputOfIntegers) {
    // -1 and a no start over.
    const ConsoleRun typed = Typed("k 1 -1 k 3 9 4 n k 2 1 y", [] {
        int types[2];
        EXPECT_EQ(ReadLongInput(2, types, "trait types", "1 2 3 4 -1"), 1);
        EXPECT_EQ(Entries(types, 2), Ints({2, 1}));
    });
    const std::string enter = kSource + kErased + "Enter trait types: \t";
    const std::string correct = "Are these correct? y/n ";
    EXPECT_EQ(typed.out, enter + "\n" + enter + "\a" + correct + enter + correct);
    // The file may be missing or short.
    folder_.Write("groups.txt", "1 2");
    const ConsoleRun read = Typed("f absent f groups.txt y", [] {
        int groups[3];
        ReadLongInput(3, groups, "trait groups", nullptr);
        EXPECT_EQ(Entries(groups, 3), Ints({1, 2, 0}));
    });
    const std::string name = kSource + kErased + "Enter name of file containing trait groups: ";
    EXPECT_EQ(read.out, name + "\a\n" + name + "\atrait groups:\t1\t2\t0\t\n" + correct);
    EXPECT_EQ(read.err, "\ncan't open absent \n\nEnd of file groups.txt\n");
}

TEST_F(Console, LongInputCutsLabelsToTheirWidth) {
    folder_.Write("labels.txt", "abcdef g\n");
    const auto ask = [] {
        ScopedMatrix<char> labels(2, 5);
        ReadLongInput(2, 4, labels, "labels");
        EXPECT_EQ(Texts({labels[0], labels[1]}), Texts({"one", "seve"}));
    };
    EXPECT_TRUE(Contains(Typed("f labels.txt n k one sevens y", ask).out,
                         "Enter name of file containing the labels: labels:\tabcd\tg\t\n"));
    EXPECT_EQ(Typed("k one", ask).raised, 2);
}

TEST_F(Console, DataFileNameIsAskedUntilTheFileOpens) {
    folder_.Write("my data.txt", "1");
    const ConsoleRun run = Typed("no file\n.\n   my data.txt\n", [] {
        char name[42];
        std::fclose(ReadDataFileName(name));
        EXPECT_STREQ(name, "my data.txt");
    });
    EXPECT_EQ(run.out, "Enter data file name: \aEnter data file name: \aEnter data file name: ");
    EXPECT_EQ(run.err, "\ncan't open no file \n\ncan't open . \n");
}

TEST_F(Console, ReportModeIsAskedOnlyForAReportThatExists) {
    const auto ask = [] { GetPrindaMode("sPrinda.txt"); };
    EXPECT_EQ(Typed("", ask).out, "");
    EXPECT_STREQ(prindaMode, "w");
    folder_.Write("sPrinda.txt", "report");
    EXPECT_EQ(Typed("A", ask).out,
              "\nThis session has a previous sPrinda.txt file.\nOptions:\n"
              "   w  erase file and create a new one\n   a  append results to same file\n"
              "Type option: ");
    EXPECT_STREQ(prindaMode, "a");
    Typed("w", ask);
    EXPECT_STREQ(prindaMode, "w");
}

}  // namespace
