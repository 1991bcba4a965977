#pragma once
/// \file
/// Texts of the options, for reports. A table's row 0 belongs to option `first`.

struct InfoTable {
    int first;  ///< option of row 0
    int rows;
    const char* const* texts;  ///< a null entry has no text
};

extern const InfoTable traitBasedOptInfo, poolCSToptInfo, reseCSToptInfo, rese_optInfo, opt_roInfo,
    fuzzyInfo, YesNotInfo, partInfo, rankingAlgorithmInfo;

/// Criteria of the trait ranking. It has no text for 21 and 22, shows two texts in one row for 20,
/// and runs into the measures of congruence for 23 and 24; reports have always shown it so.
extern const InfoTable opt_structInfo;

/// The text of an option; "(null)" for an option without one.
const char* InfoText(const InfoTable& table, int option);
