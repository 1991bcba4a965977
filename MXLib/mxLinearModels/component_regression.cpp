#include "mxLinearModels/component_regression.h"

#include "mxLinearModels/least_squares.h"
#include "mxLinearModels/mxLinearModels.h"
#include "mxlib/gsl_decompositions.h"
#include "mxlib/ordination_steps.h"
#include "mxlibRes/column_products.h"
#include "mxlibRes/crossproducts.h"
#include "mxlibRes/missing.h"
#include "mxlibRes/products.h"
#include "mxlibRes/standardisation.h"
#include "mxlibRes/totals.h"

namespace {

/// Axes of the covariables' cross-products, kept and scaled as in an ordination; their number.
int FindAxes(ComponentFactors* f) {
    const auto p = static_cast<size_t>(f->nCovariables);
    if (p == 0) return 0;
    gsl_matrix_view a = gsl_matrix_submatrix(f->gslCross.get(), 0, 0, p, p);
    gsl_matrix_view v = gsl_matrix_submatrix(f->gslEvec.get(), 0, 0, p, p);
    gsl_vector_view e = gsl_vector_subvector(f->gslEval.get(), 0, p);
    for (size_t i = 0; i < p; i++)
        for (size_t j = 0; j < p; j++) gsl_matrix_set(&a.matrix, i, j, f->cross[i][j]);
    EigenInPlace(&a.matrix, &v.matrix, &e.vector, f->work.get());
    for (size_t k = 0; k < p; k++) {
        f->eval[k] = gsl_vector_get(&e.vector, k);
        for (size_t i = 0; i < p; i++) f->evec[k][i] = gsl_matrix_get(&v.matrix, i, k);
    }
    const int nAxes = CountAxes<double>(f->nCovariables, f->eval);
    UnitLengthRows<double>(nAxes, f->nCovariables, f->evec);
    return nAxes;
}

/// At most (n - 2) / overfit of the axes, truncated.
int NumberOfFactors(int n, int nAxes, double overfit) {
    const double limit = (n - 2) / overfit;
    if (!(nAxes > limit)) return nAxes;
    return limit > 0.0 ? static_cast<int>(limit) : 0;
}

void SetFactors(ComponentFactors* f) {
    const int k = f->nFactors;
    for (int i = 0; i < f->n; i++)
        for (int j = 0; j < k; j++) f->factors[i][j] = f->scores[j][i];
    MeansByShares(f->n, k, f->factors, f->meanFactor);
    CenterColsMV(f->n, k, f->factors, f->centred);
    ColumnProducts(f->n, k, f->centred, k, f->centred, f->cross,
                   HasMissing<double>(f->n, k, f->centred));
    // predictions are made from the centred factors with their means added back
    for (int i = 0; i < f->n; i++)
        for (int j = 0; j < k; j++) f->factors[i][j] = f->centred[i][j] + f->meanFactor[j];
}

}  // namespace

ComponentFactors MakeComponentFactors(int n, int maxCovariables, int maxResponses) {
    const int p = maxCovariables;
    const int m = maxResponses;
    return {n,
            0,
            0,
            ScopedMatrix<double>(p, n),
            ScopedMatrix<double>(p, p),
            ScopedMatrix<double>(p, p),
            ScopedVector<double>(p),
            ScopedMatrix<double>(p, n),
            ScopedMatrix<double>(n, p),
            ScopedMatrix<double>(n, p),
            ScopedVector<double>(p),
            ScopedMatrix<double>(n, m),
            ScopedVector<double>(m),
            ScopedMatrix<double>(p, m),
            ScopedVector<double>(m),
            ScopedMatrix<double>(p + 1, p + 1),
            ScopedMatrix<double>(p + 1, m + 1),
            ScopedVector<int>(3L * (p + 1)),
            MakeGslMatrix(p, p),
            MakeGslMatrix(p, p),
            MakeGslVector(p),
            MakeGslEigenWork(p)};
}

void StartCovariables(ComponentFactors* f) {
    f->nCovariables = 0;
}

void AddCovariables(int p, ConstMatrix<double> x, const int* sel, ComponentFactors* f) {
    for (int j = 0; j < p; j++) {
        if (sel != nullptr && sel[j] != 1) continue;
        double* row = f->z[f->nCovariables++];
        for (int i = 0; i < f->n; i++) row[i] = x[i][j];
    }
}

void FindComponents(int opt, double overfit, ComponentFactors* f) {
    const int p = f->nCovariables;
    const auto standardise = [&] {
        CenterRowsMV(p, f->n, f->z, f->z);
        NormalizeRowsMV(p, f->n, f->z, f->z);
    };
    if (opt == 1) CenterRowsCovMV(p, f->n, f->z, f->z);
    if (opt == 2) standardise();
    CrossProductMV(p, f->n, f->z, f->cross);
    UpperToLowerMatrix(p, f->cross);
    f->nFactors = NumberOfFactors(f->n, FindAxes(f), overfit);
    // an ordination from correlations standardises its data itself, here for the second time
    if (opt == 2) standardise();
    ComponentScores<double>(f->nFactors, p, f->n, f->z, f->evec, f->scores);
    SetFactors(f);
}

void ComponentResiduals(int m, ConstMatrix<double> Y, Matrix<double> R, ComponentFactors* f) {
    const int n = f->n;
    const int k = f->nFactors;
    MeansByShares(n, m, Y, f->meanResponse);
    CenterColsMV(n, m, Y, f->response);
    const bool missing =
        HasMissing<double>(n, k, f->centred) || HasMissing<double>(n, m, f->response);
    ColumnProducts(n, k, f->centred, m, f->response, f->coefficients, missing);
    SolveNormalEquations(k, m, f->cross, f->coefficients, f->system, f->solution, f->room);
    Intercepts(k, m, f->coefficients, f->meanFactor, f->meanResponse, f->intercepts);
    MatrixProd(n, k, k, m, f->factors, f->coefficients, f->response);
    for (int i = 0; i < n; i++)
        for (int r = 0; r < m; r++) R[i][r] = Y[i][r] - (f->response[i][r] + f->intercepts[r]);
}

void PCA_Regression_ResidualsSelect(int n, int m, int p, ConstMatrix<double> Y,
                                    ConstMatrix<double> X, Matrix<double> R, const int* sel,
                                    int opt, double overfit) {
    ComponentFactors factors = MakeComponentFactors(n, p, m);
    StartCovariables(&factors);
    AddCovariables(p, X, sel, &factors);
    FindComponents(opt, overfit, &factors);
    ComponentResiduals(m, Y, R, &factors);
}
