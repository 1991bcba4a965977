#include "mxlibDim/standard_streams.h"

ConsoleStreams consoleStreams;

void FlushScreen() {
    std::fflush(ScreenStream());
    if (consoleStreams.screenFlushed) consoleStreams.screenFlushed();
}
