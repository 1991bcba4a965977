// The command analyse: its files are those of the dialogue for the same settings, its tables hold
// what the report says, its settings file repeats it.

#include <cmath>
#include <regex>
#include <valarray>

#include "TSLCLI/progress.h"
#include "mxlibDim/terminal.h"
#include "tessel/example_session.h"

namespace {

/// The answers of a functional analysis in the order of the questions. The example mafragh asks for
/// the groups of traits too.
struct Answers {
    std::string fuzzy = "1", iterations = "9", within = "0", congruence = "1\n6", traits = "1";
    std::string groups = "n", standardise = "y", details = "n", preferences = "";
    std::string types = "n\nf\neach.txt";
};

struct Row {
    std::string options;
    Answers answers;
};

const Row kMeasures[] = {{"", {}},
                         {" --congruence procrustes", {.congruence = "2"}},
                         {" --congruence rv", {.congruence = "3"}}};

/// Each option of the command and what it changes in the dialogue.
const Row kOptions[] = {
    {"", {}},
    {" --types species", {.types = "y"}},
    {" --types types.txt --belonging crisp", {.fuzzy = "0", .types = "n\nf\ntypes.txt"}},
    {" --types named.csv", {.types = "n\nf\ntypes.txt"}},
    {" --details yes", {.iterations = "1", .details = "y"}},
    {" --within types.txt --details yes", {.within = "1\nf\ntypes.txt", .details = "y"}},
    {" --standardise no --beals-target no", {.standardise = "n", .preferences = "B\nn\n"}},
    {" --double-absence no --root-traits no --root-phylogeny yes",
     {.preferences = "G\nn\nR\nn\ny\n"}},
    {" --predictor-limit 3.5 --tails one", {.preferences = "O\n3.5\nT\nn\n"}},
    {" --digits 9 --save-random yes", {.preferences = "F\n9\ny\n"}},
};
const Row kResemblances[] = {{" --resemblance chord", {.congruence = "1\n10"}},
                             {" --resemblance absolute", {.congruence = "1\n8"}},
                             {" --resemblance relative-euclidean", {.congruence = "1\n7"}},
                             {" --resemblance relative-absolute", {.congruence = "1\n9"}}};

struct AnalyseCommand : ExampleSession {
    void ExpectAsTheDialogue(const std::string& name, const FilesByName& session,
                             const std::string& options, const Answers& a) {
        SCOPED_TRACE(name + options);
        std::string answers = "O\n" + name + "\n";
        if (!a.preferences.empty()) answers += "S\n" + a.preferences + "C\n";
        answers += "V\nH\n" + a.types + "\n" + a.fuzzy + "\n" + a.iterations + "\n" + a.within +
                   "\n2\n7\n" + a.congruence + "\n" + a.traits + "\n" +
                   (name == "mafragh" ? a.groups + "\n" : "") + a.standardise + "\n" + a.details +
                   "\nC\nC\nX\n";
        const auto expected =
            FilesAfter(session, [&] { EXPECT_EQ(RunWhole(answers).exitStatus, 0); });
        EXPECT_TRUE(expected.contains(name + "Prinda.txt"));
        const auto files = FilesAfter(session, [&] {
            const CommandRun run = RunCommand("analyse " + name + " --seed 7 --iterations " +
                                              a.iterations + " --quiet" + options);
            EXPECT_EQ(run.status, 0) << run.err;
            EXPECT_EQ(run.out, "");
        });
        EXPECT_TRUE(files == expected);
    }
};

}  // namespace

TEST_F(AnalyseCommand, FilesAreThoseOfTheDialogue) {
    for (const std::string name : {"aravo", "mafragh"}) {
        const FilesByName session = Session(name);
        for (const Row& measure : kMeasures)
            for (Row row : kOptions) {
                row.answers.congruence = measure.answers.congruence;
                ExpectAsTheDialogue(name, session, row.options + measure.options, row.answers);
            }
        for (const Row& row : kResemblances)
            ExpectAsTheDialogue(name, session, row.options, row.answers);
    }
}

