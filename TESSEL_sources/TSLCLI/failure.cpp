#include "TSLCLI/failure.h"

#include <cstdio>

bool quiet = false;

void FailRun(const std::string& message) {
    throw CommandFailure(kRunFailed, message);
}

void FailUsage(const std::string& message) {
    throw CommandFailure(kWrongUsage, message);
}

void Warn(const std::string& message) {
    std::fprintf(stderr, "TESSEL: warning: %s\n", message.c_str());
}

void Tell(const std::string& line) {
    if (!quiet) std::printf("%s\n", line.c_str());
}
