#pragma once
/// \file
/// Settings as text, in the part of TOML that options need: tables, keys, and values that are
/// strings, numbers, words or lists of these.

#include <string>
#include <string_view>
#include <vector>

struct SettingsEntry {
    std::vector<std::string> table;  ///< [a.b]: a, b; empty before the first header
    std::string key;
    std::vector<std::string> values;  ///< one, or those of a list
    int line;                         ///< from 1
};

/// Reads the text of the file `file`. Fails as wrong usage, with the line, for what is no setting
/// and for a key that comes twice.
std::vector<SettingsEntry> ReadSettingsText(std::string_view text, const std::string& file);

/// A value as ReadSettingsText reads it back: numbers and truth values bare, all else quoted.
std::string SettingsValue(const std::string& value);
/// A list of values.
std::string SettingsList(const std::vector<std::string>& values);
