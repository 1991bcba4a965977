#include "TSLIFFMT/checks.h"

#include <algorithm>
#include <cmath>
#include <ctime>
#include <set>

#include "TSLIFFMT/species_labels.h"
#include "mxlibDim/scoped.h"
#include "tessel/in_process.h"

namespace {

struct Checks : InProcess {
    ~Checks() override { ReleaseRowsLeftBehind(otus_, species_); }

    /// A data set with the given W, one trait and, when names are given, species whose maps the
    /// rows of `belongs` and W fill.
    void Make(const Rows& W, const Texts& names, const Texts& belongs) {
        ReleaseRowsLeftBehind(otus_, species_);
        FormdaText data{{}, W};
        for (std::size_t i = 0; i < W.size(); i++) data.B.push_back({100.0 + double(i)});
        data.traitTypes = "3";
        data.species = std::to_string(names.size()) + "\nspp.txt\n" +
                       Repeated("name\n", names.size()) +
                       Repeated(Repeated("0", W[0].size()) + "\n", names.size()) +
                       Repeated(Repeated("0", names.size()) + "\n", W.size());
        ASSERT_EQ(Open(FormdaOf(data)).raised, 0);
        otus_ = tcst;
        species_ = nSpp;
        for (int s = 0; s < nSpp; s++) std::strcpy(spp[s], names[s].c_str());
        for (std::size_t i = 0; i < belongs.size(); i++)
            std::copy(belongs[i].begin(), belongs[i].end(), cstSppMap[i]);
        if (!belongs.empty()) SpeciesReleveMap();
    }

    /// What CheckSpecies makes of names read from a file, one OTU each.
    Texts NamesAfterCheck(const Texts& names, int option) {
        Make(Rows(names.size(), {1}), names, {});
        CheckSpecies(option);
        return Names();
    }

    static Texts Names() { return {spp, spp + nSpp}; }

    /// Rows of a map, as far as the counts go.
    static Texts Map(char** map, int rows, int cols) {
        Texts texts;
        for (int i = 0; i < rows; i++) texts.emplace_back(map[i], map[i] + cols);
        return texts;
    }

    int otus_ = 0, species_ = 0;
};

TEST_F(Checks, LabelsAreTheFirstTwoLettersOfTwoWords) {
    const std::string longName = "Anthoxanthum odoratum" + std::string(49, 'x');
    EXPECT_EQ(NamesAfterCheck({"Poa annua", "Poa angustifolia", "Bromus", "Poa  x", "A", "P oa bc",
                               "Ab cd", longName},
                              2),
              (Texts{"Poan Poa annua", "POan Poa angustifolia", "Br Bromus", "Pox Poa  x", "A A",
                     "P bc P oa bc", "Abcd Ab cd", "Anod " + longName.substr(0, 65)}));
}

TEST_F(Checks, EqualLabelsAreAlteredUntilTheyDiffer) {
    Texts names;
    for (int i = 0; i < 400; i++) names.push_back("Poa an" + std::to_string(i));
    const Texts labelled = NamesAfterCheck(names, 2);
    // Beyond the four characters the label counts on, from P to ~ and over to the next character.
    const std::pair<int, const char*> expected[] = {
        {0, "Poan"}, {1, "POan"}, {2, "POAn"}, {3, "POAN"},  {4, "QOAN"}, {5, "QPAN"},
        {6, "QPBN"}, {7, "QPBO"}, {8, "QPBP"}, {54, "QPB~"}, {55, "QPC!"}};
    for (const auto& [i, label] : expected) EXPECT_EQ(labelled[i], label + (" " + names[i]));
    std::set<std::string> labels;
    for (const std::string& name : labelled) labels.insert(name.substr(0, 4));
    EXPECT_EQ(labels.size(), names.size());
    // Each step was a comparison with all species before: 5,000 of them took 46 seconds.
    const ScopedMatrix<char> many(5000, kSpeciesLength + 1);
    for (int i = 0; i < 5000; i++) std::snprintf(many[i], 20, "Poa an%d", i);
    const std::clock_t start = std::clock();
    LabelSpecies(5000, many);
    EXPECT_LT(std::clock() - start, 10 * CLOCKS_PER_SEC);
    for (std::size_t i = 0; i < 5000; i++) labels.insert(std::string(many[i], 4));
    EXPECT_EQ(labels.size(), 5000U);
    EXPECT_TRUE(std::equal(labelled.begin(), labelled.end(), many.get()));
    // The character after the form feed is the carriage return, after 255 comes the text's end.
    names.clear();
    for (int i = 0; i < 8; i++) names.push_back("\f\xff\xff \f\x1f" + std::to_string(i));
    for (const std::string& name : NamesAfterCheck(names, 2)) {
        EXPECT_FALSE(Contains(name, "\r"));
        EXPECT_EQ(name[4], ' ');
    }
}

TEST_F(Checks, MergeOfSpeciesIsExactNextToTheEndAndMissesTheLast) {
    const Texts belongs = {"1000", "0100", "0010", "0001"};
    const Rows W = {{1, 0}, {0, 1}, {0, 2}, {3, 0}};
    Make(W, {"a", "b", "a", "c"}, belongs);
    CheckSpeciesMerge();
    EXPECT_EQ(Names(), (Texts{"a", "b", "c"}));
    EXPECT_EQ(Map(cstSppMap, tcst, nSpp), (Texts{"100", "010", "100", "001"}));
    EXPECT_EQ(Map(sppRelMap, nSpp, ncsm), (Texts{"11", "01", "10"}));
    Make(W, {"a", "b", "c", "c"}, belongs);
    CheckSpeciesMerge();
    EXPECT_EQ(nSpp, 4);
    // One step only: b takes the place of the second a, which stands behind it; d falls off the
    // end.
    Make(Rows(5, {1}), {"a", "a", "b", "c", "d"}, {"10000", "01000", "00100", "00010", "00001"});
    CheckSpeciesMerge();
    EXPECT_EQ(nSpp, 3);
    EXPECT_STREQ(spp[1], "b");
}

TEST_F(Checks, OTUsOfOneSpeciesShareTheValueOfTheTraitSp) {
    Make(Rows(5, {1}), {"a", "b"}, {"10", "01", "10", "01", "11"});
    CheckCSTsSameSpecies();
    EXPECT_EQ(csm_Float[2][0], 102);
    std::strcpy(chLabel[0], "sp");
    CheckCSTsSameSpecies();  // the last follows the later pair
    EXPECT_EQ(Cells(csm_Float, 5, 1), (std::vector<float>{0, 1, 0, 1, 1}));
}

TEST_F(Checks, TrimLooksAtTheFirstOTUsAndAtCommonCommunities) {
    Make({{1, 0}, {0, 1}, {1, 0}}, {"a", "b", "c"}, {"110", "010", "001"});
    std::copy_n("01", 2, sppRelMap[1]);
    TrimSpecies(2);
    EXPECT_EQ(Names(), (Texts{"a", "b"}));
    // The first OTU is in no community where the map has species b.
    EXPECT_EQ(Map(cstSppMap, 2, nSpp), (Texts{"10", "01"}));
    EXPECT_EQ(sppRelMap[2], nullptr);
}

// Tables without a species stayed behind when the data set was released.
TEST_F(Checks, TablesThatLostAllSpeciesAreReleased) {
    Make(Rows(2, {1}), {"a"}, {"0", "0"});
    TrimSpecies(2);
    ASSERT_EQ(nSpp, 0);
    FreeGlobals2();
    EXPECT_TRUE(spp == nullptr && sppRelMap == nullptr && cstSppMap == nullptr);
}

}  // namespace
