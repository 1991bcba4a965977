#include "mxlibDim/replacement.h"

#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <utility>

#include "mxlibDim/reading.h"

namespace fs = std::filesystem;

namespace {

/// Creates a file of a new name beside `target`. A process that was killed may have left its own.
FILE* CreateBeside(const std::string& target, std::string* name) {
    for (int number = 0;; number++) {
        *name = target + ".tmp" + (number == 0 ? "" : std::to_string(number));
        FILE* stream = std::fopen(name->c_str(), "wx");
        if (stream != nullptr || errno != EEXIST) return stream;
    }
}

/// Whether the old file lets itself be written; says so when it does not.
bool MayBeWritten(const char* name, const char* prefix) {
    FILE* old = fopenck(name, prefix, "r+");
    if (old == nullptr) return false;
    std::fclose(old);
    return true;
}

}  // namespace

FileReplacement::FileReplacement(const char* name, const char* prefix)
    : target_(std::string(prefix != nullptr ? prefix : "") + name) {
    std::error_code ignored;
    const fs::file_status old = fs::status(target_, ignored);
    const bool isNew = fs::symlink_status(target_, ignored).type() == fs::file_type::not_found;
    if (!isNew && !fs::is_regular_file(old)) {
        stream_ = fopenck(name, prefix, "w");
        return;
    }
    if (!isNew) {
        if (!MayBeWritten(name, prefix)) return;
        const fs::path real = fs::canonical(target_, ignored);
        if (!ignored) target_ = real.string();
    }
    stream_ = CreateBeside(target_, &unfinished_);
    if (stream_ == nullptr)
        TellUnopened(name, prefix);
    else if (!isNew)
        fs::permissions(unfinished_, old.permissions(), ignored);
}

FileReplacement::~FileReplacement() {
    if (stream_ == nullptr) return;
    std::fclose(stream_);
    if (!unfinished_.empty()) std::remove(unfinished_.c_str());
}

bool FileReplacement::Commit() {
    FILE* const stream = std::exchange(stream_, nullptr);
    const bool isReplaced = !unfinished_.empty();
    bool isWhole = std::fflush(stream) == 0 && std::ferror(stream) == 0;
    // Some file systems put the new name on the disk before the content, unless they are told.
    if (isWhole && isReplaced) isWhole = fsync(fileno(stream)) == 0;
    isWhole = std::fclose(stream) == 0 && isWhole;
    if (isReplaced) {
        isWhole = isWhole && std::rename(unfinished_.c_str(), target_.c_str()) == 0;
        if (!isWhole) std::remove(unfinished_.c_str());
    }
    return isWhole;
}
