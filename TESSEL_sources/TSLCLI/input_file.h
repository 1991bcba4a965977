#pragma once
/// \file
/// Files that a command reads.

#include <cstddef>
#include <cstdio>
#include <string>

/// A file open for reading, for the length of a scope. Fails where it cannot be opened or read.
class InputFile {
  public:
    explicit InputFile(const std::string& path);
    ~InputFile();
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    /// The next bytes, at most so many; none at the end.
    std::string Read(std::size_t bytes);

  private:
    std::string path_;
    FILE* stream_;
};

/// All of the file.
std::string ReadWhole(const std::string& path);
