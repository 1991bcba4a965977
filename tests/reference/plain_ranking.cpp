#include "reference/plain_ranking.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>

#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/distances.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/ranks.h"
#include "mxlibRes/standardisation.h"
#include "reference/plain_congruence.h"
#include "reference/plain_measures.h"

namespace {

using Selected = std::vector<int>;

template <class Real>
struct Grid {
    Grid(int r, int c) : rows(r), cols(c), cells(r, c) {}
    Grid(const RankingCase::Rows& from, int r, int c) : Grid(r, c) {
        for (int i = 0; i < r; i++)
            for (int j = 0; j < c; j++) cells[i][j] = Real(float(from[i][j]));
    }
    Real* operator[](int i) const { return cells[i]; }
    int rows, cols;
    ScopedMatrix<Real> cells;
};

template <class Real, class Other>
Grid<Real> Product(const Grid<Real>& a, const Grid<Other>& b) {
    Grid<Real> c(a.rows, b.cols);
    MatrixProdMV(a.rows, a.cols, b.rows, b.cols, a.cells.get(), b.cells.get(), c.cells.get());
    return c;
}

/// Similarities of objects by one variable, not weighted; -999 where it does not count. A missing
/// value counts in the range of an interval variable if the caller says so.
Grid<double> Similarities(std::vector<float> x, int type, int doubleAbsences, bool missingInRange) {
    const int n = int(x.size());
    Grid<double> s(n, n);
    if (type == 4) RankVectorAdjMV(n, x.data(), x.data());
    float largest = FLT_MIN, smallest = FLT_MAX;
    for (const float value : x) {
        if (IsMissing(value) && !(type == 3 && missingInRange)) continue;
        largest = std::max(largest, value);
        smallest = std::min(smallest, value);
    }
    const float range = largest - smallest;
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) {
            s[i][j] = x[i] == x[j] ? 1 : 0;
            if ((type == 3 || type == 4) && range > 0)
                s[i][j] = 1 - double(std::fabs(x[i] - x[j])) / double(range);
            const bool absent = type == 1 && doubleAbsences == 0 && x[i] == 0 && x[j] == 0;
            if (absent || IsMissing(x[i]) || IsMissing(x[j])) s[i][j] = -999;
        }
    return s;
}

std::vector<float> Column(const RankingCase::Rows& rows, int j) {
    std::vector<float> column;
    for (const auto& row : rows) column.push_back(float(row[j]));
    return column;
}

constexpr int kEuclidean = 6;

int CountDistinct(const std::vector<int>& labels) {
    return int(std::set<int>(labels.begin(), labels.end()).size());
}

template <class Real>
struct Ranking {
    /// A table of communities, and under the matrix correlation its resemblances.
    struct Letter {
        Grid<Real> m;
        Grid<double> d;
    };

    RankingCase in;
    const int c = int(in.W.size()), n = int(in.B.size()), p = int(in.B[0].size());
    const int K = CountDistinct(in.types);
    /// Whether correlations are held in single precision.
    const bool held = std::set{9, 14, 15, 17, 18, 19, 20, 21, 22, 23}.contains(in.criterion);
    const bool byResemblance = in.measure == 1 || in.criterion == 14 || in.criterion == 15;
    Grid<Real> W{in.W, c, n}, WUnit{in.W, c, n};
    Grid<float> B{in.B, n, p};
    std::vector<Grid<double>> similarities;  ///< of OTUs, by trait, weighted
    std::map<char, Letter> letters;
    Selected selected;

    explicit Ranking(const RankingCase& ranking) : in(ranking) {
        UnitSumRowsAdjMV(c, n, WUnit.cells, W.cells);
        if (in.unitTotals) UnitSumRowsAdjMV(c, n, W.cells, W.cells);
        for (int k = 0; k < p; k++) {
            Grid<double> s =
                Similarities(Column(in.B, k), in.traitTypes[k], in.doubleAbsences, true);
            for (int i = 0; i < n; i++)
                for (int j = 0; j < n; j++)
                    if (s[i][j] != -999) s[i][j] = double(float(s[i][j] * double(in.weights[k])));
            similarities.push_back(std::move(s));
        }
        if (in.criterion < 11 || in.criterion > 13) letters.emplace('E', Sites());
        if (in.criterion >= 11 && in.criterion <= 15) letters.emplace('P', Phylogeny());
        if constexpr (sizeof(Real) == sizeof(double))
            if (in.criterion >= 18 && in.criterion <= 23) letters.emplace('Z', Smoothed());
    }

    Letter Make(Grid<Real> m, int option) {
        Grid<double> d(c, c);
        if (byResemblance) NominalReseNonHier(c, m.cols, m.cells, d.cells, option);
        return {std::move(m), std::move(d)};
    }

