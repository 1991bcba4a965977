#pragma once
/// \file
/// Preferences: settings that outlive a run.

/// Loads the preferences file.
void ReadPreferences();

/// The preferences screen.
void SetPreferences();
