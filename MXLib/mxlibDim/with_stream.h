#pragma once
/// \file
/// One owner of an open file.

#include <cstdio>

#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"

/// Runs `body`, which works on `stream` alone, and closes the stream on every way out. The readers
/// raise kEndOfFile only after they have ended the stream; any other error leaves it open.
template <class Body>
void WithStream(FILE* stream, const Body& body) {
    try {
        body();
    } catch (const RaisedError& error) {
        if (error.code != kEndOfFile) EndStream(stream);
        throw;
    }
    EndStream(stream);
}
