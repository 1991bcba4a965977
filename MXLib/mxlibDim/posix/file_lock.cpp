#include "mxlibDim/file_lock.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "mxlibPar/ranks.h"

namespace {

struct LockFile {
    int descriptor;
    bool isNew;
    short lock;  ///< F_WRLCK, or F_RDLCK on a file that may only be read: it excludes the former
};

LockFile OpenLockFile(const char* path) {
    constexpr int kFlags = O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    constexpr mode_t kMode = 0666;
    int descriptor = open(path, O_RDWR | O_CREAT | O_EXCL | kFlags, kMode);
    if (descriptor >= 0) return {descriptor, true, F_WRLCK};
    descriptor = open(path, O_RDWR | O_CREAT | kFlags, kMode);
    if (descriptor >= 0) return {descriptor, false, F_WRLCK};
    return {open(path, O_RDONLY | kFlags), false, F_RDLCK};
}

/// Whether the path still names the open file: who held the lock before may have removed it.
bool IsAtPath(int descriptor, const char* path) {
    struct stat open = {};
    struct stat named = {};
    return fstat(descriptor, &open) == 0 && open.st_nlink > 0 && stat(path, &named) == 0 &&
           open.st_dev == named.st_dev && open.st_ino == named.st_ino;
}

}  // namespace

FileLock::FileLock(const std::string& path) {
    if (!IsFirstRank()) return;      // rank 0 has it for all
    constexpr int kMostTries = 100;  // each loses against a program that just left
    for (int i = 0; i < kMostTries; i++) {
        const LockFile file = OpenLockFile(path.c_str());
        if (file.descriptor < 0) return;
        struct flock whole = {};
        whole.l_type = file.lock;
        whole.l_whence = SEEK_SET;
        const bool isLocked = fcntl(file.descriptor, F_SETLK, &whole) == 0;
        isTaken_ = !isLocked && (errno == EACCES || errno == EAGAIN);
        const bool isGone = !isLocked && errno == ESTALE;  // removed on another machine
        if (isLocked && IsAtPath(file.descriptor, path.c_str())) {
            descriptor_ = file.descriptor;
            if (file.lock == F_WRLCK) path_ = path;
            return;
        }
        if (!isLocked && !isTaken_ && !isGone && file.isNew) unlink(path.c_str());
        close(file.descriptor);
        if (!isLocked && !isGone) return;
    }
}

FileLock::FileLock(FileLock&& other) noexcept
    : path_(std::move(other.path_)),
      descriptor_(std::exchange(other.descriptor_, -1)),
      isTaken_(std::exchange(other.isTaken_, false)) {}

FileLock::~FileLock() {
    if (descriptor_ < 0) return;
    // While it is locked: nobody else has it, and who waits to lock it will see that it is gone.
    if (!path_.empty()) unlink(path_.c_str());
    close(descriptor_);
}
