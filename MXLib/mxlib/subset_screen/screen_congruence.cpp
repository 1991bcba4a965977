#include <algorithm>
#include <cmath>
#include <utility>

#include "mxlib/singular_values.h"
#include "mxlib/subset_screen/closed_form.h"
#include "mxlib/subset_screen/stretch_walk.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/column_products.h"
#include "mxlibRes/congruence.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/standardisation.h"

namespace {

constexpr double kNoVariation = 1e-30;

/// Columns of both sides as the congruence takes them, in double precision, and their products.
struct Columns {
    int c, p, q;
    bool isRatable;           ///< no missing value, and b varies
    ScopedMatrix<double> x;   ///< c x p
    ScopedMatrix<double> y;   ///< c x q
    ScopedMatrix<double> xy;  ///< p x q
};

/// Centred, and `standardised` for Procrustes.
template <class Real>
bool TakeColumns(int c, int p, ConstMatrix<Real> a, bool standardised, Matrix<double> columns) {
    ScopedMatrix<Real> centred(c, p);
    CenterColsMV(c, p, a, centred);
    if (standardised) GowerStandardizationCols(c, p, centred);
    double squares = 0.0;
    for (int i = 0; i < c; i++)
        for (int k = 0; k < p; k++) {
            columns[i][k] = static_cast<double>(centred[i][k]);
            squares += columns[i][k] * columns[i][k];
        }
    return !HasMissing<Real>(c, p, a) && !HasMissing<Real>(c, p, centred) &&
           squares > kNoVariation && std::isfinite(squares);
}

template <class Real>
Columns MakeColumns(int measure, const ScreenedTraits<Real>& traits, int q, ConstMatrix<Real> b) {
    const int c = traits.c;
    const int p = traits.p;
    Columns columns{c,
                    p,
                    q,
                    c > 2 && q > 0,
                    ScopedMatrix<double>(c, p),
                    ScopedMatrix<double>(c, q),
                    ScopedMatrix<double>(p, q)};
    columns.isRatable = columns.isRatable && TakeColumns(c, p, traits.values, false, columns.x) &&
                        TakeColumns(c, q, b, measure == kProcrustes, columns.y);
    if (columns.isRatable) ColumnProducts(c, p, columns.x, q, columns.y, columns.xy, false);
    return columns;
}

double SumOfSquares(int p, const double* x) {
    double sum = 0.0;
    for (int k = 0; k < p; k++) sum += x[k] * x[k];
    return sum;
}

/// Sum of squares of the products between all objects, of c x q.
double SumOfSquaredProducts(int c, int q, ConstMatrix<double> y) {
    double sum = 0.0;
    if (q <= c) {
        ScopedMatrix<double> products(q, q);
        ColumnProducts(c, q, y, q, y, products, false);
        for (int i = 0; i < q; i++) sum += SumOfSquares(q, products[i]);
        return sum;
    }
    for (int i = 0; i < c; i++)
        for (int j = 0; j < c; j++) {
            double product = 0.0;
            for (int k = 0; k < q; k++) product += y[i][k] * y[j][k];
            sum += product * product;
        }
    return sum;
}

double NarrowingError(bool isNarrowed) {
    return isNarrowed ? kAmple * 0x1p-24 : 0.0;
}

/// RV: trace(x x' y y') is the sum over the members of the squared lengths of y'x, and the squared
/// norm of x x' the sum over their pairs of the squared products of their columns. The rated value
/// has x x' and y y' with a relative error of gamma in each cell, hence gamma trace(x x') in all,
/// and trace(x x') is at most the root of the rank times the norm.
template <class Real>
std::unique_ptr<SubsetScreen> ScreenRV(const Columns& columns, const ScreenedTraits<Real>& traits,
                                       bool isNarrowed) {
    const int p = columns.p;
    const double norm = std::sqrt(SumOfSquaredProducts(columns.c, columns.q, columns.y));
    if (!(norm > kNoVariation)) return nullptr;
    ScopedMatrix<double> products(p, p);
    ColumnProducts(columns.c, p, columns.x, p, columns.x, products, false);
    ClosedForm form{
        p,    1, ScopedMatrix<double>(1, p), ScopedMatrix<double>(p, p), ScopedVector<double>(p),
        true, {}};
    for (int j = 0; j < p; j++) {
        form.linear[0][j] = SumOfSquares(columns.q, columns.xy[j]) / norm;
        for (int k = 0; k < p; k++) form.pairs[j][k] = products[j][k] * products[j][k];
        form.magnitude[j] = products[j][j];
    }
    const double rankOfB = std::min(columns.q, columns.c);
    const double c = columns.c;
    for (int m = 0; m <= traits.mostMembers; m++) {
        const double rank = std::min(m, columns.c);
        const double ofCells = 2.0 * RoundingOf(m, Real()) * std::sqrt(rank) +
                               2.0 * RoundingOf(columns.q + 1, Real()) * std::sqrt(rankOfB);
        const double ofSums = 32.0 * RoundingOf(c * c + c + p + columns.q, double()) *
                              std::sqrt(std::max(rank, 1.0) * rankOfB);
        form.error.push_back(kAmple * (ofCells + ofSums) + NarrowingError(isNarrowed));
    }
    return ScreenByClosedForm(std::move(form), traits.mostMembers, traits.weights);
}

/// The rows of a (p x q, q > p) by p coordinates, in which they have the same lengths and angles
/// (modified Gram-Schmidt).
ScopedMatrix<double> RowsInTheirSpan(int p, int q, Matrix<double> a) {
    ScopedMatrix<double> coordinates(p, p);
    ScopedMatrix<double> axes(p, q);
    for (int i = 0; i < p; i++) {
        double* rest = axes[i];
        std::copy_n(a[i], q, rest);
        for (int k = 0; k < i; k++) {
            double product = 0.0;
            for (int j = 0; j < q; j++) product += axes[k][j] * rest[j];
            coordinates[i][k] = product;
            for (int j = 0; j < q; j++) rest[j] -= product * axes[k][j];
        }
        const double length = coordinates[i][i] = std::sqrt(SumOfSquares(q, rest));
        for (int j = 0; j < q; j++) rest[j] = length > 0.0 ? rest[j] / length : 0.0;
    }
    return coordinates;
}

/// Procrustes: the singular values of y'x for the members' columns of x, over the root of the
/// members' variances. Their sum is at most the root of their number times their squares' sum.
class SingularModel {
  public:
    SingularModel(int p, int coordinates, ScopedMatrix<double> rows, ScopedVector<double> squares,
                  double ofB, std::vector<double> error)
        : coordinates_(coordinates),
          rows_(std::move(rows)),
          squares_(std::move(squares)),
          products_(p),
          greatestRatio_(static_cast<size_t>(p) + 1),
          ofB_(ofB),
          error_(std::move(error)),
          sums_(error_.size()),
          members_(error_.size()),
          singular_(std::max(coordinates, static_cast<int>(error_.size()))),
          room_(3L * std::max(coordinates, static_cast<int>(error_.size()))),
          core_(std::max(coordinates, static_cast<int>(error_.size())),
                std::max(coordinates, static_cast<int>(error_.size()))) {
        for (int k = p - 1; k >= 0; k--) {
            products_[k] = SumOfSquares(coordinates, rows_[k]);
            const double ratio = squares_[k] > kNoVariation ? products_[k] / squares_[k] : 0.0;
            greatestRatio_[static_cast<size_t>(k)] =
                std::max(ratio, greatestRatio_[static_cast<size_t>(k) + 1]);
        }
    }

