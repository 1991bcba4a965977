#include "mxlibRes/rao.h"

#include <cmath>
#include <limits>

#include "mxlibDim/scoped.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/totals.h"

namespace {

/// The OTUs of one community that can add to the sum, and their proportions.
struct Presences {
    int count;
    int* otus;
    double* proportions;
};

double TotalOfPresent(int n, const double* p) {
    double total = 0.0;
    for (int i = 0; i < n; i++)
        if (!IsMissing(p[i])) total += p[i];
    return total;
}

double TotalOfAll(int n, const double* p) {
    double total = 0.0;
    for (int i = 0; i < n; i++) total += p[i];
    return total;
}

/// Whether no cell of the upper half, missing ones aside, has a difference that is not finite.
template <class M>
bool FiniteDifferences(int n, ConstMatrix<M> m, bool dissimilarity, bool squareRoot) {
    using Limits = std::numeric_limits<M>;
    const M lowest = squareRoot && dissimilarity ? M(0) : Limits::lowest();
    const M highest = squareRoot && !dissimilarity ? M(1) : Limits::max();
    for (int i = 0; i < n; i++) {
        const M* row = m[i];
        int odd = 0;
        for (int j = i; j < n; j++) {
            const int within =
                static_cast<int>(row[j] >= lowest) & static_cast<int>(row[j] <= highest);
            odd |= 1 - (within | static_cast<int>(IsMissing(row[j])));
        }
        if (odd != 0) return false;
    }
    return true;
}

/// An OTU of performance 0 adds exactly nothing, so that it is left out, but 0 times a difference
/// (or a proportion) that is not finite is no number, so that then all stay in.
void ListPresences(int n, const double* p, double total, bool finiteDifferences,
                   Presences* present) {
    const bool leaveOut = finiteDifferences && std::isfinite(total);
    present->count = 0;
    for (int i = 0; i < n; i++) {
        if (IsMissing(p[i]) || (leaveOut && p[i] == 0)) continue;
        present->otus[present->count] = i;
        present->proportions[present->count] = p[i] / total;
        present->count++;
    }
}

/// Without a matrix: the chance that two OTUs differ.
double SumOfUnlike(const Presences& present) {
    double sum = 0.0;
    for (int a = 0; a < present.count; a++)
        for (int b = 0; b < present.count; b++)
            if (a != b) sum += present.proportions[a] * present.proportions[b];
    return sum;
}

template <class M, class Difference>
double SumOverPairs(const Presences& present, ConstMatrix<M> m, Difference difference) {
    double sum = 0.0;
    for (int a = 0; a < present.count; a++) {
        const M* row = m[present.otus[a]];
        const double proportion = present.proportions[a];
        for (int b = 0; b < present.count; b++) {
            const M x = row[present.otus[b]];
            if (IsMissing(x)) continue;
            sum += proportion * present.proportions[b] * difference(x);
        }
    }
    return sum;
}

/// 1 - m is taken in the precision of the matrix.
template <class M>
double Entropy(const Presences& present, ConstMatrix<M> m, bool dissimilarity, bool squareRoot) {
    const auto widened = [](M x) { return static_cast<double>(x); };
    const auto complement = [](M x) { return static_cast<double>(M(1) - x); };
    if (dissimilarity)
        return squareRoot ? SumOverPairs<M>(present, m, [=](M x) { return std::sqrt(widened(x)); })
                          : SumOverPairs<M>(present, m, widened);
    return squareRoot ? SumOverPairs<M>(present, m, [=](M x) { return std::sqrt(complement(x)); })
                      : SumOverPairs<M>(present, m, complement);
}

template <class M>
void EntropyOfRows(int c, int n, ConstMatrix<double> w, Matrix<M> m, bool dissimilarity,
                   bool squareRoot, double (*totalOf)(int, const double*), Presences present,
                   double* result) {
    bool prepared = m == nullptr;
    bool finiteDifferences = true;
    for (int s = 0; s < c; s++) {
        const double total = totalOf(n, w[s]);
        result[s] = 0.0;
        if (!(total > 0)) continue;
        if (!prepared) {
            UpperToLowerMatrix(n, m);
            finiteDifferences = FiniteDifferences<M>(n, m, dissimilarity, squareRoot);
            prepared = true;
        }
        ListPresences(n, w[s], total, finiteDifferences, &present);
        result[s] =
            m == nullptr ? SumOfUnlike(present) : Entropy<M>(present, m, dissimilarity, squareRoot);
    }
}

template <class M>
double EntropyOfOne(int n, const double* p, Matrix<M> m, bool dissimilarity, bool squareRoot,
                    double (*totalOf)(int, const double*)) {
    double result = 0.0;
    const ScopedVector<int> otus(n);
    const ScopedVector<double> proportions(n);
    EntropyOfRows<M>(1, n, &p, m, dissimilarity, squareRoot, totalOf, {0, otus, proportions},
                     &result);
    return result;
}

}  // namespace

double RaoIndex(int n, const double* p, Matrix<double> m, bool dissimilarity, bool squareRoot) {
    return EntropyOfOne<double>(n, p, m, dissimilarity, squareRoot, TotalOfPresent);
}
double RaoIndex(int n, const double* p, Matrix<float> m, bool dissimilarity, bool squareRoot) {
    return EntropyOfOne<float>(n, p, m, dissimilarity, squareRoot, TotalOfPresent);
}

double RaoIndex(int n, const double* p, Matrix<float> m, bool dissimilarity) {
    return EntropyOfOne<float>(n, p, m, dissimilarity, !dissimilarity, TotalOfAll);
}

void RaoIndexRows(int c, int n, ConstMatrix<double> w, Matrix<double> m, bool dissimilarity,
                  bool squareRoot, int* otus, double* proportions, double* result) {
    EntropyOfRows<double>(c, n, w, m, dissimilarity, squareRoot, TotalOfPresent,
                          {0, otus, proportions}, result);
}
void RaoIndexRows(int c, int n, ConstMatrix<double> w, Matrix<float> m, bool dissimilarity,
                  bool squareRoot, int* otus, double* proportions, double* result) {
    EntropyOfRows<float>(c, n, w, m, dissimilarity, squareRoot, TotalOfPresent,
                         {0, otus, proportions}, result);
}
void RaoIndexRows(int c, int n, ConstMatrix<double> w, Matrix<float> m, bool dissimilarity,
                  int* otus, double* proportions, double* result) {
    EntropyOfRows<float>(c, n, w, m, dissimilarity, !dissimilarity, TotalOfAll,
                         {0, otus, proportions}, result);
}
