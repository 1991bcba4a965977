#pragma once
/// \file
/// Text in UTF-8.

#include <cstddef>
#include <string_view>

/// Bytes of the longest beginning of `text` that is whole UTF-8: its size where all of it is.
std::size_t ValidUtf8(std::string_view text);

/// The longest beginning of valid `text` of at most `bytes` bytes that parts no character.
std::string_view CutUtf8(std::string_view text, std::size_t bytes);
