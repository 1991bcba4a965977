#pragma once
/// \file
/// Ordination of the communities for pictures: principal components of a table of communities, with
/// what its columns and the environment have to do with the axes.

#include <string>
#include <vector>

#include "TSLCLI/name_matching.h"
#include "mxlibDim/dim.h"

/// A table of communities (n x p) under its names; columns without variance take no part.
struct OrdinatedTable {
    const char* kind;  ///< what a column is, as the table tells it: trait, type
    const Names* communities;
    const Names* columns;
    ConstMatrix<double> values;
    bool standardises;  ///< columns to unit variance, for columns of different units
};

/// Writes the first two principal components (Hotelling 1933, Journal of Educational Psychology 24,
/// 417-441): a row "share" with the proportions of the variance; a row per community with its
/// scores; a row per column, and per variable of the session's matrix E, with its correlations with
/// the axes. A missing value of E gives missing correlations. The table must be one that
/// CanOrdinate. The sign of an axis is that of the column with the largest product with it.
void WriteOrdination(const std::string& path, const OrdinatedTable& table, const Names& variables);

/// Whether two columns vary; not beyond 1000 communities and columns, whose eigenanalysis would
/// outlast the analysis.
bool CanOrdinate(const OrdinatedTable& table);
