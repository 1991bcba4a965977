#include "TSLIFFM2/data_fields.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>

#include "mxlibDim/reading.h"

namespace {

/// Bytes between the position in the file and its end. A pipe tells no size.
long long BytesLeft(const DataFile& file) {
    constexpr long long kUntold = 64LL << 20;
    struct stat status;
    if (fstat(fileno(file.stream), &status) != 0 || !S_ISREG(status.st_mode)) return kUntold;
    return std::max<long long>(status.st_size - ftello(file.stream), 0);
}

bool HasRoom(const DataFile& file, int count, long long bytesEach) {
    // No count of a real data set comes near; the sizes of what is allocated for it stay integers.
    constexpr int kMost = INT_MAX / 16;
    // The last field of a file needs no separator behind it.
    return count <= kMost && count <= (BytesLeft(file) + 1) / bytesEach;
}

}  // namespace

int ReadInt(const DataFile& file) {
    int value = 0;
    freadck(file.stream, "%d", &value, file.name);
    return value;
}

void ReadInts(const DataFile& file, int* values, int n) {
    for (int i = 0; i < n; i++) values[i] = ReadInt(file);
}

void ReadFloats(const DataFile& file, float* values, int n) {
    for (int i = 0; i < n; i++) freadck(file.stream, "%f", &values[i], file.name);
}

void ReadWords(const DataFile& file, char* const* words, int n, int length) {
    for (int i = 0; i < n; i++) freadckWord(file.stream, words[i], length, file.name);
}

int ReadIntWithin(const DataFile& file, int lowest, int highest) {
    const int value = ReadInt(file);
    if (value < lowest || value > highest) FailAtEnd(file.stream, file.name);
    return value;
}

int ReadCount(const DataFile& file, int lowest, long long bytesEach) {
    const int count = ReadIntWithin(file, lowest, INT_MAX);
    RequireRoom(file, count, bytesEach);
    return count;
}

void RequireRoom(const DataFile& file, int count, long long bytesEach) {
    if (!HasRoom(file, count, bytesEach)) FailAtEnd(file.stream, file.name);
}

void DecodeStates(const char* word, int n, float* states) {
    const std::size_t length = std::strlen(word);
    for (int j = 0; j < n; j++) {
        const std::size_t at = 2 * static_cast<std::size_t>(j);
        char state[3] = {};
        if (at < length) std::strncpy(state, word + at, 2);
        states[j] = static_cast<float>(std::atof(state));
    }
}
