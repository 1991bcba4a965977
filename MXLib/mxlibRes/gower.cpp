#include "mxlibRes/gower.h"

#include <limits>

#include "mxlibDim/scoped.h"
#include "mxlibRes/ranks.h"

namespace {

/// Range of the present values, the steps in type Step.
template <class Step, class T>
float RangeOfPresent(int n, const T* values) {
    Step highest = std::numeric_limits<Step>::min();
    Step lowest = std::numeric_limits<Step>::max();
    for (int i = 0; i < n; i++) {
        if (IsMissing(values[i])) continue;
        const Step x = static_cast<Step>(values[i]);
        if (x > highest) highest = x;
        if (x < lowest) lowest = x;
    }
    return static_cast<float>(highest - lowest);
}

template <class T, class To>
void TakeColumn(int n, int k, ConstMatrix<T> data, To* column) {
    for (int i = 0; i < n; i++) column[i] = static_cast<To>(data[i][k]);
}

template <class T>
void RankOrdinalColumns(int n, int p, const int* types, Matrix<T> data) {
    ScopedVector<double> column(n);
    for (int k = 0; k < p; k++) {
        if (types[k] != kOrdinalVariable) continue;
        TakeColumn<T, double>(n, k, data, column);
        RankVectorAdjMV(n, column, column);
        for (int i = 0; i < n; i++) data[i][k] = static_cast<T>(column[i]);
    }
}

/// Ranges of the interval and ordinal columns, the steps in type Step.
template <class Step, class T>
void ColumnRanges(int n, int p, const int* types, ConstMatrix<T> data, float* ranges) {
    ScopedVector<Step> column(n);
    for (int k = 0; k < p; k++) {
        if (types[k] != kIntervalVariable && types[k] != kOrdinalVariable) continue;
        TakeColumn<T, Step>(n, k, data, column);
        ranges[k] = RangeOfPresent<Step>(n, column.get());
    }
}

template <class T, class S>
void ComparePairs(int n, int p, const int* types, ConstMatrix<T> data, Matrix<S> similarity,
                  const float* ranges, const float* weights, bool countDoubleAbsences) {
    for (int i = 0; i < n; i++) {
        similarity[i][i] = 1;
        for (int j = i + 1; j < n; j++) {
            double num = 0.0;
            double den = 0.0;
            for (int k = 0; k < p; k++) {
                const float weight = weights != nullptr ? weights[k] : 1.0F;
                double contribution = 0.0;
                if (!GowerPart(types[k], data[i][k], data[j][k], ranges[k], weight,
                               countDoubleAbsences, &contribution))
                    continue;
                num += contribution;
                den += static_cast<double>(weight);
            }
            if (den > 0) similarity[i][j] = static_cast<S>(num / den);
            similarity[j][i] = similarity[i][j];
        }
    }
}

template <class T>
void RankAndCompare(int n, int p, const int* types, Matrix<T> data, Matrix<double> similarity,
                    const float* weights, int countDoubleAbsences) {
    ScopedVector<float> ranges(p);
    RankOrdinalColumns<T>(n, p, types, data);
    ColumnRanges<double, T>(n, p, types, data, ranges);
    ComparePairs<T, double>(n, p, types, data, similarity, ranges, weights,
                            countDoubleAbsences != 0);
}

}  // namespace

float VariableRange(int n, const float* values) {
    return RangeOfPresent<double>(n, values);
}

void GowerMVOpt(int n, int p, const int* types, Matrix<float> data, Matrix<double> similarity,
                const float* /*ranges*/, const float* weights, int countDoubleAbsences) {
    RankAndCompare<float>(n, p, types, data, similarity, weights, countDoubleAbsences);
}
void GowerMVOpt(int n, int p, const int* types, Matrix<double> data, Matrix<double> similarity,
                const float* /*ranges*/, const float* weights, int countDoubleAbsences) {
    RankAndCompare<double>(n, p, types, data, similarity, weights, countDoubleAbsences);
}

void GowerMV(int n, int p, const int* types, ConstMatrix<float> data, Matrix<float> similarity,
             const float* ranges, const float* weights) {
    ScopedVector<int> known(p);
    for (int k = 0; k < p; k++) known[k] = types[k] != kOrdinalVariable ? types[k] : 0;
    ScopedVector<float> computed(ranges == nullptr ? p : 0);
    if (ranges == nullptr) ColumnRanges<float, float>(n, p, known, data, computed);
    ComparePairs<float, float>(n, p, known, data, similarity,
                               ranges != nullptr ? ranges : computed.get(), weights, false);
}
