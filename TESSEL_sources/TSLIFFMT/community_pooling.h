#pragma once
/// \file
/// New communities made out of those of a data set: means of groups, changes within pairs, moving
/// averages. Every value is a number, the missing value too. The routines on tables first, then
/// what they do to the data set in memory, where the maps of species follow.

#include "mxlibDim/dim.h"

/// result (rows x groups, zeroed by the caller): for each community of a group (labels 1 to
/// `groups`) in file order, the cell becomes the community's value minus the cell; so that of two
/// communities the second minus the first is left. Communities of other groups are left out.
void ReleveChange(int n, ConstMatrix<float> source, Matrix<float> result, int rows, int groups,
                  const int* membership);

/// Means of windows of w successive columns, or rows with `byRows`, of a table of rows x cols.
/// `*count` = number of windows; none, or a negative number, leaves the result untouched.
void SplitMovingWinPool(int rows, int cols, ConstMatrix<float> source, Matrix<float> result, int w,
                        int* count, bool byRows);

/// The communities become the groups nGroups, groupRel, grLabel: means of W and E (NaN for a group
/// without community). Binary variables become quantitative.
void PoolCommunitiesByGroups();

/// The communities become the groups of the same globals: changes of W and E. Nominal variables
/// become binary, 1 for any change.
void TakeChangesOfCommunities();

/// The communities become means of SMWSize successive ones, each with the label of its first one.
void PoolCommunitiesByMovingWindow();
