#include "TSLCLI/input_file.h"

#include <cerrno>
#include <cstring>

#include "TSLCLI/failure.h"
#include "mxlibDim/reading.h"

InputFile::InputFile(const std::string& path)
    : path_(path), stream_(OpenToRead(path.c_str(), "rb")) {
    if (stream_ == nullptr) FailRun(path + ": the file cannot be opened: " + std::strerror(errno));
}

InputFile::~InputFile() {
    std::fclose(stream_);
}

std::string InputFile::Read(std::size_t bytes) {
    std::string block(bytes, '\0');
    block.resize(std::fread(block.data(), 1, bytes, stream_));
    if (std::ferror(stream_) != 0)
        FailRun(path_ + ": the file cannot be read: " + std::strerror(errno));
    return block;
}

std::string ReadWhole(const std::string& path) {
    constexpr std::size_t kBlock = std::size_t{1} << 20U;
    InputFile file(path);
    std::string text;
    for (std::string block = file.Read(kBlock); !block.empty(); block = file.Read(kBlock))
        text += block;
    return text;
}
