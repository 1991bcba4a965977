// Data sets with generators of their own, a simulation run in parts, and the parts joined.

#include "support/good_session.h"
#include "support/text.h"
#include "tessel/in_command.h"

namespace {

struct SimulateStreams : InProcess {
    SimulateStreams() {
        for (const char* file : {"traits.csv", "factors.csv", "filter.csv", "effects.csv"})
            world_[file] = ReadWholeFile(std::string(TESSEL_EXAMPLES) + "/simulation/" + file);
        world_["world.toml"] =
            "[simulate]\notus = 12\nsites = 9\ntrait-correlations = \"traits.csv\"\n"
            "environment-correlations = \"factors.csv\"\nresponses = \"filter.csv\"\n"
            "effects = \"effects.csv\"\nindividuals = 9\nsteps = 40\niterations = 20\n"
            "data-sets = 7\nalpha = 0.3\nseed = 5\n";
    }

    /// The files that a run of the world leaves.
    FilesByName FilesOf(const std::string& options) {
        TakeFiles();
        WriteFiles(folder_, world_);
        const CommandRun run = RunCommand("simulate world.toml " + options);
        EXPECT_EQ(run.status, 0) << run.err;
        return TakeFiles();
    }

    /// Tables of the parts 1/3 to 3/3 in folders of these numbers, and `more`.
    void WriteParts(const FilesByName& more) {
        TakeFiles();
        WriteFiles(folder_, parts_);
        WriteFiles(folder_, more);
    }

    FilesByName world_, parts_;
};

/// The rows of one data set.
std::string RowsOf(const std::string& statistics, int dataSet) {
    std::istringstream lines(statistics);
    std::string rows;
    for (std::string line; std::getline(lines, line);)
        if (line.starts_with(std::to_string(dataSet) + ",")) rows += line + "\n";
    return rows;
}

}  // namespace

TEST_F(SimulateStreams, PartsHaveTheDataSetsOfTheWholeAndAreJoinedToIt) {
    const std::string tables = "SimulatedTables/";
    for (const std::string options : {"", "--details yes --congruence rv --density 0"}) {
        parts_.clear();
        const FilesByName whole = FilesOf(options + " --streams yes");
        const std::string& statistics = whole.at(tables + "statistics.csv");
        const FilesByName single = FilesOf(options);
        EXPECT_NE(single.at(tables + "statistics.csv"), statistics);
        const std::string alone =
            FilesOf(options + " --streams yes --part 7/7").at(tables + "statistics.csv");
        EXPECT_EQ(alone, "data set,statistic,value,P\n" + RowsOf(statistics, 7));
        for (int part = 1; part <= 3; part++) {
            const std::string number = std::to_string(part);
            const FilesByName files = FilesOf(options + " --streams yes --part " + number + "/3");
            for (const char* table : {"statistics.csv", "rates.csv", "settings.toml"})
                parts_[number + "/" + table] = files.at(tables + table);
            const Texts rate = CellsOf(files.at(tables + "rates.csv"))[1];
            EXPECT_EQ(rate[3], part == 1 ? "3" : "2");
            const std::string& report = files.at("FinalSimulatedData.txt");
            EXPECT_TRUE(Contains(report, "\nPart " + number + " of 3: "));
            EXPECT_TRUE(Contains(report, "based on " + rate[3] + " tests"));
            // The report of a data set stands in that of the whole too.
            const std::size_t from = report.find("\nSIMULATED DATA " + number);
            if (from != std::string::npos) {
                EXPECT_TRUE(
                    Contains(whole.at("FinalSimulatedData.txt"),
                             report.substr(from, report.find("\n\nSIMULATED", from) - from)));
            }
        }
        WriteParts({});
        EXPECT_EQ(RunCommand("join 2 3 1").status, 0);
        const FilesByName joined = TakeFiles();
        for (const char* table : {"statistics.csv", "rates.csv", "settings.toml"})
            EXPECT_EQ(joined.at(tables + table), whole.at(tables + table)) << table;
    }
    const std::string settings = parts_["2/settings.toml"], rows = parts_["2/statistics.csv"];
    const auto expectRefused = [&](const FilesByName& more, const std::string& folders,
                                   const std::string& told) {
        WriteParts(more);
        const CommandRun run = RunCommand("join " + folders);
        EXPECT_EQ(run.status, 1);
        EXPECT_TRUE(Contains(run.err, told)) << run.err;
        EXPECT_FALSE(std::filesystem::exists("SimulatedTables"));
    };
    const auto inSettings = [&](const std::string& from, const std::string& to) {
        return FilesByName{{"2/settings.toml", Replaced(settings, from, to)}};
    };
    const auto inRows = [&](const std::string& from, const std::string& to) {
        return FilesByName{{"2/statistics.csv", Replaced(rows, from, to)}};
    };
    expectRefused({}, "1 2", "the part 3/3 is missing");
    expectRefused({}, "1 2 3 2", "2/settings.toml, line 25: the part 2/3 stands in 2/settings");
    expectRefused({}, "1 2 4", "4/settings.toml: the file cannot be opened");
    expectRefused(inSettings("seed = 5", "seed = 6"), "1 2 3",
                  "2/settings.toml, line 29: seed is 6, and 1/settings.toml has seed = 5");
    expectRefused(inSettings("2/3", "2/4"), "1 2 3", "one of 4 parts, and 1/settings.toml is one");
    expectRefused(inSettings("part = \"2/3\"\n", ""), "1 2 3", "has no setting part of simulate");
    expectRefused(inRows("\n5,r(XE),", "\n6,r(XE),"), "1 2 3",
                  "2/statistics.csv, line 14: is not the expected data set 5, r(XE)");
    expectRefused(inRows(RowsOf(rows, 5), ""), "1 2 3", "2/statistics.csv: ends before data set 5");
    expectRefused({{"2/statistics.csv", rows + "8,r(TE),0,1\n"}}, "1 2 3",
                  "line 24: comes after the last data set");
}

// The last world's tests take longer than its assembly: they get the threads themselves.
using ThreadsSimulation = SimulateStreams;
TEST_F(ThreadsSimulation, SameFilesForAnyNumberOfThreads) {
    for (const std::string options :
         {"", "--streams yes --part 2/3", "--congruence procrustes --belonging fuzzy",
          "--iterations 2000 --steps 1 --data-sets 2"}) {
        const FilesByName serial = FilesOf(options + " --threads 1");
        for (const std::string threads : {"2", "3"})
            EXPECT_EQ(FilesOf(options + " --threads " + threads), serial) << options;
    }
}

TEST_F(SimulateStreams, PartsThatCannotBeAreWrongUsage) {
    for (const auto& [options, told] :
         {std::pair{"--streams yes --part 8/8", "fewer data sets than parts"},
          {"--part 1/2", "--streams yes"},
          {"--streams yes --seed clock --part 1/2", "give all the same --seed"},
          {"--streams yes --evaluate no --part 1/2", "without --evaluate"},
          {"--streams yes --part 0/2", "takes I/K"},
          {"--streams yes --part 3/2", "takes I/K"},
          {"--streams yes --part 1", "takes I/K"},
          {"--streams yes --part 1/2x", "takes I/K"}}) {
        WriteFiles(folder_, world_);
        const CommandRun run = RunCommand(std::string("simulate world.toml ") + options);
        EXPECT_EQ(run.status, 2) << options;
        EXPECT_TRUE(Contains(run.err, told)) << run.err;
    }
}
