#include "mxlibDim/platform.h"

#include <fcntl.h>
#include <io.h>
#include <share.h>
#include <sys/stat.h>
#include <windows.h>

// Behind windows.h, whose types it takes.
#include <psapi.h>

#include <cerrno>
#include <cstdlib>
#include <new>
#include <system_error>

#include "mxlibDim/file_path.h"

const char* const kNullDevice = "NUL";

void PrepareProcess() {
    _fmode = _O_BINARY;
    for (FILE* const stream : {stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
}

void OpenClosedStandardStreams(bool) {
    // The C library gives a stream without a descriptor to what was closed: nothing to mix up.
}

bool IsTerminal(FILE* stream) {
    const auto console = reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
    DWORD mode = 0;
    if (GetConsoleMode(console, &mode) == 0) return false;
    SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
    return true;
}

bool MayBeRead(const char* path) {
    constexpr int kReading = 4;
    return _access(path, kReading) == 0;
}

namespace {

FILE* OpenStream(const char* path, int flags, const char* mode) {
    int descriptor = -1;
    const errno_t reason =
        _sopen_s(&descriptor, path, flags | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                 _SH_DENYNO, _S_IREAD | _S_IWRITE);
    if (reason != 0) errno = reason;
    return reason == 0 ? _fdopen(descriptor, mode) : nullptr;
}

}  // namespace

FILE* CreateNew(const char* path) {
    return OpenStream(path, _O_WRONLY, "wb");
}

bool SendToDisk(FILE* stream) {
    return _commit(_fileno(stream)) == 0;
}

bool Rename(const char* from, const char* to) {
    std::error_code error;
    std::filesystem::rename(PathOf(from), PathOf(to), error);
    if (error) errno = error.default_error_condition().value();
    return !error;
}

FILE* OpenTemporary() {
    // tmpfile of older systems wants to write into the root folder.
    char folder[MAX_PATH + 1] = "";
    char name[MAX_PATH] = "";
    if (GetTempPathA(sizeof folder, folder) == 0 || GetTempFileNameA(folder, "tsl", 0, name) == 0) {
        errno = EACCES;
        return nullptr;
    }
    std::remove(name);
    return OpenStream(name, _O_RDWR | _O_TEMPORARY, "w+b");
}

FILE* OpenText(const std::string& text) {
    FILE* const stream = OpenTemporary();
    if (stream == nullptr) return nullptr;
    std::fwrite(text.data(), 1, text.size(), stream);
    std::rewind(stream);
    return stream;
}

KeptOutput::KeptOutput() : stream_(OpenTemporary()) {
    if (stream_ == nullptr) throw std::bad_alloc();
}

KeptOutput::~KeptOutput() {
    std::fclose(stream_);
}

std::string KeptOutput::Take() {
    std::string text(static_cast<std::size_t>(std::ftell(stream_)), '\0');
    const bool isWritten = std::fflush(stream_) == 0 && std::ferror(stream_) == 0;
    std::rewind(stream_);
    const bool isRead = std::fread(text.data(), 1, text.size(), stream_) == text.size();
    std::rewind(stream_);
    if (!isWritten || !isRead) throw std::bad_alloc();
    return text;
}

double SystemMemoryLeft() {
    MEMORYSTATUSEX status = {};
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) != 0 ? static_cast<double>(status.ullAvailPhys) : 0.0;
}

double PeakMemory() {
    PROCESS_MEMORY_COUNTERS counters = {};
    GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
    return static_cast<double>(counters.PeakWorkingSetSize);
}