// Report and tables, by the option or a settings file; the settings file of the run tells no
// threads.
using ThreadsAnalyseCommand = AnalyseCommand;
TEST_F(ThreadsAnalyseCommand, SameFilesForAnyNumberOfThreads) {
    int run = 0;
    for (const std::string name : {"aravo", "mafragh"}) {
        FilesByName session = Session(name);
        for (const Row& measure : kMeasures)
            for (const char* options : {" --types types.txt",
                                        " --types types.txt --tails one "
                                        "--belonging crisp --within types.txt"}) {
                const auto filesOf = [&](const std::string& threads) {
                    Clean();
                    session["threads.toml"] = "[analyse]\nthreads = " + threads + "\n";
                    WriteFiles(folder_, session);
                    const CommandRun analysis =
                        RunCommand((run % 2 == 0 ? "--config threads.toml analyse " : "analyse ") +
                                   name + (run % 2 == 0 ? "" : " --threads " + threads) +
                                   " --seed 7 --iterations 60" + measure.options + options);
                    EXPECT_EQ(analysis.status, 0) << analysis.err;
                    auto files = TakeFiles();
                    files.erase("threads.toml");
                    files["out"] = analysis.out;
                    return files;
                };
                const auto serial = filesOf("1");
                EXPECT_TRUE(serial.contains(name + "Tables/null.csv"));
                EXPECT_FALSE(Contains(serial.at(name + "Tables/settings.toml"), "threads"));
                for (const std::string threads : {"2", "3", "5", "16"}) {
                    if (run > 0 && threads != std::to_string(std::vector{2, 3, 5, 16}[run % 4]))
                        continue;
                    EXPECT_TRUE(filesOf(threads) == serial) << name << threads << options;
                }
                run++;
            }
    }
}

TEST_F(AnalyseCommand, TraitsAndTheirGroupsByName) {
    const FilesByName session = Session("mafragh");
    const std::string traits = "2\n" + Repeated("1\n", 9) + Repeated("0\n", 5);
    FullNames names;
    FilesAfter(session, [&] { names = NamesOf("mafragh"); });
    std::string nine = names.traits[0];
    for (int k = 1; k < 9; k++) nine += "," + names.traits[k];
    ExpectAsTheDialogue("mafragh", session, " --traits " + nine + " --weight-by-groups yes",
                        {.traits = traits, .groups = "y"});
    // The session's own groups under other names; a trait alone in its group need not be named.
    std::string groups;
    for (int k = 0; k < 7; k++)
        groups += " --trait-groups " + names.traits[k] + (k < 3 ? "=pollination" : "=cycle");
    ExpectAsTheDialogue("mafragh", session, groups, {.groups = "y"});
}

TEST_F(AnalyseCommand, NominalSites) {
    const FilesByName session = Session("aravo", true);
    ExpectAsTheDialogue("aravo", session, "", {});
}

namespace {

/// The numbers between the line that begins with `title` and the next empty one.
std::vector<std::vector<double>> TableOf(const std::string& report, const std::string& title) {
    std::istringstream lines(report.substr(report.find("\n" + title) + 1));
    std::vector<std::vector<double>> table;
    std::string line;
    for (std::getline(lines, line); std::getline(lines, line) && !line.empty();) {
        if (line.rfind("Traits:", 0) == 0) continue;
        std::istringstream numbers(line);
        table.emplace_back();
        for (double x = 0; numbers >> x;) table.back().push_back(x);
    }
    EXPECT_FALSE(table.empty()) << title;
    return table;
}

/// A value of the report, printed with six digits.
void ExpectPrinted(double printed, double value, const std::string& what) {
    EXPECT_NEAR(printed, value, 1e-5 * std::fabs(value) + 1e-12) << what;
}

}  // namespace

