#include "TSLCLI/newick.h"

#include <gtest/gtest.h>

#include <fstream>
#include <numeric>
#include <sstream>

#include "TSLCLI/failure.h"
#include "support/matrices.h"
#include "support/text.h"

namespace {

Table<double> Distances(const Tree& tree) {
    const int n = int(tree.tipNames.size());
    Table<double> distances(n, n, -1.0);
    std::vector<int> places(n);
    std::iota(places.begin(), places.end(), 0);
    PathLengths(tree, places, distances);
    return distances;
}

TEST(Newick, PathLengthsAreThoseOfTheJudge) {
    std::ifstream file(TESSEL_TEST_DATA "/newick_judge.txt");
    int trees = 0;
    for (std::string text, numbers; std::getline(file, text);) {
        if (text[0] == '#') continue;
        std::getline(file, numbers);
        std::istringstream judged(numbers);
        const Table<double> d = Distances(ParseNewick(text, "tree"));
        for (int j = 0; j < d.rows(); j++)
            for (int i = 0; i < j; i++) {
                double expected = -1;
                judged >> expected;
                EXPECT_NEAR(d[i][j], expected, 1e-13 * expected) << text;
                EXPECT_EQ(d[j][i], d[i][j]);
            }
        trees++;
    }
    EXPECT_EQ(trees, 7);
}

TEST(Newick, FormsOfOneTree) {
    const Table<double> expected = {{0, 3, 4.5}, {3, 0, 5.5}, {4.5, 5.5, 0}};
    for (const char* text :
         {"((a b:1,c:2):1.5,d:2);",
          "\xEF\xBB\xBF ( ( 'a b' : 1 , \"c\":2 ) x:1.5 ,\r\nd:2 ) r:9 ;\n",
          "[&R] [a [nested] comment] ((a b[&x=1]:1,c:[;]+2e0)97:15E-1,d:.2e1);[end]",
          // A node with one child passes its length on.
          "((((a b:0.5):0.5,(c:2):0):1,((d:1.5):0.5):0.5):0.0);"}) {
        const Tree tree = ParseNewick(text, "tree");
        EXPECT_EQ(tree.tipNames, (std::vector<std::string>{"a b", "c", "d"})) << text;
        ExpectSame(Distances(tree), expected, text);
    }
    EXPECT_EQ(ParseNewick("('it''s':1,b_c:1);", "tree").tipNames[0], "it's");
    EXPECT_EQ(Distances(ParseNewick("only;", "tree"))[0][0], 0);
}

// A recursive reader would need a stack as deep as the tree.
TEST(Newick, DeepAndWideTrees) {
    const int depth = 100'000;
    const Tree chain =
        ParseNewick(Repeated("(", depth) + "a:1" + Repeated("):1", depth - 1) + ");", "t");
    EXPECT_EQ(chain.parent.size(), depth + 1U);
    std::string comb = "a0:1", star = "a0:1";
    const int n = 1500;
    for (int i = 1; i < n; i++) {
        comb = "(" + comb + ",a" + std::to_string(i) + ":1):1";
        star += ",a" + std::to_string(i) + ":1";
    }
    const Table<double> combed = Distances(ParseNewick(comb + ";", "t"));
    EXPECT_EQ(combed[0][n - 1], n);
    EXPECT_EQ(combed[n - 2][n - 1], 3);
    EXPECT_EQ(Distances(ParseNewick("(" + star + ");", "t"))[0][n - 1], 2);
}

TEST(Newick, TipsThatAreNotAskedForTakeNoPart) {
    Table<double> d(2, 2, -1.0);
    PathLengths(ParseNewick("((a:1,b:2):1,(c:3,d:4):1);", "t"), {-1, 1, 0, -1}, d);
    ExpectSame(d, {{0, 7}, {7, 0}});
}

}  // namespace
