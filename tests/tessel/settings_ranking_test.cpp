#include "TSLCHORD/criteria.h"
#include "TSLGLOB/info_texts.h"
#include "TSLIF/settings_dialogue.h"
#include "tessel/in_process.h"

namespace {

constexpr char kHeading[] = "CHARACTER RANKING SETTINGS";
/// Crisp types; Procrustes, all traits, subsets of one trait.
const std::string kTypes = "k\n1 1 2 2\n0\n", kRest = "2\n1\nn\n1\n1\nn\n";

/// Four OTUs in two communities.
struct SettingsRanking : InProcess {
    void Load(bool sites, bool phylogeny, int traits = 5, const std::string& traitTypes = "") {
        FormdaText data{Rows(4, std::vector<double>(traits, 1)), Rows(4, {1, 1})};
        if (sites) data.E = {{1}, {2}};
        for (int k = 1; k <= traits; k++) data.traitLabels += "t" + std::to_string(k) + " ";
        data.traitTypes = traitTypes;
        EXPECT_EQ(Open(FormdaOf(data)).raised, 0);
        InitGlobals();
        std::strcpy(sessionShortName, "s");
        optmain = 'K';
        hasPhylogeny = phylogeny ? 1 : 0;
    }

    std::string Answer(const std::string& answers) {
        const ConsoleRun run = Typed(answers, SettingsChRank);
        EXPECT_EQ(run.err, "");
        EXPECT_FALSE(run.rests);
        return run.out;
    }
};

}  // namespace

TEST_F(SettingsRanking, AsksEverySettingInOrder) {
    Load(true, true);
    const std::string screen = Answer("1\nk\n3 1 1 2\n1\n1\n8\n2\n1 0 1 1 0\ny\n2\n3\ny\n");
    EXPECT_EQ(screen + "\n", ReadWholeFile(TESSEL_TEST_DATA "/settings_ranking.txt"));
    EXPECT_EQ(Ints({opt_struct, rese_opt, traitBasedOpt, fuzzy, nMinTraitsChRank, nMaxTraitsChRank,
                    nMinCSTGroupsChRank, nMaxCSTGroupsChRank, includePhylogeny, nTaxa}),
              Ints({1, 8, 1, kFuzzyTypes, 2, 3, 3, 3, 1, 3}));
    EXPECT_TRUE(optUnitTotalAdjust1 && optUnitTotalAdjust2 && !optRndTests);
    EXPECT_EQ(Ints({printRankIntermedResults, rankingAlgorithm}), Ints({'y', 2}));
    // Two criteria bring the Euclidean distance along; one knows no types.
    EXPECT_FALSE(Contains(Answer("10\n1\n1\n1\n5\nn\n"), "partition of OTUs"));
    EXPECT_EQ(Ints({rese_opt, traitBasedOpt, whichObj, nMaxCSTGroupsChRank, fuzzy}),
              Ints({6, 2, 114, 4, kFuzzyTypes}));
    EXPECT_FALSE(optUnitTotalAdjust2);
    rese_opt = 8;
    Answer("16\n" + kTypes + kRest);
    EXPECT_EQ(Ints({rese_opt, printRankIntermedResults}), Ints({6, 'n'}));
}

TEST_F(SettingsRanking, CriteriaThatADataSetShowsAndRefuses) {
    struct Case {
        bool sites, phylogeny, nominal;
        std::string shown, refused, refusedByPhylogeny;
    };
    for (const Case& c :
         {Case{false, false, false, "", " 1 11 12 13 14 15 16 24 ", " 11 12 13 "},
          Case{false, false, true, "", " 1 9 10 11 12 13 14 15 16 24 ", " 11 12 13 "},
          Case{false, true, false, " 11 12 13 ", " 1 14 15 16 24 ", ""},
          Case{true, false, false, " 1 9 10 16 ", " 11 12 13 14 15 ", " 11 12 13 14 15 "},
          Case{true, true, true, " 1 11 16 ", "", ""}})
        for (int option = 1; option <= 24; option += option == 1 ? 8 : 1) {
            Load(c.sites, c.phylogeny, 3, c.nominal ? "3 2 3" : "");
            const std::string number = std::to_string(option), item = " " + number + " ";
            const bool refused = Contains(c.refused, item);
            const std::string then = refused        ? "17\n" + kTypes + kRest
                                     : option == 10 ? "2\n1\n1\n1\nn\n"
                                                    : kTypes + kRest;
            const std::string screen = Answer(number + "\n" + then);
            SCOPED_TRACE(number + screen);
            EXPECT_EQ(opt_struct, refused ? 17 : option);
            EXPECT_EQ(Count(screen, kHeading), refused ? 2 : 1);
            EXPECT_EQ(Contains(screen, "needs a phylogeny"), Contains(c.refusedByPhylogeny, item));
            EXPECT_EQ(Contains(screen, "\n" + number + ". "), Contains(c.shown, item));
            EXPECT_EQ(includePhylogeny, c.phylogeny ? 1 : 0);
        }
}

TEST_F(SettingsRanking, SizesOfSubsets) {
    Load(true, false, 40);
    const std::string select = "9\n" + kTypes + "2\n2\n";
    const std::string few = Answer(select + Repeated("0 ", 40) + "\nn\n" + select + "1 1" +
                                   Repeated(" 0", 38) + "\nn\n2 2 n\n");
    EXPECT_EQ(Count(few, kHeading), 2);
    EXPECT_TRUE(Contains(few, "\nNo trait was selected: there is no subset to search for.\n\n\n"));
    EXPECT_TRUE(Contains(few, "subset (minimum: 2, maximum: 2): \nPrint"));
    const std::string many = Answer("9\n" + kTypes + "2\n1\nn\n1 40\n1 8 n\n");
    EXPECT_TRUE(Contains(many,
                         "maximum: 40): \nThese are 1099511627775 trait subsets, more than "
                         "can be searched (2147483647).\nMinimum number"));
    EXPECT_EQ(Ints({nMinTraitsChRank, nMaxTraitsChRank}), Ints({1, 8}));
}

TEST(RankingTexts, OddRowsOfTheCriteria) {
    for (const int option : {21, 22}) EXPECT_STREQ(InfoText(opt_structInfo, option), "(null)");
    EXPECT_TRUE(Contains(InfoText(opt_structInfo, 20), "r(XZ.T))21 (correlation between 'dark"));
    EXPECT_STREQ(InfoText(opt_structInfo, 23), "matrix correlation (Mantel)");
    EXPECT_STREQ(InfoText(opt_structInfo, 24), "Procrustes (traceW)");
}