// The definition of the probability, from the table of null values alone.
TEST_F(AnalyseCommand, ProbabilitiesFollowFromTheNullValues) {
    const FilesByName session = Session("mafragh");
    for (const std::string measure : {"mantel", "procrustes", "rv"})
        for (const std::string tails : {"one", "two"}) {
            WriteFiles(folder_, session);
            const CommandRun run = RunCommand(
                "analyse mafragh --types types.txt --iterations 60 "
                "--seed 3 --congruence " +
                measure + " --tails " + tails);
            ASSERT_EQ(run.status, 0) << run.err;
            const auto null = CellsOf(folder_.Read("mafraghTables/null.csv"));
            const auto statistics = CellsOf(folder_.Read("mafraghTables/statistics.csv"));
            const std::string report = folder_.Read("mafraghPrinda.txt");
            ASSERT_EQ(null.size(), 61u);
            ASSERT_EQ(statistics.size(), 23u);
            for (std::size_t k = 1; k < statistics.size(); k++) {
                const Texts& row = statistics[k];
                SCOPED_TRACE(row[0] + " " + measure + " " + tails);
                ASSERT_EQ(null[0][k], row[0]);
                EXPECT_EQ(null[1][k], row[2]);
                const bool twoTailed = tails == "two" || Contains(row[0], ".");
                const double observed = NumberOf(row[2]);
                // The report compares signals of distances with permuted ones of the other sign.
                const double sign = row[0] == "BF" && !twoTailed && measure == "mantel" ? -1 : 1;
                double extreme = 1, sum = 0, squares = 0;
                for (std::size_t i = 2; i < null.size(); i++) {
                    const double x = NumberOf(null[i][k]);
                    const double far =
                        twoTailed ? std::fabs(x) - std::fabs(observed) : sign * x - observed;
                    extreme += far >= -1e-7 * std::fabs(observed);
                    sum += x;
                    squares += x * x;
                }
                const double mean = sum / 59, sd = std::sqrt((squares - sum * mean) / 58);
                EXPECT_EQ(NumberOf(row[3]), extreme / 60);
                EXPECT_EQ(row[4] + " " + row[5], "60 59");
                EXPECT_NEAR(NumberOf(row[6]), mean, 1e-9);
                EXPECT_NEAR(NumberOf(row[7]), sd, 1e-7);
                EXPECT_NEAR(NumberOf(row[8]), (observed - mean) / sd, 1e-4);
                const std::size_t at = report.find("(" + row[0] + ")");
                if (at == std::string::npos) continue;  // not in the report
                double value = 0, p = 0;
                std::sscanf(report.c_str() + report.find('\t', at), "%lf P= %lf", &value, &p);
                ExpectPrinted(value, observed, "value");
                ExpectPrinted(p, NumberOf(row[3]), "P");
            }
            EXPECT_EQ(Contains(run.err, "one-tailed P of r(BF)"),
                      measure == "mantel" && tails == "one");
            std::filesystem::remove_all("mafraghTables");
            std::filesystem::remove("mafraghPrinda.txt");
        }
}

