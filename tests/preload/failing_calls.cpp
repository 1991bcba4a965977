// Preloaded into the program, this lets calls on files fail as on a bad or full disk. The system
// calls of streams are out of reach, so that the streams of the named file are made here.
// TESSEL_FAILURE holds the call (read, write, close, fsync, rename), a part of the file's name,
// which of these calls fails, counted from 1, and the error. The calls behind it succeed; a close
// counts where something was written.

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace {

char failing[16], part[64];
int number, error, calls;

bool Concerns(const std::string& name) {
    static const char* const text = std::getenv("TESSEL_FAILURE");
    static const bool isTold = text != nullptr && std::sscanf(text, "%15s %63s %d %d", failing,
                                                              part, &number, &error) == 4;
    return isTold && name.find(part) != std::string::npos;
}

bool Fails(const char* call, const std::string& name) {
    if (!Concerns(name) || std::strcmp(call, failing) != 0 || ++calls != number) return false;
    errno = error;
    return true;
}

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

struct File {
    int descriptor;
    std::string name;
    bool isWritten = false;
    FILE* stream = nullptr;
};

std::map<FILE*, int>& Descriptors() {
    static std::map<FILE*, int> descriptors;
    return descriptors;
}

// A few bytes at a time, so that a failure meets the middle of a number.
ssize_t Read(void* cookie, char* bytes, std::size_t size) {
    const File& file = *static_cast<File*>(cookie);
    if (Fails("read", file.name)) return -1;
    return read(file.descriptor, bytes, std::min<std::size_t>(size, 7));
}

ssize_t Write(void* cookie, const char* bytes, std::size_t size) {
    File& file = *static_cast<File*>(cookie);
    file.isWritten = true;
    return Fails("write", file.name) ? 0 : write(file.descriptor, bytes, size);
}

int Seek(void* cookie, off64_t* offset, int whence) {
    *offset = lseek64(static_cast<File*>(cookie)->descriptor, *offset, whence);
    return *offset < 0 ? -1 : 0;
}

int Close(void* cookie) {
    File* const file = static_cast<File*>(cookie);
    close(file->descriptor);
    const bool fails = file->isWritten && Fails("close", file->name);
    Descriptors().erase(file->stream);
    delete file;
    return fails ? -1 : 0;
}

}  // namespace

extern "C" FILE* fopen(const char* name, const char* mode) {
    if (!Concerns(name)) return Real<FILE*(const char*, const char*)>("fopen")(name, mode);
    const int access = *mode == 'r' ? O_RDONLY : O_WRONLY | O_CREAT;
    const int start = *mode == 'a' ? O_APPEND : *mode == 'w' ? O_TRUNC : 0;
    const int descriptor =
        open(name, access | start | (std::strchr(mode, 'x') != nullptr ? O_EXCL : 0), 0644);
    if (descriptor < 0) return nullptr;
    File* const file = new File{descriptor, name};
    file->stream = fopencookie(file, std::string(1, *mode).c_str(), {Read, Write, Seek, Close});
    Descriptors()[file->stream] = descriptor;
    return file->stream;
}

extern "C" int fileno(FILE* stream) {
    const auto found = Descriptors().find(stream);
    return found != Descriptors().end() ? found->second : Real<int(FILE*)>("fileno")(stream);
}

extern "C" int fsync(int descriptor) {
    char name[4096] = "";
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    const bool isNamed = readlink(link.c_str(), name, sizeof name - 1) > 0;
    return isNamed && Fails("fsync", name) ? -1 : Real<int(int)>("fsync")(descriptor);
}

extern "C" int rename(const char* from, const char* to) {
    return Fails("rename", to) ? -1 : Real<int(const char*, const char*)>("rename")(from, to);
}
