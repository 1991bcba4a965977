#include "TSLCLI/failure.h"

#include <cctype>
#include <cstdio>

#include "mxlibPar/ranks.h"

bool quiet = false;

namespace {

FILE* copyOfMessages = nullptr;  // open to the end of the process

std::string TextOfCode(int code) {
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

}  // namespace

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

std::string TextOfRaised(const RaisedError& error) {
    const std::string reason = error.reason.empty() ? "" : " (" + error.reason + ")";
    return TextOfCode(error.code) + reason;
}

void CopyMessagesTo(const std::string& path) {
    if (!IsFirstRank()) return;
    copyOfMessages = std::fopen(path.c_str(), "w");
    if (copyOfMessages == nullptr) FailRun(path + ": the messages cannot be written there");
}

void TellMessage(const std::string& message) {
    for (FILE* const stream : {stderr, copyOfMessages}) {
        if (stream == nullptr) continue;
        std::fprintf(stream, "TESSEL: %s\n", message.c_str());
        std::fflush(stream);
    }
}

void RequireDelivery() {
    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0)
        FailRun("the standard output could not be written: free the disk or give another one");
    if (copyOfMessages != nullptr && std::ferror(copyOfMessages) != 0)
        FailRun("the file of --messages could not be written: free the disk or give another one");
}

void Warn(const std::string& message) {
    if (IsFirstRank()) TellMessage("warning: " + message);
}

void Tell(const std::string& line) {
    if (!quiet) std::printf("%s\n", line.c_str());
}
