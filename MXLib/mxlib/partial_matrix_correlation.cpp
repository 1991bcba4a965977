#include "mxlib/partial_matrix_correlation.h"

#include <algorithm>

#include "mxLinearModels/component_regression.h"
#include "mxlibDim/scoped.h"
#include "mxlibRes/congruence.h"

double PartialMatrixCorrelation(int n, int p1, int p2, ConstMatrix<double> a, ConstMatrix<double> b,
                                int type, double overfit,
                                std::initializer_list<CovariableSet> sets) {
    ScopedMatrix<double> residualsA(n, p1);
    ScopedMatrix<double> residualsB(n, p2);
    if (sets.size() > 0) {
        int columns = 0;
        for (const CovariableSet& set : sets) columns += set.columns;
        ComponentFactors factors = MakeComponentFactors(n, columns, std::max(p1, p2));
        StartCovariables(&factors);
        for (const CovariableSet& set : sets)
            AddCovariables(set.columns, set.matrix, set.select, &factors);
        constexpr int kCorrelations = 2;
        FindComponents(kCorrelations, overfit, &factors);
        ComponentResiduals(p1, a, residualsA, &factors);
        ComponentResiduals(p2, b, residualsB, &factors);
    }
    if (type == kRV) return RVcoeff(n, p1, p2, residualsA, residualsB);
    return ProcrustesCoeff(n, p1, p2, residualsA, residualsB);
}
