// Many processes of the program together, and the batch files that start them: files are those of
// one process. Without TESSEL-mpi only what needs none is run.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "support/good_session.h"
#include "support/run_program.h"
#include "support/text.h"

namespace {

#ifdef TESSEL_MPI_PROGRAM
const std::string kMpiProgram = TESSEL_MPI_PROGRAM;
#else
const std::string kMpiProgram;
#endif
namespace fs = std::filesystem;
const std::string kOld = "of an earlier run\n";

/// A folder with a session, a world and, beside it, an empty one and programs in `bin`.
struct RanksTest : testing::Test {
    RanksTest() {
        fs::create_directories(folder_.path() / "bin");
        fs::create_directories(folder_.path() / "empty");
        // All ranks but the first start in the empty folder. One of them may have a life of its
        // own.
        Script("on_rank",
               "rank=${OMPI_COMM_WORLD_RANK:-0}\n[ $rank = 0 ] || cd '" + folder_.File("empty") +
                   "'\n[ $rank != 2 ] || eval \"$RANK_2\"\nexec '" + kMpiProgram + "' \"$@\"\n");
        Script("mpi",
               "n=$1; shift\nOMP_NUM_THREADS=1 exec mpirun --allow-run-as-root --oversubscribe -n "
               "$n '" +
                   folder_.File("bin/on_rank") + "' \"$@\"\n");
        Script("srun", "shift\nexec mpi 3 \"$@\"\n");
        Script("TESSEL", "exec '" TESSEL_PROGRAM "' \"$@\"\n");
        setenv("PATH", (folder_.File("bin") + ":" + path_).c_str(), 1);
    }
    ~RanksTest() override { setenv("PATH", path_.c_str(), 1); }

    void Script(const std::string& name, const std::string& text) const {
        folder_.Write("bin/" + name, "#!/bin/sh\n" + text);
        fs::permissions(folder_.path() / "bin" / name, fs::perms::owner_all);
    }

    /// Puts the session and the world into the folder `name`.
    void Make(const std::string& name) const {
        fs::create_directories(folder_.path() / name);
        FilesByName files = GoodFiles();
        for (const char* file : {"traits.csv", "factors.csv", "filter.csv", "effects.csv"})
            files[file] = ReadWholeFile(std::string(TESSEL_EXAMPLES) + "/simulation/" + file);
        files["world.toml"] =
            "[simulate]\notus = 12\nsites = 9\ntrait-correlations = \"traits.csv\"\n"
            "environment-correlations = \"factors.csv\"\nresponses = \"filter.csv\"\n"
            "effects = \"effects.csv\"\nindividuals = 9\nsteps = 40\niterations = 20\n"
            "data-sets = 30\ndensity = 0\nseed = 5\n";
        for (const auto& [file, content] : files) folder_.Write(name + "/" + file, content);
    }

    /// Exit status of a command of the shell in that folder; what it says stands in out and err.
    int Run(const std::string& name, const std::string& command) const {
        const std::string line =
            "cd '" + folder_.File(name) + "' && timeout 200 " + command + " >out 2>err";
        const int status = std::system(line.c_str());
        return status % 256 == 0 ? status / 256 : 128;
    }

    FilesByName FilesOf(const std::string& name) const {
        FilesByName files;
        for (const auto& entry : fs::recursive_directory_iterator(folder_.path() / name))
            if (entry.is_regular_file())
                files[fs::relative(entry.path(), folder_.path() / name)] =
                    Masked(ReadWholeFile(entry.path()));
        return files;
    }

    TempFolder folder_;
    std::string path_ = std::getenv("PATH");
};

}  // namespace

