// Disks that fill up and fail: a file of results is the old one or the new one, whole, and never
// told to be there when it is not; what cannot be read on ends as a file ends.

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

const std::string kOld = "of an earlier run\n";

/// Lets a call of the programs run meanwhile fail (preload/failing_calls.cpp).
struct Failure {
    Failure(const std::string& call, const std::string& file, int number, int error) {
        setenv("LD_PRELOAD", TESSEL_FAILING_CALLS, 1);
        setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
        const std::string which = " " + std::to_string(number) + " " + std::to_string(error);
        setenv("TESSEL_FAILURE", (call + " " + file + which).c_str(), 1);
    }
    ~Failure() {
        for (const char* name : {"LD_PRELOAD", "ASAN_OPTIONS", "TESSEL_FAILURE"}) unsetenv(name);
    }
};

/// Preferences that ask for the structures and the tables of the randomization.
std::string PreferencesForAllFiles() {
    return "18Nov2016\n0\n0.0\n0.0\n0\n0.0\n0.0\n1\nn\n0\n0.0\n0.0\n6\n2147483647\n6\ny\ny\nn\n"
           "1\n1\n0\n1\n2\n1\n0\n";
}

void ExpectNoneUnderWay(const TempFolder& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_FALSE(Contains(entry.path().string(), ".tmp")) << entry.path();
}

std::vector<std::string> ReplacedFiles() {
    std::istringstream names(
        "newFormda newPrinda newRDa newStr newChRank_TCAP newChRank_PSAP_X_T TraitData EnvData "
        "CWM_Expected Distances Prob CommunityData CWM B_Simulated W_Simulated E_Simulated "
        "OTUs_Simulated TraitTypes_Simulated FinalSimulatedData IntermediateRankResults");
    std::vector<std::string> files;
    for (std::string name; names >> name;) files.push_back(name + ".txt");
    return files;
}

/// Both analyses and the simulation with its steps, over files of an earlier run; `mode` is what
/// becomes of the report.
struct Everything {
    explicit Everything(const std::string& mode) {
        WriteFiles(folder, GoodFiles());
        folder.Write("TESSEL.prf", PreferencesForAllFiles());
        for (const std::string& file : ReplacedFiles()) folder.Write(file, kOld);
        for (const char* file : {"C.txt", "G.txt"}) folder.Write(file, ".5 .5 .5 .5 .5 .5");
        const std::string analyses =
            Replaced(Answers(GoodSession()), "y\ny\nK\n", "y\ny\n" + mode + "\nK\n");
        const std::string ranking = "K\n10\n1\n1\n2\n2\nn\nC\nC\n";
        const std::string simulation =
            "A\n4\n5\n3\nt\nB.txt\n2\ne\nE.txt\nn\nC.txt\nG.txt\n5\n.5\n.5\n.5\n3\nn\n2\n7\ny\nX\n";
        // The letter ends the wait behind an error.
        run = RunProgram(folder, Replaced(analyses, "C\nC\nX\n", ranking + simulation) + "x\n");
    }

    TempFolder folder;
    ProgramRun run;
};

}  // namespace

TEST(FailingStreams, EveryFileIsReplacedAsAWholeOrNotAtAll) {
    for (const char* mode : {"w", "a"}) {
        const Everything well(mode);
        EXPECT_EQ(well.run.status, 0) << well.run.err;
        ExpectNoneUnderWay(well.folder);
        for (const std::string& file : ReplacedFiles()) {
            const bool continues = file == "newPrinda.txt" && *mode == 'a';
            EXPECT_EQ(well.folder.Read(file).find(kOld), continues ? 0 : std::string::npos) << file;
            if (*mode == 'a' && !continues) continue;
            for (const char* call : {"write", "close", "fsync", "rename", "read"}) {
                // The old content is read; what follows a write is the same for all files.
                if (std::string(call) == "read" && !continues) continue;
                if (std::string(call) != "write" && file != "newPrinda.txt") continue;
                SCOPED_TRACE(file + " " + mode + " " + call);
                const Failure failure(call, file, 1, ENOSPC);
                const Everything ill(mode);
                EXPECT_EQ(ill.run.status, 1);
                EXPECT_TRUE(Contains(ill.run.err,
                                     "\nFAIL TO PRINT ON FILE !!!\n\nQuit and restart TESSEL.\n\a"))
                    << ill.run.err;
                EXPECT_FALSE(Contains(ill.run.out, "on file " + file)) << ill.run.out;
                EXPECT_EQ(ill.folder.Read(file), kOld);
                ExpectNoneUnderWay(ill.folder);
            }
        }
    }
}

