#include "TSLRESE/gower_partial.h"

#include "TSLGLOB/settings.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/gower.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/ranks.h"

namespace {

/// A variable as the comparisons use it.
struct Variable {
    int type;
    float range;
    float weight;
    bool countDoubleAbsences;
    bool takesPart;
};

/// Ranks the values of an ordinal variable in place and settles range and weight.
Variable Prepare(int n, int type, float* values, float range, float weight,
                 int countDoubleAbsences) {
    Variable variable{type, range, weight < 0 ? 1.0F : weight, countDoubleAbsences == 1, true};
    if (type == kOrdinalVariable) RankVectorAdjMV(n, values, values);
    if (type == kOrdinalVariable || (type == kIntervalVariable && range == 0))
        variable.range = VariableRange(n, values);
    const bool knownFlag = countDoubleAbsences == 0 || countDoubleAbsences == 1;
    variable.takesPart = variable.weight != 0 && (type != kBinaryVariable || knownFlag);
    return variable;
}

template <class T>
T PartialSimilarity(const Variable& variable, float xi, float xj) {
    double contribution = 0.0;
    if (variable.takesPart && GowerPart(variable.type, xi, xj, variable.range, variable.weight,
                                        variable.countDoubleAbsences, &contribution))
        return static_cast<T>(contribution);
    return static_cast<T>(kMissing);
}

template <class T>
void CompareOneVariable(int n, int type, float* values, T* const* pairs, float range, float weight,
                        int countDoubleAbsences) {
    const Variable variable = Prepare(n, type, values, range, weight, countDoubleAbsences);
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++)
            pairs[i][j] = pairs[j][i] = PartialSimilarity<T>(variable, values[i], values[j]);
}

/// Copies one variable into the column k of the work matrix, ranked where it is ordinal.
Variable PrepareColumn(int k, int n, const float* const* data, float* const* work, float* column,
                       int type, float range, float weight) {
    for (int i = 0; i < n; i++) column[i] = data[i][k];
    const Variable variable = Prepare(n, type, column, range, weight, countDoubleAbsence);
    for (int i = 0; i < n; i++) work[i][k] = column[i];
    return variable;
}

/// Variables ready to be compared, and their values.
struct Comparison {
    ScopedVector<Variable> variables;
    ScopedMatrix<float> values;  ///< objects by variables

    template <class T>
    T Part(int i, int j, int k) const {
        return PartialSimilarity<T>(variables[k], values[i][k], values[j][k]);
    }
};

Comparison Compare(int nVariables, const float* const* data, int n, const int* types,
                   const float* ranges, const float* weights) {
    Comparison comparison{ScopedVector<Variable>(nVariables), ScopedMatrix<float>(n, nVariables)};
    ScopedVector<float> column(n);
    for (int k = 0; k < nVariables; k++)
        comparison.variables[k] =
            PrepareColumn(k, n, data, comparison.values, column, types[k], ranges[k], weights[k]);
    return comparison;
}

/// The variables that an average is made over, and their weights.
struct Chosen {
    explicit Chosen(int nVariables) : variables(nVariables), weights(nVariables) {}
    void Add(int variable, double weight) {
        weights[count] = weight;
        variables[count++] = variable;
    }
    int count = 0;
    ScopedVector<int> variables;
    ScopedVector<double> weights;
};

/// partOf(i, j, k) is the partial similarity of objects i and j by variable k.
template <class PartOf>
void AverageChosen(const Chosen& chosen, int n, PartOf partOf, float* const* similarity) {
    for (int i = 0; i < n; i++) {
        similarity[i][i] = 1;
        for (int j = i + 1; j < n; j++) {
            double sum = 0.0;
            double den = 0.0;
            for (int c = 0; c < chosen.count; c++) {
                const auto similar = partOf(i, j, chosen.variables[c]);
                sum += IsMissing(similar) ? 0.0 : static_cast<double>(similar);
                den += IsMissing(similar) ? 0.0 : chosen.weights[c];
            }
            similarity[i][j] = den > 0 ? static_cast<float>(sum) / static_cast<float>(den)
                                       : static_cast<float>(kMissing);
        }
    }
}

}  // namespace

void GowerMVPartial_dAbsences(int n, int type, float* values, float* const* pairs, float range,
                              float variableWeight, int countDoubleAbsences) {
    CompareOneVariable(n, type, values, pairs, range, variableWeight, countDoubleAbsences);
}
void GowerMVPartial_dAbsences(int n, int type, float* values, double* const* pairs, float range,
                              float variableWeight, int countDoubleAbsences) {
    CompareOneVariable(n, type, values, pairs, range, variableWeight, countDoubleAbsences);
}

void gower_similarityPartial(int nVariables, const float* const* data, int n,
                             float* const* const* cube, const int* types, const float* ranges,
                             const float* weights) {
    const Comparison comparison = Compare(nVariables, data, n, types, ranges, weights);
    for (int i = 0; i < n; i++)
        for (int j = i; j < n; j++)
            for (int k = 0; k < nVariables; k++) cube[i][j][k] = comparison.Part<float>(i, j, k);
}

void gower_similarityAverage(int nVariables, int n, const float* const* const* cube,
                             float* const* similarity, const int* include) {
    Chosen chosen(nVariables);
    for (int k = 0; k < nVariables; k++)
        if (include[k] == 1) chosen.Add(k, 1.0);
    AverageChosen(
        chosen, n, [cube](int i, int j, int k) { return cube[i][j][k]; }, similarity);
}

void gower_similarityWeighted(int nVariables, const float* const* data, int n,
                              float* const* similarity, const int* types, const float* ranges,
                              const float* weights) {
    const Comparison comparison = Compare(nVariables, data, n, types, ranges, weights);
    Chosen chosen(nVariables);
    for (int k = 0; k < nVariables; k++)
        if (weights[k] > 0) chosen.Add(k, static_cast<double>(weights[k]));
    AverageChosen(
        chosen, n, [&](int i, int j, int k) { return comparison.Part<double>(i, j, k); },
        similarity);
}
