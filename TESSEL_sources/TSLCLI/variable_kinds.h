#pragma once
/// \file
/// Traits and environmental variables: the kind of each, found from its cells or as the user says,
/// and its cells as numbers.

#include <string>
#include <vector>

#include "TSLCLI/delimited_table.h"
#include "mxlibRes/gower.h"

/// Names of columns whose kind the user tells, as given: a name, or several parted by commas.
struct KindsAsTold {
    std::vector<std::string> binary, nominal, quantitative, ordinal;
};

/// One column of a table, over the rows taken from it.
struct Variable {
    std::string name;
    VariableType kind = kIntervalVariable;
    std::vector<float> values;       ///< -999 where missing
    std::vector<std::string> words;  ///< what the codes stand for; none where they are the file's
    int firstCode = 1;               ///< code of the first word
};

/// What the missing cells of a table are.
enum class MissingCells { kAllowed, kFault };

/// The columns of the table over the given rows. Numbers are quantitative; words are nominal, coded
/// from 1 in alphabetical order; two different values are binary, words coded 0 and 1. Numbers of
/// whatever kind stay as they stand. What the user tells comes before that. Fails for words among
/// numbers, for what cannot be of the kind told, and for a column of missing cells.
std::vector<Variable> ReadVariables(const DelimitedTable& table, const std::vector<int>& rows,
                                    const KindsAsTold& told, MissingCells missing);

/// Fails, as wrong usage, where a name told is none of the columns of either table, or is told two
/// kinds. `environment` may be null.
void CheckKindsAsTold(const KindsAsTold& told, const DelimitedTable& traits,
                      const DelimitedTable* environment);

/// "binary", "nominal", "quantitative" or "ordinal".
const char* KindName(int kind);
