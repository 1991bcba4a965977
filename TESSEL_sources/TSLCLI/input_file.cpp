#include "TSLCLI/input_file.h"

#include <cerrno>
#include <cstring>

#include "TSLCLI/failure.h"

FILE* OpenInput(const std::string& path) {
    FILE* const stream = std::fopen(path.c_str(), "rb");
    if (stream == nullptr) FailRun(path + ": the file cannot be opened: " + std::strerror(errno));
    return stream;
}

void ReadInput(FILE* stream, const std::string& path, std::size_t bytes, std::string* block) {
    block->resize(bytes);
    block->resize(std::fread(block->data(), 1, bytes, stream));
    if (std::ferror(stream) != 0)
        FailRun(path + ": the file cannot be read: " + std::strerror(errno));
}
