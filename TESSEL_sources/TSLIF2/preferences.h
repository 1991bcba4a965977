#pragma once
/// \file
/// Preferences: settings that outlive a run, in a file of the working directory (TESSELPrefsName).

/// Loads the preferences file, all of it but twoTailedTestMantel, which is false afterwards. No
/// file, or one of another version, changes nothing. Raises kEndOfFile for a file that ends early
/// or holds a word in the place of a number.
void ReadPreferences();

/// The preferences screen. Each answer holds at once; leaving writes the file.
void SetPreferences();

/// Replaces the preferences file. Raises kFailedOutput when it cannot be opened or any of it cannot
/// be written; the old file stays then.
void WritePreferences();
