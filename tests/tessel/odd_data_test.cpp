// Data that no one should analyse, but someone will: numbers that are none, huge and vanishing
// ones, empty communities, single rows and columns. The functional analysis runs to its end on all
// of it.

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <regex>
#include <set>

#include "TSLIF2/preferences.h"
#include "tessel/in_process.h"

namespace {

Rows Filled(int rows, int cols, const std::vector<double>& cycle) {
    Rows cells(rows, std::vector<double>(cols));
    std::size_t next = 0;
    for (auto& row : cells)
        for (double& x : row) x = cycle[next++ % cycle.size()];
    return cells;
}

/// Runs H under each measure, fuzzy and crisp, as one session with details.
struct OddData : InProcess {
    // Routines of linear algebra hang on some matrices: the alarm makes that a failure.
    OddData() {
        alarm(250);
        saveRndData = 'y';
        WritePreferences();
    }
    ~OddData() override { alarm(0); }

    void ExpectToRun(FormdaText data, const Rows& F, const std::string& types) {
        data.phylogeny = F.empty() ? "0\n" : "1\n3\n" + TextOf(F);
        SCOPED_TRACE(FormdaOf(data));
        folder_.Write("sFormda.txt", FormdaOf(data));
        folder_.Write("sTrk.txt", "sFormda.txt\n07Jul17\n");
        std::remove("sPrinda.txt");
        std::string answers = "O s V\n";
        int analyses = 0;
        for (const char* fuzziness : {"0", "1"})
            for (const char* measure : {"1 6", "1 8", "1 10", "2", "3"}) {
                answers += "H k " + types + " " + fuzziness + " 3 0 2 7 " + measure + " 1 " +
                           (analyses % 2 == 0 ? "y" : "n") + " y" + (analyses > 0 ? " w\n" : "\n");
                analyses++;
            }
        const ConsoleRun run = RunWhole(answers + "C C X\n");
        // What the elimination writes about singular matrices before it goes on.
        static const std::regex singular("gaussj: Singular Matrix-[12]");
        EXPECT_EQ(run.exitStatus, 0);
        EXPECT_EQ(std::regex_replace(run.err, singular, ""), "");
        EXPECT_EQ(Count(run.out, "Results on file"), analyses);
        for (const char* file : {"sPrinda.txt", "sRDa.txt", "sTrk.txt"})
            EXPECT_FALSE(Contains(folder_.Read(file), "-nan")) << file;
    }
};

/// The cells of a matrix that an odd number takes: one, a row, a column, two rows, every other,
/// all.
constexpr bool (*kPatterns[])(std::size_t, std::size_t) = {
    [](std::size_t i, std::size_t j) { return i == 1 && j == 0; },
    [](std::size_t i, std::size_t) { return i == 1; },
    [](std::size_t, std::size_t j) { return j == 1; },
    [](std::size_t i, std::size_t) { return i < 2; },
    [](std::size_t i, std::size_t j) { return (i + j) % 2 == 0; },
    [](std::size_t, std::size_t) { return true; },
};

struct OddNumbers : OddData, testing::WithParamInterface<double> {};

}  // namespace

TEST_P(OddNumbers, RunToTheEndWhereverTheyStand) {
    for (int matrix = 0; matrix < 4; matrix++)
        for (const auto takes : kPatterns) {
            FormdaText data;
            data.B = {{2.385, 1, 2}, {1.175, 0, 1}, {3.81, 1, 3},
                      {0.62, 0, 3},  {1.905, 1, 1}, {2.74, 0, 2}};
            data.W = {{3, 0, 1, 0, 2}, {0, 2, 1, 4, 0}, {1, 1, 0, 0, 5},
                      {4, 0, 2, 1, 0}, {0, 3, 0, 2, 1}, {2, 0, 6, 0, 1}};
            data.E = {{1.5, 7}, {2.25, 3}, {0.75, 4}, {3.1, 9}, {1.9, 5}};
            data.traitTypes = "3 1 2";
            Rows F = Filled(6, 6, {0.3, 0.7, 0.5, 0.9, 0.2});
            for (std::size_t i = 0; i < 6; i++)
                for (std::size_t j = 0; j <= i; j++) F[i][j] = i == j ? 0 : F[j][i];
            Rows& cells = *std::vector{&data.B, &data.W, &data.E, &F}[matrix];
            for (std::size_t i = 0; i < cells.size(); i++)
                for (std::size_t j = 0; j < cells[i].size(); j++)
                    if (takes(i, j)) cells[i][j] = GetParam();
            if (matrix < 3 && takes(0, 0)) F.clear();
            ExpectToRun(data, F, "1 1 2 2 3 3");
        }
}

INSTANTIATE_TEST_SUITE_P(Each, OddNumbers,
                         testing::Values(NAN, INFINITY, -INFINITY, 3e38, -3e38, 1e-42, 1e308,
                                         1e-310, 0, -999, -1, 1e19));

TEST_F(OddData, EveryShape) {
    const std::vector<double> cycle = {1.5, 0, 2.25, 3, 0.75, 1, 0.5};
    for (const int otus : {1, 2, 5})
        for (const int traits : {1, 2})
            for (const int communities : {1, 2, 5})
                for (const int variables : {0, 1, 6})
                    for (const int types : std::set{1, std::min(2, otus), otus}) {
                        FormdaText data{Filled(otus, traits, cycle),
                                        Filled(otus, communities, cycle)};
                        if (variables > 0) data.E = Filled(communities, variables, cycle);
                        data.traitTypes = Repeated(traits % 2 == 1 ? "3 " : "1 ", traits);
                        std::string groups;
                        for (int i = 0; i < otus; i++)
                            groups += std::to_string(i % types + 1) + " ";
                        ExpectToRun(data,
                                    (otus + variables) % 2 ? Filled(otus, otus, cycle) : Rows(),
                                    groups);
                    }
}
