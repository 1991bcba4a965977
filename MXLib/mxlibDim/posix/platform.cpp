#include "mxlibDim/platform.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <new>

const char* const kNullDevice = "/dev/null";

void PrepareProcess() {}

void OpenClosedStandardStreams(bool writingFails) {
    // The lowest free number is the one that the opening takes.
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; descriptor++)
        if (fcntl(descriptor, F_GETFD) == -1)
            open(kNullDevice, descriptor == STDIN_FILENO || writingFails ? O_RDONLY : O_WRONLY);
}

bool IsTerminal(FILE* stream) {
    return isatty(fileno(stream)) == 1;
}

bool MayBeRead(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_NONBLOCK);
    if (descriptor >= 0) close(descriptor);
    return descriptor >= 0;
}

FILE* CreateNew(const char* path) {
    return std::fopen(path, "wx");
}

bool SendToDisk(FILE* stream) {
    return fsync(fileno(stream)) == 0;
}

bool Rename(const char* from, const char* to) {
    return std::rename(from, to) == 0;
}

FILE* OpenTemporary() {
    return std::tmpfile();
}

FILE* OpenText(const std::string& text) {
    FILE* const stream = fmemopen(nullptr, text.size() + 1, "w+");
    if (stream == nullptr) return nullptr;
    std::fwrite(text.data(), 1, text.size(), stream);
    std::rewind(stream);
    return stream;
}

KeptOutput::KeptOutput() : stream_(open_memstream(&text_, &length_)) {
    if (stream_ == nullptr) throw std::bad_alloc();
}

KeptOutput::~KeptOutput() {
    std::fclose(stream_);
    std::free(text_);
}

std::string KeptOutput::Take() {
    if (std::fflush(stream_) != 0 || std::ferror(stream_) != 0) throw std::bad_alloc();
    std::string text(text_, length_);
    std::rewind(stream_);
    return text;
}

double SystemMemoryLeft() {
    constexpr double kBytesPerUnit = 1024.0;
    std::ifstream file("/proc/meminfo");
    double units = 0.0;
    for (std::string word; file >> word;)
        if (word == "MemAvailable:" && file >> units) return units * kBytesPerUnit;
    return 0.0;
}

double PeakMemory() {
    rusage used = {};
    getrusage(RUSAGE_SELF, &used);
    return 1024.0 * static_cast<double>(used.ru_maxrss);
}
