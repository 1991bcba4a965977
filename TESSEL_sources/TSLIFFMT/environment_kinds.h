#pragma once
/// \file
/// The kind of matrix E as a whole (optEnvVarType), from the types of its variables.

enum EnvironmentKind : int {
    kSameUnits = 1,       ///< only quantitative variables
    kDifferentUnits = 2,  ///< the same, to be brought to one scale
    kQualitative = 3,     ///< only nominal variables
    kOnlyBinary = 4,
    kSeveralTypes = 5
};

/// Sets temEnvBin, temEnvQual or temEnvQuant for each type of variable that E has; ordinal counts
/// as quantitative. Flags that are set stay so.
void FlagVariableTypes();

/// Whether at least two of the flags are set.
bool TypesAreMixed();

/// The kind by the flags where they are not mixed; quantitative variables have different units.
EnvironmentKind KindOfOneType();
