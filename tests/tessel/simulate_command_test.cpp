// Simulated worlds of named tables by the command line: the files are those of the dialogue for the
// same numbers.

#include <sstream>

#include "support/good_session.h"
#include "tessel/example_session.h"

namespace {

using SimulateCommand = InProcess;

/// Three factors at six sites, two traits of eight OTUs as the dialogue takes them: OTUs, factors,
/// traits (with the interactions 1x3 and 2x3 and one that stays 0), factors in rows.
const FilesByName kNumbers = {
    {"B.csv", "2.385 1\n1.175 0\n3.81 1.5\n0.62 0\n1.905 1\n4.4 2\n0.1 3.25\n2.2 0.3\n"},
    {"E.csv", "7 5.5 6 1 3 2\n-1 2 4.5 3 0 8\n0.125 3 1 2 9 4\n"},
    {"A.csv", "0.8 0 -0.3 0.25 0 0\n0 -0.75 0 0 0.5 0\n"},
    {"G.csv", "0 0.1\n0 0\n0.2 0\n"}};

/// The same under names. B and E tell the order, from which the others differ.
const FilesByName kTables = {
    {"B.csv",
     "otu,height,woody\nPoa,2.385,1\nCarex,1.175,0\nStipa,3.81,1.5\nBriza,0.62,0\n"
     "\"Ilex, low\",1.905,1\nRosa,4.4,2\nSalix,0.1,3.25\nFagus,2.2,0.3\n"},
    {"E.csv",
     "site;water;light;soil\na;7;-1;0,125\nb;5,5;2;3\nc;6;4,5;1\nd;1;3;2\ne;3;0;9\nf;2;8;4\n"},
    {"A.csv",
     "trait,soil,water,light,light:soil,water:soil\nwoody,0,0,-0.75,0.5,0\n"
     "height,-0.3,0.8,0,0,0.25\n"},
    {"G.csv", "factor,woody,height\nsoil,0,0.2\nlight,0,0\nwater,0.1,0\n"}};

const std::string kWorld =
    "[simulate]\ntraits = \"B.csv\"\nenvironment = \"E.csv\"\ninteractions = \"yes\"\n"
    "responses = \"A.csv\"\neffects = \"G.csv\"\nindividuals = 9\nthreshold = 0.5\n"
    "dispersal = 0.4\ndensity = 0.25\nsteps = 60\nseed = 7\n";
const std::string kAnswers =
    "A\n6\n8\n2\nt\nB.csv\n3\ne\nE.csv\ny\nA.csv\nG.csv\n9\n.5\n.4\n.25\n60\n";

/// What the simulation writes into a folder with these files, without them.
template <class Run>
FilesByName FilesOf(FilesByName before, const TempFolder& folder, const Run& run) {
    TakeFiles();
    WriteFiles(folder, before);
    run();
    FilesByName files = TakeFiles();
    for (const auto& file : before) files.erase(file.first);
    return files;
}

}  // namespace

TEST_F(SimulateCommand, FilesAreThoseOfTheDialogue) {
    using Row = std::tuple<const char*, std::string, std::string>;
    const std::string types = "k\n1 2 3 4 5 6 7 8\ny\n";
    for (const auto& [preferences, answers, options] :
         {Row{"", "n\n2\n7\ny\n", "evaluate = no\nsave-steps = yes\n"},
          {"S\nF\n3\nn\nC\n", "n\n2\n7\nn\n", "evaluate = no\ndigits = 3\n"},
          {"S\nT\nn\nB\nn\nC\n", "y\n2\n" + types + "1\n20\n0\n2\n7\n1\n10\n1\ny\ny\n1\n.05\n",
           "data-sets = 2\niterations = 20\nresemblance = chord\ndetails = yes\ntails = one\n"
           "beals-target = no\n"},
          {"", "y\n3\n" + types + "0\n20\n0\n2\n7\n2\n2\n0 1\ny\nn\n2\n1 0 0 0 1 0\n.1\n",
           "tables = no\ndata-sets = 3\niterations = 20\nbelonging = crisp\ncongruence = "
           "procrustes\n"
           "traits-in-use = woody\npredictors-in-use = [\"light:soil\", water]\nalpha = 0.1\n"},
          {"S\nO\n3\nC\n",
           "y\n2\n" + types + "1\n9\n1\nk\n1 1 1 1 2 2 2 2\n2\n7\n3\n1\ny\ny\n1\n.05\n",
           "data-sets = 2\niterations = 9\nwithin = groups.csv\ncongruence = rv\n"
           "details = yes\npredictor-limit = 3\n"}}) {
        Clean();
        auto expected = FilesOf(kNumbers, folder_, [&, keys = preferences + kAnswers + answers] {
            EXPECT_EQ(RunWhole(keys + "X\n").exitStatus, 0);
        });
        expected.erase("TESSEL.prf");
        Clean();
        FilesByName tables = kTables;
        tables["world.toml"] = kWorld + options;
        tables["groups.csv"] =
            "otu,group\nFagus,b\nPoa,a\nCarex,a\nStipa,a\nBriza,a\nIlex; low,b\nRosa,b\nSalix,b\n";
        tables["groups.csv"] = Replaced(tables["groups.csv"], "Ilex; low", "\"Ilex, low\"");
        const bool wanted = !Contains(options, "tables = no");
        auto made = FilesOf(tables, folder_, [&] {
            const CommandRun run = RunCommand("simulate world.toml");
            EXPECT_EQ(run.status, 0) << run.err;
            EXPECT_EQ(run.err, "");
            EXPECT_EQ(Contains(run.out, "Tables: "), wanted);
        });
        EXPECT_EQ(wanted, std::erase_if(made, [](const auto& file) {
                              return Contains(file.first, "/");
                          }) > 0);
        EXPECT_EQ(made, expected) << options;
    }
}

