// Data that no one should analyse, but someone will: numbers that are none, huge and vanishing
// ones, empty communities, single rows and columns. The functional analysis runs to its end on all
// of it.

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "TSLGLOB/dataset.h"
#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "TSLIF/menus.h"
#include "mxlibDim/dim.h"
#include "support/console.h"
#include "support/temp_folder.h"

namespace {

using Words = std::vector<std::vector<std::string>>;

Words Filled(int rows, int cols, const std::vector<std::string>& cycle) {
    Words words(rows, std::vector<std::string>(cols));
    std::size_t next = 0;
    for (auto& row : words)
        for (auto& word : row) word = cycle[next++ % cycle.size()];
    return words;
}

struct DataSet {
    Words B, W, E, F;  // E by communities; E and F may be empty
    std::string traitTypes = "3 1 2";
    std::string types = "1 1 2 2 3 3";
    int envType = 3;
};

/// Six OTUs, three traits, five communities, two ecological variables, a phylogeny.
DataSet Usual() {
    DataSet data;
    data.B = {{"2.385", "1", "2"}, {"1.175", "0", "1"}, {"3.81", "1", "3"},
              {"0.62", "0", "3"},  {"1.905", "1", "1"}, {"2.74", "0", "2"}};
    data.W = {{"3", "0", "1", "0", "2"}, {"0", "2", "1", "4", "0"}, {"1", "1", "0", "0", "5"},
              {"4", "0", "2", "1", "0"}, {"0", "3", "0", "2", "1"}, {"2", "0", "6", "0", "1"}};
    data.E = {{"1.5", "7"}, {"2.25", "3"}, {"0.75", "4"}, {"3.1", "9"}, {"1.9", "5"}};
    data.F = Filled(6, 6, {"0.3", "0.7", "0.5", "0.9", "0.2"});
    for (int i = 0; i < 6; i++)
        for (int j = 0; j <= i; j++) data.F[i][j] = i == j ? "0" : data.F[j][i];
    return data;
}

std::string Joined(const Words& rows) {
    std::string text;
    for (const auto& row : rows) {
        for (const auto& word : row) text += word + "\t";
        text += "\n";
    }
    return text;
}

Words Transposed(const Words& rows) {
    Words turned(rows.empty() ? 0 : rows[0].size());
    for (const auto& row : rows)
        for (std::size_t j = 0; j < row.size(); j++) turned[j].push_back(row[j]);
    return turned;
}

std::string Repeated(const std::string& text, std::size_t times) {
    std::string repeated;
    while (times-- > 0) repeated += text;
    return repeated;
}

std::string FormdaOf(const DataSet& data) {
    const std::size_t traits = data.B[0].size(), communities = data.W[0].size();
    std::ostringstream text;
    text << "odd\n"
         << traits << "\n"
         << Repeated("t ", traits) << "\n"
         << data.traitTypes << "\n"
         << Repeated("0 ", traits) << "\n"
         << Repeated("2 ", traits) << "\n"
         << communities << "\n"
         << Repeated("c ", communities) << "\n"
         << data.B.size() << "\n"
         << Repeated("0 ", communities) << "\n0 0 0 0 0 0 0\n\n25Jun2016\n"
         << Joined(data.B) << "\n"
         << Joined(data.W) << "\n"
         << (data.E.empty() ? 0 : data.E[0].size()) << "\n";
    if (!data.E.empty())
        text << "97Sep08\n2\n"
             << Repeated(std::to_string(data.envType) + " ", data.E[0].size()) << "\n"
             << Repeated("v ", data.E[0].size()) << "\nE.txt\n"
             << Joined(Transposed(data.E));
    text << "0\nSMW 1\n" << (data.F.empty() ? "0\n" : "1\n3\n" + Joined(data.F)) << "0\n";
    return text.str();
}

/// Standard error without what the elimination writes about singular matrices before it goes on.
std::string Complaints(const std::string& errors) {
    static const std::regex singular("gaussj: Singular Matrix-[12]");
    return std::regex_replace(errors, singular, "");
}

/// Runs H under each measure, fuzzy and crisp, as one session with details.
class OddData : public testing::Test {
  protected:
    // Routines of linear algebra hang on some matrices: the alarm makes that a failure.
    OddData() { alarm(250); }
    ~OddData() override {
        alarm(0);
        FreeGlobals2();
    }

