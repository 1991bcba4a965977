#pragma once
/// \file
/// Standard output out of the way.

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

/// The progress line goes nowhere while a test runs.
class Silence {
  public:
    Silence() : kept_(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~Silence() {
        std::fflush(stdout);
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

  private:
    int kept_;
};
