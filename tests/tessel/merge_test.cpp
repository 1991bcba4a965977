#include "TSLIFFM2/merge.h"

#include "tessel/in_process.h"

namespace {

/// Two traits, two OTUs, two communities, a variable, two species, distances.
FormdaText First() {
    FormdaText data{{{1.5, 2}, {3, 4}}, {{5, 0}, {6, 7}}, {{1.25}, {2.5}}};
    data.traitTypes = "3 2";
    data.traitLabels = "height form";
    data.communityLabels = "a b";
    data.kindOfE = "1\n3";
    data.envLabels = "water";
    data.species = "2\nspp.txt\nPoa\nStipa\n11\n01\n10\n01\n";
    data.phylogeny = "1\n3\n0 0.5\n0.5 0\n";
    return data;
}

/// Two more OTUs, communities and species, of which one is among the first's.
FormdaText Second() {
    FormdaText data = First();
    data.B = {{8, 1}, {9, 2}};
    data.W = {{2, 0}, {0, 3}};
    data.E = {{4}, {7}};
    data.communityLabels = "b c";
    data.species = "2\nspp2.txt\nPoa\nCarex\n10\n01\n10\n01\n";
    return data;
}

std::string Of2008(const FormdaText& data) {
    const std::string text = FormdaOf(data);
    return Replaced(text.substr(0, text.size() - 2), "25Jun2016", "18Jan2008");
}

struct Merge : InProcess {
    /// Merges and, when it is done, reads what was written.
    ConsoleRun Join(const std::string& first, const std::string& second) {
        Clean();
        EXPECT_EQ(Open(first).raised, 0);
        folder_.Write("twoFormda.txt", second);
        std::remove("newFormda.txt");
        std::strcpy(sessionName, "new");
        std::strcpy(dataName, whichFormda);
        result_ = 0;
        return Typed("", [&] {
            result_ = MergeFormda("twoFormda.txt");
            if (result_ == 1) OpenFormda(1);
        });
    }

    void ExpectRefused(const std::string& second, const std::string& what) {
        const ConsoleRun run = Join(FormdaOf(First()), second);
        EXPECT_EQ(run.out, "\n" + what + (what.back() == '\n' ? "" : " do not match.\n\n"));
        EXPECT_EQ(Ints({result_, run.raised, nch, ncsm, tcst, nSpp}), Ints({0, 0, 2, 2, 2, 2}));
        EXPECT_STREQ(whichFormda, "dataFormda.txt");
        EXPECT_FALSE(folder_.Has("newFormda.txt"));
    }

