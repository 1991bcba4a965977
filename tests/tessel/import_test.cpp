// Tables that become sessions, and what is told of sessions.

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <random>

#include "TSLCLI/names.h"
#include "TSLCLI/utf8.h"
#include "mxlibDim/text.h"
#include "tessel/in_command.h"

namespace {

/// The rows below the header, or the columns behind the names, in another order.
std::string Shuffled(const std::string& table, bool byRows, bool byColumns) {
    std::vector<Texts> rows = CellsOf(table);
    std::mt19937 generator(11);
    std::vector<std::size_t> order(rows[0].size() - 1);
    std::iota(order.begin(), order.end(), 1);
    if (byColumns) std::shuffle(order.begin(), order.end(), generator);
    for (Texts& row : rows) {
        const Texts before = row;
        for (std::size_t j = 0; j < order.size(); j++) row[j + 1] = before[order[j]];
    }
    if (byRows) std::shuffle(rows.begin() + 1, rows.end(), generator);
    std::string text;
    for (const Texts& row : rows)
        for (const std::string& cell : row) text += cell + (&cell == &row.back() ? "\n" : ",");
    return text;
}

/// A data file without what differs from one entry to the next: names of files, blanks at the ends
/// of lines, the time.
Texts Comparable(const std::string& formda) {
    Texts lines;
    std::istringstream stream(formda);
    for (std::string line; std::getline(stream, line);) {
        line.erase(line.find_last_not_of(' ') + 1);
        const bool isFile = line.ends_with(".txt") || line.ends_with(".csv");
        lines.push_back(isFile ? "file" : line);
    }
    if (!lines.empty()) lines.pop_back();
    return lines;
}

struct Example {
    std::string name, options;
};
const Example kAravo = {"aravo", ""};
const Example kMafragh = {"mafragh",
                          " --ordinal Succulence,Spikiness,HairyLeaf --trait-groups Anemogam=p,"
                          "Autogam=p,Entomogam=p,Annual=c,Biennial=c,Perennial=c,Seasonal=c"};

struct Import : InProcess {
    void TakeExample(const Example& example) {
        std::filesystem::copy(std::string(TESSEL_EXAMPLES) + "/" + example.name, ".",
                              std::filesystem::copy_options::recursive |
                                  std::filesystem::copy_options::overwrite_existing);
    }
    CommandRun Run(const std::string& options, const std::string& session = "s") {
        return RunCommand("import --traits traits.csv --communities communities.csv --session " +
                          session + " " + options);
    }
    Texts Session(const std::string& name) { return Comparable(folder_.Read(name + "Formda.txt")); }

