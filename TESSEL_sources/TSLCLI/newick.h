#pragma once
/// \file
/// Phylogenetic trees in the Newick form.

#include <string>
#include <string_view>
#include <vector>

/// A rooted tree. Node 0 is the root; every other node stands behind its parent, so that going
/// through the nodes backwards meets the children first.
struct Tree {
    std::vector<int> parent;     ///< -1 for the root
    std::vector<double> length;  ///< of the branch above each node; that of the root says nothing
    std::vector<int> tip;        ///< number of the tip from 0, or -1 for an inner node
    std::vector<std::string> tipNames;
    std::vector<bool> isQuoted;  ///< the tip's name stood in quotes
};

/// Reads one tree: names plain or in quotes (a quote in them doubled), comments in brackets, nested
/// ones too, lengths in any form of number, labels of inner nodes, which say nothing. `file` is for
/// messages. Fails, with line and column, for anything else: a branch without length or with one
/// that is negative or not finite, a tip without name or of the name of another, parentheses that
/// do not pair, more than one tree.
Tree ParseNewick(std::string_view text, const std::string& file);

/// distances[places[i]][places[j]] = length of the path between tips i and j, summed from the tips
/// up to their last common ancestor; both halves and the diagonal are written. Tips of place -1
/// take no part. Takes time with the number of cells.
void PathLengths(const Tree& tree, const std::vector<int>& places, double* const* distances);
