#pragma once
/// \file
/// How messages name and count things.

#include <string>
#include <string_view>
#include <vector>

/// 'name'.
std::string Quoted(std::string_view name);

/// "'a', 'b'".
std::string Listed(const std::vector<std::string>& names);

/// "1 trait", "3 traits".
std::string Counted(std::size_t n, const std::string& one, const std::string& several);
