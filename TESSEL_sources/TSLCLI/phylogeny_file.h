#pragma once
/// \file
/// Files of phylogenies: trees, and square matrices under names.

#include <optional>
#include <string>
#include <vector>

#include "TSLCLI/delimited_table.h"
#include "TSLCLI/name_matching.h"
#include "TSLCLI/newick.h"

/// A phylogeny as its file tells it, one of the two.
struct PhylogenyFile {
    std::optional<Tree> tree;
    std::optional<DelimitedTable> matrix;
    Names names;  ///< of the tips, or of the rows of the matrix
};

/// Reads the file: what begins with a parenthesis or a bracket is a tree. A name without quotes
/// whose underscores stand for blanks of one of the `otus` becomes that one. Fails for a matrix of
/// which the rows and columns differ, and for names that are not distinct.
PhylogenyFile ReadPhylogenyFile(const std::string& path, const Names& otus);

/// F[i][j] = distance, or similarity, of OTUs i and j. A matrix must be symmetric but for the
/// rounding of its numbers; distances must not be negative and those of an OTU to itself 0,
/// similarities must lie from 0 to 1. Fails otherwise.
void FillPhylogeny(const PhylogenyFile& phylogeny, const Names& otus, bool areSimilarities,
                   double* const* F);
