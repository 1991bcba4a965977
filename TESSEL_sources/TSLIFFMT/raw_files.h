#pragma once
/// \file
/// Raw text files of the user's, and what the entry of each table asks and reads alike.

#include <cstdio>

#include "TSLGLOB/shell.h"

/// A raw file, closed at the end of the scope. `stream` is null before it is opened and once it is
/// closed, which reading to its end does.
struct RawFile {
    RawFile() = default;
    ~RawFile();
    RawFile(const RawFile&) = delete;
    RawFile& operator=(const RawFile&) = delete;

    FILE* stream = nullptr;
    char name[kTypedFileNameLength + 1] = {};
    long long numbersLeft = 0;  ///< behind the last one that was read, once it is finished
};

/// Asks for the file until it opens.
void AskForRawFile(RawFile& file);
void CloseRawFile(RawFile& file);

/// Closes a file of which all that was wanted has been read; for a person, who is told, it counts
/// the numbers that it leaves.
void FinishRawFile(RawFile& file);

/// The next number; text that is not a number is skipped. -999 when the file has ended, which is
/// told once.
float ReadFloat(RawFile& file);
double ReadDouble(RawFile& file);

/// The next number, before which only white space may stand. Raises kEndOfFile.
float ReadFloatStrictly(RawFile& file);

/// One line of a name of species (room for 71 bytes). Raises kEndOfFile.
void ReadNameStrictly(RawFile& file, char* name);

/// Where the labels of a table come from.
enum class LabelSource { kDefault = 1, kFile = 2 };

/// Asks for it; `heading` ends in the text of option 1.
LabelSource AskLabelSource(const char* heading, const RawFile& file);

/// Gives n labels the numbers from 1, or reads them, one word each. The labels that the file does
/// not hold stay empty, or raise kEndOfFile when it is read strictly.
void SetLabels(LabelSource source, int n, char** labels, RawFile& file);
void SetLabelsStrictly(LabelSource source, int n, char** labels, RawFile& file);

/// Prints each label in ten columns, with `separator` behind it.
void PrintLabels(int n, const char* const* labels, char separator);

/// Asks for a count of one or more.
int AskForCount(const char* question);

/// Refuses a table larger than this program is made for (4 gigabytes) as a failed allocation is
/// refused: raises kOutOfMemory. The system hands out memory that it does not have and stops the
/// process later, so that a mistyped count must not get as far as an allocation.
void RequireRoomForTable(int rows, int cols, int elementSize);
