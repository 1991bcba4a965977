#include "mxlibDim/file_lock.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <cstdint>
#include <utility>

#include "mxlibPar/ranks.h"

// A file that nobody else may open while it is open, and that the system removes with its handle.
FileLock::FileLock(const std::string& path) {
    if (!IsFirstRank()) return;  // rank 0 has it for all
    constexpr DWORD kShared = 0;
    HANDLE const file =
        CreateFileA(path.c_str(), GENERIC_READ | GENERIC_WRITE | DELETE, kShared, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        isTaken_ = GetLastError() == ERROR_SHARING_VIOLATION;
    else
        descriptor_ = _open_osfhandle(reinterpret_cast<std::intptr_t>(file), _O_RDWR);
}

FileLock::FileLock(FileLock&& other) noexcept
    : descriptor_(std::exchange(other.descriptor_, -1)),
      isTaken_(std::exchange(other.isTaken_, false)) {}

FileLock::~FileLock() {
    if (descriptor_ >= 0) _close(descriptor_);
}
