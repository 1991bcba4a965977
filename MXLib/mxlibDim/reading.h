#pragma once
/// \file
/// Checked opening and reading of files and of the terminal. `name` is the file's name, or "input"
/// or "keyboard" for the dialogue; it goes only into messages.
///
/// Ends of streams. A routine that meets the end of a file closes the stream, as told below. The
/// standard input is never closed: it is marked as finished, and no routine here reads a finished
/// stream again; each behaves at once as at the end of the stream. Before the standard input is
/// read, standard output is flushed so that the prompt shows.
///
/// A read that fails is told ("\ncan't read %s \n" on standard error, before all else) and then
/// acts as the end of the stream; what stands before it and may be part of a field is dropped.

#include <cstdio>

/// Opens `prefix` (may be null) followed by `name`, for reading (mode r or r+) by OpenToRead. On
/// failure prints "\ncan't open %s \n" with the full name on standard error, for a person the
/// system's reason, writes the bell to standard output and returns null. Raises nothing.
FILE* fopenck(const char* name, const char* prefix, const char* mode);

/// The message of fopenck about a file that does not open, with the reason in errno, and the bell.
void TellUnopened(const char* name, const char* prefix);

/// Opens a file for reading, behind the byte order mark if it begins with one. Null, with errno,
/// when it does not open or is no file on a disk: a device or a pipe may never end, and a folder
/// opens and only then fails. Tells nothing.
FILE* OpenToRead(const char* name, const char* mode);

/// Marks the standard input as ended or readable again (a harness that puts another stream in its
/// place calls it with false), and tells.
void SetInputFinished(bool finished);
bool InputFinished();

/// Ends the use of `stream` at its end: closes it, unless it is the standard input, which is marked
/// as finished instead.
void EndStream(FILE* stream);

/// What a reader does with a stream that has nothing more for it, be it at the end or at a field
/// that cannot be: ends the stream, prints "\nfile %s " on standard error, rings the bell and
/// raises kEndOfFile.
[[noreturn]] void FailAtEnd(FILE* stream, const char* name);

/// One fscanf of one field. On a field that does not convert, or at the end, ends the stream,
/// prints "\nfile %s " on standard error, rings the bell and raises kEndOfFile.
void freadck(FILE* stream, const char* format, void* destination, const char* name);

/// fscanf in a loop: while the field does not convert, discards one character and tries again, so
/// that text between numbers is skipped; the letters of a word that only begins like "nan" or "inf"
/// are such text. Returns 1; at the end ends the stream, prints
/// "\nEnd of file %s\n" on standard error, rings the bell and returns 0, the destination untouched.
int freadck1(FILE* stream, const char* format, void* destination, const char* name);

/// freadck and freadck1 for one blank-delimited word with "%s", of which at most `length`
/// characters are stored (room for length + 1); the rest of a longer word is read and dropped.
void freadckWord(FILE* stream, char* destination, int length, const char* name);
int freadck1Word(FILE* stream, char* destination, int length, const char* name);

/// Reads a file to its end and counts the numbers (CountNumbers) in the words that are left of it.
long long CountNumbersLeft(FILE* stream);

/// Reads one field of at most n characters (room for n + 1): skips blanks, tabs, newlines and
/// carriage returns, then stores characters up to n or to a tab, newline or carriage return, which
/// is consumed. n equal to 0 stores an empty text. The end of the stream before the first
/// character ends the stream, prints "\nfile %s ", rings the bell and raises kEndOfFile.
void freadlineck(FILE* stream, int n, char* destination, const char* name);

/// The same, but a tab is stored as a blank and does not end the field.
void freadlineckTEMP(FILE* stream, int n, char* destination, const char* name);

/// Reads one character, lower case. With an accepted list (blanks separate its entries, case is
/// ignored) it complains about every other character that is neither a blank nor a control
/// character, and reads on. With a null or empty list: the first character that is not a tab, a
/// newline or a blank. The end of the stream ends it, prints "\nfile %s ", raises kEndOfFile.
int ScanChar(FILE* stream, const char* accepted, const char* name);

/// Reads one number. `accepted` null: as read, unchecked (-999 at the end of the stream); "": any
/// number; a text that begins with "-": a number from lower to upper; anything else: one of the
/// listed numbers. A wrong number draws the complaint and another try. At the end of the stream
/// the last three forms never return; they rest (failure.h).
double ScanNumber(FILE* stream, const char* name, const char* accepted, double lower = 0.0,
                  double upper = 0.0);

/// The same, telling the end of the stream: false, `number` untouched, when the null form meets it.
/// A file is closed then and must not be read again.
bool ScanNumberOrEnd(FILE* stream, const char* name, const char* accepted, double lower,
                     double upper, double* number);

/// Reads one blank-delimited word, cut to `length` characters (room for length + 1). `accepted`
/// (may be null): alternatives separated by "/", compared with or without regard to case. Returns
/// the destination, or null at the end of the stream and, after a complaint, for a word that is not
/// among them.
char* ScanString(FILE* stream, int length, char* destination, const char* accepted,
                 int caseSensitive, const char* name);

/// A number as an integer, truncated toward zero; NaN gives 0, numbers beyond the range its ends.
int TruncateToInt(double number);

/// Reads standard input until it meets a control character, which is pushed back: the newline of
/// an earlier answer ends the wait at once. The end of the input ends it too.
void Wait();
