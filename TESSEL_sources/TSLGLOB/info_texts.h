#pragma once
/// \file
/// Texts of the options, for reports. A table's row 0 belongs to option `first`.

struct InfoTable {
    int first;  ///< option of row 0
    int rows;
    const char* const* texts;  ///< a null entry has no text
};

extern const InfoTable traitBasedOptInfo, poolCSToptInfo, reseCSToptInfo, rese_optInfo, opt_roInfo,
    fuzzyInfo, YesNotInfo, partInfo;

/// The text of an option; "(null)" for an option without one.
const char* InfoText(const InfoTable& table, int option);