    Letter Sites() {
        const int q = int(in.E[0].size());
        Grid<Real> E(in.E, c, q);
        const bool mixed =
            in.kindOfE == 3 || (in.kindOfE == 5 && std::ranges::count(in.variableTypes, 2) > 0);
        Grid<double> total(c, c), count(c, c);
        for (int k = 0; k < q && in.kindOfE != 1; k++) {
            std::vector<float> x = Column(in.E, k);
            if (!mixed) {
                double sum = 0, present = 0, squares = 0;
                for (const float y : x)
                    if (!IsMissing(y)) sum += double(y), present++;
                const double mean = sum / present;
                for (const float y : x)
                    if (!IsMissing(y)) squares += (double(y) - mean) * (double(y) - mean);
                for (float& y : x)
                    if (!IsMissing(y))
                        y = float((double(y) - mean) / (squares > 0 ? std::sqrt(squares) : 1));
            }
            if (mixed && in.variableTypes[k] == 4) RankVectorAdjMV(c, x.data(), x.data());
            for (int i = 0; i < c; i++) E[i][k] = Real(x[i]);
            const Grid<double> s = Similarities(x, in.variableTypes[k], in.doubleAbsences, false);
            for (int i = 0; i < c; i++)
                for (int j = i + 1; j < c; j++)
                    if (s[i][j] != -999) total[i][j] += s[i][j], count[i][j] += 1;
        }
        for (int i = 0; i < c; i++)
            for (int j = i + 1; j < c; j++)
                total[i][j] = 1 - (count[i][j] > 0 ? total[i][j] / count[i][j] : 0);
        if (mixed) return {std::move(E), std::move(total)};
        Grid<double> d(c, c);
        const bool missingCounts = in.criterion == 14 || in.criterion == 15;
        missingCounts ? EucliDist(c, q, E.cells, d.cells) : EucliDistMV(c, q, E.cells, d.cells);
        return {std::move(E), std::move(d)};
    }

    Letter Phylogeny() {
        const int taxa = CountDistinct(in.taxa);
        Grid<Real> F(n, n), Q(n, taxa);
        for (int i = 0; i < n; i++) std::copy_n(in.F[i].begin(), n, F[i]);
        PlainFuzzyBelonging(n, taxa, F.cells, in.taxa.data(), Q.cells, !in.similarF);
        return Make(Product(W, Q), in.resemblance);
    }

    /// By joint performances as odds (criteria 18 to 20) or by conditional ones (21 to 23).
    Letter Smoothed() {
        const bool odds = in.criterion <= 20;
        Grid<double> Z(c, n), M(n, n), shares(c, n);
        UnitSumRowsAdjMV(c, n, shares.cells, W.cells);
        PlainConditionalProb(c, n, W.cells, M.cells, odds ? 2 : 1, odds);
        if (in.target) return Make(Product(shares, M), in.resemblance);
        PlainBealsWithoutTarget(c, n, W.cells, W.cells, Z.cells, odds ? 2 : 1, odds);
        return Make(std::move(Z), in.resemblance);
    }

    Grid<float> SimilaritiesOfOTUs() {
        Grid<float> S(n, n);
        for (int i = 0; i < n; i++)
            for (int j = i; j < n; j++) {
                double sum = 0, count = 0;
                for (int k = 0; k < p; k++)
                    if (selected[k] == 1 && similarities[k][i][j] != -999)
                        sum += similarities[k][i][j], count++;
                S[i][j] = S[j][i] = i == j ? 1 : count > 0 ? float(sum) / float(count) : -999;
            }
        return S;
    }

    Grid<float> Belonging() {
        const std::set<int> labels(in.types.begin(), in.types.end());
        Grid<float> U(n, K);
        for (int i = 0; i < n; i++)
            U[i][std::distance(labels.begin(), labels.find(in.types[i]))] = 1;
        if (in.fuzzy)
            PlainFuzzyBelonging(n, K, SimilaritiesOfOTUs().cells, in.types.data(), U.cells, false);
        return U;
    }

    /// Between the first K OTUs and types.
    Grid<Real> DarkDiversity() {
        const Grid<Real>& X = Of('X').m;
        Grid<Real> dark(c, 1);
        for (int i = 0; i < c; i++) {
            Real totalW = 0, totalX = 0;
            for (int k = 0; k < K; k++) totalW += W[i][k], totalX += X[i][k];
            for (int k = 0; k < K && totalW > 0 && totalX > 0; k++)
                dark[i][0] += std::fabs(W[i][k] / totalW - X[i][k] / totalX) / 2;
        }
        return dark;
    }

