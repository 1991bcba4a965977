// The command rank: its files are those of the dialogue, its tables say the same, its test repeats
// the search under the null model of the analysis.

#include <cmath>

#include "TSLIF2/preferences.h"
#include "mxlib/random_lists.h"
#include "tessel/example_session.h"

namespace {

struct Criterion {
    std::string statistic;
    int option;
};
const Criterion kCriteria[] = {
    {"XE", 1},     {"XE.T", 9},   {"TE", 10}, {"PX", 11},    {"PX.T", 12}, {"PT", 13},
    {"PTxTE", 14}, {"PXxXE", 15}, {"RE", 16}, {"XE.TR", 17}, {"XZ", 18},   {"TZ", 19},
    {"XZ.T", 20},  {"XY", 21},    {"TY", 22}, {"XY.T", 23},  {"SE", 24}};

struct RankCommand : ExampleSession {
    static CommandRun Rank(const std::string& words) {
        const CommandRun run = RunCommand("rank " + words);
        EXPECT_EQ(run.status, 0) << words << run.err;
        return run;
    }

    /// The dialogue's files for a criterion, types from a file, against those of the command.
    void ExpectAsTheDialogue(const std::string& name, const FilesByName& session,
                             const Criterion& criterion, int measure, bool all) {
        SCOPED_TRACE(name + " " + criterion.statistic + " " + std::to_string(measure));
        const bool isTE = criterion.option == 10, isRE = criterion.option == 16;
        FilesByName before = session;
        if (all) {  // structures can only be asked for by the file of preferences
            saveStruct = 'y';
            WritePreferences();
            before["TESSEL.prf"] = folder_.Read("TESSEL.prf");
        }
        std::string answers = "O\n" + name + "\nV\nK\n" + std::to_string(criterion.option) + "\n";
        if (!isTE) answers += std::string("n\nf\ntypes.txt\n") + (all ? "0\n" : "1\n");
        answers += std::to_string(measure) + "\n";
        if (measure == 1 && !isTE && !isRE) answers += all ? "10\n" : "6\n";
        answers += std::string("1\n") + (name == "mafragh" ? "n\n" : "") + (isTE ? "" : "y\n") +
                   (all            ? "1\n1\ny\n"
                    : measure == 1 ? "1\n2\nn\n"
                                   : "1\n1\nn\n") +
                   "C\nC\nX\n";
        const auto expected =
            FilesAfter(before, [&] { EXPECT_EQ(RunWhole(answers).exitStatus, 0); });
        const auto files = FilesAfter(before, [&] {
            const char* const measures[] = {"mantel", "procrustes", "rv"};
            std::string words = name + " --quiet --types types.txt --criterion " +
                                criterion.statistic + " --congruence " + measures[measure - 1];
            words += all ? " --sizes 1 --lines yes --save-structures yes --belonging crisp"
                     : measure == 1 ? " --sizes 1-2"
                                    : " --sizes 1";
            if (all && measure == 1 && !isTE && !isRE) words += " --resemblance chord";
            EXPECT_EQ(Rank(words).out, "");
        });
        EXPECT_GT(expected.size(), before.size() - (all ? 1 : 0));
        EXPECT_TRUE(files == expected);
    }
};

}  // namespace

TEST_F(RankCommand, FilesAreThoseOfTheDialogue) {
    for (const std::string name : {"aravo", "mafragh"}) {
        const FilesByName session = Session(name);
        for (const Criterion& criterion : kCriteria) {
            if (name == "aravo" && criterion.statistic[0] == 'P') continue;
            // Products under another measure take the resemblance that was used last, or none.
            const bool isProduct = Contains(criterion.statistic, "x");
            for (const int measure : {1, 2, 3})
                if (!isProduct || measure == 1)
                    ExpectAsTheDialogue(name, session, criterion, measure, false);
            ExpectAsTheDialogue(name, session, criterion, 1, true);
        }
    }
}