    double BarOf(int size, double threshold) {
        size_ = size;
        return threshold - error_[static_cast<size_t>(size)];
    }

    void Take(int depth, int trait) {
        const auto at = static_cast<size_t>(depth);
        members_[at] = trait;
        sums_[at + 1] = {sums_[at].squares + squares_[trait],
                         sums_[at].products + products_[trait]};
    }

    void Find(int depth, int from, int to, double bar, char* reaches) {
        const Sums& sums = sums_[static_cast<size_t>(depth)];
        for (int k = from; k < to; k++) {
            const double squares = sums.squares + squares_[k];
            const double most = MostOf((sums.products + products_[k]) / squares);
            members_[static_cast<size_t>(depth)] = k;
            reaches[k - from] =
                !(squares > kNoVariation) || (!(most < bar) && !(Congruence(squares) < bar)) ? 1
                                                                                             : 0;
        }
    }

    /// The products over the squares of any members are at most the greatest of the ratios.
    bool IsHopeless(int depth, int next, int, double bar) const {
        const Sums& sums = sums_[static_cast<size_t>(depth)];
        if (!(sums.squares > kNoVariation)) return false;
        const double ratio =
            std::max(sums.products / sums.squares, greatestRatio_[static_cast<size_t>(next)]);
        return MostOf(ratio) < bar;
    }