    Letter MakeOfSubset(char letter) {
        if (letter == 'T') {
            Grid<Real> T = Product(WUnit, B);
            for (int i = 0; i < c; i++)
                for (int k = 0; k < p; k++) T[i][k] *= Real(selected[k] == 1);
            NormalizeCols(c, p, T.cells, T.cells);
            return Make(std::move(T), in.criterion >= 16 ? kEuclidean : in.resemblance);
        }
        if (letter == 'X') return Make(Product(W, Belonging()), in.resemblance);
        if (letter == 'S') return Make(DarkDiversity(), kEuclidean);
        const Grid<float> S = SimilaritiesOfOTUs();
        Grid<Real> R(c, 1);
        for (int i = 0; i < c; i++) {
            const std::vector<double> w(W[i], W[i] + K);
            R[i][0] = Real(PlainRao<float>(K, w.data(), S.cells, false, in.squareRoots));
        }
        return Make(std::move(R), 8);
    }

    const Letter& Of(char letter) {
        if (!letters.contains(letter)) {
            Letter made = MakeOfSubset(letter);
            letters.emplace(letter, std::move(made));
        }
        return letters.at(letter);
    }

    double Coefficient(const Grid<Real>& a, const Grid<Real>& b) {
        if (in.measure == 2) return double(PlainProcrustes(c, a.cols, b.cols, a.cells, b.cells));
        return PlainRV(c, a.cols, b.cols, a.cells, b.cells);
    }

    double Pair(char a, char b) {
        const Letter &A = Of(a), &B = Of(b);
        const double r = !byResemblance ? Coefficient(A.m, B.m)
                         : c == 2 && a != 'R' && a != 'S'
                             ? SmallSampleCongruence(A.d[0][1], B.d[0][1])
                             : MatrixCorr(c, A.d.cells, B.d.cells);
        return held ? double(float(r)) : r;
    }

    /// The columns of T in use, then R if it is removed too.
    double PartialOfTables(const Grid<double>& A, const Grid<double>& B, bool withR) {
        Grid<double> C(c, p + 1), rA(c, A.cols), rB(c, B.cols);
        int used = 0;
        for (int k = 0; k < p + withR; k++) {
            if (k < p && selected[k] != 1) continue;
            for (int i = 0; i < c; i++) C[i][used] = k < p ? Of('T').m[i][k] : Of('R').m[i][0];
            used++;
        }
        PlainComponentResiduals(c, A.cols, used, A.cells, C.cells, rA.cells, 2, in.overfit);
        PlainComponentResiduals(c, B.cols, used, B.cells, C.cells, rB.cells, 2, in.overfit);
        return Coefficient(rA, rB);
    }

    /// "AB", or "AB.T" and "AB.TR": partial.
    double Statistic(const std::string& name) {
        const char a = name[0], b = name[1];
        if (name.size() == 2) return Pair(a, b);
        if constexpr (sizeof(Real) == sizeof(double))
            if (!byResemblance) return PartialOfTables(Of(a).m, Of(b).m, name.ends_with("R"));
        const double ab = Pair(a, b), ac = Pair(a, 'T'), bc = Pair(b, 'T');
        return held ? double(PartialCorrelation(float(ab), float(ac), float(bc)))
                    : PartialCorrelation(ab, ac, bc);
    }

    double Rate(const Selected& subset, const std::string& statistics) {
        for (const char letter : {'T', 'X', 'S', 'R'}) letters.erase(letter);
        selected = subset;
        std::istringstream names(statistics);
        Real value = 1;
        for (std::string name; names >> name;) value *= Real(Statistic(name));
        return double(value);
    }
};

/// What is rated, products of two with a blank between.
const std::map<int, std::string> kStatistics = {
    {1, "XE"},     {9, "XE.T"},   {10, "TE"}, {11, "PX"},    {12, "PX.T"}, {13, "PT"},
    {14, "PT TE"}, {15, "PX XE"}, {16, "RE"}, {17, "XE.TR"}, {18, "XZ"},   {19, "TZ"},
    {20, "XZ.T"},  {21, "XZ"},    {22, "TZ"}, {23, "XZ.T"},  {24, "SE"}};

template <class Real>
auto Rating(const RankingCase& in) {
    const auto ranking = std::make_shared<Ranking<Real>>(in);
    return [ranking, statistics = kStatistics.at(in.criterion)](const Selected& selected) {
        return ranking->Rate(selected, statistics);
    };
}

}  // namespace

std::function<double(const Selected&)> PlainRanking(const RankingCase& in) {
    if (std::set{1, 10, 14, 15}.contains(in.criterion)) return Rating<float>(in);
    return Rating<double>(in);
}
