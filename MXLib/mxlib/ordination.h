#pragma once
/// \file
/// Ordination of a resemblance matrix, and conversions between forms of resemblance. Missing values
/// are known in `data` alone, where component scores pass over them; any other -999 is a number.

#include "mxlibDim/dim.h"

enum OrdinationMethod : int { kPrincipalCoordinates = 1, kPrincipalComponents = 2 };

/// Principal coordinates (Gower 1966, Biometrika 53, 325-338) of the n x n resemblance `rese`, of
/// which the upper half is read, or principal components of n variables over p objects whose
/// cross-products `rese` holds (`data` n x p with orientation 1, else p x n; null for coordinates).
/// `reseType` is the resemblance's number and decides how it becomes a squared distance. evec row k
/// and eval[k] are the k-th axis, descending; scores row k the objects on axis k; *nAxes the axes
/// kept (0 leaves scores untouched); *ok the sanity of the spectrum. Negative eigenvalues stay in
/// eval and are never kept. Returns 1.
int OrdinationLib(int n, int p, ConstMatrix<float> data, ConstMatrix<float> rese,
                  Matrix<float> evec, Matrix<float> scores, int* nAxes, float* eval, bool* ok,
                  int method, int reseType, int orientation);
int OrdinationLib_D(int n, int p, ConstMatrix<double> data, ConstMatrix<double> rese,
                    Matrix<double> evec, Matrix<double> scores, int* nAxes, double* eval, bool* ok,
                    int method, int reseType, int orientation);

/// OrdinationLib_D for the scores alone; returns the number of axes kept.
int OrdinationLib_Scores(int n, int p, ConstMatrix<double> data, ConstMatrix<double> rese,
                         Matrix<double> scores, int method, int reseType, int orientation);

/// Gower's centred matrix of distances d (upper triangle, squared already with `squared`) into the
/// upper triangle of c, which may be d.
void DissToCenterProdMatrix(int n, ConstMatrix<float> d, Matrix<float> c, bool squared);
void DissToCenterProdMatrix(int n, ConstMatrix<double> d, Matrix<double> c, bool squared);

/// Squared distances from cross-products: upper triangle and diagonal 0.
void ProdToSqDist(int n, ConstMatrix<float> p, Matrix<float> d);
void ProdToSqDist(int n, ConstMatrix<double> p, Matrix<double> d);

/// 2 (1 - r) of correlations r, both triangles, diagonal 0.
void CorrToSqDist(int n, ConstMatrix<float> corr, Matrix<float> d);
void CorrToSqDist(int n, ConstMatrix<double> corr, Matrix<double> d);

/// 1 - p, both triangles and the diagonal. d may be p.
void ProbToDissim(int n, ConstMatrix<double> p, Matrix<double> d);
