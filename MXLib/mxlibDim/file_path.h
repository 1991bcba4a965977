#pragma once
/// \file
/// Names of files as paths. A name is UTF-8 on every system, which std::filesystem takes for
/// granted on some only.

#include <filesystem>
#include <string>

inline std::filesystem::path PathOf(const std::string& name) {
    return std::u8string(name.begin(), name.end());
}

/// The name of a path, with / between folders.
inline std::string NameOf(const std::filesystem::path& path) {
    const std::u8string name = path.generic_u8string();
    return {name.begin(), name.end()};
}
