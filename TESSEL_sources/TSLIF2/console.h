#pragma once
/// \file
/// The prompts: readers of the dialogue stream `in` (mxlibDim/reading.h has the grammar of the
/// accepted lists).

#include <cstdio>

/// One character, lower case, from the accepted list.
int ReadCharIn(const char* accepted);

/// One number; `format` has no effect on the result. The bounds belong to a list "-".
double ReadNumberIn(const char* format, const char* accepted, double lower = 0.0,
                    double upper = 0.0);

/// ReadNumberIn truncated to an integer.
int ReadIntegerIn(const char* format, const char* accepted, double lower = 0.0, double upper = 0.0);

/// One blank-delimited word of at most `length` characters (room for length + 1).
void ReadStringIn(const char* format, char* destination, int length);

/// One field of at most n characters.
void ReadLineIn(char* destination, int n);

/// Tells a person how many numbers a file holds behind the last one that was read; nothing for
/// none.
void TellNumbersLeft(const char* fileName, long long count);
/// The same of an open file, which is read to its end where a person is told.
void TellNumbersLeft(FILE* stream, const char* fileName);

/// Asks for a data file's name until one opens. The name stays in `destination` (room for 42).
FILE* ReadDataFileName(char* destination);

/// Prints the options, the prompt included, and reads the number of one of them.
int ReadOption(const char* options, const char* accepted);

/// A question answered with y or n, read from `in` ("input").
bool ReadYesNo(const char* question);

/// The bulk-entry dialogue: n integers, or n labels of at most `width` characters, from a file or
/// from the keyboard, repeated until confirmed. -1 in a list of integers starts over. Returns 1.
int ReadLongInput(int n, int* values, const char* label, const char* accepted);
int ReadLongInput(int n, int width, char** labels, const char* label);

/// Decides prindaMode: "w" for a report that does not exist, else as the user answers.
void GetPrindaMode(const char* reportName);
