#include "mxlibDim/available_memory.h"

#include "mxlibDim/scoped.h"

double (*availableMemoryHook)() = nullptr;

double AvailableMemory() {
    if (availableMemoryHook != nullptr) return availableMemoryHook();
    constexpr double kBytesPerUnit = 1024.0;
    const ScopedFile file(std::fopen("/proc/meminfo", "r"));
    char line[128];
    double units = 0.0;
    while (file != nullptr && std::fgets(line, sizeof line, file) != nullptr)
        if (std::sscanf(line, "MemAvailable: %lf", &units) == 1) return units * kBytesPerUnit;
    return 0.0;
}