// A failed read parted a number in two, and all that followed came one cell late.
TEST(FailingStreams, WhatCannotBeReadOnEndsThere) {
    const std::string good = Answers(GoodSession()), attach = "O\nold\nV\nC\nC\nX\n";
    const std::string derive = "N\nnew\n2\nold\n2\n1 1 1 1 n\nC\nX\n";
    const std::string simulate =
        "A\n4\n5\n3\nt\nB.txt\n2\ne\nE.txt\nn\nC.txt\nG.txt\n5\n.5\n.5\n.5\n3\nn\n1\nn\nX\n";
    const std::string end = "\nEnd of file ", strict = "\nfile ";
    // Each read brings seven bytes; the field at their end may go on, and is dropped.
    const struct {
        std::string file;
        int read;
        std::string complaint, answers;
        int status;
        std::string left = {};  ///< as if the file held no more than this
    } rows[] = {{"B.txt", 2, end, good, 0, "2.385"},
                {"F.txt", 2, end, good, 0, "0 2 4"},
                {"W.txt", 1, end, good, 0},
                {"E.txt", 2, strict, good, 1},
                {"spp.txt", 2, strict, good, 1},
                {"types.txt", 2, end, good, kStopped},
                {"oldFormda.txt", 9, strict, attach, 1},
                {"oldTrk.txt", 2, strict, attach, 1},
                {"oldTrk.txt", 5, strict, attach, 1},
                {"oldTrk.txt", 2, strict, derive, 0},
                {"TESSEL.prf", 1, strict, attach, 1},
                {"B.txt", 2, end, simulate, 0}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.file + " " + row.answers);
        const TempFolder folder, cut;
        FilesByName files = GoodFiles();
        files["TESSEL.prf"] = PreferencesForAllFiles();
        files["C.txt"] = files["G.txt"] = "1";
        WriteFiles(folder, files);
        ProgramRun run;
        {
            const Failure failure("read", row.file, row.read, EIO);
            run = RunProgram(folder, row.answers, row.status == kStopped ? 0.5 : 60);
        }
        EXPECT_EQ(run.status, row.status);
        const std::string told = "\ncan't read " + row.file + " \n" + row.complaint + row.file;
        EXPECT_EQ(WithoutBells(run.err).find(told), 0) << run.err;
        if (row.left.empty()) continue;
        files[row.file] = row.left;
        WriteFiles(cut, files);
        RunProgram(cut, row.answers);
        EXPECT_EQ(Masked(folder.Read("newFormda.txt")), Masked(cut.Read("newFormda.txt")));
    }
}

// The progress line of the analysis stood in the middle of the report's numbers.
TEST(FailingStreams, ClosedStandardStreamsAreOnTheNullDevice) {
    std::string reports[2];
    for (const bool closed : {false, true}) {
        const TempFolder folder;
        WriteFiles(folder, GoodFiles());
        folder.Write("answers", Answers(GoodSession()));
        const std::string command =
            "cd '" + folder.path().string() + "' && '" TESSEL_PROGRAM "' <answers ";
        EXPECT_EQ(std::system((command + (closed ? ">&- 2>&-" : ">out 2>err")).c_str()), 0);
        for (const char* file : {"newPrinda.txt", "newChRank_PSAP_X_T.txt", "newFormda.txt"})
            reports[closed] += Masked(folder.Read(file));
    }
    EXPECT_EQ(reports[0], reports[1]);
}

// Commands of which nobody could read a word ended well.
TEST(FailingStreams, WhatACommandCannotSayFailsIt) {
    const TempFolder folder;
    WriteFiles(folder, GoodFiles());
    const std::string program = "cd '" + folder.path().string() + "' && '" TESSEL_PROGRAM "' ";
    for (const char* words : {"check old >&-", "check old >/dev/full", "rank --help >/dev/full",
                              "rank old --criterion XZ --quiet --messages /dev/full"})
        EXPECT_EQ(std::system((program + words + " 2>err").c_str()), 256) << words;
    EXPECT_EQ(std::system((program + "derive --from old --session b --quiet >&- 2>&-").c_str()), 0);
}

// The process ends in the middle of the work: nothing half written is left.
TEST(FailingStreams, AnEndInTheMiddleKeepsTheOldFile) {
    const TempFolder folder;
    WriteFiles(folder, GoodFiles());
    // Correlations that are none.
    for (const char* file : {"C.txt", "G.txt"}) folder.Write(file, "1 1 1 1 1 1 1 1 1");
    folder.Write("FinalSimulatedData.txt", kOld);
    EXPECT_EQ(RunProgram(folder,
                         "A\n4\n5\n3\nc\nC.txt\nn\n1\ne\nE.txt\nn\nC.txt\nG.txt\n5\n.5\n.5\n.5\n3\n"
                         "n\n2\n7\ny\nX\n")
                  .status,
              1);
    EXPECT_EQ(folder.Read("FinalSimulatedData.txt"), kOld);
    ExpectNoneUnderWay(folder);
}

// Tables of a run that failed stood beside those of the run before, and kept a second try out.
TEST(FailingStreams, TablesAreAllOfOneRun) {
    const TempFolder folder;
    WriteFiles(folder, GoodFiles());
    const auto analyse = [&](const std::string& options) {
        std::filesystem::remove(folder.File("oldPrinda.txt"));
        return std::system(("cd '" + folder.path().string() + "' && '" TESSEL_PROGRAM "' analyse " +
                            "old --iterations 2 --quiet --seed 1 " + options + " 2>err")
                               .c_str());
    };
    const std::string X = "oldTables/X.csv";
    for (const bool isLater : {false, true}) {
        const std::string before = folder.Read(X);
        EXPECT_EQ(before.empty(), !isLater);
        {
            const Failure failure("write", "statistics.csv", 1, ENOSPC);
            EXPECT_NE(analyse("--standardise no --force"), 0);
        }
        EXPECT_TRUE(Contains(folder.Read("err"), "statistics.csv")) << folder.Read("err");
        EXPECT_EQ(folder.Read(X), before);
        EXPECT_EQ(analyse(isLater ? "--standardise no --force" : ""), 0);
        EXPECT_NE(folder.Read(X), before);
        EXPECT_FALSE(folder.Has("oldTables/unfinished.tmp"));
    }
}