TEST_F(RankCommand, TablesSayWhatTheReportDoes) {
    const std::string reports[][3] = {{"aravo", "TE", "TCAP"},
                                      {"aravo", "XE.T", "TDAP"},
                                      {"mafragh", "PTxTE", "BetaNicheConserv"}};
    for (const auto& [name, statistic, suffix] : reports) {
        WriteFiles(folder_, Session(name));
        const std::string out = Rank(name + " --sizes 1-3 --criterion " + statistic).out;
        EXPECT_EQ(Count(out, "test of the winning subset on the same data is not valid"), 1);
        const Texts traits = ReadNames(name).traits;
        const std::string report = folder_.Read(name + "ChRank_" + suffix + ".txt");
        for (const std::string table : {"ranked", "best"}) {
            const auto rows =
                CellsOf(folder_.Read(name + "Rank_" + statistic + "/" + table + ".csv"));
            EXPECT_EQ(Texts(rows[0].begin() + 3, rows[0].end()), traits);
            EXPECT_EQ(rows.size() == 4, table == "best");
            for (std::size_t i = 1; i < rows.size(); i++) {
                char value[64];
                std::snprintf(value, sizeof value, "\t%-12.6g\t", NumberOf(rows[i][2]));
                // A line of the report: the value, then the labels.
                std::string line = table == "best" ? value : "\n" + std::string(value + 1);
                if (name == "mafragh") line += "56 groups\t";
                for (std::size_t k = 0; k < traits.size(); k++)
                    if (rows[i][k + 3] == "1") line += chLabel[k] + std::string("\t");
                EXPECT_TRUE(Contains(report, line + "\n")) << line;
            }
        }
    }
}

// Criteria that mean another thing than their letters say were rated without a word.
TEST_F(RankCommand, LettersThatMislead) {
    WriteFiles(folder_, Session("mafragh"));
    const std::string types = "mafragh --types types.txt --force --quiet";
    ASSERT_EQ(RunCommand("analyse --iterations 1 " + types).status, 0);
    const auto statistics = CellsOf(folder_.Read("mafraghTables/statistics.csv"));
    for (const std::string letters : {"XZ XY", "TY TZ", "XZ.T XY.T"}) {
        const std::string criterion = letters.substr(0, letters.find(' '));
        const std::string known = letters.substr(criterion.size() + 1);
        EXPECT_TRUE(Contains(Rank("--sizes 14 --criterion " + criterion + " " + types).err,
                             criterion + " is what analyse calls " + known + ":"));
        const auto best = CellsOf(folder_.Read("mafraghRank_" + criterion + "/best.csv"));
        for (const Texts& row : statistics)
            if (row[0] == known) {
                EXPECT_NEAR(NumberOf(row[2]), NumberOf(best[1][2]), 1e-7);
            }
    }
    for (const char* criterion : {"RE", "SE"})
        EXPECT_TRUE(Contains(Rank(types + " --sizes 1 --criterion " + criterion).err,
                             "is taken over the first 6 OTUs only"));
    EXPECT_TRUE(Contains(RunCommand("rank --criterion PTxTE --congruence rv " + types).err,
                         "PTxTE compares resemblances: give --congruence mantel"));
}

// With all traits there is nothing to choose: the test of the search is that of the analysis.
TEST_F(RankCommand, TestOfOneSubsetIsThatOfTheAnalysis) {
    WriteFiles(folder_, Session("aravo"));
    const auto probability = [&](const std::string& file, const std::string& row) {
        for (const Texts& cells : CellsOf(folder_.Read(file)))
            if (cells[0] == row) {
                const std::size_t at = cells.size() > 10 ? 2 : 3;
                return cells[at] + " of " + cells[at + 1];
            }
        return std::string();
    };
    for (const std::string settings :
         {"--types each", "--types each --within types.txt", "--types types.txt",
          "--types types.txt --belonging crisp --double-absence no",
          "--types types.txt --congruence rv", "--types types.txt --congruence procrustes"}) {
        const std::string common = "aravo --quiet --force --seed 11 " + settings;
        ASSERT_EQ(RunCommand("analyse --tails one --iterations 40 " + common).status, 0);
        for (const std::string statistic : {"TE", "XE", "XE.T"}) {
            Rank("--sizes 8 --test 39 --criterion " + statistic + " " + common);
            const std::string folder = "aravoRank_" + statistic;
            EXPECT_EQ(probability(folder + "/test.csv", "8"),
                      probability("aravoTables/statistics.csv", statistic))
                << statistic << " " << settings;
        }
    }
}

