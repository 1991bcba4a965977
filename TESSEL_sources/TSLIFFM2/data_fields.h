#pragma once
/// \file
/// Fields of the session's own files: what the readers of the data file, of the track file and of a
/// file to be merged have in common. Whatever cannot be read, or cannot be true, ends as the
/// checked readers end a file (FailAtEnd).

#include <cstdio>

/// A file that is being read, and its name for the messages.
struct DataFile {
    FILE* stream;
    const char* name;
};

int ReadInt(const DataFile& file);
void ReadInts(const DataFile& file, int* values, int n);
void ReadFloats(const DataFile& file, float* values, int n);
/// Blank-delimited words, each cut to `length` characters.
void ReadWords(const DataFile& file, char* const* words, int n, int length);

/// A line of n labels with a tab behind each, as the data file's writer makes it. Where a label of
/// such a line is empty, which words could not tell, it stays empty; any other text is read as
/// words.
void ReadLabels(const DataFile& file, char* const* labels, int n, int length);

/// The rest of the line, less trailing blanks; of one of more than `length` characters the end is
/// dropped.
void ReadRestOfLine(const DataFile& file, char* text, int length);

/// An integer that must lie from `lowest` to `highest`.
int ReadIntWithin(const DataFile& file, int lowest, int highest);

/// A count of things of which each takes at least `bytesEach` in what is left of the file; a count
/// below `lowest`, or one that the file could not hold, is none.
int ReadCount(const DataFile& file, int lowest, long long bytesEach);

/// Fails unless the rest of the file could hold that many things.
void RequireRoom(const DataFile& file, int count, long long bytesEach);

/// The states of an OTU in the old interleaved form of the data file: two characters for each of n
/// traits. States that a short word does not reach are zero.
void DecodeStates(const char* word, int n, float* states);
