#include "mxlibDim/available_memory.h"

#include "mxlibDim/platform.h"

double (*availableMemoryHook)() = nullptr;

double AvailableMemory() {
    return availableMemoryHook != nullptr ? availableMemoryHook() : SystemMemoryLeft();
}
