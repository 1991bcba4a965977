// Preloaded into the program, this lets calls on files fail as on a bad or full disk. The library
// of streams makes its system calls out of reach, so that the streams of the named file are made
// here. TESSEL_FAILURE holds the call (fopen, read, write, close, fsync, rename), a part of the
// file's name, which of these calls fails, counted from 1, and the error. The calls behind it
// succeed; a close counts where something was written.

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

struct Failure {
    char call[16] = "", name[64] = "";
    int number = 0, error = 0, calls = 0;

    Failure() {
        const char* text = std::getenv("TESSEL_FAILURE");
        if (text != nullptr) std::sscanf(text, "%15s %63s %d %d", call, name, &number, &error);
    }
    bool Concerns(const char* file) const {
        return name[0] != '\0' && std::strstr(file, name) != nullptr;
    }
    bool Strikes(const char* made, const char* file) {
        if (std::strcmp(made, call) != 0 || !Concerns(file) || ++calls != number) return false;
        errno = error;
        return true;
    }
};

Failure& TheFailure() {
    static Failure failure;
    return failure;
}

template <class Function>
Function* Real(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

/// A stream made here: its real one, which is never used but by its descriptor.
struct Made {
    FILE* real;
    std::string name;
    bool isWritten = false;
};

std::map<FILE*, int>& Descriptors() {
    static std::map<FILE*, int> descriptors;
    return descriptors;
}

// A few bytes at a time, so that a failure meets the middle of a number.
ssize_t Read(void* made, char* bytes, std::size_t size) {
    const Made& file = *static_cast<Made*>(made);
    if (TheFailure().Strikes("read", file.name.c_str())) return -1;
    return read(Real<int(FILE*)>("fileno")(file.real), bytes, std::min<std::size_t>(size, 7));
}

ssize_t Write(void* made, const char* bytes, std::size_t size) {
    Made& file = *static_cast<Made*>(made);
    file.isWritten = true;
    if (TheFailure().Strikes("write", file.name.c_str())) return 0;
    return write(Real<int(FILE*)>("fileno")(file.real), bytes, size);
}

int Seek(void* made, off64_t* offset, int whence) {
    const Made& file = *static_cast<Made*>(made);
    *offset = lseek64(Real<int(FILE*)>("fileno")(file.real), *offset, whence);
    return *offset < 0 ? -1 : 0;
}

int Close(void* made) {
    Made* const file = static_cast<Made*>(made);
    const bool fails = file->isWritten && TheFailure().Strikes("close", file->name.c_str());
    const int error = errno;
    Real<int(FILE*)>("fclose")(file->real);
    delete file;
    errno = error;
    return fails ? -1 : 0;
}

}  // namespace

extern "C" FILE* fopen(const char* name, const char* mode) {
    if (TheFailure().Strikes("fopen", name)) return nullptr;
    FILE* const real = Real<FILE*(const char*, const char*)>("fopen")(name, mode);
    if (real == nullptr || !TheFailure().Concerns(name)) return real;
    // The cookie interface knows no mode x.
    const std::string plain(mode, std::strcspn(mode, "x"));
    FILE* const stream =
        fopencookie(new Made{real, name}, plain.c_str(), {Read, Write, Seek, Close});
    Descriptors()[stream] = Real<int(FILE*)>("fileno")(real);
    return stream;
}

extern "C" int fileno(FILE* stream) {
    const auto found = Descriptors().find(stream);
    return found != Descriptors().end() ? found->second : Real<int(FILE*)>("fileno")(stream);
}

extern "C" int fclose(FILE* stream) {
    Descriptors().erase(stream);
    return Real<int(FILE*)>("fclose")(stream);
}

extern "C" int fsync(int descriptor) {
    char name[4096] = "";
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (readlink(link.c_str(), name, sizeof name - 1) > 0 && TheFailure().Strikes("fsync", name))
        return -1;
    return Real<int(int)>("fsync")(descriptor);
}

extern "C" int rename(const char* from, const char* to) {
    if (TheFailure().Strikes("rename", to)) return -1;
    return Real<int(const char*, const char*)>("rename")(from, to);
}
