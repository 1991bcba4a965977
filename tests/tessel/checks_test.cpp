#include "TSLIFFMT/checks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <set>
#include <string>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/shell.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

namespace {

using Rows = std::vector<std::vector<float>>;
using Texts = std::vector<std::string>;

/// A data set in the globals with the given W, one trait and, when names are given, species whose
/// maps the rows of `belongs` and W fill.
class DataSet {
  public:
    DataSet(const Rows& W, const Texts& names, const Texts& belongs) {
        FreeGlobals2();
        tcst = otus_ = static_cast<int>(W.size());
        ncsm = static_cast<int>(W[0].size());
        nch = 1;
        nenv = 0;
        nSpp = species_ = static_cast<int>(names.size());
        chLabel = dim2Dchar(nch, kLabelLength + 1);
        chtype = dim1Dint(nch);
        chrange = dim1Dfloat(nch);
        onsta = dim1Dint(nch);
        ncst = dim1Dint(ncsm);
        csm_Float = dim2Dfloat(tcst, nch);
        cadat = dim2Dfloat(tcst, ncsm);
        for (int i = 0; i < tcst; i++) {
            csm_Float[i][0] = 100.0F + static_cast<float>(i);
            std::copy(W[i].begin(), W[i].end(), cadat[i]);
        }
        if (nSpp > 0) AddSpecies(names, belongs);
    }
    ~DataSet() {
        ReleaseRowsLeftBehind(otus_, species_);
        FreeGlobals2();
    }
    DataSet(const DataSet&) = delete;
    DataSet& operator=(const DataSet&) = delete;

  private:
    void AddSpecies(const Texts& names, const Texts& belongs) {
        spp = dim2Dchar(nSpp, kSpeciesLength + 1);
        sppRelMap = dim2Dchar(nSpp, ncsm);
        cstSppMap = dim2Dchar(tcst, nSpp);
        for (int s = 0; s < nSpp; s++) std::strcpy(spp[s], names[s].c_str());
        for (std::size_t i = 0; i < belongs.size(); i++)
            std::copy(belongs[i].begin(), belongs[i].end(), cstSppMap[i]);
        if (!belongs.empty()) SpeciesReleveMap();
    }