TEST_F(SimulateCommand, ExamplesAreThoseOfTheDialogue) {
    namespace fs = std::filesystem;
    const fs::path examples = fs::path(TESSEL_EXAMPLES) / "simulation";
    for (const std::string world : {"neutral", "filter"}) {
        FilesByName files;
        for (const auto& entry : fs::directory_iterator(examples))
            files[entry.path().filename()] = ReadWholeFile(entry.path());
        std::string answers = Replaced(files["answers_" + world + ".txt"], "\n200\n", "\n4\n");
        std::string options = " --data-sets 4";
        if (world == "filter") {
            answers = Replaced(answers, "traits.txt\nn", "traits.txt\nu");
            answers = Replaced(answers, "factors.txt\nn", "factors.txt\nu");
            options += " --trait-distribution uniform --environment-distribution uniform";
        }
        const auto expected = FilesOf(files, folder_, [&] { RunWhole(answers); });
        auto made = FilesOf(files, folder_, [&] {
            EXPECT_EQ(RunCommand("simulate " + world + ".toml" + options).status, 0);
        });
        std::string& report = made["FinalSimulatedData.txt"];
        for (const std::string table : {"traits", "factors", world.c_str(), "effects"})
            report = Replaced(report, table + ".csv", table + ".txt");
        EXPECT_EQ(report, expected.at("FinalSimulatedData.txt"));
        EXPECT_EQ(made.at("OTUs_Simulated.txt"), expected.at("OTUs_Simulated.txt"));
        const auto statistics = CellsOf(made.at("SimulatedTables/statistics.csv"));
        const auto rates = CellsOf(made.at("SimulatedTables/rates.csv"));
        ASSERT_EQ(statistics.size(), 45U);
        for (auto rate = rates.begin() + 1; rate != rates.end(); ++rate) {
            const std::string& statistic = (*rate)[0];
            int rejections = 0;
            for (const Texts& row : statistics)
                rejections += row[1] == statistic && NumberOf(row[3]) <= 0.05;
            EXPECT_EQ((*rate)[2], std::to_string(rejections)) << statistic;
            EXPECT_NE((*rate)[1], "") << statistic;
            EXPECT_EQ(NumberOf((*rate)[4]), rejections / 4.0);
            const std::string printed = statistic + "\tP=\t";
            EXPECT_EQ(NumberOf(report.substr(report.find(printed) + printed.size())),
                      rejections / 4.0);
        }
        // The settings repeat the run.
        files["again.toml"] = made.at("SimulatedTables/settings.toml");
        const auto again = FilesOf(files, folder_, [] {
            EXPECT_EQ(RunCommand("--config again.toml simulate").status, 0);
        });
        for (const char* table : {"statistics.csv", "rates.csv", "settings.toml"}) {
            const std::string name = std::string("SimulatedTables/") + table;
            EXPECT_EQ(again.at(name), made.at(name));
        }
    }
}

TEST_F(SimulateCommand, FullDevicesAreTold) {
    FilesByName files = kTables;
    files["world.toml"] = kWorld + "evaluate = no\n";
    WriteFiles(folder_, files);
    std::filesystem::create_symlink("/dev/full", "OTUs_Simulated.txt");
    EXPECT_TRUE(
        Contains(RunCommand("simulate world.toml --force").err, "a file could not be written"));
}