TEST_F(AnalyseCommand, TablesHoldWhatTheReportPrints) {
    WriteFiles(folder_, Session("mafragh"));
    ASSERT_EQ(RunCommand("analyse mafragh --types types.txt --iterations 2 --details yes").status,
              0);
    const FullNames names = ReadNames("mafragh");
    const Texts types = {"1", "2", "3", "4", "5", "6"};
    const std::string report = folder_.Read("mafraghPrinda.txt");
    const struct {
        std::string file, title;
        const Texts& rows;
        const Texts& columns;
    } tables[] = {
        {"T", "Matrix T with trait averages", names.communities, names.traits},
        {"TNormalised", "Matrix T with normalized", names.communities, names.traits},
        {"X", "Pooled performance matrix X", names.communities, types},
        {"P", "Pooled performance matrix P", names.communities, types},
        {"U", "Fuzzy degrees of belonging", names.otus, types},
        {"Q", "Fuzzy belonging of 56", names.otus, types},
        {"DE", "Resemblance matrix (DE)", names.communities, names.communities},
        {"DT", "Resemblance matrix (DT)", names.communities, names.communities},
        {"DP", "Resemblance matrix (DP)", names.communities, names.communities},
        {"S", "Similarity matrix between", names.otus, names.otus},
    };
    for (const auto& table : tables) {
        SCOPED_TRACE(table.file);
        const auto cells = CellsOf(folder_.Read("mafraghTables/" + table.file + ".csv"));
        const auto printed = TableOf(report, table.title);
        ASSERT_EQ(cells.size(), table.rows.size() + 1);
        ASSERT_EQ(printed.size(), table.rows.size());
        for (std::size_t i = 0; i < table.rows.size(); i++) {
            EXPECT_EQ(cells[i + 1][0], table.rows[i]);
            ASSERT_EQ(cells[i + 1].size(), table.columns.size() + 1);
            for (std::size_t j = 0; j < printed[i].size(); j++) {
                EXPECT_EQ(cells[0][j + 1], table.columns[j]);
                ExpectPrinted(printed[i][j], NumberOf(cells[i + 1][j + 1]), "cell");
                if (printed[i].size() < table.columns.size() || printed[0].size() == 1) {
                    EXPECT_EQ(cells[i + 1][j + 1], cells[j + 1][i + 1]);
                }
            }
        }
    }
    const char* const indices[] = {"Gini-Simpson", "Rao quadratic entropy within", "Functional red",
                                   "Rao quadratic entropy (Rp)", "Phylogenetic red"};
    const auto communities = CellsOf(folder_.Read("mafraghTables/communities.csv"));
    for (int k = 0; k < 5; k++)
        for (std::size_t i = 0; i < names.communities.size(); i++)
            ExpectPrinted(TableOf(report, indices[k])[0][i], NumberOf(communities[i + 1][k + 1]),
                          indices[k]);
    // Chord distances between the rows of X, from that table alone.
    std::filesystem::remove("mafraghPrinda.txt");
    ASSERT_EQ(RunCommand("analyse mafragh --types types.txt --iterations 2 --force --resemblance "
                         "chord")
                  .status,
              0);
    const auto X = CellsOf(folder_.Read("mafraghTables/X.csv"));
    const auto DX = CellsOf(folder_.Read("mafraghTables/DX.csv"));
    const auto dot = [&](int a, int b) {
        double sum = 0;
        for (int k = 1; k <= 6; k++) sum += NumberOf(X[a][k]) * NumberOf(X[b][k]);
        return sum;
    };
    for (int i = 2; i < 20; i++)
        EXPECT_NEAR(NumberOf(DX[i][1]),
                    std::sqrt(2 - 2 * dot(i, 1) / std::sqrt(dot(i, i) * dot(1, 1))), 1e-7);
}

