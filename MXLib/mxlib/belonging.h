#pragma once
/// \file
/// Types of OTUs and degrees of belonging to them. A partition is a vector of labels, one per OTU;
/// columns of the belonging matrices follow the ascending order of labels.

#include "mxlibDim/dim.h"

/// Counts the distinct labels; `distinct` (n places; may be null but in CountGroups) receives them
/// ascending. The select form sees only items whose mask is 1.
void CountGroupsNew(int n, const int* labels, int* count, int* distinct);
void CountGroups(int n, const int* labels, int* count, int* distinct);
void CountGroupsSelect(int n, const int* labels, const int* mask, int* count, int* distinct);

/// c (n x K): 1 in the column of the OTU's type, else 0. Without a partition (null) each OTU is a
/// type of its own. K must be the true number of labels. Returns true.
bool CrispBelonging(int n, int K, const int* partition, Matrix<float> c);
bool CrispBelonging(int n, int K, const int* partition, Matrix<double> c);

/// u (n x K): mean resemblance of each OTU to the non-redundant members of each type, rows at unit
/// sum (degrees of belonging to fuzzy sets, Zadeh 1965, Information and Control 8, 338-353). OTUs
/// of one type whose entry of s is 1 within one unit in the last place count once. Missing entries
/// add nothing.
/// With `dissimilarity` the terms are 1 - s, and it is OTUs of one type at the distance 1 that
/// count once: of several such pairs the earlier OTUs decide, so that u follows the numbering of
/// the OTUs. Mirrors the upper half of s into its lower half. Returns true.
bool FuzzyBelonging(int n, int K, Matrix<float> s, const int* partition, Matrix<float> u,
                    bool dissimilarity);
bool FuzzyBelonging(int n, int K, Matrix<float> s, const int* partition, Matrix<double> u,
                    bool dissimilarity);
bool FuzzyBelonging(int n, int K, Matrix<double> s, const int* partition, Matrix<double> u,
                    bool dissimilarity);

/// Permutes four parallel vectors in place: element k takes the element order[k] - 1.
void ReorderVectors(int n, const int* order, int* i1, int* i2, float* f1, float* f2);

/// Community totals of data (nOTUs x nCommunities); partition 3 replaces each positive value by its
/// community's total / richness, 2 subtracts that (totals then 0), any other leaves data. Every
/// value is a number.
void DataPartitionL(int nOTUs, int nCommunities, const int* richness, int partition,
                    Matrix<float> data, float* totals);

/// Whether any of n types is 2 (nominal).
bool HasQualitTrait(int n, const int* types);

/// Pools a matrix into means of row groups by column groups (labels 1 to G; items with any other
/// label are left out), summed in float; with option 1 the means are rescaled so that the grand
/// total is kept. Every value is a number; a group without member has NaN.
void ConcentrateGroups(int n, int p, ConstMatrix<float> a, Matrix<float> result, int rowGroups,
                       const int* rowGroup, int colGroups, const int* colGroup, int option);
