#include "mxlibRes/distances.h"

#include <cmath>

#include "mxlibDim/scoped.h"
#include "mxlibPar/side_by_side.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/standardisation.h"

namespace {

/// Sums over the columns, ascending, of term(k, x[k], rows[j][k]) for kRows rows at once: the
/// chains of additions run side by side, each in its own order.
template <int kRows, class Sum, class T, class Term>
void SumTerms(int p, const T* x, ConstMatrix<T> rows, Term term, Sum* sums) {
    Sum kept[kRows] = {};
    const T* y[kRows];
    for (int j = 0; j < kRows; j++) y[j] = rows[j];
    for (int k = 0; k < p; k++)
        for (int j = 0; j < kRows; j++) kept[j] += term(k, x[k], y[j][k]);
    for (int j = 0; j < kRows; j++) sums[j] = kept[j];
}

/// Fills the upper half with finish(sum of the terms) and the diagonal with 0.
template <int kAtOnce, class Sum, class T, class Term, class Finish>
void CompareRows(int n, int p, ConstMatrix<T> a, Matrix<Sum> d, Term term, Finish finish) {
    const auto compare = [=](int i, int /*worker*/) {
        d[i][i] = 0;
        int j = i + 1;
        for (; j + kAtOnce <= n; j += kAtOnce)
            SumTerms<kAtOnce, Sum, T>(p, a[i], a + j, term, d[i] + j);
        for (; j < n; j++) SumTerms<1, Sum, T>(p, a[i], a + j, term, d[i] + j);
        for (j = i + 1; j < n; j++) d[i][j] = finish(d[i][j]);
    };
    constexpr double kSmallWork = 1e7;  // some milliseconds
    if (static_cast<double>(n) * n * p > kSmallWork)
        RunSideBySide(n, WorkersFor(n), compare);
    else
        for (int i = 0; i < n; i++) compare(i, 0);
}

constexpr int kRowsAtOnce = 4;  // of complete data: tests in between make it slower than one by one

/// The same over the columns present in both rows.
template <class T, class Term, class Finish>
void ComparePresent(int n, int p, ConstMatrix<T> a, Matrix<double> d, Term term, Finish finish) {
    if (!HasMissing(n, p, a)) {
        CompareRows<kRowsAtOnce, double, T>(n, p, a, d, term, finish);
        return;
    }
    const auto tested = [term](int k, T x, T y) {
        return IsMissing(x) || IsMissing(y) ? 0.0 : term(k, x, y);
    };
    CompareRows<1, double, T>(n, p, a, d, tested, finish);
}

/// A NaN is not 0 or less: it flows on.
template <class T>
T Root(T sum) {
    return sum <= 0 ? T(0) : std::sqrt(sum);
}

template <class T>
void Euclidean(int n, int p, ConstMatrix<T> a, Matrix<double> d) {
    const auto term = [](int, T x, T y) {
        const double difference = static_cast<double>(x - y);
        return difference * difference;
    };
    CompareRows<kRowsAtOnce, double, T>(n, p, a, d, term, Root<double>);
}

template <class T>
void EuclideanMV(int n, int p, ConstMatrix<T> a, Matrix<double> d) {
    const auto term = [](int, T x, T y) {
        const T difference = x - y;
        return static_cast<double>(difference * difference);
    };
    ComparePresent<T>(n, p, a, d, term, Root<double>);
}

template <class T>
void AbsoluteMV(int n, int p, ConstMatrix<T> a, Matrix<double> d) {
    const auto term = [](int, T x, T y) { return std::fabs(static_cast<double>(x - y)); };
    ComparePresent<T>(n, p, a, d, term, [](double sum) { return sum; });
}

/// Euclidean distances of the rows brought to unit length.
template <class T>
void ChordOfUnitRows(int n, int p, ConstMatrix<T> a, Matrix<double> d) {
    ScopedMatrix<T> unit(n, p);
    NormalizeRowsMV(n, p, a, unit);
    EuclideanMV<T>(n, p, unit, d);
}

template <class T>
void Nominal(int n, int p, ConstMatrix<T> a, Matrix<double> d, int option) {
    switch (option) {
        case kEuclidean:
        case kRelativeEuclidean:
            EuclideanMV<T>(n, p, a, d);
            break;
        case kAbsolute:
        case kRelativeAbsolute:
            AbsoluteMV<T>(n, p, a, d);
            break;
        case kChord:
            ChordOfUnitRows<T>(n, p, a, d);
            break;
        default:
            break;
    }
}

}  // namespace

void EucliDist(int n, int p, ConstMatrix<float> a, Matrix<double> d) {
    Euclidean<float>(n, p, a, d);
}
void EucliDist(int n, int p, ConstMatrix<double> a, Matrix<double> d) {
    Euclidean<double>(n, p, a, d);
}

void EucliDistMV(int n, int p, ConstMatrix<float> a, Matrix<double> d) {
    EuclideanMV<float>(n, p, a, d);
}
void EucliDistMV(int n, int p, ConstMatrix<double> a, Matrix<double> d) {
    EuclideanMV<double>(n, p, a, d);
}

void EucliDistMVSelect(int n, int p, ConstMatrix<float> a, Matrix<float> d, const int* mask) {
    const auto term = [mask](int k, float x, float y) {
        const float difference = x - y;
        return mask[k] == 0 || IsMissing(x) || IsMissing(y) ? 0.0F : difference * difference;
    };
    CompareRows<1, float, float>(n, p, a, d, term, Root<float>);
}

void AbsValFunctionMV(int n, int p, ConstMatrix<float> a, Matrix<double> d) {
    AbsoluteMV<float>(n, p, a, d);
}
void AbsValFunctionMV(int n, int p, ConstMatrix<double> a, Matrix<double> d) {
    AbsoluteMV<double>(n, p, a, d);
}

void ChordDistMV(int n, int p, ConstMatrix<double> a, Matrix<double> d) {
    if (!HasMissing(n, p, a)) {
        ChordOfUnitRows<double>(n, p, a, d);
        return;
    }
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++) d[i][j] = ChordDistSq2VecMV(p, a[i], a[j]);
}

double ChordDistSq2VecMV(int p, const double* a, const double* b) {
    double sumA = 0.0;
    double sumB = 0.0;
    for (int k = 0; k < p; k++) {
        if (IsMissing(a[k]) || IsMissing(b[k])) continue;
        sumA += a[k] * a[k];
        sumB += b[k] * b[k];
    }
    const double normA = std::sqrt(sumA);
    const double normB = std::sqrt(sumB);
    double sum = 0.0;
    for (int k = 0; k < p; k++) {
        if (IsMissing(a[k]) || IsMissing(b[k])) continue;
        const double difference = a[k] / normA - b[k] / normB;
        sum += difference * difference;
    }
    return sum;
}

double SumAbsDeviations(int n, const double* a, const double* b, bool squared) {
    double totalA = 0.0;
    double totalB = 0.0;
    for (int i = 0; i < n; i++) {
        totalA += a[i];
        totalB += b[i];
    }
    if (!(totalA > 0) || !(totalB > 0)) return 0.0;
    double sum = 0.0;
    for (int i = 0; i < n; i++) {
        const double difference = a[i] / totalA - b[i] / totalB;
        sum += squared ? difference * difference : std::fabs(difference);
    }
    return 0.5 * sum;
}

void NominalReseNonHier(int n, int p, ConstMatrix<float> a, Matrix<double> d, int option) {
    Nominal<float>(n, p, a, d, option);
}
void NominalReseNonHier(int n, int p, ConstMatrix<double> a, Matrix<double> d, int option) {
    Nominal<double>(n, p, a, d, option);
}