    /// The statistics of the report, types of each OTU its own.
    Texts Statistics(const std::string& session) {
        RunCommand("analyse --quiet --force --types species --iterations 1 " + session);
        Texts lines;
        std::istringstream report(folder_.Read(session + "Prinda.txt"));
        for (std::string line; std::getline(report, line);)
            if (Contains(line, ")=\t") || Contains(line, ") = \t")) lines.push_back(line);
        return lines;
    }
};

TEST_F(Import, ExamplesGiveTheSessionOfRawEntryWhateverTheOrder) {
    for (const Example& example : {kAravo, kMafragh}) {
        TakeExample(example);
        const std::string answers = folder_.Read("answers.txt");
        RunWhole(answers.substr(0, answers.find("\nV\n") + 1));
        const Texts entered = Session(example.name);
        ASSERT_GT(entered.size(), 200U);
        const bool hasPhylogeny = folder_.Has("phylogeny.csv");
        const auto import = [&](const std::string& session, const std::string& form) {
            const CommandRun run = Run("--environment environment.csv --force" + example.options +
                                           (hasPhylogeny ? " --phylogeny phylogeny." + form : ""),
                                       session);
            // The logarithms of heights in metres sum to less than 0.
            EXPECT_EQ(Contains(run.err, "less than 0, or to 0 but for rounding: 'LogMinH', 'Log"),
                      hasPhylogeny);
            EXPECT_EQ(std::count(run.err.begin(), run.err.end(), '\n'), hasPhylogeny);
            return Session(session);
        };
        EXPECT_EQ(import("s", "nwk"), entered) << example.name;
        EXPECT_EQ(import("s", "csv"), entered) << example.name;
        EXPECT_EQ(folder_.Read("sTrk.txt"), "sFormda.txt\n07Jul17\n");
        EXPECT_EQ(Contains(RunCommand("check " + example.name).out, "Nothing looks wrong"),
                  !hasPhylogeny);
        const Texts statistics = Statistics("s");
        EXPECT_EQ(statistics.size(), hasPhylogeny ? 16U : 5U);
        const auto shuffle = [&](const char* name, bool byRows, bool byColumns) {
            if (folder_.Has(name))
                folder_.Write(name, Shuffled(folder_.Read(name), byRows, byColumns));
        };
        // The traits give the OTUs' order, the communities theirs.
        shuffle("communities.csv", false, true);
        shuffle("environment.csv", true, false);
        shuffle("phylogeny.csv", true, true);
        EXPECT_EQ(import("s", "csv"), entered);
        for (const char* name : {"traits.csv", "communities.csv", "environment.csv"})
            shuffle(name, true, true);
        EXPECT_NE(import("t", "csv"), entered);
        EXPECT_EQ(Statistics("t"), statistics);
    }
}

const char* const kTraits =
    "OTU,height,form,woody\nPoa annua,1.5,grass,no\nCarex,NA,sedge,no\nStipa,5,grass,yes\n";
const char* const kCommunities =
    "site,Poa annua,Carex,Stipa\na,1,0,2.5\nb,0,3,0\nc,1,1,1\nd,2,0,4\n";

// What check writes of a session is the same data again, words and gaps too.
TEST_F(Import, TablesOfCheckAreTheDataAgain) {
    folder_.Write("traits.csv", kTraits);
    folder_.Write("communities.csv", kCommunities);
    folder_.Write("environment.csv",
                  "site,light,soil\na,0.1,clay\nb,2,sand\nc,-7,silt\nd,1,clay\n");
    folder_.Write("phylogeny.nwk", "((Poa annua:1,Carex:1):1,Stipa:2);");
    Run("--environment environment.csv --phylogeny phylogeny.nwk");
    RunCommand("check s --tables data");
    EXPECT_EQ(folder_.Read("data/variables.csv"),
              "table,name,kind\ntraits,height,binary\ntraits,form,binary\n"
              "traits,woody,binary\nenvironment,light,quantitative\nenvironment,soil,nominal\n");
    EXPECT_EQ(folder_.Read("data/traits.csv"), Replaced(kTraits, "NA", ""));
    const Texts before = Session("s");
    for (const char* name : {"traits", "communities", "environment", "phylogeny"})
        std::filesystem::rename(std::string("data/") + name + ".csv", std::string(name) + ".csv");
    Run("--environment environment.csv --phylogeny phylogeny.csv", "t");
    EXPECT_EQ(Session("t"), before);
}

TEST_F(Import, FormsOfOneTable) {
    folder_.Write("communities.csv", kCommunities);
    folder_.Write("traits.csv", kTraits);
    ASSERT_EQ(Run("").status, kDone);
    const Texts expected = Session("s");
    for (const char* traits :
         {"\xEF\xBB\xBFOTU,height,form,woody\r\n\"Poa annua\",1.5,grass,no\r\nCarex,,sedge,no\r\n"
          "Stipa,5,grass,yes",
          "\"\",\"height\",\"form\",\"woody\"\n\"Poa annua\",1.5,\"grass\",\"no\"\n"
          "\"Carex\",NA,\"sedge\",\"no\"\n\"Stipa\",5,\"grass\",\"yes\"\n",
          "OTU;height;form;woody\rPoa annua;1,5;grass;no\rCarex;NaN;sedge;no\rStipa;5,0;grass;yes",
          "height\tform\twoody\nPoa "
          "annua\t1,5\tgrass\tno\nCarex\tNA\tsedge\tno\nStipa\t+5\tgrass\tyes",
          "\n;height ; form;woody;;\n;;;;;\n Poa annua;15e-1;grass;no;;\nCarex;-999;sedge;no;;\n\n"
          "Stipa;.5E+1;grass;yes;;\n;;;;;\n"}) {
        folder_.Write("traits.csv", traits);
        EXPECT_EQ(Run("--force").status, kDone) << traits;
        EXPECT_EQ(Session("s"), expected) << traits;
    }
}

TEST_F(Import, KindsAreFoundAndTold) {
    folder_.Write("communities.csv", kCommunities);
    folder_.Write("traits.csv", kTraits);
    folder_.Write("e.csv", "s,wet,rank,soil\na,1,3,x\nb,2,1,y\nc,3,2,x\nd,4,3,z\n");
    const CommandRun run = Run("--environment e.csv --ordinal rank");
    for (const char* line :
         {"  height: binary, 1.5 and 5, 1 missing\n", "  form: binary, 0 = grass; 1 = sedge\n",
          "  woody: binary, 0 = no; 1 = yes\n", "3 environmental variables, of several kinds:\n",
          "  rank: ordinal, 1 to 3\n", "  soil: nominal, 1 = x; 2 = y; 3 = z\n",
          "richest 'c' with 3 OTUs, poorest 'b' with 1 OTU\n", "3 OTUs: 'Poa annua' to 'Stipa'\n"})
        EXPECT_TRUE(Contains(run.out, line)) << line;
    EXPECT_FALSE(Contains(run.out, "Types of the OTUs"));
    std::strcpy(whichFormda, "sFormda.txt");
    OpenFormda(1);
    EXPECT_EQ(Cells(csm_Float, 3, 3), (std::vector<float>{1.5, 0, 0, -999, 1, 0, 5, 0, 1}));
    EXPECT_EQ(Entries(chtype, 3), Ints({1, 1, 1}));
    EXPECT_EQ(Entries(envVarType, 3), Ints({3, 4, 2}));
    const FullNames names = ReadNames("s");
    EXPECT_TRUE(names.isFromTable);
    EXPECT_EQ(names.variables, Texts({"wet", "rank", "soil"}));
    EXPECT_EQ(names.traitCodes.size(), 2U);
    EXPECT_EQ(names.traitCodes[0].first, 0);
    EXPECT_EQ(names.variableCodes[0].words, Texts({"x", "y", "z"}));
    // A table of another data set is none of this one's.
    CopyText(reLabel[1], kLabelLength, "other");
    EXPECT_EQ(ReadNames("s").communities[1], "other");

    struct {
        const char *e, *options;
        int kind;
        Ints types;
    } kinds[] = {{"s,u,v\na,1,5\nb,2,6\nc,3,7\nd,4,8\n", "", 2, {3, 3}},
                 {"s,u,v\na,1,5\nb,2,6\nc,3,7\nd,4,8\n", "--same-units", 1, {3, 3}},
                 {"s,u,v\na,1,5\nb,2,6\nc,3,7\nd,4,8\n", "--ordinal u,v", 2, {4, 4}},
                 {"s,u,v\na,1,x\nb,2,y\nc,3,z\nd,4,x\n", "--nominal u", 3, {2, 2}},
                 {"s,u,v\na,TRUE,1\nb,FALSE,0\nc,TRUE,0\nd,TRUE,1\n", "", 4, {1, 1}},
                 {"s,u,v\na,1,1\nb,2,0\nc,3,0\nd,4,1\n", "", 5, {3, 1}},
                 {"s,u,v\na,1,1\nb,2,0\nc,3,0\nd,4,1\n", "--quantitative v", 2, {3, 3}}};
    for (const auto& each : kinds) {
        folder_.Write("e.csv", each.e);
        Run(std::string("--force --environment e.csv ") + each.options);
        OpenFormda(1);
        EXPECT_EQ(optEnvVarType, each.kind) << each.e << each.options;
        EXPECT_EQ(Entries(envVarType, 2), each.types) << each.e << each.options;
    }
}

TEST_F(Import, WhatIsLeftOutIsListed) {
    folder_.Write("communities.csv",
                  "site,Poa annua,Carex,Stipa,Avena\na,1,0,0,2\nb,0,3,0,0\nc,1,1,0,1\nd,0,0,0,4\n");
    folder_.Write("traits.csv", kTraits);
    folder_.Write("types.csv", "OTU,type\nStipa,x\nPoa annua,y\nCarex,x\n");
    const CommandRun run = Run("--drop-unmatched --drop-empty --types types.csv");
    EXPECT_TRUE(
        Contains(run.out,
                 "Left out (1): OTUs of communities.csv that traits.csv does not have: 'Avena'\n"
                 "Left out (1): OTUs that occur nowhere: 'Stipa'\n"
                 "Left out (1): communities without any OTU: 'd'\n"))
        << run.out;
    EXPECT_EQ(folder_.Read("sTypes.csv"), "OTU,type\nPoa annua,y\nCarex,x\n");
    OpenFormda(1);
    EXPECT_EQ(Cells(cadat, tcst, ncsm), (std::vector<float>{1, 0, 1, 0, 3, 1}));
    // Without the option OTUs that occur nowhere stay, with a warning.
    EXPECT_TRUE(Contains(Run("--force --drop-unmatched").err, "without any OTU"));
    folder_.Write("communities.csv", "site,Poa annua,Carex,Stipa\na,1,0,0\nb,0,3,0\nc,1,1,0\n");
    EXPECT_TRUE(Contains(Run("--force").err, "warning: OTUs that occur nowhere: 'Stipa'"));
}

TEST(Labels, AreShortDistinctAndWhole) {
    EXPECT_EQ(
        LabelsFor({"Specific leaf area", "Specific leaf mass", "Specific_l", "SLA", "leaf N"}),
        Texts({"Specific_2", "Specific_3", "Specific_l", "SLA", "leaf_N"}));
    EXPECT_EQ(LabelsFor({"abcdefgh\xC3\xA9t\xC3\xA9", "abcdefghi\xC3\xA9", "abcdefghi\xC3\xA8"}),
              Texts({"abcdefgh\xC3\xA9", "abcdefghi", "abcdefghi2"}));
    Texts many;
    for (int i = 0; i < 3000; i++)
        many.push_back("\xE6\xA4\x8D\xE7\x89\xA9\xE7\xBE\xA4\xE8\x90\xBD " + std::to_string(i));
    Texts labels = LabelsFor(many);
    for (const std::string& label : labels)
        EXPECT_TRUE(label.size() <= 10 && !label.empty() && ValidUtf8(label) == label.size());
    std::sort(labels.begin(), labels.end());
    EXPECT_EQ(std::unique(labels.begin(), labels.end()), labels.end());
}

TEST(Utf8, InvalidBytesAreFound) {
    const std::pair<const char*, std::size_t> texts[] = {
        {"a\xC3\xA9z", 4},       {"a\xE9", 1},
        {"\xC0\x80", 0},         {"\xED\xA0\x80", 0},
        {"\xF0\x9F\x8C\xBF", 4}, {"\xF4\x90\x80\x80", 0},
        {"ab\xE2\x82", 2}};
    for (const auto& [text, valid] : texts) EXPECT_EQ(ValidUtf8(text), valid) << text;
}

}  // namespace
