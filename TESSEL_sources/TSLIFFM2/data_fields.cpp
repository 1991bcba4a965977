#include "TSLIFFM2/data_fields.h"

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "mxlibDim/reading.h"
#include "mxlibDim/text.h"

namespace {

/// Bytes between the position in the file and its end.
long long BytesLeft(const DataFile& file) {
    struct stat status = {};
    fstat(fileno(file.stream), &status);
    return std::max<long long>(status.st_size - ftello(file.stream), 0);
}

bool HasRoom(const DataFile& file, int count, long long bytesEach) {
    // No count of a real data set comes near; the sizes of what is allocated for it stay integers.
    constexpr int kMost = INT_MAX / 16;
    // The last field of a file needs no separator behind it.
    return count <= kMost && count <= (BytesLeft(file) + 1) / bytesEach;
}

/// Takes the next line if it holds n fields with a tab behind each, one of them empty and none of
/// several words. `*labels` is untouched by any other line.
bool TakeLineWithEmptyLabel(FILE* stream, char* const* labels, int n, int length) {
    for (int c = std::fgetc(stream); c != '\n'; c = std::fgetc(stream))
        if (c != ' ' && c != '\r') return false;
    std::vector<std::string> fields(1);
    for (int c = std::fgetc(stream); c != '\n'; c = std::fgetc(stream)) {
        if (c == EOF || c == ' ' || static_cast<int>(fields.size()) > n + 1) return false;
        if (c == '\t')
            fields.emplace_back();
        else if (c != '\r')
            fields.back().push_back(static_cast<char>(c));
    }
    if (static_cast<int>(fields.size()) != n + 1 || !fields.back().empty()) return false;
    fields.pop_back();
    if (std::find(fields.begin(), fields.end(), "") == fields.end()) return false;
    for (int i = 0; i < n; i++)
        CopyText(labels[i], static_cast<std::size_t>(length), fields[i].c_str());
    return true;
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

void ReadLabels(const DataFile& file, char* const* labels, int n, int length) {
    const off_t start = ftello(file.stream);
    if (start >= 0 && TakeLineWithEmptyLabel(file.stream, labels, n, length)) return;
    if (start >= 0) fseeko(file.stream, start, SEEK_SET);
    ReadWords(file, labels, n, length);
}

void ReadRestOfLine(const DataFile& file, char* text, int length) {
    freadlineckTEMP(file.stream, length, text, file.name);
    std::size_t end = std::strlen(text);
    if (end == static_cast<std::size_t>(length))
        for (int c = std::fgetc(file.stream); c != EOF && c != '\n';) c = std::fgetc(file.stream);
    while (end > 0 && text[end - 1] == ' ') end--;
    text[end] = '\0';
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
