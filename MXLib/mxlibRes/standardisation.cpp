#include "mxlibRes/standardisation.h"

#include <cfloat>
#include <cmath>
#include <type_traits>
#include <utility>

#include "mxlibRes/missing.h"

// Every scaling works on a line: a row, which is a plain pointer, or a column of a matrix. Sums run
// in double over squares formed in the element type; divisions in double are rounded once, to the
// element type of the result.

namespace {

template <class T>
struct Column {
    T* const* rows;
    int j;
    T& operator[](int i) const { return rows[i][j]; }
};

template <class Line>
using Element = std::remove_cv_t<std::remove_reference_t<decltype(std::declval<Line>()[0])>>;

template <class Line>
double MeanOfPresent(int n, Line x) {
    double sum = 0;
    int m = 0;
    for (int k = 0; k < n; k++)
        if (!IsMissing(x[k])) {
            sum += static_cast<double>(x[k]);
            m++;
        }
    return sum / m;
}

template <class Line>
double SquaresOfPresent(int n, Line x) {
    double squares = 0;
    for (int k = 0; k < n; k++)
        if (!IsMissing(x[k])) squares += static_cast<double>(x[k] * x[k]);
    return squares;
}

/// The scale that belongs to a variance or a sum of squares; 1 when it is not above 0.
double ScaleOf(double squares) {
    return squares > 0 ? std::sqrt(squares) : 1.0;
}

template <class Source, class Result>
void DivideLine(int n, double scale, Source x, Result y) {
    using T = Element<Result>;
    for (int k = 0; k < n; k++)
        y[k] = IsMissing(x[k]) ? T{kMissing} : static_cast<T>(static_cast<double>(x[k]) / scale);
}

/// (x - mean) / scale, rounded to the element type of the source.
template <class Source, class Result>
void CenterLine(int n, double scale, Source x, Result y) {
    const double mean = MeanOfPresent(n, x);
    for (int k = 0; k < n; k++) {
        const double z = (static_cast<double>(x[k]) - mean) / scale;
        y[k] = IsMissing(x[k]) ? Element<Result>{kMissing} : static_cast<Element<Source>>(z);
    }
}

/// To Z scores, over deviations in the element type; the variance has the whole length of the line
/// for its divisor.
template <class Source, class Result>
void ZScoreLine(int n, Source x, Result y) {
    using T = Element<Source>;
    const double mean = MeanOfPresent(n, x);
    const auto deviation = [&](int k) { return static_cast<T>(static_cast<double>(x[k]) - mean); };
    double squares = 0;
    for (int k = 0; k < n; k++)
        if (!IsMissing(x[k])) squares += static_cast<double>(deviation(k) * deviation(k));
    const double scale = ScaleOf(squares / n);
    for (int k = 0; k < n; k++)
        y[k] = IsMissing(x[k]) ? T{kMissing}
                               : static_cast<T>(static_cast<double>(deviation(k)) / scale);
}

template <class Source, class Result>
void UnitLengthLine(int n, Source x, Result y) {
    DivideLine(n, ScaleOf(SquaresOfPresent(n, x)), x, y);
}

template <class T>
void CenterRows(int n, int p, ConstMatrix<T> source, Matrix<T> result) {
    for (int i = 0; i < n; i++) CenterLine(p, 1.0, source[i], result[i]);
}

template <class T>
void CenterRowsCov(int n, int p, ConstMatrix<T> source, Matrix<T> result) {
    for (int i = 0; i < n; i++) {
        int m = 0;
        for (int j = 0; j < p; j++) m += !IsMissing(source[i][j]);
        CenterLine(p, std::sqrt(m - 1.0), source[i], result[i]);
    }
}

template <class S, class T>
void CenterCols(int n, int p, ConstMatrix<S> source, Matrix<T> result) {
    for (int j = 0; j < p; j++)
        CenterLine(n, 1.0, Column<const S>{source, j}, Column<T>{result, j});
}

template <class T>
void NormalizeRows(int n, int p, ConstMatrix<T> source, Matrix<T> result) {
    for (int i = 0; i < n; i++) UnitLengthLine(p, source[i], result[i]);
}

template <class T>
void NormalizeColsUntested(int n, int p, ConstMatrix<T> source, Matrix<T> result) {
    for (int j = 0; j < p; j++) {
        double squares = 0;
        for (int i = 0; i < n; i++) squares += static_cast<double>(source[i][j] * source[i][j]);
        const double scale = ScaleOf(squares);
        for (int i = 0; i < n; i++)
            result[i][j] = static_cast<T>(static_cast<double>(source[i][j]) / scale);
    }
}

template <class T>
void ZStandardizeRows(int n, int p, ConstMatrix<T> source, Matrix<T> result) {
    for (int i = 0; i < n; i++) ZScoreLine(p, source[i], result[i]);
}

template <class T>
void ZStandardizeRowsBy(int n, int p, const double* mean, const double* sd, ConstMatrix<T> source,
                        Matrix<T> result) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < p; j++)
            if (!IsMissing(source[i][j]))
                result[i][j] =
                    static_cast<T>((static_cast<double>(source[i][j]) - mean[i]) / sd[i]);
}

