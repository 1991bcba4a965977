#include "TSLIFFMT/derive.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <random>
#include <regex>

#include "TSLIFFMT/checks.h"
#include "TSLIFFMT/community_pooling.h"
#include "support/matrices.h"
#include "tessel/in_process.h"

namespace {

/// A data set that holds items by their numbers: what is in a cell, a label, a type follows from
/// the numbers alone, so that a selection can be told in two ways.
struct Items {
    unsigned seed;
    Ints traits, otus, communities, variables;

    /// A number of the kind `table`, one in three of them 0.
    double Cell(unsigned table, int i, int j) const {
        std::seed_seq mixed{seed, table, unsigned(i), unsigned(j)};
        const unsigned number = std::mt19937(mixed)();
        return number % 3 == 0 ? 0 : number % 1000 / 8.0;
    }
    Rows Table(unsigned table, const Ints& rows, const Ints& cols) const {
        Rows cells(rows.size());
        for (std::size_t i = 0; i < rows.size(); i++)
            for (const int j : cols) cells[i].push_back(Cell(table, rows[i], j));
        return cells;
    }
    std::string Map(unsigned table, const Ints& rows, const Ints& cols) const {
        std::string map;
        for (const auto& row : Table(table, rows, cols)) {
            for (const double cell : row) map += cell == 0 ? '0' : '1';
            map += "\n";
        }
        return map;
    }
    std::string Formda() const {
        FormdaText text{Table(1, otus, traits), Table(2, otus, communities),
                        Table(3, communities, variables)};
        std::string groups;
        for (const int k : traits) {
            text.traitLabels += "t" + std::to_string(k) + " ";
            text.traitTypes += std::to_string(k % 4 + 1) + " ";
            text.states += std::to_string(k + 20) + " ";
            groups += std::to_string(k % 3 + 7) + " ";
        }
        for (const int c : communities) text.communityLabels += "c" + std::to_string(c) + " ";
        text.kindOfE = "5\n" + Repeated("4 ", variables.size());
        for (const int v : variables) text.envLabels += "v" + std::to_string(v) + " ";
        if (seed % 3 > 0)
            text.species = "2\nspp.txt\nPoa annua\nStipa\n" + Map(4, {0, 1}, communities) +
                           Map(5, otus, {0, 1});
        text.phylogeny = "1\n3\n" + TextOf(Table(6, otus, otus));
        if (seed % 4 == 1) text.phylogeny = "1\n2\n2\n3 1\n" + TextOf(Table(6, otus, {0, 1}));
        const std::string whole = FormdaOf(text);
        return whole.substr(0, whole.size() - 2) + "1\n" + groups + "\n";
    }
};

Items Everything(unsigned seed) {
    std::mt19937 generator(seed);
    const auto some = [&](unsigned most) {
        Ints numbers(1 + generator() % most);
        std::iota(numbers.begin(), numbers.end(), 0);
        return numbers;
    };
    return {seed, some(4), some(6), some(5), some(4)};
}

/// Takes some of the items in any order, and returns the answers that name them.
std::string Choose(Ints& items, const char* letter, std::mt19937& generator) {
    std::shuffle(items.begin(), items.end(), generator);
    items.resize(1 + generator() % items.size());
    std::string answers = "2 " + std::to_string(items.size()) + " k ";
    for (const int i : items) answers += letter + std::to_string(i + (*letter == 0 ? 1 : 0)) + " ";
    return answers + "y ";
}

/// Four communities and two OTUs, a quantitative variable and one of the given type, two species.
std::string Small(const char* type = "1") {
    FormdaText data{
        {{2.5}, {4}}, {{3, 1, 0, 2}, {0, 4, 5, 1}}, {{1.5, 1}, {2.5, 0}, {0.25, 3}, {4, 1}}};
    data.traitLabels = "Height";
    data.communityLabels = "a b c d";
    data.kindOfE = std::string("5\n3 ") + type;
    data.envLabels = "water grazed";
    data.species = "2\nspp.txt\nPoa\nStipa\n1010\n0001\n10\n01\n";
    return FormdaOf(data);
}

struct Derive : InProcess {
    /// Derives the session `new` from a data file, and reads what was written.
    ConsoleRun From(const std::string& formda, const std::string& answers) {
        folder_.Write("oldFormda.txt", formda);
        std::strcpy(sessionName, "new");
        std::strcpy(tempSession, "old");
        std::strcpy(whichFormda, "oldFormda.txt");
        std::remove("newFormda.txt");
        return Typed(answers + "\n", [&] {
            made_ = PickSomeFormda();
            EXPECT_EQ(csm_Float, nullptr);
            if (made_) OpenFormda(1);
        });
    }