    void ExpectToRun(const DataSet& data, const std::string& what) {
        folder_.Write("sFormda.txt", FormdaOf(data));
        folder_.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
        std::remove("sPrinda.txt");
        std::string answers = "O s V\n";
        int analyses = 0;
        for (const char* fuzzy : {"0", "1"})
            for (const char* measure : {"1 6", "1 8", "1 10", "2", "3"}) {
                answers += "H k " + data.types + " " + fuzzy + " 3 0 2 7 " + measure + " 1 " +
                           (analyses % 2 == 0 ? "y" : "n") + " y" + (analyses > 0 ? " w\n" : "\n");
                analyses++;
            }
        const ConsoleRun run = WithConsole(answers + "C C X\n", [](FILE*) {
            free1D(gSpareBlockPtr);
            mainInit();
        });
        EXPECT_EQ(run.exitStatus, 0) << what << run.err;
        EXPECT_EQ(Complaints(run.err), "") << what;
        std::size_t reports = 0;
        for (std::size_t at = run.out.find("Results on file"); at != std::string::npos;
             at = run.out.find("Results on file", at + 1))
            reports++;
        EXPECT_EQ(reports, static_cast<std::size_t>(analyses)) << what;
    }

    TempFolder folder_;
    WorkingIn here_{folder_.path()};
};

/// The cells of a matrix that an odd number takes.
struct Pattern {
    const char* name;
    bool (*takes)(std::size_t i, std::size_t j);
};

constexpr Pattern kPatterns[] = {
    {"one cell", [](std::size_t i, std::size_t j) { return i == 1 && j == 0; }},
    {"a row", [](std::size_t i, std::size_t) { return i == 1; }},
    {"a column", [](std::size_t, std::size_t j) { return j == 1; }},
    {"two rows", [](std::size_t i, std::size_t) { return i < 2; }},
    {"every other", [](std::size_t i, std::size_t j) { return (i + j) % 2 == 0; }},
    {"all", [](std::size_t, std::size_t) { return true; }},
};

class OddNumbers : public OddData, public testing::WithParamInterface<const char*> {};

}  // namespace

TEST_P(OddNumbers, RunToTheEndWhereverTheyStand) {
    for (Words DataSet::*matrix : {&DataSet::B, &DataSet::W, &DataSet::E, &DataSet::F})
        for (const Pattern& pattern : kPatterns) {
            DataSet data = Usual();
            Words& words = data.*matrix;
            for (std::size_t i = 0; i < words.size(); i++)
                for (std::size_t j = 0; j < words[i].size(); j++)
                    if (pattern.takes(i, j)) words[i][j] = GetParam();
            if (matrix != &DataSet::F && pattern.takes(0, 0)) data.F.clear();
            ExpectToRun(data,
                        std::string(GetParam()) + ", " + pattern.name + ":\n" + FormdaOf(data));
        }
}

INSTANTIATE_TEST_SUITE_P(Each, OddNumbers,
                         testing::Values("nan", "inf", "-inf", "3e38", "-3e38", "1e-42", "1e308",
                                         "1e-310", "0", "-999", "-1", "1e19"));

TEST_F(OddData, EveryShape) {
    const std::vector<std::string> cycle = {"1.5", "0", "2.25", "3", "0.75", "1", "0.5"};
    for (const int otus : {1, 2, 3, 5})
        for (const int traits : {1, 2, 4})
            for (const int communities : {1, 2, 3, 6})
                for (const int variables : {0, 1, 3, 7})
                    for (const int types : {1, 2, otus}) {
                        DataSet data;
                        data.B = Filled(otus, traits, cycle);
                        data.W = Filled(otus, communities, cycle);
                        if (variables > 0) data.E = Filled(communities, variables, cycle);
                        if ((otus + variables) % 2 == 1) data.F = Filled(otus, otus, cycle);
                        data.traitTypes = Repeated(traits % 2 == 1 ? "3 " : "1 ", traits);
                        data.types.clear();
                        for (int i = 0; i < otus; i++)
                            data.types += std::to_string(i % types + 1) + " ";
                        ExpectToRun(data, FormdaOf(data));
                    }
}
