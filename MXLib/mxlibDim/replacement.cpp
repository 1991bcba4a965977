#include "mxlibDim/replacement.h"

#include <cerrno>
#include <cstring>
#include <set>
#include <utility>

#include "mxlibDim/failure.h"
#include "mxlibDim/file_path.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/reading.h"
#include "mxlibPar/ranks.h"

namespace fs = std::filesystem;

namespace {

/// Files under way. The end of the process unwinds no scope: what is left here then goes with it.
struct FilesUnderWay {
    ~FilesUnderWay() {
        for (const std::string& name : names) std::remove(name.c_str());
    }
    std::set<std::string> names;
};

std::set<std::string>& NamesUnderWay() {
    static FilesUnderWay files;
    return files.names;
}

/// Creates a file of a new name beside `target`. A process that was killed may have left its own.
FILE* CreateBeside(const std::string& target, std::string* name) {
    for (int number = 0;; number++) {
        *name = target + ".tmp" + (number == 0 ? "" : std::to_string(number));
        const bool isAdded = NamesUnderWay().insert(*name).second;
        FILE* stream = CreateNew(name->c_str());
        if (stream != nullptr) return stream;
        const int reason = errno;
        if (isAdded) NamesUnderWay().erase(*name);
        errno = reason;
        if (reason != EEXIST) return nullptr;
    }
}

/// Whether the old file lets itself be written; says so when it does not.
bool MayBeWritten(const char* name, const char* prefix) {
    FILE* old = fopenck(name, prefix, "a");
    if (old == nullptr) return false;
    std::fclose(old);
    return true;
}

/// False, with errno, when one of the files fails.
bool CopyContent(const std::string& from, FILE* to) {
    FILE* const old = std::fopen(from.c_str(), "r");
    if (old == nullptr) return false;
    char block[1 << 15];
    std::size_t size = 0;
    while ((size = std::fread(block, 1, sizeof block, old)) > 0)
        if (std::fwrite(block, 1, size, to) != size) break;
    const bool isWhole = std::ferror(old) == 0 && std::ferror(to) == 0;
    const int reason = errno;
    std::fclose(old);
    errno = reason;
    return isWhole;
}

/// With the reason that errno tells.
[[noreturn]] void RaiseFailedOutput(const std::string& name) {
    RaiseError(kFailedOutput, name + ": " + std::strerror(errno));
}

}  // namespace

FileReplacement::FileReplacement(const char* name, const char* prefix, Start start)
    : name_(std::string(prefix != nullptr ? prefix : "") + name), target_(name_) {
    if (!IsFirstRank()) {
        stream_ = std::fopen(kNullDevice, "w");
        return;
    }
    std::error_code ignored;
    const fs::file_status old = fs::status(PathOf(target_), ignored);
    isNew_ = fs::symlink_status(PathOf(target_), ignored).type() == fs::file_type::not_found;
    if (!isNew_ && !fs::is_regular_file(old)) {
        stream_ = fopenck(name, prefix, start == Start::kEmpty ? "w" : "a");
        return;
    }
    if (!isNew_) {
        if (!MayBeWritten(name, prefix)) return;
        const fs::path real = fs::canonical(PathOf(target_), ignored);
        if (!ignored) target_ = NameOf(real);
    }
    stream_ = CreateBeside(target_, &unfinished_);
    if (stream_ == nullptr) TellUnopened(name, prefix);
    if (stream_ == nullptr || isNew_) return;
    fs::permissions(PathOf(unfinished_), old.permissions(), ignored);
    if (start == Start::kOldContent && !CopyContent(target_, stream_)) {
        const int reason = errno;
        Discard();
        errno = reason;
        RaiseFailedOutput(name_);
    }
}

FileReplacement::~FileReplacement() {
    if (stream_ != nullptr) Discard();
}

void FileReplacement::Discard() {
    std::fclose(std::exchange(stream_, nullptr));
    if (unfinished_.empty()) return;
    std::remove(unfinished_.c_str());
    NamesUnderWay().erase(unfinished_);
}

bool FileReplacement::Commit() {
    FILE* const stream = std::exchange(stream_, nullptr);
    const bool isReplaced = !unfinished_.empty();
    errno = 0;
    bool isWhole = std::fflush(stream) == 0 && std::ferror(stream) == 0;
    // Some file systems put the new name on the disk before the content, unless they are told.
    if (isWhole && isReplaced) isWhole = SendToDisk(stream);
    // An error that was met before, and not again, has left its mark on the stream alone.
    int reason = isWhole ? 0 : errno != 0 ? errno : EIO;
    if (std::fclose(stream) != 0 && reason == 0) reason = errno;
    if (isReplaced) {
        if (reason == 0 && !Rename(unfinished_.c_str(), target_.c_str())) reason = errno;
        if (reason != 0) std::remove(unfinished_.c_str());
        NamesUnderWay().erase(unfinished_);
    }
    errno = reason;
    return reason == 0;
}

void FileReplacement::Finish() {
    if (stream_ != nullptr && !Commit()) RaiseFailedOutput(name_);
}

void FileReplacement::Flush() {
    if (std::fflush(stream_) != 0) RaiseFailedOutput(name_);
}

ResultsFile::ResultsFile(const char* name, const char* prefix, Start start)
    : FileReplacement(name, prefix, start) {
    if (*this == nullptr) RaiseError(kFailedOpening);
}
