#pragma once
/// \file
/// Residuals on principal components for callers that regress many responses, many times: the
/// components of one set of covariables are found once and serve any number of responses, without
/// any allocation. PCA_Regression_ResidualsSelect of mxLinearModels.h is these steps in a row.

#include "mxlib/gsl_guards.h"
#include "mxlibDim/dim.h"
#include "mxlibDim/scoped.h"

/// The leading principal components of covariables over n objects, as factors of a regression,
/// with the scratch that finding and using them takes.
struct ComponentFactors {
    int n;
    int nCovariables;            ///< rows of z in use
    int nFactors;                ///< components in use
    ScopedMatrix<double> z;      ///< covariables in rows
    ScopedMatrix<double> cross;  ///< products of covariables, later of factors
    ScopedMatrix<double> evec;   ///< eigenvectors in rows
    ScopedVector<double> eval;
    ScopedMatrix<double> scores;   ///< components in rows
    ScopedMatrix<double> factors;  ///< n x nFactors
    ScopedMatrix<double> centred;  ///< the same, centred
    ScopedVector<double> meanFactor;
    ScopedMatrix<double> response;  ///< a response, centred; then its prediction
    ScopedVector<double> meanResponse;
    ScopedMatrix<double> coefficients;
    ScopedVector<double> intercepts;
    ScopedMatrix<double> system;  ///< normal equations, counted from 1
    ScopedMatrix<double> solution;
    ScopedVector<int> room;
    GslMatrix gslCross;
    GslMatrix gslEvec;
    GslVector gslEval;
    GslEigenWork work;
};

/// Room for at most maxCovariables columns, and for responses of at most maxResponses columns.
ComponentFactors MakeComponentFactors(int n, int maxCovariables, int maxResponses);

/// In this order: start; add the columns of x (n x p) with sel equal to 1 (all when null), set
/// after set; find their components, from covariances (opt 1) or correlations (opt 2), and keep at
/// most (n - 2) / overfit of them as factors.
void StartCovariables(ComponentFactors* f);
void AddCovariables(int p, ConstMatrix<double> x, const int* sel, ComponentFactors* f);
void FindComponents(int opt, double overfit, ComponentFactors* f);

/// R (n x m) = residuals of Y (n x m) on the components.
void ComponentResiduals(int m, ConstMatrix<double> Y, Matrix<double> R, ComponentFactors* f);
