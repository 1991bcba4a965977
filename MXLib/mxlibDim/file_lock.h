#pragma once
/// \file
/// Locks that keep two programs from the same work.

#include <string>

/// A lock on a file of its own, owned by the scope: an advisory record lock (fcntl), which network
/// folders know too and which the system takes back at any end of the process. It excludes other
/// processes, not the same one. The file is made for the lock and removed with it; one that a
/// killed program left behind locks nothing.
class FileLock {
  public:
    FileLock() = default;
    /// Tries once, without waiting.
    explicit FileLock(const std::string& path);
    ~FileLock();
    FileLock(FileLock&& other) noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Another process holds the lock. Where no lock is to be had (a folder that may not be
    /// written, a file system without locks) nobody holds it, and nothing is locked.
    bool IsTaken() const { return isTaken_; }

  private:
    std::string path_;  ///< of the file to remove; empty when it is not ours to write
    int descriptor_ = -1;
    bool isTaken_ = false;
};
