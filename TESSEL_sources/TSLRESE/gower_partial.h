#pragma once
/// \file
/// Gower's similarity by parts: a cube of one similarity per pair of objects and variable, made
/// once, and its average over any subset of the variables. -999 marks a variable that does not
/// count for a pair, and in the average a pair without any. Only cells j >= i are written.

/// Partial similarities of one variable of `type`, both halves and the diagonal. Type 4 ranks
/// `values` in place and takes the range of the ranks; type 3 computes the range when `range` is
/// exactly 0. A negative weight counts as 1, a weight of 0 gives -999.
void GowerMVPartial_dAbsences(int n, int type, float* values, float* const* pairs, float range,
                              float variableWeight, int countDoubleAbsences);
void GowerMVPartial_dAbsences(int n, int type, float* values, double* const* pairs, float range,
                              float variableWeight, int countDoubleAbsences);

/// Fills the cube [n][n][nVariables]; reads countDoubleAbsence; leaves `data` (objects by
/// variables) unchanged.
void gower_similarityPartial(int nVariables, const float* const* data, int n,
                             float* const* const* cube, const int* types, const float* ranges,
                             const float* weights);

/// Average over the variables with include equal to 1; 1 on the diagonal. The lower half stays as
/// it was.
void gower_similarityAverage(int nVariables, int n, const float* const* const* cube,
                             float* const* similarity, const int* include);

/// The average weighted over the variables with a weight above 0, of parts in double precision and
/// without their cube, which takes the room of many matrices.
void gower_similarityWeighted(int nVariables, const float* const* data, int n,
                              float* const* similarity, const int* types, const float* ranges,
                              const float* weights);
