#pragma once
/// \file
/// The criteria of the trait ranking straight from the raw tables by their definitions: each subset
/// is evaluated for itself, every table is made anew, every pair visited.

#include <functional>
#include <vector>

/// The raw tables of a ranking and its settings, missing values -999.
struct RankingCase {
    using Rows = std::vector<std::vector<double>>;
    Rows B;  ///< OTUs by traits
    Rows W;  ///< communities by OTUs
    Rows E;  ///< communities by variables; rows of no columns without variables
    Rows F;  ///< OTUs by OTUs, both halves; for criteria 11 to 15
    std::vector<int> traitTypes;
    std::vector<float> weights;  ///< of the traits
    std::vector<int> variableTypes;
    std::vector<int> types;  ///< of OTUs: a label each
    std::vector<int> taxa;   ///< of OTUs, for criteria 11 to 15
    int kindOfE = 2;         ///< 1 same units, 2 different, 4 binary; otherwise mixed
    bool similarF = false;   ///< F holds similarities

    int criterion = 1;
    int measure = 1;      ///< 1 Mantel, 2 Procrustes, 3 RV
    int resemblance = 6;  ///< between communities
    bool fuzzy = true;
    bool unitTotals = false;  ///< X, P, R, S and the smoothing from W at unit totals
    int doubleAbsences = 1;
    bool squareRoots = true;  ///< Rao entropy
    bool target = true;       ///< smoothing includes the target OTU
    double overfit = 2.0;
};

/// The value of the criterion for the traits with selected[k] = 1; what no subset changes is made
/// once. There are at least two types, but for criterion 10.
std::function<double(const std::vector<int>& selected)> PlainRanking(
    const RankingCase& rankingCase);
