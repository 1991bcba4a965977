#include "reference/plain_ranking.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <map>
#include <memory>
#include <numeric>
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

/// A table of communities by its letter, and under the matrix correlation its resemblances.
template <class Real>
struct Letter {
    Grid<Real> m;
    Grid<double> d;
};

template <class Real>
struct Fixed {
    RankingCase in;
    int c, n, p, K;
    bool held;  ///< correlations are held in single precision
    Grid<Real> W, WUnit;
    Grid<float> B;
    std::vector<std::vector<std::vector<float>>> cube;  ///< similarities of OTUs by trait
    std::map<char, Letter<Real>> letters;               ///< those that no subset changes
};

bool ByResemblance(const RankingCase& in) {
    return in.measure == 1 || in.criterion == 14 || in.criterion == 15;
}

template <class Real>
Letter<Real> MakeLetter(const RankingCase& in, Grid<Real> m, int option) {
    Grid<double> d(m.rows, m.rows);
    if (ByResemblance(in)) NominalReseNonHier(m.rows, m.cols, m.cells, d.cells, option);
    return {std::move(m), std::move(d)};
}

constexpr int kEuclidean = 6;

template <class Real>
Letter<Real> Sites(const RankingCase& in, int c) {
    const int q = c > 0 ? int(in.E[0].size()) : 0;
    Grid<Real> E(in.E, c, q);
    const bool mixed =
        in.kindOfE == 3 || (in.kindOfE == 5 && std::ranges::count(in.variableTypes, 2) > 0);
    Grid<double> total(c, c), count(c, c);
    for (int k = 0; k < q && in.kindOfE != 1; k++) {
        std::vector<float> x = Column(in.E, k);
        if (!mixed) {
            std::vector<double> present;
            std::ranges::copy_if(x, std::back_inserter(present),
                                 [](float y) { return !IsMissing(y); });
            const double mean =
                std::accumulate(present.begin(), present.end(), 0.0) / double(present.size());
            double squares = 0;
            for (const double y : present) squares += (y - mean) * (y - mean);
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

template <class Real>
Letter<Real> Phylogeny(const Fixed<Real>& f) {
    Grid<Real> F(f.n, f.n);
    for (int i = 0; i < f.n; i++) std::copy_n(f.in.F[i].begin(), f.n, F[i]);
    const int taxa = int(std::set<int>(f.in.taxa.begin(), f.in.taxa.end()).size());
    Grid<Real> Q(f.n, taxa);
    PlainFuzzyBelonging(f.n, taxa, F.cells, f.in.taxa.data(), Q.cells, !f.in.similarF);
    return MakeLetter(f.in, Product(f.W, Q), f.in.resemblance);
}

/// By joint performances as odds (criteria 18 to 20) or by conditional performances (21 to 23).
Letter<double> Smoothed(const Fixed<double>& f) {
    const bool odds = f.in.criterion <= 20;
    Grid<double> Z(f.c, f.n), M(f.n, f.n), shares(f.c, f.n);
    for (int i = 0; i < f.c; i++) std::copy_n(f.W[i], f.n, shares[i]);
    UnitSumRowsAdjMV(f.c, f.n, shares.cells, shares.cells);
    PlainConditionalProb(f.c, f.n, f.W.cells, M.cells, odds ? 2 : 1, odds);
    if (f.in.target) return MakeLetter(f.in, Product(shares, M), f.in.resemblance);
    PlainBealsWithoutTarget(f.c, f.n, f.W.cells, f.W.cells, Z.cells, odds ? 2 : 1, odds);
    return MakeLetter(f.in, std::move(Z), f.in.resemblance);
}

template <class Real>
Fixed<Real> Prepare(const RankingCase& in) {
    const bool held = std::set{9, 14, 15, 17, 18, 19, 20, 21, 22, 23}.contains(in.criterion);
    const int c = int(in.W.size()), n = int(in.B.size()), p = int(in.B[0].size());
    const int K = int(std::set<int>(in.types.begin(), in.types.end()).size());
    Fixed<Real> f{in,           c,  n, p, K, held, Grid<Real>(in.W, c, n), Grid<Real>(in.W, c, n),
                  {in.B, n, p}, {}, {}};
    UnitSumRowsAdjMV(c, n, f.WUnit.cells, f.W.cells);
    if (in.unitTotals) UnitSumRowsAdjMV(c, n, f.W.cells, f.W.cells);
    f.cube.assign(n, std::vector<std::vector<float>>(n, std::vector<float>(p)));
    for (int k = 0; k < p; k++) {
        const Grid<double> s =
            Similarities(Column(in.B, k), in.traitTypes[k], in.doubleAbsences, true);
        for (int i = 0; i < n; i++)
            for (int j = 0; j < n; j++)
                f.cube[i][j][k] = s[i][j] == -999 ? -999 : float(s[i][j] * double(in.weights[k]));
    }
    if (in.criterion < 11 || in.criterion > 13) f.letters.emplace('E', Sites<Real>(in, c));
    if (in.criterion >= 11 && in.criterion <= 15) f.letters.emplace('P', Phylogeny(f));
    if constexpr (sizeof(Real) == sizeof(double))
        if (in.criterion >= 18 && in.criterion <= 23) f.letters.emplace('Z', Smoothed(f));
    return f;
}

template <class Real>
struct Subset {
    const Fixed<Real>& f;
    const Selected& selected;
    std::map<char, Letter<Real>> letters = {};
};

Grid<float> SimilaritiesOfOTUs(const auto& s) {
    const auto& f = s.f;
    Grid<float> S(f.n, f.n);
    for (int i = 0; i < f.n; i++)
        for (int j = i; j < f.n; j++) {
            double sum = 0, count = 0;
            for (int k = 0; k < f.p; k++)
                if (s.selected[k] == 1 && f.cube[i][j][k] != -999)
                    sum += double(f.cube[i][j][k]), count++;
            S[i][j] = S[j][i] = i == j ? 1 : count > 0 ? float(sum) / float(count) : -999;
        }
    return S;
}

Grid<float> Belonging(const auto& s) {
    const auto& f = s.f;
    const std::set<int> labels(f.in.types.begin(), f.in.types.end());
    Grid<float> U(f.n, f.K);
    for (int i = 0; i < f.n; i++)
        U[i][std::distance(labels.begin(), labels.find(f.in.types[i]))] = 1;
    if (f.in.fuzzy)
        PlainFuzzyBelonging(f.n, f.K, SimilaritiesOfOTUs(s).cells, f.in.types.data(), U.cells,
                            false);
    return U;
}

template <class Real>
const Letter<Real>& Of(char letter, Subset<Real>* s);

/// Between the first K OTUs and types.
template <class Real>
Grid<Real> DarkDiversity(Subset<Real>* s) {
    const Fixed<Real>& f = s->f;
    const Grid<Real>& X = Of('X', s).m;
    Grid<Real> dark(f.c, 1);
    for (int i = 0; i < f.c; i++) {
        Real totalW = 0, totalX = 0;
        for (int k = 0; k < f.K; k++) totalW += f.W[i][k], totalX += X[i][k];
        for (int k = 0; k < f.K && totalW > 0 && totalX > 0; k++)
            dark[i][0] += std::fabs(f.W[i][k] / totalW - X[i][k] / totalX) / 2;
    }
    return dark;
}

template <class Real>
Letter<Real> MakeOfSubset(char letter, Subset<Real>* s) {
    const Fixed<Real>& f = s->f;
    if (letter == 'T') {
        Grid<Real> T = Product(f.WUnit, f.B);
        for (int i = 0; i < f.c; i++)
            for (int k = 0; k < f.p; k++) T[i][k] *= Real(s->selected[k] == 1);
        NormalizeCols(f.c, f.p, T.cells, T.cells);
        return MakeLetter(f.in, std::move(T), f.in.criterion >= 16 ? kEuclidean : f.in.resemblance);
    }
    if (letter == 'X') return MakeLetter(f.in, Product(f.W, Belonging(*s)), f.in.resemblance);
    if (letter == 'S') return MakeLetter(f.in, DarkDiversity(s), kEuclidean);
    const Grid<float> S = SimilaritiesOfOTUs(*s);
    Grid<Real> R(f.c, 1);
    for (int i = 0; i < f.c; i++) {
        const std::vector<double> w(f.W[i], f.W[i] + f.K);
        R[i][0] = Real(PlainRao<float>(f.K, w.data(), S.cells, false, f.in.squareRoots));
    }
    return MakeLetter(f.in, std::move(R), 8);
}

template <class Real>
const Letter<Real>& Of(char letter, Subset<Real>* s) {
    const auto fixed = s->f.letters.find(letter);
    if (fixed != s->f.letters.end()) return fixed->second;
    if (!s->letters.contains(letter)) {
        Letter<Real> made = MakeOfSubset(letter, s);
        s->letters.emplace(letter, std::move(made));
    }
    return s->letters.at(letter);
}

double Coefficient(const RankingCase& in, const auto& a, const auto& b) {
    if (in.measure == 2) return double(PlainProcrustes(a.rows, a.cols, b.cols, a.cells, b.cells));
    return PlainRV(a.rows, a.cols, b.cols, a.cells, b.cells);
}

double Pair(char a, char b, auto* s) {
    const auto& A = Of(a, s);
    const auto& B = Of(b, s);
    double r = 0;
    if (!ByResemblance(s->f.in))
        r = Coefficient(s->f.in, A.m, B.m);
    else if (s->f.c == 2 && a != 'R' && a != 'S')
        r = SmallSampleCongruence(A.d[0][1], B.d[0][1]);
    else
        r = MatrixCorr(s->f.c, A.d.cells, B.d.cells);
    return s->f.held ? double(float(r)) : r;
}

/// The columns of T in use, then R if it is removed too.
double PartialOfTables(char a, char b, bool withR, Subset<double>* s) {
    const Fixed<double>& f = s->f;
    const Grid<double>& A = Of(a, s).m;
    const Grid<double>& B = Of(b, s).m;
    const Grid<double>& T = Of('T', s).m;
    Grid<double> C(f.c, f.p + 1), rA(f.c, A.cols), rB(f.c, B.cols);
    int used = 0;
    for (int k = 0; k < f.p; k++) {
        if (s->selected[k] != 1) continue;
        for (int i = 0; i < f.c; i++) C[i][used] = T[i][k];
        used++;
    }
    for (int i = 0; i < f.c && withR; i++) C[i][used] = Of('R', s).m[i][0];
    if (withR) used++;
    PlainComponentResiduals(f.c, A.cols, used, A.cells, C.cells, rA.cells, 2, f.in.overfit);
    PlainComponentResiduals(f.c, B.cols, used, B.cells, C.cells, rB.cells, 2, f.in.overfit);
    return Coefficient(f.in, rA, rB);
}

/// "AB", or "AB.T" and "AB.TR": partial.
template <class Real>
double Statistic(const std::string& name, Subset<Real>* s) {
    const char a = name[0], b = name[1];
    if (name.size() == 2) return Pair(a, b, s);
    if constexpr (sizeof(Real) == sizeof(double))
        if (!ByResemblance(s->f.in)) return PartialOfTables(a, b, name.ends_with("R"), s);
    const double ab = Pair(a, b, s), ac = Pair(a, 'T', s), bc = Pair(b, 'T', s);
    return s->f.held ? double(PartialCorrelation(float(ab), float(ac), float(bc)))
                     : PartialCorrelation(ab, ac, bc);
}

/// What is rated, products of two with a blank between.
const std::map<int, std::string> kStatistics = {
    {1, "XE"},     {9, "XE.T"},   {10, "TE"}, {11, "PX"},    {12, "PX.T"}, {13, "PT"},
    {14, "PT TE"}, {15, "PX XE"}, {16, "RE"}, {17, "XE.TR"}, {18, "XZ"},   {19, "TZ"},
    {20, "XZ.T"},  {21, "XZ"},    {22, "TZ"}, {23, "XZ.T"},  {24, "SE"}};

template <class Real>
auto Rating(const RankingCase& in) {
    const auto fixed = std::make_shared<Fixed<Real>>(Prepare<Real>(in));
    return [fixed, statistics = kStatistics.at(in.criterion)](const Selected& selected) {
        Subset<Real> subset{*fixed, selected};
        std::istringstream names(statistics);
        Real value = 1;
        for (std::string name; names >> name;) value *= Real(Statistic(name, &subset));
        return double(value);
    };
}

}  // namespace

std::function<double(const Selected&)> PlainRanking(const RankingCase& in) {
    if (std::set{1, 10, 14, 15}.contains(in.criterion)) return Rating<float>(in);
    return Rating<double>(in);
}