  private:
    struct Sums {
        double squares = 0.0;
        double products = 0.0;
    };

    double MostOf(double ratio) const {
        return std::sqrt(std::min(size_, coordinates_) * ratio / ofB_) * (1.0 + 1e-12);
    }

    /// Of the members; infinite where the decomposition fails.
    double Congruence(double squares) {
        const bool isTall = size_ >= coordinates_;
        const int rows = isTall ? size_ : coordinates_;
        const int columns = isTall ? coordinates_ : size_;
        for (int i = 0; i < size_; i++)
            for (int j = 0; j < coordinates_; j++) {
                const double cell = rows_[members_[static_cast<size_t>(i)]][j];
                (isTall ? core_[i][j] : core_[j][i]) = cell;
            }
        if (!SingularValuesAlone(rows, columns, core_, singular_, room_)) return HUGE_VAL;
        double sum = 0.0;
        for (int k = 0; k < columns; k++) sum += singular_[k];
        return sum / std::sqrt(squares * ofB_);
    }

    int coordinates_;
    ScopedMatrix<double> rows_;      ///< p x coordinates: y'x
    ScopedVector<double> squares_;   ///< of the columns of x
    ScopedVector<double> products_;  ///< squares of the rows
    std::vector<double> greatestRatio_;
    double ofB_;
    std::vector<double> error_;
    std::vector<Sums> sums_;
    std::vector<int> members_;
    ScopedVector<double> singular_, room_;
    ScopedMatrix<double> core_;
    int size_ = 0;
};

/// The rated product of the standardised sides, divided by c - 1, has an error of at most
/// gamma(c) times the product of the sides' norms, which is c - 1, in its norm; the sum of its
/// singular values one of the root of its rank times that.
template <class Real>
std::unique_ptr<SubsetScreen> ScreenProcrustes(Columns columns, const ScreenedTraits<Real>& traits,
                                               bool isNarrowed) {
    const int p = columns.p;
    const int coordinates = std::min(p, columns.q);
    std::vector<double> error;
    for (int m = 0; m <= traits.mostMembers; m++) {
        const double rank = std::sqrt(std::max(1, std::min({m, columns.q, columns.c})));
        error.push_back(kAmple * (rank * RoundingOf(2.0 * columns.c + 16, Real()) +
                                  RoundingOf(columns.q + 2, Real())) +
                        1e-10 * rank + NarrowingError(isNarrowed));
    }
    ScopedVector<double> squares(p);
    for (int i = 0; i < columns.c; i++)
        for (int k = 0; k < p; k++) squares[k] += columns.x[i][k] * columns.x[i][k];
    ScopedMatrix<double> rows =
        columns.q > p ? RowsInTheirSpan(p, columns.q, columns.xy) : std::move(columns.xy);
    return std::make_unique<ScreenByModel<SingularModel>>(
        p, traits.mostMembers, traits.weights,
        SingularModel(p, coordinates, std::move(rows), std::move(squares), columns.c - 1.0,
                      std::move(error)));
}

}  // namespace

template <class Real>
std::unique_ptr<SubsetScreen> ScreenCongruence(int measure, const ScreenedTraits<Real>& traits,
                                               int q, ConstMatrix<Real> b, bool isNarrowed) {
    Columns columns = MakeColumns(measure, traits, q, b);
    if (!columns.isRatable) return nullptr;
    if (measure == kRV) return ScreenRV(columns, traits, isNarrowed);
    return ScreenProcrustes(std::move(columns), traits, isNarrowed);
}

template std::unique_ptr<SubsetScreen> ScreenCongruence<float>(int, const ScreenedTraits<float>&,
                                                               int, ConstMatrix<float>, bool);
template std::unique_ptr<SubsetScreen> ScreenCongruence<double>(int, const ScreenedTraits<double>&,
                                                                int, ConstMatrix<double>, bool);
