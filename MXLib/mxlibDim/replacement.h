#pragma once
/// \file
/// Files that are only ever replaced as a whole.

#include <cstdio>
#include <string>

/// A file written anew, owned by the scope. It is written beside the old one, in the same folder,
/// and takes its place at Commit; before that, and on every way out without it (the end of the
/// process by EndProgram included), the old file stays as it was, even if the process dies. A link
/// is followed to the file that it names; what is no file on a disk (a device) is written where it
/// is.
class FileReplacement {
  public:
    /// What the new file begins with: nothing, or a copy of the old one (with which a device has
    /// nothing to do).
    enum class Start { kEmpty, kOldContent };

    /// Opens the new file for `prefix` (may be null) followed by `name`. Where the old file may not
    /// be written, or the folder takes no new one, it does what fopenck does on failure, under the
    /// name of the file itself, and holds null. A copy that fails raises kFailedOutput.
    FileReplacement(const char* name, const char* prefix, Start start = Start::kEmpty);
    ~FileReplacement();
    FileReplacement(const FileReplacement&) = delete;
    FileReplacement& operator=(const FileReplacement&) = delete;
    operator FILE*() const { return stream_; }

    /// Whether there was no file of this name.
    bool IsNew() const { return isNew_; }

    /// Closes the file and puts it in its place. False when any output on it failed, now or before:
    /// then the old file stays, and errno tells the reason.
    bool Commit();

    /// Commit, unless the file holds null; a failure raises kFailedOutput.
    void Finish();

    /// Makes what is written so far readable in the file under way; a failure raises kFailedOutput.
    void Flush();

  protected:
    FileReplacement() = default;  ///< of no file; holds null

  private:
    void Discard();

    FILE* stream_ = nullptr;
    bool isNew_ = false;
    std::string unfinished_;  ///< the file while it is written; empty for a device
    std::string name_;        ///< with the prefix
    std::string target_;      ///< the file that a link leads to
};

/// A file of results: the first error that keeps it from being whole ends the session.
class ResultsFile : public FileReplacement {
  public:
    ResultsFile() = default;  ///< a file that is not wanted: null, and Finish does nothing
    /// Raises kFailedOpening where FileReplacement would hold null.
    explicit ResultsFile(const char* name, const char* prefix = nullptr,
                         Start start = Start::kEmpty);
};
