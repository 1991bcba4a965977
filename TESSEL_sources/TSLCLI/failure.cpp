#include "TSLCLI/failure.h"

#include <cctype>
#include <cstdio>

#include "mxlibDim/failure.h"

bool quiet = false;

void FailRun(const std::string& message) {
    throw CommandFailure(kRunFailed, message);
}

void FailUsage(const std::string& message) {
    throw CommandFailure(kWrongUsage, message);
}

std::string OneLine(std::string_view text) {
    std::string line;
    bool parted = false;
    for (const char c : text) {
        const auto code = static_cast<unsigned char>(c);
        if (std::isspace(code) != 0) parted = true;
        if (std::isspace(code) != 0 || std::iscntrl(code) != 0) continue;
        if (parted && !line.empty()) line.push_back(' ');
        line.push_back(c);
        parted = false;
    }
    return line;
}

const char* TextOfRaised(int code) {
    switch (code) {
        case kOutOfMemory:
            return "out of memory: take a smaller table or a machine with more memory";
        case kEndOfFile:
            return "a file ended too early or holds a word where a number belongs";
        case kFailedOutput:
            return "a file could not be written: free the disk or choose another folder";
        default:
            return "a file could not be opened";
    }
}

void Warn(const std::string& message) {
    std::fprintf(stderr, "TESSEL: warning: %s\n", message.c_str());
}

void Tell(const std::string& line) {
    if (!quiet) std::printf("%s\n", line.c_str());
}