TEST_F(RankCommand, DryRunTellsWhatASearchWillTake) {
    FormdaText data;
    data.W = {{3, 0, 1}, {0, 2, 4}, {1, 1, 0}, {6, 0, 2}};
    data.E = {{1}, {4}, {2}};
    data.B.assign(4, {});
    for (int k = 0; k < 62; k++)
        for (int i = 0; i < 4; i++) data.B[i].push_back(k * i % 7);
    folder_.Write("sFormda.txt", FormdaOf(data));
    folder_.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
    const CommandRun run = RunCommand("rank s --criterion TE --dry-run");
    EXPECT_TRUE(Contains(run.out, "4611686018427387903 subsets of 1 to 62 traits\nTime: about "));
    EXPECT_TRUE(Contains(run.out, " years on "));
    EXPECT_FALSE(folder_.Has("sChRank_TCAP.txt"));
}

// A permutation searched by itself: the traits and types of the OTUs in the order of the generator.
TEST_F(RankCommand, TestSearchesPermutedTraits) {
    FormdaText data;
    data.B = {{1, 4, 2}, {2, 1, 9}, {5, 2, 1}, {3, 8, 4}, {7, 3, 3}, {4, 9, 30}};
    data.W = {{3, 0, 1, 2}, {0, 2, 4, 1}, {1, 1, 0, 5}, {6, 0, 2, 0}, {0, 3, 1, 1}, {2, 2, 0, 3}};
    data.E = {{1}, {4}, {2}, {9}};
    data.traitTypes = "3 4 3";  // ranks of an ordinal trait must not pile up
    data.traitLabels = "a b c";
    const std::vector<int> types = {1, 1, 2, 2, 3, 3};
    int list[] = {1, 2, 3, 4, 5, 6};
    InitRndNumberGenerator(5);
    RndListSpecified(6, list);
    FormdaText permuted = data;
    std::string order, plain;
    for (std::size_t i = 0; i < 6; i++) {
        permuted.B[i] = data.B[static_cast<std::size_t>(list[i] - 1)];
        order += std::to_string(types[static_cast<std::size_t>(list[i] - 1)]) + " ";
        plain += std::to_string(types[i]) + " ";
    }
    const auto write = [&](const FormdaText& text, const std::string& groups) {
        folder_.Write("sFormda.txt", FormdaOf(text));
        folder_.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
        folder_.Write("types.txt", groups);
    };
    for (const std::string statistic : {"TE", "XE", "XE.T", "SE"})
        for (const std::string belonging : {"fuzzy", "crisp"}) {
            const std::string words = "s --quiet --force --seed 5 --types types.txt --belonging " +
                                      belonging + " --criterion " + statistic;
            write(data, plain);
            Rank(words + " --test 1");
            const auto null = CellsOf(folder_.Read("sRank_" + statistic + "/null.csv"));
            write(permuted, order);
            Rank(words);
            const auto best = CellsOf(folder_.Read("sRank_" + statistic + "/best.csv"));
            double ofAll = -2;
            ASSERT_EQ(null.size(), 3u);
            for (std::size_t size = 1; size < best.size(); size++) {
                EXPECT_EQ(null[2][size], best[size][2]) << statistic << belonging << size;
                const double value = NumberOf(best[size][2]);
                const bool magnitude = statistic == "XE.T";
                if (magnitude ? std::fabs(value) > std::fabs(ofAll) || ofAll == -2 : value > ofAll)
                    ofAll = value;
            }
            EXPECT_EQ(NumberOf(null[2].back()), ofAll);
            EXPECT_FALSE(folder_.Has("sRank_" + statistic + "/test.csv"));  // of the run before
        }
}