// By what defines principal components: X X' a = |a|^2 a for an axis a of the centred table X; by
// products of columns for the traits, of communities for the types, of which there are more.
TEST_F(AnalyseCommand, OrdinationsArePrincipalComponents) {
    WriteFiles(folder_, Session("aravo"));
    ASSERT_EQ(RunCommand("analyse aravo --quiet --iterations 1").status, 0);
    for (const std::string letter : {"T", "X"}) {
        const auto table = CellsOf(folder_.Read("aravoTables/" + letter + ".csv"));
        const auto rows = CellsOf(folder_.Read("aravoTables/ordination" + letter + ".csv"));
        const std::size_t n = table.size() - 1, p = table[0].size() - 1;
        using Numbers = std::valarray<double>;
        const auto centred = [&](const std::vector<Texts>& cells, std::size_t row, std::size_t j) {
            Numbers x(n);
            for (std::size_t i = 0; i < n; i++) x[i] = NumberOf(cells[row + i][j]);
            return Numbers(x - x.sum() / double(n));
        };
        std::vector<Numbers> columns;
        double total = 0;
        for (std::size_t j = 1; j <= p; j++) {
            Numbers x = centred(table, 1, j);
            if (letter == "T") x /= std::sqrt((x * x).sum());
            total += (x * x).sum();
            columns.push_back(x);
        }
        for (const std::size_t k : {2, 3}) {
            const Numbers axis = centred(rows, 2, k);
            const double inertia = (axis * axis).sum();
            EXPECT_NEAR(NumberOf(rows[1][k]), inertia / total, 1e-6);
            Numbers back(n), products(p);
            for (std::size_t j = 0; j < p; j++) {
                const Numbers& x = columns[j];
                products[j] = (x * axis).sum();
                back += products[j] * x;
                EXPECT_NEAR(NumberOf(rows[n + 2 + j][k]),
                            products[j] / std::sqrt(inertia * (x * x).sum()), 1e-6);
            }
            EXPECT_LT(abs(back - inertia * axis).max(), 1e-6 * inertia * abs(axis).max());
            EXPECT_EQ(products.max(), abs(products).max());
        }
        EXPECT_GT(NumberOf(rows[1][2]), NumberOf(rows[1][3]));
    }
    // A trait less 100 takes the trait's part, though T divided by its negative sum is upside down.
    folder_.Write("t.csv", "OTU,a,low,b\no,1,-99,2\np,2,-98,9\nq,4,-96,5\n");
    folder_.Write("c.csv", "site,o,p,q\ns1,5,1,0\ns2,1,2,3\ns3,0,1,4\ns4,2,2,1\n");
    folder_.Write("e.csv", "site,soil,wet\ns1,clay,1\ns2,sand,2\ns3,clay,4\ns4,peat,3\n");
    ASSERT_EQ(
        RunCommand("import --traits t.csv --communities c.csv --environment e.csv --session low")
            .status,
        0);
    ASSERT_EQ(RunCommand("analyse low --quiet --iterations 1").status, 0);
    const auto rows = CellsOf(folder_.Read("lowTables/ordinationT.csv"));
    for (const std::size_t k : {2, 3})
        EXPECT_NEAR(NumberOf(rows[6][k]), NumberOf(rows[7][k]), 1e-9);
    ASSERT_EQ(rows.size(), 10U);  // codes of soils have no correlation
    EXPECT_EQ(rows[9][1], "wet");
    // Types of one OTU each have its name.
    EXPECT_EQ(CellsOf(folder_.Read("lowTables/X.csv"))[0], Texts({"community", "o", "p", "q"}));
}

TEST_F(AnalyseCommand, SettingsRepeatTheRun) {
    const FilesByName session = Session("mafragh");
    const auto run = [&](const std::string& options) {
        const CommandRun command = RunCommand("analyse" + options);
        EXPECT_EQ(command.status, 0) << command.err;
        return command.out;
    };
    for (const std::string options :
         {"",
          " --types named.csv --belonging crisp --iterations 20 --within types.txt "
          "--congruence rv --traits LogFlower,LogMinH --standardise no --details yes --digits 8 "
          "--tails one --root-traits no --predictor-limit 2.7 --double-absence no "
          "--beals-target no --save-random yes --root-phylogeny yes"}) {
        WriteFiles(folder_, session);
        const std::string out = run(" mafragh" + options);
        const FilesByName first = TakeFiles();
        WriteFiles(folder_, session);
        folder_.Write("study.toml", first.at("mafraghTables/settings.toml"));
        EXPECT_EQ(run(" --config study.toml"), out);
        std::filesystem::remove("study.toml");
        EXPECT_EQ(TakeFiles(), first);
    }
}

TEST_F(AnalyseCommand, EarlierResultsAreReplacedOrAppendedTo) {
    WriteFiles(folder_, Session("aravo"));
    const std::string words = "analyse aravo --seed 1 --iterations 3 --quiet";
    ASSERT_EQ(RunCommand(words).status, 0);
    const std::string once = WithoutTimes(folder_.Read("aravoPrinda.txt"));
    folder_.Write("aravoTables/DP.csv", "of an analysis with phylogeny\n");
    folder_.Write("aravoTables/notes.txt", "the user's\n");
    ASSERT_EQ(RunCommand(words + " --force").status, 0);
    EXPECT_EQ(WithoutTimes(folder_.Read("aravoPrinda.txt")), once);
    EXPECT_FALSE(folder_.Has("aravoTables/DP.csv"));
    EXPECT_TRUE(folder_.Has("aravoTables/notes.txt"));
    ASSERT_EQ(RunCommand(words + " --append --tables no").status, 0);
    // The second one has no line of the version.
    EXPECT_EQ(WithoutTimes(folder_.Read("aravoPrinda.txt")),
              once + once.substr(once.find('\n', 1) + 1));
}

