// Routines on tables against results worked by hand or by R, as tests/data/worked.txt holds them:
//
//   == ROUTINE key numbers key numbers ...
//   the rows of the table
//   ->
//   the rows of the result; a dot stands for a cell that the routine leaves alone
//
// A number may be a quotient, and r in front of it takes the root. What a routine offers in single
// and double precision is tried in both.

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <sstream>

#include "mxlib/belonging.h"
#include "mxlib/ordination.h"
#include "mxlibRes/beals.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/crossproducts.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/numbers.h"
#include "mxlibRes/ranks.h"
#include "mxlibRes/rao.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"
#include "nrutilMX/nrutilMX.h"
#include "support/matrices.h"

namespace {

constexpr double kLeftAlone = 77;

using Rows = std::vector<std::vector<double>>;

double Number(const std::string& word) {
    const std::size_t slash = word.find('/');
    if (word == ".") return kLeftAlone;
    if (slash != std::string::npos)
        return Number(word.substr(0, slash)) / Number(word.substr(slash + 1));
    return word[0] == 'r' ? std::sqrt(Number(word.substr(1))) : std::stod(word);
}

struct Example {
    std::string routine;
    std::map<std::string, std::vector<double>> given;
    Rows rows[2];  ///< table and result
};

std::vector<Example> ReadExamples() {
    std::ifstream stream(TESSEL_TEST_DATA "/worked.txt");
    std::vector<Example> examples;
    std::string key;
    int side = 0;
    for (std::string line, word; std::getline(stream, line);) {
        std::istringstream words(line);
        if (line.empty() || line[0] == '#') continue;
        if (line == "->") {
            side = 1;
            continue;
        }
        std::vector<double>* numbers = nullptr;
        if (line.starts_with("== ")) {
            side = 0;
            words >> word >> examples.emplace_back().routine;
        } else {
            numbers = &examples.back().rows[side].emplace_back();
        }
        while (words >> word)
            if (std::isalpha(word[0]) && word != "nan" &&
                !(word[0] == 'r' && std::isdigit(word[1])))
                numbers = &examples.back().given[word];
            else
                numbers->push_back(Number(word));
    }
    return examples;
}

/// A table, and room for a result in its precision or in double.
template <class T>
struct Worked {
    explicit Worked(const Example& e)
        : example(e),
          a(RowsOf<T>(e.rows[0])),
          c(int(e.rows[1].size()), int(e.rows[1][0].size()), T(kLeftAlone)),
          d(c.rows(), c.cols(), kLeftAlone) {}

    template <class U>
    static Table<U> RowsOf(const Rows& rows) {
        Table<U> table(int(rows.size()), int(rows[0].size()));
        for (int i = 0; i < table.rows(); i++) std::copy(rows[i].begin(), rows[i].end(), table[i]);
        return table;
    }

    /// What the heading gives under the key; null for nothing.
    template <class U>
    U* Given(const char* key) {
        const auto found = example.given.find(key);
        if (found == example.given.end()) return nullptr;
        static std::map<std::string, std::vector<U>> kept;
        return (kept[key] = std::vector<U>(found->second.begin(), found->second.end())).data();
    }
    int* Ints(const char* key) { return Given<int>(key); }
    float* Floats(const char* key) { return Given<float>(key); }
    double* Doubles(const char* key) { return Given<double>(key); }

