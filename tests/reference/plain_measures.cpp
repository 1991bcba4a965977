#include "plain_measures.h"

#include <cmath>
#include <set>
#include <vector>

namespace {

template <class T>
void ToUnitSum(int n, T* row) {
    T total = 0;
    for (int i = 0; i < n; i++)
        if (row[i] != -999) total += row[i];
    if (total == 0) total = 1;
    for (int i = 0; i < n; i++)
        if (row[i] != -999) row[i] /= total;
}

/// At single precision, whatever the type.
bool NearlyOne(float x) {
    return x == 1 || x == std::nextafter(1.0F, 0.0F) || x == std::nextafter(1.0F, 2.0F);
}

template <class T>
void FuzzyBelonging(int n, int K, ConstMatrix<T> s, const int* partition, Matrix<T> u,
                    bool dissimilarity) {
    const std::set<int> distinct(partition, partition + n);
    const std::vector<int> label(distinct.begin(), distinct.end());
    std::vector<int> size(K, 0), like(n);
    std::vector<char> redundant(n, 0);
    for (int i = 0; i < n; i++) {
        like[i] = i;
        for (int g = 0; g < K; g++) size[g] += partition[i] == label[g];
    }
    for (int i = 0; i < n; i++)
        for (int j = i + 1; j < n; j++)
            for (int g = 0; g < K; g++)
                if (!redundant[i] && !redundant[j] && partition[i] == label[g] &&
                    partition[j] == partition[i] && NearlyOne(float(s[i][j]))) {
                    redundant[j] = 1;
                    like[j] = i;
                    size[g]--;
                }
    for (int i = 0; i < n; i++) {
        for (int g = 0; g < K; g++) u[i][g] = 0;
        for (int j = 0; j < n; j++) {
            if (j != i && (redundant[j] || like[i] == like[j])) continue;
            for (int g = 0; g < K; g++)
                if (label[g] == partition[j] && s[i][j] != -999)
                    u[i][g] += (dissimilarity ? 1 - s[i][j] : s[i][j]) / T(size[g]);
        }
        ToUnitSum(K, u[i]);
    }
}

}  // namespace

void PlainFuzzyBelonging(int n, int K, ConstMatrix<float> s, const int* partition, Matrix<float> u,
                         bool dissimilarity) {
    FuzzyBelonging(n, K, s, partition, u, dissimilarity);
}
void PlainFuzzyBelonging(int n, int K, ConstMatrix<double> s, const int* partition,
                         Matrix<double> u, bool dissimilarity) {
    FuzzyBelonging(n, K, s, partition, u, dissimilarity);
}

void PlainConditionalProb(int c, int n, ConstMatrix<double> w, Matrix<double> m, int option,
                          bool unitSum) {
    for (int i = 0; i < n; i++)
        for (int j = 0; j < n; j++) {
            m[i][j] = 0;
            for (int s = 0; s < c; s++) {
                const double x = w[s][i], y = w[s][j];
                if (x == -999 || y == -999) continue;
                if (option == 2) m[i][j] += x * y;
                if (option == 1 && y > 0) m[i][j] += x;
                if (option == 0 && x > 0 && y > 0) m[i][j] += 1;
            }
        }
    for (int i = 0; i < n && option != 2; i++) {
        for (int j = 0; j < n; j++)
            if (j != i && m[i][i] > 0) m[i][j] /= m[i][i];
        m[i][i] = 1;
    }
    for (int i = 0; i < n && (option == 2 || unitSum); i++) ToUnitSum(n, m[i]);
}

void PlainBealsWithoutTarget(int c, int n, ConstMatrix<double> a, ConstMatrix<double> d,
                             Matrix<double> z, int option, bool odds) {
    std::vector<std::vector<double>> cells(n, std::vector<double>(n));
    std::vector<double*> m;
    for (auto& row : cells) m.push_back(row.data());
    PlainConditionalProb(c, n, d, m.data(), option, odds);
    for (int i = 0; i < n; i++) m[i][i] = 0;
    for (int s = 0; s < c; s++) {
        std::vector<double> p(a[s], a[s] + n);
        ToUnitSum(n, p.data());
        for (int j = 0; j < n; j++) {
            z[s][j] = 0;
            if (1 - p[j] == 0) continue;
            for (int k = 0; k < n; k++) {
                const double g = odds ? m[k][j] / (1 - m[k][j]) : m[k][j];
                z[s][j] += p[k] / (1 - p[j]) * g;
            }
        }
    }
}