    /// The data set in memory as its file tells it, less title, time and blanks at line ends.
    std::string Written() {
        Typed("", [] { WriteFormda(tcst, "outFormda.txt", "", csm_Float, cadat); });
        const std::string text = folder_.Read("outFormda.txt");
        static const std::regex blanks(" +\n");
        return std::regex_replace(text.substr(0, text.rfind('\n', text.size() - 2)), blanks, "\n");
    }

    /// Labels of the communities, and where the species occur.
    static std::string Communities() {
        std::string text;
        for (int c = 0; c < ncsm; c++) text += std::string(reLabel[c]) + " ";
        return text + std::string(sppRelMap[0], ncsm) + " " + std::string(sppRelMap[1], ncsm);
    }

    bool made_ = false;
};

TEST_F(Derive, SelectionsAreThoseOfTheTables) {
    for (unsigned seed = 0; seed < 60; seed++) {
        Items items = Everything(seed);
        const std::string source = items.Formda();
        Open(source);
        const std::string whole = Written();
        EXPECT_EQ(From(source, "1 1 1 1 n").raised, 0);
        EXPECT_EQ(Written(), whole);
        EXPECT_EQ(Texts({whichFormda, dataName}), Texts({"newFormda.txt", "oldFormda.txt "}));

        std::mt19937 generator(seed);
        std::string answers = Choose(items.traits, "t", generator);
        answers += Choose(items.otus, "", generator);
        answers += Choose(items.communities, "c", generator);
        answers += Choose(items.variables, "v", generator);
        const bool trims = seed % 3 == 0;  // with species the trimming does more
        if (trims)
            std::erase_if(items.otus, [&](int i) {
                return items.Map(2, {i}, items.communities).find('1') == std::string::npos;
            });
        SCOPED_TRACE(source + answers);
        EXPECT_EQ(From(source, answers + (trims ? "y" : "n")).raised, 0);
        ASSERT_EQ(made_, !items.otus.empty());
        if (!made_) continue;
        const std::string derived = Written();
        ASSERT_EQ(Open(items.Formda()).raised, 0);
        if (trims) CountStates(nch, tcst, onsta, csm_Float);
        EXPECT_EQ(derived, Written());
    }
}

TEST_F(Derive, PoolingTakesTheMeansOfGroups) {
    // By sizes, which have to add up, and by labels, which have to be known.
    for (const char* groups : {"k wet dry y y 2 1 3 1",
                               "k wet dry y n k wet wet wat dry y k wet "
                               "wet wet dry y"}) {
        const ConsoleRun run = From(Small(), std::string("1 1 3 2 2 ") + groups + " 1 n");
        ASSERT_TRUE(made_) << run.out;
        const bool byLabels = Contains(groups, "wat");
        EXPECT_EQ(run.err, byLabels ? "\nError!! Enter again. \n" : "");
        EXPECT_EQ(Count(run.out, "\nError!! Reenter!!\n\nEnter number of communities per group:\n"),
                  byLabels ? 0 : 1);
        EXPECT_TRUE(Contains(run.out, "\b\nWarning! Binary environmental variables will be aver"));
        EXPECT_EQ(Communities(), "wet dry 10 01");
        EXPECT_EQ(Cells(cadat, 2, 2), (std::vector<float>{1.33333F, 2, 3, 1}));
        EXPECT_EQ(Cells(env, 2, 2), (std::vector<float>{1.41667F, 1.33333F, 4, 1}));
        EXPECT_EQ(Entries(envVarType, 2), Ints({3, 3}));
    }
    From(Small(), "1 1 3 3 1 y 2 0 2 1 n");  // a group without community
    EXPECT_EQ(Communities(), "1 2 3 101 001");
    EXPECT_TRUE(std::isnan(cadat[1][1]) && std::isnan(env[1][0]));
    const std::string nominal = From(Small("2"), "1 1 3 1 1 n").out;
    EXPECT_EQ(Count(nominal, "qualitative is not possible.\n"), 1);
    EXPECT_EQ(Count(nominal, "Communities:\n"), 2);
}

TEST_F(Derive, ChangeIsTheSecondLessTheFirst) {
    From(Small("2"), "1 1 4 1 1 1 n");
    EXPECT_EQ(Communities(), "1 2 10 01");
    EXPECT_EQ(Cells(cadat, 2, 2), (std::vector<float>{-3, 1, 5, -3}));
    EXPECT_EQ(Cells(env, 2, 2), (std::vector<float>{-1.25, 1, 1.5, 1}));
    EXPECT_EQ(Entries(envVarType, 2), Ints({3, 1}));
    // The pairs of this order are numbered 1 and 3: the second group has none.
    From(Small("2"), "1 1 4 2 u v n w x y 2 1 n");
    EXPECT_EQ(Communities(), "w x 10 00");
    EXPECT_EQ(Cells(cadat, 2, 2), (std::vector<float>{-2, 0, 4, 0}));
    // The last one of an odd number is left out.
    From(Small(), "1 1 2 3 k a b c y 1 n");
    EXPECT_TRUE(Contains(From(folder_.Read("newFormda.txt"), "1 1 4 1 1 1 n").out,
                         "\b\nThis option is not possible, for the number of"));
    EXPECT_EQ(Cells(cadat, 2, 1), (std::vector<float>{-2, 4}));
    EXPECT_TRUE(
        Contains(From(folder_.Read("newFormda.txt"), "1 1 4 1 1 1 n").out, "No data set was made"));
    EXPECT_FALSE(made_ || folder_.Has("newFormda.txt"));
    Table<float> three = {{2, 7, 1}}, change = {{0}};
    ReleveChange(3, three, change, 1, 1, Ints{1, 1, 1}.data());
    EXPECT_EQ(change[0][0], 1 - (7 - 2));
}

TEST_F(Derive, MovingWindowTakesHalfTheSizeOfTheDetection) {
    const ConsoleRun run = From(Small(), "1 1 5 3 4 1 n");
    EXPECT_TRUE(Contains(run.out, "\b\nEnter again. Must be even.\n"));
    EXPECT_TRUE(Contains(run.out, "session, with 3 communities, has been created.\n"));
    EXPECT_EQ(SMWSize, 2);
    EXPECT_EQ(Communities(), "a b c 111 001");
    EXPECT_EQ(Cells(cadat, 2, 3), (std::vector<float>{2, 0.5, 1, 2, 4.5, 3}));
    EXPECT_EQ(Cells(env, 3, 2), (std::vector<float>{2, 0.5, 1.375, 1.5, 2.125, 2}));
}

TEST_F(Derive, WrongAnswersAreAskedForAgain) {
    const ConsoleRun run = From(Small(),
                                "2 1 k height y k Height y 2 2 k 0 1 y k 2 3 y k 2 1 y "
                                "2 1 k A y k a y 2 1 k x y k water y n");
    EXPECT_EQ(Count(run.out, "traits by their labels: \n"), 2);
    EXPECT_EQ(Count(run.out, "Error!! Enter again. \n"), 5);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(Cells(cadat, 2, 1), (std::vector<float>{0, 3}));
    EXPECT_FALSE(Contains(run.out, "empty communities"));
    EXPECT_TRUE(
        Contains(From(Small(), "1 2 1 k 1 y 1 1 y").out,
                 "\nWarning!! There are 1 empty communities!!\nInspect file newFormda.txt\n"));
    EXPECT_TRUE(From(Small(), "1 1 3 0 1 y").rests);
    EXPECT_EQ(From(Small(), "1 1 3 0 1 n k a a a a y").raised, 2);
}

TEST_F(Derive, KindOfEFollowsTheVariables) {
    using Row = std::tuple<const char*, const char*, int>;
    // The types count that the source has.
    for (const auto& [types, variables, expected] : {Row{"5\n3 1", "2 1 k water y", 5},
                                                     {"5\n3 4", "2 1 k water y", 1},
                                                     {"5\n3 4", "1", 2},
                                                     {"5\n4 4", "1", 5},
                                                     {"5\n1 4", "1", 4},
                                                     {"5\n2 4", "2 1 k water y", 3},
                                                     {"2\n3 3", "2 1 k water y", 1},
                                                     {"1\n3 3", "1", 1}}) {
        From(Replaced(Small(), "5\n3 1", types), std::string("1 1 1 ") + variables + " n");
        EXPECT_EQ(optEnvVarType, expected) << types << variables;
    }
}

TEST_F(Derive, TheSourcesTrackRecordNeverStandsInTheWay) {
    for (const char* track : {"", " \n", "otherFormda.txt\n07Jul17\n", "otherFormda.txt\n01Jan05\n",
                              "otherFormda.txt\n07Jul17\nNULL 3", "otherFormda.txt"}) {
        folder_.Write("oldTrk.txt", track);
        std::strcpy(whichTrack, "newTrk.txt");
        EXPECT_EQ(From(Small(), "1 1 1 1 n").raised, 0) << track;
        EXPECT_STREQ(dataName, "oldFormda.txt ");
        EXPECT_STREQ(whichTrack, "newTrk.txt");
        EXPECT_EQ(folder_.Read("oldTrk.txt"), track);
    }
}

}  // namespace
