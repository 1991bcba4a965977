#include "TSLIF/otu_groups.h"

#include <cstdio>

#include "TSLGLOB/shell.h"
#include "TSLIF2/console.h"
#include "mxlibDim/failure.h"
#include "mxlibDim/reading.h"

namespace {

constexpr int kGroupFileNameLength = 99;

struct MembershipTexts {
    const char* source;    ///< question whether file or keyboard
    const char* fileName;  ///< question for the file's name
    const char* heading;   ///< lines over the numbers typed at the keyboard
    const char* groups;
    const char* keyboard;  ///< what messages call the keyboard
};

constexpr MembershipTexts kTypeTexts = {
    "Read group memberships from file (f) or from the keyboard (k)? f/k ",
    "Enter name of file containing group memberships: ",
    "Enter the group of each OTU:\n"
    "OTU:    ",
    "\nGroups: ", "teclado"};
constexpr MembershipTexts kNestingTexts = {
    "Read nesting group memberships from file (f) or from the keyboard (k)? f/k ",
    "Enter name of file containing nesting group memberships: ",
    "Enter the nesting group of each OTU:\n"
    "OTU:            ",
    "\nNesting groups: ", "keyboard"};

struct GroupFile {
    FILE* stream;
    char name[kGroupFileNameLength + 1];
};

bool AskWhetherFromFile(const MembershipTexts& texts) {
    std::fputs(texts.source, out);
    return ScanChar(in, "f k", "keyboard") == 'f';
}

/// Opens the file that the user names; its stream is null when it does not open.
GroupFile OpenGroupFile(const MembershipTexts& texts) {
    GroupFile file = {};
    std::fputs(texts.fileName, out);
    if (ScanString(in, kGroupFileNameLength, file.name, nullptr, 1, "keyboard") != nullptr)
        file.stream = fopenck(file.name, nullptr, "r");
    return file;
}

/// Reads n numbers; false at the end of the stream, which is closed.
bool ReadGroups(FILE* stream, const char* name, int n, int* groups) {
    for (int t = 0; t < n; t++) {
        double group = 0.0;
        if (!ScanNumberOrEnd(stream, name, nullptr, 0.0, 0.0, &group)) return false;
        groups[t] = TruncateToInt(group);
    }
    return true;
}

/// The same for a file of types, which holds integers: a decimal point parts two of them.
bool ReadIntegerGroups(FILE* stream, const char* name, int n, int* groups) {
    for (int t = 0; t < n; t++)
        if (freadck1(stream, "%d", &groups[t], name) == 0) return false;
    return true;
}

void ReadGroupsFromKeyboard(const MembershipTexts& texts, int n, int* groups) {
    std::fputs(texts.heading, out);
    for (int t = 0; t < n; t++) std::fprintf(out, "\t%d", t + 1);
    std::fputs(texts.groups, out);
    ReadGroups(in, texts.keyboard, n, groups);
}

}  // namespace

bool AskTypesOfOTUs(int n, int* types) {
    for (;;) {
        if (!AskWhetherFromFile(kTypeTexts)) {
            ReadGroupsFromKeyboard(kTypeTexts, n, types);
            return true;
        }
        const GroupFile file = OpenGroupFile(kTypeTexts);
        if (file.stream == nullptr) continue;
        if (!ReadIntegerGroups(file.stream, file.name, n, types)) return false;
        TellNumbersLeft(file.stream, file.name);
        std::fclose(file.stream);
        return true;
    }
}

void AskNestingGroupsOfOTUs(int n, int* groups, bool typesComplete) {
    std::fputs(
        "Specify the nesting criterion (for each OTU, enter the group to which it belongs):\n",
        out);
    if (!AskWhetherFromFile(kNestingTexts)) {
        if (!typesComplete) RestForever();
        ReadGroupsFromKeyboard(kNestingTexts, n, groups);
        return;
    }
    const GroupFile file = OpenGroupFile(kNestingTexts);
    if (file.stream != nullptr && !typesComplete) std::fclose(file.stream);
    if (file.stream == nullptr || !typesComplete) RestForever();
    if (!ReadGroups(file.stream, file.name, n, groups)) return;
    TellNumbersLeft(file.stream, file.name);
    std::fclose(file.stream);
}
