#pragma once
/// \file
/// What the targets share: the input as a file of its own, a quiet console, an error as an end.

#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "TSLGLOB/shell.h"
#include "mxlibDim/failure.h"

/// Makes a private folder, in memory where there is one, the working directory for good, and sends
/// what the program writes on its console nowhere. The fuzzer keeps its own error stream.
inline void EnterPrivateFolder() {
    struct stat status;
    const bool hasMemory = stat("/dev/shm", &status) == 0 && access("/dev/shm", W_OK) == 0;
    static std::string folder =
        std::string(hasMemory ? "/dev/shm" : "/tmp") + "/tessel-fuzz-XXXXXX";
    if (mkdtemp(folder.data()) == nullptr || chdir(folder.c_str()) != 0) std::abort();
    std::atexit([] {
        if (std::system(("rm -rf " + folder).c_str()) != 0) std::abort();
    });
    stdin = std::fopen("/dev/null", "r");
    stdout = std::fopen("/dev/null", "w");
    stderr = std::fopen("/dev/null", "w");
    InitGlobals();
    processEndings.end = [](int) { std::abort(); };
    processEndings.rest = [] { std::abort(); };
}

/// Writes a file of the working directory.
inline void WriteInput(const char* name, const void* data, std::size_t size) {
    FILE* stream = std::fopen(name, "w");
    if (stream == nullptr || std::fwrite(data, 1, size, stream) != size) std::abort();
    std::fclose(stream);
}

/// Runs `body`; false when it raised an error.
template <class Body>
bool Survives(const Body& body) {
    try {
        body();
        return true;
    } catch (const RaisedError&) {
        return false;
    }
}