// Names that commas part may hold commas, quotes and remarks; settings keep them.
TEST_F(AnalyseCommand, NamesOfAllKinds) {
    folder_.Write("traits.csv",
                  "OTU,\"a, b\",\"say \"\"c\"\" #1\",'d'\nx,1,4,2\ny,3,1,1\nz,2,2,5\nw,5,9,2\n");
    folder_.Write("sites.csv", "site,x,y,z,w\np,1,2,0,1\nq,3,0,1,2\nr,1,1,4,0\n");
    folder_.Write("env.csv", "site,wet\np,1\nq,4\nr,2\n");
    folder_.Write("types.csv", "OTU,type\nw,\"tall, hard\"\nx,low\ny,low\nz,\"tall, hard\"\n");
    ASSERT_EQ(RunCommand("import --traits traits.csv --communities sites.csv --environment env.csv "
                         "--session s")
                  .status,
              0);
    const auto analyse = [&](Texts words) {
        words.insert(words.begin(), {"analyse", "s", "--seed", "1", "--quiet", "--force", "--types",
                                     "types.csv", "--iterations", "5"});
        const CommandRun run = RunCommand(words);
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(CellsOf(folder_.Read("sTables/X.csv"))[0],
                  (Texts{"community", "low", "tall, hard"}));
        return folder_.Read("sTables/statistics.csv");
    };
    const std::string two = analyse({"--traits", "a, b", "--traits", "say \"c\" #1"});
    EXPECT_EQ(CellsOf(folder_.Read("sTables/T.csv"))[0].size(), 3u);
    EXPECT_NE(two, analyse({}));
    EXPECT_EQ(two, analyse({"--traits", "a,_b", "--traits=say \"c\" #1"}));
    const std::string grouped = analyse({"--trait-groups", "a, b=1,'d'=1"});
    EXPECT_NE(grouped, analyse({}));
    EXPECT_EQ(grouped, analyse({"--trait-groups", "'d'=q", "--trait-groups", "a,_b=q"}));
    EXPECT_EQ(RunCommand(Texts{"derive", "--from=s", "--session=t", "--traits=a, b, 'd'"}).status,
              0);
    analyse({"--traits", "a, b", "--traits", "say \"c\" #1"});
    folder_.Write("s.toml", folder_.Read("sTables/settings.toml"));
    EXPECT_EQ(RunCommand("analyse --force --quiet --config s.toml").status, 0);
    EXPECT_EQ(folder_.Read("sTables/statistics.csv"), two);
}

// A person at a terminal sees how far a run is; the line is gone at its end.
TEST_F(AnalyseCommand, ProgressIsShownToPersonsAlone) {
    WriteFiles(folder_, Session("aravo"));
    const auto shown = [&](bool person, const std::string& options) {
        personHook = person ? [] { return true; } : [] { return false; };
        const CommandRun run =
            RunCommand("analyse aravo --tables no --force --iterations 6000" + options);
        personHook = nullptr;
        EXPECT_EQ(run.status, 0);
        return run.err;
    };
    const std::string lines = shown(true, "");
    EXPECT_TRUE(std::regex_match(
        lines, std::regex("(\r\x1b\\[K *\\d+ % done, \\d+:\\d\\d:\\d\\d left)+\r\x1b\\[K")))
        << lines;
    EXPECT_EQ(shown(false, ""), "");
    EXPECT_EQ(shown(true, " --quiet"), "");
    const std::string told = shown(false, " --quiet --progress-lines");
    EXPECT_TRUE(std::regex_match(told, std::regex("(progress [01]\\.\\d{4} \\d+\n)+"))) << told;
    progressInLines = false;
}
