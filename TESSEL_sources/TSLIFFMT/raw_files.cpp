#include "TSLIFFMT/raw_files.h"

#include <string>
#include <utility>

#include "TSLGLOB/dataset.h"
#include "TSLIF2/console.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/terminal.h"
#include "mxlibDim/text.h"
#include "mxlibRes/missing.h"

namespace {

/// The next number in `format`, or missing; the reader closes a file whose end it meets.
template <class T>
T ReadNumber(RawFile& file, const char* format) {
    T number = kMissing;
    if (file.stream != nullptr && freadck1(file.stream, format, &number, file.name) == 0) {
        file.stream = nullptr;
        number = kMissing;
    }
    return number;
}

/// Calls `read` with the stream. A reader that raises an error has closed it.
template <class Read>
void ReadStrictly(RawFile& file, Read read) {
    FILE* stream = std::exchange(file.stream, nullptr);
    read(stream);
    file.stream = stream;
}

void ReadLabel(RawFile& file, char* label) {
    if (file.stream == nullptr) return;
    if (freadck1Word(file.stream, label, kLabelLength, file.name) == 0) file.stream = nullptr;
}

void NumberLabel(char* label, int number) {
    CopyText(label, kLabelLength, std::to_string(number).c_str());
}

}  // namespace

RawFile::~RawFile() {
    CloseRawFile(*this);
}

void AskForRawFile(RawFile& file) {
    CloseRawFile(file);
    file.stream = ReadDataFileName(file.name);
}

void CloseRawFile(RawFile& file) {
    if (file.stream != nullptr) std::fclose(file.stream);
    file.stream = nullptr;
}

void FinishRawFile(RawFile& file) {
    if (file.stream != nullptr && SpeaksToPerson())
        file.numbersLeft = CountNumbersLeft(file.stream);
    CloseRawFile(file);
}

float ReadFloat(RawFile& file) {
    return ReadNumber<float>(file, "%f");
}

double ReadDouble(RawFile& file) {
    return ReadNumber<double>(file, "%lf");
}

float ReadFloatStrictly(RawFile& file) {
    float number = 0.0F;
    ReadStrictly(file, [&](FILE* stream) { freadck(stream, "%f", &number, file.name); });
    return number;
}

void ReadNameStrictly(RawFile& file, char* name) {
    ReadStrictly(file,
                 [&](FILE* stream) { freadlineckTEMP(stream, kSpeciesLength, name, file.name); });
}

LabelSource AskLabelSource(const char* heading, const RawFile& file) {
    std::fprintf(out, "%s\n   2  read labels at the end of file %s\n", heading, file.name);
    return static_cast<LabelSource>(ReadOption("Type option no.: ", "1 2"));
}

void SetLabels(LabelSource source, int n, char** labels, RawFile& file) {
    for (int i = 0; i < n; i++)
        if (source == LabelSource::kFile)
            ReadLabel(file, labels[i]);
        else
            NumberLabel(labels[i], i + 1);
}

void SetLabelsStrictly(LabelSource source, int n, char** labels, RawFile& file) {
    if (source == LabelSource::kDefault) return SetLabels(source, n, labels, file);
    for (int i = 0; i < n; i++)
        ReadStrictly(
            file, [&](FILE* stream) { freadckWord(stream, labels[i], kLabelLength, file.name); });
}

void PrintLabels(int n, const char* const* labels, char separator) {
    for (int i = 0; i < n; i++)
        std::fprintf(out, "%*.*s%c", kLabelLength, kLabelLength, labels[i], separator);
}

int AskForCount(const char* question) {
    std::fputs(question, out);
    return ReadIntegerIn("%d\n", "-", 1.0, 2147483647.0);
}

void RequireRoomForTable(int rows, int cols, int elementSize) {
    constexpr double kLargestTable = 4294967296.0;  // bytes
    constexpr double kRowOverhead = 32.0;           // bytes: pointer, bookkeeping, rounding
    if (rows * (kRowOverhead + static_cast<double>(cols) * elementSize) > kLargestTable)
        RaiseError(kOutOfMemory);
}
