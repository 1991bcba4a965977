#pragma once
/// \file
/// The data set that a dialogue builds in memory and hands over through the formatted data file.

#include "TSLGLOB/shell.h"

/// The answer to a data set that its file could not hold.
inline constexpr char kNothingLeft[] =
    "\nNo data set was made: no OTU or no community would be left.\n\n";

/// Releases it on every way out of the dialogue.
struct DataSetOfDialogue {
    DataSetOfDialogue() = default;
    ~DataSetOfDialogue() { FreeGlobals2(); }
    DataSetOfDialogue(const DataSetOfDialogue&) = delete;
    DataSetOfDialogue& operator=(const DataSetOfDialogue&) = delete;
};
