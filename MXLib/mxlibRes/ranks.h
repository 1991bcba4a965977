#pragma once
/// \file
/// Orderings and ranks of a vector of n elements.

/// result[k] is the index, counted from 1, of the element at place k of the ascending order, by
/// value or by magnitude; ties stay in the order that the sort leaves. Every value is a number.
void RankVector(int n, const double* source, double* result);
void RankVectorAbs(int n, const double* source, double* result);

/// Midranks among all elements less the number of missing ones; a missing element stays missing.
/// Source and result may be one vector.
void RankVectorAdjMV(int n, const float* source, float* result);
void RankVectorAdjMV(int n, const double* source, double* result);
