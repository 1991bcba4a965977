#include "TSLIF2/console.h"

#include <algorithm>
#include <cstring>
#include <string>

#include "TSLGLOB/settings.h"
#include "TSLGLOB/shell.h"
#include "iflibG/iflibG.h"
#include "mxlibDim/platform.h"
#include "mxlibDim/reading.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/terminal.h"

int ReadCharIn(const char* accepted) {
    return ScanChar(in, accepted, "input");
}

double ReadNumberIn(const char*, const char* accepted, double lower, double upper) {
    return ScanNumber(in, "input", accepted, lower, upper);
}

int ReadIntegerIn(const char* format, const char* accepted, double lower, double upper) {
    return TruncateToInt(ReadNumberIn(format, accepted, lower, upper));
}

void ReadStringIn(const char*, char* destination, int length) {
    freadckWord(in, destination, length, "input");
}

void ReadLineIn(char* destination, int n) {
    freadlineck(in, n, destination, "input");
}

void TellNumbersLeft(const char* fileName, long long count) {
    const std::string line = fileName + (": " + std::to_string(count)) + " numbers are left";
    if (count > 0) TellPerson((line + " behind the last one that was read.").c_str());
}

void TellNumbersLeft(FILE* stream, const char* fileName) {
    if (SpeaksToPerson()) TellNumbersLeft(fileName, CountNumbersLeft(stream));
}

FILE* ReadDataFileName(char* destination) {
    for (;;) {
        std::fprintf(out, "Enter data file name: ");
        ReadLineIn(destination, kTypedFileNameLength);
        FILE* stream = fopenck(destination, nullptr, "r");
        if (stream != nullptr) return stream;
    }
}

int ReadOption(const char* options, const char* accepted) {
    std::fputs(options, out);
    return ReadIntegerIn("%d\n", accepted);
}

bool ReadYesNo(const char* question) {
    std::fputs(question, out);
    return ReadCharIn("y n") == 'y';
}

namespace {

constexpr int kStartOver = -1;

bool AskWhetherFromFile() {
    std::fprintf(ScreenStream(), "Read input from file (f) or from the keyboard (k)? f/k ");
    const bool fromFile = ScanChar(stdin, "f k", "keyboard") == 'f';
    ClearLineLength(57);
    return fromFile;
}

bool AskWhetherCorrect() {
    std::fprintf(ScreenStream(), "Are these correct? y/n ");
    return ScanChar(stdin, "y n", "input") == 'y';
}

/// Opens the file that the user names; null, and a line end, when there is none.
FILE* AskForFile(const char* content, char* name) {
    std::fprintf(ScreenStream(), "Enter name of file containing %s: ", content);
    FILE* file = nullptr;
    if (ScanString(stdin, kTypedFileNameLength, name, nullptr, 1, "keyboard") != nullptr)
        file = fopenck(name, nullptr, "r");
    if (file == nullptr) std::fprintf(ScreenStream(), "\n");
    return file;
}

/// Reads n integers. At the end of a file the rest stays 0; -1 ends the reading with `*startOver`
/// set. False when the stream ended, and is closed.
bool ReadIntegers(FILE* stream, const char* name, int n, int* values, const char* accepted,
                  bool* startOver) {
    std::fill(values, values + n, 0);
    *startOver = false;
    for (int i = 0; i < n && !*startOver; i++) {
        double number = 0.0;
        if (!ScanNumberOrEnd(stream, name, accepted, 0.0, 0.0, &number)) return false;
        values[i] = TruncateToInt(number);
        *startOver = values[i] == kStartOver;
    }
    return true;
}

bool IntegersFromFile(int n, int* values, const char* label, const char* accepted) {
    char name[kTypedFileNameLength + 1];
    FILE* file = AskForFile(label, name);
    if (file == nullptr) return false;
    bool startOver = false;
    if (ReadIntegers(file, name, n, values, accepted, &startOver)) {
        if (!startOver) TellNumbersLeft(file, name);
        std::fclose(file);
    }
    std::fprintf(ScreenStream(), "%s:\t", label);
    for (int i = 0; i < n; i++) std::fprintf(ScreenStream(), "%d\t", values[i]);
    std::fprintf(ScreenStream(), startOver ? "\n\n" : "\n");
    return !startOver;
}

bool IntegersFromKeyboard(int n, int* values, const char* label, const char* accepted) {
    std::fprintf(ScreenStream(), "Enter %s: \t", label);
    bool startOver = false;
    ReadIntegers(in, "keyboard", n, values, accepted, &startOver);
    if (startOver) std::fprintf(ScreenStream(), "\n");
    return !startOver;
}

/// Labels that the file does not hold are empty.
bool LabelsFromFile(int n, int width, char** labels, const char* label) {
    char name[kTypedFileNameLength + 1];
    FILE* file = AskForFile("the labels", name);
    if (file == nullptr) return false;
    int read = 0;
    while (read < n && freadck1Word(file, labels[read], width, name) == 1) read++;
    if (read == n) std::fclose(file);
    for (int i = read; i < n; i++) labels[i][0] = '\0';
    std::fprintf(ScreenStream(), "%s:\t", label);
    for (int i = 0; i < n; i++) std::fprintf(ScreenStream(), "%s\t", labels[i]);
    std::fprintf(ScreenStream(), "\n");
    return true;
}

bool LabelsFromKeyboard(int n, int width, char** labels, const char* label) {
    std::fprintf(ScreenStream(), "Enter %s:\t", label);
    for (int i = 0; i < n; i++)
        if (ScanString(in, width, labels[i], nullptr, 1, "input") == nullptr) {
            std::fprintf(ScreenStream(), "\n");
            return false;
        }
    return true;
}

}  // namespace

int ReadLongInput(int n, int* values, const char* label, const char* accepted) {
    bool entered = false;
    do {
        entered = AskWhetherFromFile() ? IntegersFromFile(n, values, label, accepted)
                                       : IntegersFromKeyboard(n, values, label, accepted);
    } while (!entered || !AskWhetherCorrect());
    return 1;
}

int ReadLongInput(int n, int width, char** labels, const char* label) {
    bool entered = false;
    do {
        entered = AskWhetherFromFile() ? LabelsFromFile(n, width, labels, label)
                                       : LabelsFromKeyboard(n, width, labels, label);
    } while (!entered || !AskWhetherCorrect());
    return 1;
}

void GetPrindaMode(const char* reportName) {
    const std::string fullName = std::string(volumeName) + reportName;
    std::strcpy(prindaMode, "w");
    if (!MayBeRead(fullName.c_str())) return;
    std::fprintf(out, "\nThis session has a previous %s file.\n", reportName);
    std::fprintf(out,
                 "Options:\n"
                 "   w  erase file and create a new one\n"
                 "   a  append results to same file\n"
                 "Type option: ");
    if (ScanChar(in, "W A", "input") != 'w') std::strcpy(prindaMode, "a");
}