TEST_F(RanksTest, FilesAreThoseOfOneProcess) {
    if (kMpiProgram.empty()) GTEST_SKIP() << "TESSEL-mpi was not built";
    for (const std::string command :
         {"analyse old --iterations 40 --seed 3 --types each",
          "analyse old --congruence procrustes --seed 3",
          "analyse old --congruence rv --seed 3 --details yes",
          "rank old --criterion XE --test 9 --seed 3", "simulate world.toml --congruence rv",
          "simulate world.toml --streams yes --details yes",
          "--config world.toml simulate --streams yes",
          "simulate world.toml --streams yes --part 2/4",
          "simulate world.toml --streams yes --data-sets 2", "simulate none.toml",
          "rank old --criterion none", "check old"}) {
        Make("one");
        const int status = Run("one", "TESSEL " + command);
        const FilesByName expected = FilesOf("one");
        fs::remove_all(folder_.path() / "one");
        for (const char* ranks : {"2", "4"}) {
            // A start takes seconds where others work too.
            if (*ranks == '2' && !Contains(command, "--streams yes --details")) continue;
            SCOPED_TRACE(command + " on " + ranks);
            Make("many");
            EXPECT_EQ(Run("many", std::string("mpi ") + ranks + " " + command), status);
            FilesByName files = FilesOf("many");
            // mpirun adds its own words to those of a failure.
            if (status != 0 && Contains(files["err"], expected.at("err")))
                files["err"] = expected.at("err");
            EXPECT_EQ(files, expected);
            EXPECT_TRUE(fs::is_empty(folder_.path() / "empty"));
            fs::remove_all(folder_.path() / "many");
        }
    }
}

TEST_F(RanksTest, AnEndOfOneEndsAllAndLeavesTheFormerResults) {
    if (kMpiProgram.empty()) GTEST_SKIP() << "TESSEL-mpi was not built";
    const std::string command =
        "mpi 4 simulate world.toml --streams yes --data-sets 2000000 --force";
    for (const char* fate : {"(sleep 2; kill -9 $$) &", "ulimit -v 50000", "exit 3"}) {
        SCOPED_TRACE(fate);
        Make("ill");
        fs::create_directories(folder_.path() / "ill/SimulatedTables");
        const std::vector<std::string> results = {"ill/FinalSimulatedData.txt",
                                                  "ill/SimulatedTables/rates.csv"};
        for (const std::string& file : results) folder_.Write(file, kOld);
        setenv("RANK_2", fate, 1);
        const int status = Run("ill", command);
        unsetenv("RANK_2");
        EXPECT_NE(status, 0);
        EXPECT_NE(status, 124) << "went on for ever";
        for (const std::string& file : results) EXPECT_EQ(folder_.Read(file), kOld);
    }
}

TEST_F(RanksTest, BatchFilesDoWhatTheySay) {
    Make("whole");
    ASSERT_EQ(Run("whole", "TESSEL simulate world.toml --streams yes --tables Rates"), 0);
    Make("array");
    const std::string examples = TESSEL_EXAMPLES "/cluster/";
    for (const auto& file : fs::directory_iterator(examples))
        if (file.path().extension() == ".sbatch") {
            EXPECT_EQ(Run("array", "bash -n '" + file.path().string() + "'"), 0) << file.path();
        }
    setenv("SLURM_ARRAY_TASK_COUNT", "4", 1);
    for (const char* task : {"1", "2", "3", "4"}) {
        setenv("SLURM_ARRAY_TASK_ID", task, 1);
        EXPECT_EQ(Run("array", "bash '" + examples + "simulate-array.sbatch' world.toml"), 0)
            << folder_.Read("array/err");
    }
    EXPECT_EQ(Run("array", "bash '" + examples + "join.sbatch'"), 0) << folder_.Read("array/err");
    for (const char* table : {"statistics.csv", "rates.csv", "settings.toml"})
        EXPECT_EQ(folder_.Read(std::string("array/Rates/") + table),
                  folder_.Read(std::string("whole/Rates/") + table));
    if (kMpiProgram.empty())
        GTEST_SKIP() << "TESSEL-mpi was not built: no batch file of MPI is run";
    EXPECT_EQ(Run("array", "bash '" + examples + "simulate-mpi.sbatch' world.toml --tables Mpi"),
              0);
    EXPECT_EQ(folder_.Read("array/Mpi/statistics.csv"), folder_.Read("whole/Rates/statistics.csv"));
    EXPECT_EQ(Run("array", "bash '" + examples + "rank-mpi.sbatch' old --criterion XE"), 0);
    EXPECT_EQ(Run("whole", "TESSEL rank old --criterion XE"), 0);
    EXPECT_EQ(Masked(folder_.Read("array/oldChRank_XE.txt")),
              Masked(folder_.Read("whole/oldChRank_XE.txt")));
}