    const Example& example;
    Table<T> a, c;
    Table<double> d;
    int n = a.rows(), p = a.cols(), m = c.cols();
};

template <class T>
using Routines = std::map<std::string, void (*)(Worked<T>&)>;

template <class T>
Routines<T> InBothPrecisions() {
    using W = Worked<T>;
    return {
        {"CenterRowsMV", [](W& w) { CenterRowsMV(w.n, w.p, w.a, w.c); }},
        {"CenterRowsCovMV", [](W& w) { CenterRowsCovMV(w.n, w.p, w.a, w.c); }},
        {"CenterColsMV", [](W& w) { CenterColsMV(w.n, w.p, w.a, w.c); }},
        {"NormalizeRowsMV", [](W& w) { NormalizeRowsMV(w.n, w.p, w.a, w.c); }},
        {"NormalizeCols", [](W& w) { NormalizeCols(w.n, w.p, w.a, w.c); }},
        {"ZStandardizationRowsMV", [](W& w) { ZStandardizationRowsMV(w.n, w.p, w.a, w.c); }},
        {"ZStandardizationRowsByMV",
         [](W& w) {
             ZStandardizationRowsMV(w.n, w.p, w.Doubles("mean"), w.Doubles("sd"), w.a, w.c);
         }},
        {"UnitSumRowsAdjMV", [](W& w) { UnitSumRowsAdjMV(w.n, w.p, w.c, w.a); }},
        {"CorrAdj", [](W& w) { CorrAdj(w.n, w.p, w.c, w.a); }},
        {"GowerStandardizationRows", [](W& w) { GowerStandardizationRows(w.n, w.p, w.c = w.a); }},
        {"GowerStandardizationCols", [](W& w) { GowerStandardizationCols(w.n, w.p, w.c = w.a); }},
        {"RowTotalsMV", [](W& w) { RowTotalsMV(w.n, w.p, w.a, w.c[0]); }},
        {"ColTotalsMV", [](W& w) { ColTotalsMV(w.n, w.p, w.a, w.c[0]); }},
        {"TransposeMatrix", [](W& w) { TransposeMatrix(w.n, w.p, w.a, w.c); }},
        {"TransposeInPlace", [](W& w) { w.c = w.a, TransposeSqMatrix(w.n, w.c, w.c); }},
        {"ScalarMatrixProd", [](W& w) { ScalarMatrixProd(w.n, w.p, T(-2), w.a, w.c); }},
        {"UpperToLowerMatrix", [](W& w) { UpperToLowerMatrix(w.n, w.c = w.a); }},
        {"RankVectorAdjMV", [](W& w) { RankVectorAdjMV(w.p, w.a[0], w.c[0]); }},
        {"crank",
         [](W& w) {
             w.c = w.a, crank(static_cast<unsigned long>(w.p - 2), w.c[0], &w.c[0][w.p - 1]);
         }},
        {"choldc", [](W& w) { w.c = w.a, choldc(w.c, w.p, w.c[w.p]); }},
        {"CrispBelonging", [](W& w) { CrispBelonging(w.n, w.m, w.Ints("types"), w.c); }},
        {"FuzzyBelonging",
         [](W& w) { FuzzyBelonging(w.n, w.m, w.a, w.Ints("types"), w.c, *w.Ints("unlike")); }},
        {"EucliDist", [](W& w) { EucliDist(w.n, w.p, w.a, w.d); }},
        {"EucliDistMV", [](W& w) { EucliDistMV(w.n, w.p, w.a, w.d); }},
        {"AbsValFunctionMV", [](W& w) { AbsValFunctionMV(w.n, w.p, w.a, w.d); }},
        {"GowerMVOpt",
         [](W& w) {
             GowerMVOpt(w.n, w.p, w.Ints("types"), w.a, w.d, nullptr, w.Floats("weights"),
                        *w.Ints("absences"));
         }},
        {"RaoIndex",
         [](W& w) {
             w.d[0][0] = RaoIndex(w.n, w.Doubles("p"), w.a.operator T**(), *w.Ints("unlike"),
                                  *w.Ints("root"));
         }},
    };
}

template <class T>
Routines<T> AllRoutines();

template <>
Routines<float> AllRoutines<float>() {
    using W = Worked<float>;
    Routines<float> routines = InBothPrecisions<float>();
    routines.insert({
        {"NormalizeColsMV", [](W& w) { NormalizeColsMV(w.n, w.p, w.a, w.c); }},
        {"RangeColsAdjMV", [](W& w) { RangeColsAdjMV(w.n, w.p, w.c, w.a); }},
        {"ZStandardizationColsMV", [](W& w) { ZStandardizationColsMV(w.n, w.p, w.a, w.c); }},
        {"EucliDistMVSelect", [](W& w) { EucliDistMVSelect(w.n, w.p, w.a, w.c, w.Ints("mask")); }},
        {"CrossProduct", [](W& w) { CrossProduct(w.n, w.p, w.a, w.d); }},
        {"GowerMV",
         [](W& w) { GowerMV(w.n, w.p, w.Ints("types"), w.a, w.c, w.Floats("ranges"), nullptr); }},
        {"VariableRange", [](W& w) { w.c[0][0] = VariableRange(w.p, w.a[0]); }},
        {"MeanStDev", [](W& w) { MeanStDev(w.p, w.a[0], &w.d[0][0], &w.d[0][1]); }},
        {"DataPartitionL",
         [](W& w) {
             DataPartitionL(w.n, w.p, w.Ints("richness"), *w.Ints("option"), w.a, w.c[w.n]);
             for (int i = 0; i < w.n; i++) std::copy_n(w.a[i], w.p, w.c[i]);
         }},
        {"ConcentrateGroups",
         [](W& w) {
             ConcentrateGroups(w.n, w.p, w.a, w.c, 2, w.Ints("rows"), 2, w.Ints("cols"),
                               *w.Ints("option"));
         }},
    });
    return routines;
}

template <>
Routines<double> AllRoutines<double>() {
    using W = Worked<double>;
    Routines<double> routines = InBothPrecisions<double>();
    routines.insert({
        {"ChordDistMV", [](W& w) { ChordDistMV(w.n, w.p, w.a, w.d); }},
        {"SumAbsDeviations",
         [](W& w) { w.d[0][0] = SumAbsDeviations(w.p, w.a[0], w.a[1], *w.Ints("squared")); }},
        {"CorrelationMV", [](W& w) { CorrelationMV(w.n, w.p, w.a, w.d); }},
        {"CovarianceMV", [](W& w) { CovarianceMV(w.n, w.p, w.a, w.d); }},
        {"CrossProductMV", [](W& w) { CrossProductMV(w.n, w.p, w.a, w.d); }},
        {"Correlation", [](W& w) { Correlation(w.n, w.a, w.d); }},
        {"CrossProduct2VecMV", [](W& w) { w.d[0][0] = CrossProduct2VecMV(w.p, w.a[0], w.a[1]); }},
        {"Covariance2VecMV", [](W& w) { w.d[0][0] = Covariance2VecMV(w.p, w.a[0], w.a[1]); }},
        {"Correlation2VecMV", [](W& w) { w.d[0][0] = Correlation2VecMV(w.p, w.a[0], w.a[1]); }},
        {"CorrToSqDist", [](W& w) { CorrToSqDist(w.n, w.a, w.d); }},
        {"ProbToDissim", [](W& w) { ProbToDissim(w.n, w.a, w.d); }},
        {"ProdToSqDist", [](W& w) { ProdToSqDist(w.n, w.a, w.d); }},
        {"DissToCenterProdMatrix", [](W& w) { DissToCenterProdMatrix(w.n, w.a, w.d, false); }},
        {"ConditionalProb",
         [](W& w) { ConditionalProb(w.n, w.p, w.a, w.d, *w.Ints("option"), false); }},
        {"PartialCorrelation",
         [](W& w) { w.d[0][0] = PartialCorrelation(w.a[0][0], w.a[0][1], w.a[0][2]); }},
        {"SmallSampleCongruence",
         [](W& w) { w.d[0][0] = SmallSampleCongruence(w.a[0][0], w.a[0][1]); }},
        {"MatrixCorr",
         [](W& w) { w.d[0][0] = MatrixCorr(w.p, w.a, w.a.operator double**() + w.p); }},
        {"BetaDivergence",
         [](W& w) { BetaDivergence(w.p, w.a, w.a.operator double**() + w.p, w.d[0]); }},
        {"Factorial", [](W& w) { w.d[0][0] = Factorial(w.a[0][0]); }},
        {"CountStates", [](W& w) { w.d[0][0] = CountStates(w.p, w.a[0]); }},
        {"SumOfSquaresDev", [](W& w) { w.d[0][0] = SumOfSquaresDev(w.p, w.a[0]); }},
        {"MatrixTotalMV", [](W& w) { w.d[0][0] = MatrixTotalMV(w.n, w.p, w.a); }},
        {"MatrixMax", [](W& w) { w.d[0][0] = MatrixMax(w.n, w.p, w.a); }},
        {"RankVector", [](W& w) { RankVector(w.p, w.a[0], w.d[0]); }},
        {"RankVectorAbs", [](W& w) { RankVectorAbs(w.p, w.a[0], w.d[0]); }},
    });
    return routines;
}

/// Whether the routine exists in this precision. Its result stands in c, or in d when c was left
/// alone.
template <class T>
bool Try(const Example& example) {
    const Routines<T> routines = AllRoutines<T>();
    const auto routine = routines.find(example.routine);
    if (routine == routines.end()) return false;
    Worked<T> worked(example);
    routine->second(worked);
    bool isNarrow = false;
    for (int i = 0; i < worked.c.rows(); i++)
        for (int j = 0; j < worked.m; j++) isNarrow |= worked.c[i][j] != T(kLeftAlone);
    const bool rounds = example.routine == "CorrAdj";  // to single precision
    const double precision = 8 * (rounds ? FLT_EPSILON : double(std::numeric_limits<T>::epsilon()));
    for (int i = 0; i < worked.c.rows(); i++)
        for (int j = 0; j < worked.m; j++) {
            const double expected = example.rows[1][i][j];
            const double given = isNarrow ? double(worked.c[i][j]) : worked.d[i][j];
            const double tolerance = precision * std::fmax(1, std::fabs(expected));
            EXPECT_TRUE(std::isnan(expected) ? std::isnan(given)
                                             : std::fabs(given - expected) <= tolerance)
                << example.routine << i << " " << j << ": " << given << ", not " << expected;
        }
    return true;
}

TEST(Worked, ByHandAndByR) {
    for (const Example& example : ReadExamples()) {
        const bool single = Try<float>(example), whole = Try<double>(example);
        EXPECT_TRUE(single || whole) << example.routine;
    }
}

}  // namespace