    int result_ = 0;
};

const std::string kMissingResemblances =
    "\nThe phylogeny holds no resemblances of the second session's OTUs: they are recorded as "
    "missing (-999).\n";

TEST_F(Merge, JoinsTheTables) {
    const ConsoleRun run = Join(FormdaOf(First()), Of2008(Second()));
    ASSERT_EQ(result_, 1) << run.out;
    EXPECT_EQ(run.out, kMissingResemblances);
    EXPECT_EQ(Texts({whichFormda, dataName, envName}),
              Texts({"newFormda.txt", "dataFormda.txt twoFormda.txt ", "E.txt E.txt"}));
    EXPECT_EQ(Ints({nch, tcst, ncsm, nenv, nSpp, SMWSize}), Ints({2, 4, 4, 1, 3, 1}));
    EXPECT_EQ(Entries(onsta, 2), Ints({4, 3}));
    EXPECT_EQ(Texts(reLabel, reLabel + 4), Texts({"a", "b", "bb", "c"}));
    EXPECT_EQ(Cells(csm_Float, 4, 2), (std::vector<float>{1.5, 2, 3, 4, 8, 1, 9, 2}));
    // The second session's OTUs stand under the first one's communities.
    EXPECT_EQ(Cells(cadat, 4, 4),
              (std::vector<float>{5, 0, 0, 0, 6, 7, 0, 0, 2, 0, 0, 0, 0, 3, 0, 0}));
    EXPECT_EQ(Cells(env, 4, 1), (std::vector<float>{1.25, 2.5, 4, 7}));
    EXPECT_TRUE(Contains(folder_.Read("newFormda.txt"),
                         "1\n3\n0\t0.5\t-999\t-999\t\n0.5\t0\t-999\t-999\t\n"
                         "-999\t-999\t0\t-999\t\n-999\t-999\t-999\t0\t\n"));
    // One Poa is left. The last OTU meets Carex in none of the communities where it stands.
    EXPECT_EQ(Texts(spp, spp + 3), Texts({"Poa", "Stipa", "Carex"}));
    std::string maps;
    for (int s = 0; s < 3; s++) maps += std::string(sppRelMap[s], 4) + " ";
    for (int i = 0; i < 4; i++) maps += std::string(cstSppMap[i], 3) + " ";
    EXPECT_EQ(maps, "1110 0100 0001 100 010 100 000 ");
}

TEST_F(Merge, OTUsThatOccurNowhereLeaveThePhylogenyToo) {
    FormdaText first = First(), second = Second();
    first.species = second.species = "0\n";
    first.W[0] = second.W[1] = {0, 0};
    for (const auto& [phylogeny, expected] :
         {std::pair("1\n1\n1 0.5\n0.5 0.75\n", "1\n1\n0.75\t-999\t\n-999\t1\t\n"),
          {"1\n2\n1\n3\n0.5\n0.25\n", "1\n2\n1\n3\t\n0.25\t\n-999\t\n"},
          {"1\n0\n", "1\n0\n0\n"},
          {"0\n", "SMW 1\n0\n0\n"}}) {
        first.phylogeny = phylogeny;
        const ConsoleRun run = Join(FormdaOf(first), Of2008(second));
        EXPECT_EQ(run.out, Contains(expected, "-999") ? kMissingResemblances : "");
        EXPECT_TRUE(Contains(folder_.Read("newFormda.txt"), expected)) << phylogeny;
        EXPECT_EQ(Cells(csm_Float, 2, 2), (std::vector<float>{3, 4, 8, 1}));
    }
    first.W[1] = second.W[0] = {0, 0};
    EXPECT_TRUE(Contains(Join(FormdaOf(first), Of2008(second)).out, "No data set was made"));
    EXPECT_FALSE(result_ == 1 || folder_.Has("newFormda.txt"));
}

TEST_F(Merge, SessionsThatDoNotMatchAreRefused) {
    using Row = std::tuple<const char*, const char*, const char*>;
    for (const auto& [truth, other, what] :
         {Row{"data\n2\n", "data\n3\n", "The number of traits"},
          {"height form", "form height", "Labels for traits do not match (or their order).\n\n"},
          {"3 2\n", "3 4\n", "Trait types"},
          {"0 0 0 0 0 0 0", "0 0 0 0 0 0 1", "Translating values for cover-abundance scale codes"},
          {"1\n97Sep08", "0\n97Sep08", "The number of environmental variables"},
          {"1\n3\nwater", "2\n3\nwater", "The types of environmental variables"},
          {"1\n3\nwater", "1\n4\nwater", "The types of environmental variables"},
          {"water", "Water", "Labels for environmental variables"},
          {"97Sep08\n1\n3\nwater", "light", "Labels for environmental variables"},
          {"2\nspp2.txt", "0\n",
           "One session has species names and the other not.\nBoth files must have or not have "
           "species names.\n\n"}})
        ExpectRefused(Replaced(Of2008(Second()), truth, other), what);
    // The newest form is misread, even where the numbers would happen to fit.
    ExpectRefused(
        "T\n2\nheight form\n3 2\n0 0\n1 1\n1\nd\n1\n0\n0 0 0 0 0 0 0\n25Jun2016\n"
        "1 2\n1\n1\nwater\nE.txt\n4\n2\nspp2.txt\nPoa\nCarex\n1\n1\n11\nSMW 1\n0\n0\n",
        "The number of environmental variables");
    ExpectRefused(FormdaOf(Second()), "The number of environmental variables");
}

TEST_F(Merge, CommonLabelsOfCommunitiesAreMadeToDiffer) {
    FormdaText first = First(), second = Second();
    first.communityLabels = "ninechars ninecharsb";
    second.communityLabels = "b ninechars";
    const std::string clash =
        "\b\nThere are releve labels in the second session that are identical to\nlabels in the "
        "first session. Change them (or reduce the second\nsession labels length to 9 letters or "
        "digits) and try again.\n";
    EXPECT_EQ(Join(FormdaOf(first), Of2008(second)).out, clash);
    // What was passed is not looked at again.
    first.communityLabels = "ninecharsb ninechars";
    Join(FormdaOf(first), Of2008(second));
    EXPECT_EQ(Texts(reLabel, reLabel + ncsm),
              Texts({"ninecharsb", "ninechars", "b", "ninecharsb"}));
}

TEST_F(Merge, OldestFormsAndCutFiles) {
    std::string text = Replaced(Of2008(Second()), "18Jan2008\n8\t1\t\n9\t2\t\n\n2\t0\t\n0\t3\t\n",
                                "0801 2 0\n0902 0 3\n");
    text = Replaced(Replaced(text, "97Sep08\n1\n3\n", ""), "SMW 1", "Wed Jul  7 10:00:00 1997");
    Join(FormdaOf(First()), text);
    EXPECT_EQ(Cells(csm_Float, 4, 2), (std::vector<float>{1.5, 2, 3, 4, 8, 1, 9, 2}));
    EXPECT_EQ(Cells(env, 4, 1), (std::vector<float>{1.25, 2.5, 4, 7}));
    const std::string whole = Of2008(Second());
    for (std::size_t cut = 0; cut < whole.find("SMW"); cut++)
        if (whole[cut] == '\n' || whole[cut] == '\t') {
            const ConsoleRun run = Join(FormdaOf(First()), whole.substr(0, cut));
            EXPECT_EQ(run.raised, 2) << whole.substr(0, cut);
            EXPECT_EQ(run.err, "\nfile twoFormda.txt ");
        }
    // Rows of W for more communities than the first session has: what follows them is out of step.
    FormdaText first = First(), wide = Second();
    first.species = wide.species = "0\n";
    first.E = wide.E = {};
    wide.W = {{2, 0, 3, 1}, {0, 0, 1, 1}};
    wide.communityLabels = "c d e f";
    EXPECT_EQ(Join(FormdaOf(first), Of2008(wide)).raised, 2);
}

}  // namespace
