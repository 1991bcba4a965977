#include "mxlibDim/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

ConsoleStreams consoleStreams;

void OpenClosedStandardStreams(bool writingFails) {
    // The lowest free number is the one that the opening takes.
    for (int descriptor = STDIN_FILENO; descriptor <= STDERR_FILENO; descriptor++)
        if (fcntl(descriptor, F_GETFD) == -1)
            open("/dev/null", descriptor == STDIN_FILENO || writingFails ? O_RDONLY : O_WRONLY);
}