    int otus_;
    int species_;
};

/// Rows of a map or names, as far as the counts go.
Texts Map(char** map, int rows, int cols) {
    Texts texts;
    for (int i = 0; i < rows; i++) texts.emplace_back(map[i], map[i] + cols);
    return texts;
}

Texts Names() {
    return Texts(spp, spp + nSpp);
}

/// What CheckSpecies makes of names read from a file, one OTU each.
Texts NamesAfterCheck(const Texts& names, int option) {
    DataSet data(Rows(names.size(), {1.0F}), names, {});
    CheckSpecies(option);
    return Names();
}

TEST(CheckSpecies, OTUsOfOneNameShareASpecies) {
    const Texts names = {"Poa annua", "Poa nemoralis", "Poa annua",
                         "poa annua", "Poa nemoralis", "Poa annua"};
    DataSet data({{1, 0}, {0, 2}, {0, 0}, {0, 0}, {-999, 0}, {0, 1}}, names, {});
    CheckSpecies(1);
    EXPECT_EQ(Names(), (Texts{"Poa annua", "Poa nemoralis", "poa annua"}));
    EXPECT_EQ(Map(cstSppMap, tcst, nSpp), (Texts{"100", "010", "100", "001", "010", "100"}));
    SpeciesReleveMap();
    EXPECT_EQ(Map(sppRelMap, nSpp, ncsm), (Texts{"11", "11", "00"}));
}

TEST(CheckSpecies, LabelsAreTheFirstTwoLettersOfTwoWords) {
    const std::string longName = "Anthoxanthum odoratum" + std::string(49, 'x');
    EXPECT_EQ(NamesAfterCheck({"Poa annua", "Poa angustifolia", "Bromus", "Poa  x", "A", "P oa bc",
                               "Ab cd", longName},
                              2),
              (Texts{"Poan Poa annua", "POan Poa angustifolia", "Br Bromus", "Pox Poa  x", "A A",
                     "P bc P oa bc", "Abcd Ab cd", "Anod " + longName.substr(0, 65)}));
    EXPECT_EQ(NamesAfterCheck({"Poa annua"}, 1), Texts{"Poa annua"});
}

TEST(CheckSpecies, EqualLabelsAreAlteredUntilTheyDiffer) {
    Texts names;
    for (int i = 0; i < 400; i++) names.push_back("Poa an" + std::to_string(i));
    const Texts labelled = NamesAfterCheck(names, 2);
    const char* const byHand[] = {"Poan", "POan", "POAn", "POAN", "QOAN",
                                  "QPAN", "QPBN", "QPBO", "QPBP"};
    for (std::size_t i = 0; i < std::size(byHand); i++)
        EXPECT_EQ(labelled[i], byHand[i] + (" " + names[i]));
    // Beyond the four characters the label counts on, from P to ~ and over to the next character.
    EXPECT_EQ(labelled[54], "QPB~ Poa an54");
    EXPECT_EQ(labelled[55], "QPC! Poa an55");
    std::set<std::string> labels;
    for (const std::string& name : labelled) labels.insert(name.substr(0, 4));
    EXPECT_EQ(labels.size(), names.size());
}

TEST(CheckSpecies, AlteredLabelsStayInOneLine) {
    // The character after the form feed is the carriage return, after 255 comes the text's end.
    Texts names;
    for (int i = 0; i < 8; i++) names.push_back("\f\xff\xff \f\x1f" + std::to_string(i));
    for (const std::string& name : NamesAfterCheck(names, 2)) {
        EXPECT_EQ(name.find('\r'), std::string::npos);
        EXPECT_EQ(name[4], ' ');
    }
}

TEST(CountStates, MissingIsAValueAndTheSentinelIsNone) {
    const float nan = std::nanf("");
    float rows[5][3] = {{5, 1e8F, 0.0F}, {5, 2, -0.0F}, {-999, 1e8F, nan}, {5, 2, nan}, {5, 3, 1}};
    const float* B[] = {rows[0], rows[1], rows[2], rows[3], rows[4]};
    int states[3];
    CountStates(3, 5, states, B);
    EXPECT_EQ(states[0], 2);
    EXPECT_EQ(states[1], 2);
    EXPECT_EQ(states[2], 4);
    CountStates(3, 0, states, B);
    EXPECT_EQ(states[0], 0);
}

TEST(RangeStates, MissingValuesCountAndNegativeTraitsReachUpToZero) {
    float rows[2][4] = {{-3, 2.5F, 7, 4}, {-1, -999, 9, 1}};
    const float* B[] = {rows[0], rows[1]};
    const int types[] = {3, 3, 2, 3};
    float ranges[] = {-1, -1, -1, -1};
    RangeStates(4, 2, B, types, ranges);
    EXPECT_FLOAT_EQ(ranges[0], 3);
    EXPECT_FLOAT_EQ(ranges[1], 1001.5F);
    EXPECT_FLOAT_EQ(ranges[2], -1);
    EXPECT_FLOAT_EQ(ranges[3], 3);
}

TEST(CheckData, DropsAbsentOTUsAndTheirSpecies) {
    DataSet data({{0, 1, 0, 0}, {1e-14F, 0, 0, 0}, {0, -999, 0, 0}, {0, 0, 0, 0}, {2, 3, 0, 0}},
                 {"one", "two", "three", "four"}, {"1000", "0100", "0010", "0100", "0001"});
    chtype[0] = 3;
    CheckData(1);
    ASSERT_EQ(tcst, 3);
    EXPECT_EQ(csm_Float[1][0], 102);
    EXPECT_EQ(csm_Float[2][0], 104);
    EXPECT_EQ(csm_Float[4][0], 101);
    EXPECT_EQ(cadat[1][1], -999);
    EXPECT_EQ(ncst[0], 1);
    EXPECT_EQ(ncst[1], 3);
    EXPECT_EQ(emptyReleves, 2);
    EXPECT_EQ(onsta[0], 3);
    EXPECT_EQ(chrange[0], 4);
    EXPECT_EQ(Names(), (Texts{"one", "three", "four"}));
    EXPECT_EQ(Map(cstSppMap, tcst, nSpp), (Texts{"100", "010", "001"}));
    EXPECT_EQ(Map(sppRelMap, nSpp, ncsm), (Texts{"0100", "0100", "1100"}));
    EXPECT_EQ(spp[3], nullptr);
}

TEST(CheckSpeciesMerge, IsExactNextToTheEndAndMissesTheLast) {
    const Texts belongs = {"1000", "0100", "0010", "0001"};
    {
        DataSet data({{1, 0}, {0, 1}, {0, 2}, {3, 0}}, {"a", "b", "a", "c"}, belongs);
        CheckSpeciesMerge();
        EXPECT_EQ(Names(), (Texts{"a", "b", "c"}));
        EXPECT_EQ(Map(cstSppMap, tcst, nSpp), (Texts{"100", "010", "100", "001"}));
        EXPECT_EQ(Map(sppRelMap, nSpp, ncsm), (Texts{"11", "01", "10"}));
    }
    DataSet data({{1, 0}, {0, 1}, {0, 2}, {3, 0}}, {"a", "b", "c", "c"}, belongs);
    CheckSpeciesMerge();
    EXPECT_EQ(nSpp, 4);
}

TEST(CheckSpeciesMerge, MovesOneStepOnly) {
    DataSet data({{1}, {1}, {1}, {1}, {1}}, {"a", "a", "b", "c", "d"},
                 {"10000", "01000", "00100", "00010", "00001"});
    CheckSpeciesMerge();
    // b takes the place of the second a, which stands behind it; d falls off the end.
    EXPECT_EQ(nSpp, 3);
    EXPECT_STREQ(spp[1], "b");
}

TEST(SameSpecies, ShareTheValueOfTheTraitSp) {
    const Texts belongs = {"10", "01", "10", "01", "11"};
    DataSet data(Rows(5, {1.0F}), {"a", "b"}, belongs);
    CheckCSTsSameSpecies();
    EXPECT_EQ(csm_Float[2][0], 102);
    std::strcpy(chLabel[0], "sp");
    CheckCSTsSameSpecies();
    const float expected[] = {0, 1, 0, 1, 1};  // the last follows the later pair
    for (int i = 0; i < 5; i++) EXPECT_EQ(csm_Float[i][0], expected[i]);
}

TEST(TrimSpecies, LooksAtTheFirstOTUsAndAtCommonCommunities) {
    DataSet data({{1, 0}, {0, 1}, {1, 0}}, {"a", "b", "c"}, {"110", "010", "001"});
    std::copy_n("01", 2, sppRelMap[1]);
    TrimSpecies(2);
    EXPECT_EQ(Names(), (Texts{"a", "b"}));
    // The first OTU is in no community where the map has species b.
    EXPECT_EQ(Map(cstSppMap, 2, nSpp), (Texts{"10", "01"}));
    EXPECT_EQ(sppRelMap[2], nullptr);
}

// Tables without a species stayed behind when the data set was released.
TEST(TrimSpecies, TablesThatLostAllSpeciesAreReleased) {
    DataSet data({{1}, {1}}, {"a"}, {"0", "0"});
    TrimSpecies(2);
    ASSERT_EQ(nSpp, 0);
    FreeGlobals2();
    EXPECT_TRUE(spp == nullptr && sppRelMap == nullptr && cstSppMap == nullptr);
}

}  // namespace
