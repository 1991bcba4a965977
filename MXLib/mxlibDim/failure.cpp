#include "mxlibDim/failure.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <utility>

#include "mxlibDim/standard_streams.h"

ProcessEndings processEndings;

void RaiseError(int code, std::string reason) {
    throw RaisedError{code, std::move(reason)};
}

void EndProgram(int status) {
    if (processEndings.end != nullptr) processEndings.end(status);
    std::exit(status);
}

void RestForever() {
    FlushScreen();
    for (;;) {
        if (processEndings.rest != nullptr) processEndings.rest();
        std::this_thread::sleep_for(std::chrono::seconds(1));
    }
}
