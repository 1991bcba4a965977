#pragma once
/// \file
/// Merging the data of two sessions.

/// Merges the data set in memory with the formatted data file `secondFormda`; 0 when nothing was
/// made.
int MergeFormda(const char* secondFormda);
