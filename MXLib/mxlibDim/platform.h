#pragma once
/// \file
/// What the C++ library leaves to the system: posix/ and windows/ hold it, of which a build takes
/// one.

#include <cstdio>
#include <string>

/// To be called first: makes the process handle files as TESSEL does everywhere (the bytes that are
/// written are the bytes of the file).
void PrepareProcess();

/// Opens those of the three standard descriptors that were closed when the process began on the
/// null device. To be called before any file is opened: a file that got the number of one would
/// take in what is written to the screen. `writingFails`: what is written to one that was closed
/// fails; else it is dropped.
void OpenClosedStandardStreams(bool writingFails);

/// The file that swallows all.
extern const char* const kNullDevice;

bool IsTerminal(FILE* stream);

/// Whether the file may be read, without waiting for whoever writes into a pipe of this name.
bool MayBeRead(const char* path);

/// Opens a new file to be written; null, with errno, which is EEXIST where there is one already.
FILE* CreateNew(const char* path);

/// Hands what was written, and flushed, on to the disk; false, with errno, when that failed.
bool SendToDisk(FILE* stream);

/// Gives a closed file another name, and takes away what had it; false, with errno.
bool Rename(const char* from, const char* to);

/// A file without a name, to be written and read, that goes when it is closed; null, with errno.
FILE* OpenTemporary();

/// The text as a file, to be read from its beginning, that goes when it is closed; null when there
/// is no room.
FILE* OpenText(const std::string& text);

/// A stream that keeps what is written on it. Room that lacks throws std::bad_alloc.
class KeptOutput {
  public:
    KeptOutput();
    ~KeptOutput();
    KeptOutput(const KeptOutput&) = delete;
    KeptOutput& operator=(const KeptOutput&) = delete;
    operator FILE*() const { return stream_; }
    /// What was written since it was taken last.
    std::string Take();

  private:
    char* text_ = nullptr;
    std::size_t length_ = 0;
    FILE* stream_;
};

/// Bytes that the system can still give without paging; 0 where it does not tell.
double SystemMemoryLeft();

/// Bytes that the process has held at its peak.
double PeakMemory();
