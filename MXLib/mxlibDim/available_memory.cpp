#include "mxlibDim/available_memory.h"

#include <fstream>
#include <string>

double (*availableMemoryHook)() = nullptr;

double AvailableMemory() {
    if (availableMemoryHook != nullptr) return availableMemoryHook();
    constexpr double kBytesPerUnit = 1024.0;
    std::ifstream file("/proc/meminfo");
    double units = 0.0;
    for (std::string word; file >> word;)
        if (word == "MemAvailable:" && file >> units) return units * kBytesPerUnit;
    return 0.0;
}