template <class T>
void CorrelationScale(int n, int p, Matrix<T> result, ConstMatrix<T> source) {
    for (int j = 0; j < p; j++) {
        const double mean = MeanOfPresent(n, Column<const T>{source, j});
        double squares = 0;
        for (int i = 0; i < n; i++) {
            const double deviation = static_cast<double>(source[i][j]) - mean;
            if (!IsMissing(source[i][j])) squares += deviation * deviation;
        }
        const double scale = ScaleOf(squares);
        for (int i = 0; i < n; i++)
            if (!IsMissing(source[i][j]))
                // through float in both forms: ties of single precision stay ties
                result[i][j] =
                    static_cast<float>((static_cast<double>(source[i][j]) - mean) / scale);
    }
}

template <class T>
void UnitSumRows(int n, int p, Matrix<T> result, ConstMatrix<T> source) {
    for (int i = 0; i < n; i++) {
        T total = 0;
        for (int j = 0; j < p; j++)
            if (!IsMissing(source[i][j])) total += source[i][j];
        if (total == 0) total = 1;
        for (int j = 0; j < p; j++)
            result[i][j] = IsMissing(source[i][j]) ? T{kMissing} : source[i][j] / total;
    }
}

template <class T>
void GowerScaleRows(int n, int p, Matrix<T> a) {
    double variances = 0;
    for (int i = 0; i < n; i++) variances += SquaresOfPresent(p, a[i]) / (p - 1);
    for (int i = 0; i < n; i++) DivideLine(p, std::sqrt(variances), a[i], a[i]);
}

template <class T>
void GowerScaleCols(int n, int p, Matrix<T> a) {
    double variances = 0;
    for (int j = 0; j < p; j++) variances += SquaresOfPresent(n, Column<T>{a, j}) / (n - 1);
    for (int i = 0; i < n; i++) DivideLine(p, std::sqrt(variances), a[i], a[i]);
}

}  // namespace

void CenterRowsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    CenterRows(n, p, source, result);
}
void CenterRowsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result) {
    CenterRows(n, p, source, result);
}
void CenterRowsCovMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    CenterRowsCov(n, p, source, result);
}
void CenterRowsCovMV(int n, int p, ConstMatrix<double> source, Matrix<double> result) {
    CenterRowsCov(n, p, source, result);
}
void CenterColsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    CenterCols(n, p, source, result);
}
void CenterColsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result) {
    CenterCols(n, p, source, result);
}
void CenterColsMV(int n, int p, ConstMatrix<float> source, Matrix<double> result) {
    CenterCols(n, p, source, result);
}

void NormalizeRowsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    NormalizeRows(n, p, source, result);
}
void NormalizeRowsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result) {
    NormalizeRows(n, p, source, result);
}
void NormalizeCols(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    NormalizeColsUntested(n, p, source, result);
}
void NormalizeCols(int n, int p, ConstMatrix<double> source, Matrix<double> result) {
    NormalizeColsUntested(n, p, source, result);
}
void NormalizeColsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    for (int j = 0; j < p; j++)
        UnitLengthLine(n, Column<const float>{source, j}, Column<float>{result, j});
}

void ZStandardizationRowsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    ZStandardizeRows(n, p, source, result);
}
void ZStandardizationRowsMV(int n, int p, ConstMatrix<double> source, Matrix<double> result) {
    ZStandardizeRows(n, p, source, result);
}
void ZStandardizationColsMV(int n, int p, ConstMatrix<float> source, Matrix<float> result) {
    for (int j = 0; j < p; j++)
        ZScoreLine(n, Column<const float>{source, j}, Column<float>{result, j});
}
void ZStandardizationRowsMV(int n, int p, const double* mean, const double* sd,
                            ConstMatrix<float> source, Matrix<float> result) {
    ZStandardizeRowsBy(n, p, mean, sd, source, result);
}
void ZStandardizationRowsMV(int n, int p, const double* mean, const double* sd,
                            ConstMatrix<double> source, Matrix<double> result) {
    ZStandardizeRowsBy(n, p, mean, sd, source, result);
}

void CorrAdj(int n, int p, Matrix<float> result, ConstMatrix<float> source) {
    CorrelationScale(n, p, result, source);
}
void CorrAdj(int n, int p, Matrix<double> result, ConstMatrix<double> source) {
    CorrelationScale(n, p, result, source);
}

void UnitSumRowsAdjMV(int n, int p, Matrix<float> result, ConstMatrix<float> source) {
    UnitSumRows(n, p, result, source);
}
void UnitSumRowsAdjMV(int n, int p, Matrix<double> result, ConstMatrix<double> source) {
    UnitSumRows(n, p, result, source);
}

void RangeColsAdjMV(int n, int p, Matrix<float> result, ConstMatrix<float> source) {
    for (int j = 0; j < p; j++) {
        float min = FLT_MAX;
        float max = -FLT_MAX;
        for (int i = 0; i < n; i++) {
            if (IsMissing(source[i][j])) continue;
            if (source[i][j] < min) min = source[i][j];
            if (source[i][j] > max) max = source[i][j];
        }
        const float range = max == min ? 1.0F : max - min;
        for (int i = 0; i < n; i++)
            result[i][j] = IsMissing(source[i][j]) ? float{kMissing} : (source[i][j] - min) / range;
    }
}

void GowerStandardizationRows(int n, int p, Matrix<float> a) {
    GowerScaleRows(n, p, a);
}
void GowerStandardizationRows(int n, int p, Matrix<double> a) {
    GowerScaleRows(n, p, a);
}
void GowerStandardizationCols(int n, int p, Matrix<float> a) {
    GowerScaleCols(n, p, a);
}
void GowerStandardizationCols(int n, int p, Matrix<double> a) {
    GowerScaleCols(n, p, a);
}
