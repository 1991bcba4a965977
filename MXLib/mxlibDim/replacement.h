#pragma once
/// \file
/// Files that are only ever replaced as a whole.

#include <cstdio>
#include <string>

/// A file written anew, owned by the scope. It is written beside the old one, in the same folder,
/// and takes its place at Commit; before that, and on every way out without it, the old file stays
/// as it was, even if the process dies. A link is followed to the file that it names; what is no
/// file on a disk (a device) is written where it is.
class FileReplacement {
  public:
    /// Opens the new file for `prefix` (may be null) followed by `name`. Where the old file may not
    /// be written, or the folder takes no new one, it does what fopenck does on failure, under the
    /// name of the file itself, and holds null.
    FileReplacement(const char* name, const char* prefix);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    operator FILE*() const { return stream_; }

    /// Closes the file and puts it in its place. False when any output on it failed, now or before:
    /// then the old file stays.
    bool Commit();

  private:
    FILE* stream_ = nullptr;
    std::string unfinished_;  ///< the file while it is written; empty for a device
    std::string target_;
};
