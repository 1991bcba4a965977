#pragma once
/// \file
/// Dialogue of the functional analysis, shared with the trait ranking (optmain 75) and the
/// simulation.

/// The community menu's entry H: settings, analysis, track file.
void IFHierarchicalAccum();

/// Asks the settings of an analysis and stores them in TSLGLOB/settings.h. nestingMembershipOTUs
/// and partition_OTUs_Phyl are allocated afresh; the analysis that asked releases them.
void SettingsHierarchy();

/// Asks for the criterion of the trait ranking, the settings of an analysis and the sizes of the
/// subsets, and stores them there too.
void SettingsChRank();

/// Asks for the resemblance between communities and stores it in rese_opt.
void SettingsRese();

/// Prints the menu of resemblance functions and reads the option.
void SettingReseFunction(int* option);

/// Asks for the seed of the random generator and stores it in seedOpt and rseed.
void SettingsSeed();
