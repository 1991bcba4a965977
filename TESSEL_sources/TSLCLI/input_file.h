#pragma once
/// \file
/// Files that a command reads.

#include <cstddef>
#include <cstdio>
#include <string>

/// Opens the file for reading; fails where it cannot be.
FILE* OpenInput(const std::string& path);

/// Reads at most `bytes` bytes into `block`, none at the end; fails where the file cannot be read.
void ReadInput(FILE* stream, const std::string& path, std::size_t bytes, std::string* block);
