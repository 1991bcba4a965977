#include "mxlibDim/reading.h"

#include <sys/stat.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

#include "mxlibDim/failure.h"
#include "mxlibDim/standard_streams.h"
#include "mxlibDim/terminal.h"
#include "mxlibDim/text.h"
#include "mxlibPar/ranks.h"

namespace {

constexpr int kBell = 7;

bool inputFinished = false;

void RingBell() {
    std::fputc(kBell, ScreenStream());
}

/// Makes the prompt visible; false when the stream must not be read any more. Behind a read error
/// the next read could succeed, in the middle of a number.
bool ReadyToRead(FILE* stream) {
    if (std::ferror(stream) != 0) return false;
    if (stream != stdin) return true;
    FlushScreen();
    return !inputFinished;
}

int NextCharacter(FILE* stream) {
    return ReadyToRead(stream) ? std::fgetc(stream) : EOF;
}

/// The next character that is not white space, or EOF.
int NextNonBlank(FILE* stream) {
    int c = NextCharacter(stream);
    while (c != EOF && std::isspace(c)) c = NextCharacter(stream);
    return c;
}

/// One fscanf, of which nothing counts when a read failed: what was read may be part of a field.
template <class T>
int Scan(FILE* stream, const char* format, T* destination) {
    const int fields = std::fscanf(stream, format, destination);
    return std::ferror(stream) == 0 ? fields : EOF;
}

/// One fscanf of one field. An integer beyond the range of int takes the range's end.
int ReadField(FILE* stream, const char* format, void* destination) {
    if (!ReadyToRead(stream)) return EOF;
    if (std::strcmp(format, "%d") != 0) return Scan(stream, format, destination);
    long long number = 0;
    const int fields = Scan(stream, "%lld", &number);
    if (fields == 1) {
        if (number > INT_MAX) number = INT_MAX;
        if (number < INT_MIN) number = INT_MIN;
        *static_cast<int*>(destination) = static_cast<int>(number);
    }
    return fields;
}

/// What a try to read a field met in the place of one field.
enum FieldMet : int { kStreamEnd = EOF, kNoField = 0, kField = 1, kWordSkipped = 2 };

/// Matches the rest of a word, whatever its case; the first character that differs stays unread.
bool MatchesWord(FILE* stream, const char* rest) {
    for (; *rest != '\0'; rest++) {
        const int c = NextCharacter(stream);
        if (std::tolower(c) == *rest) continue;
        if (c != EOF) std::ungetc(c, stream);
        return false;
    }
    return true;
}

/// The rest of "nan", "inf" or "infinity" behind the first letter of either.
bool MatchesNumberWord(FILE* stream, int first, double* number) {
    if (std::tolower(first) == 'n') {
        *number = std::numeric_limits<double>::quiet_NaN();
        return MatchesWord(stream, "an");
    }
    *number = std::numeric_limits<double>::infinity();
    if (!MatchesWord(stream, "nf")) return false;
    const int c = NextCharacter(stream);
    if (std::tolower(c) == 'i') return MatchesWord(stream, "nity");
    if (c != EOF) std::ungetc(c, stream);
    return true;
}

bool BeginsNumberWord(int c) {
    return c == 'n' || c == 'N' || c == 'i' || c == 'I';
}

/// One real number amid text. The words for what is no finite number are matched here: fscanf may
/// eat the character behind an n or i that begins none of them, and with it a digit.
template <class T>
FieldMet ReadReal(FILE* stream, const char* format, T* destination) {
    T number = 0;
    int c = NextNonBlank(stream);
    const bool isNegative = c == '-';
    if (isNegative || c == '+') c = NextCharacter(stream);
    if (c == EOF) return kStreamEnd;
    if (BeginsNumberWord(c)) {
        double word = 0.0;
        if (!MatchesNumberWord(stream, c, &word)) return kWordSkipped;
        number = static_cast<T>(word);
    } else {
        std::ungetc(c, stream);
        if (std::isdigit(c) == 0 && c != '.') return kNoField;
        const int fields = Scan(stream, format, &number);
        if (fields != kField) return fields == EOF ? kStreamEnd : kNoField;
    }
    if (std::ferror(stream) != 0) return kStreamEnd;
    *destination = isNegative ? -number : number;
    return kField;
}

FieldMet ReadFieldAmidText(FILE* stream, const char* format, void* destination) {
    if (!ReadyToRead(stream)) return kStreamEnd;
    if (std::strcmp(format, "%lf") == 0)
        return ReadReal(stream, format, static_cast<double*>(destination));
    if (std::strcmp(format, "%f") == 0)
        return ReadReal(stream, format, static_cast<float*>(destination));
    const int fields = ReadField(stream, format, destination);
    return fields > 0 ? kField : fields == EOF ? kStreamEnd : kNoField;
}

/// The message about an end that is none: the stream could not be read on.
void TellReadError(FILE* stream, const char* name) {
    if (std::ferror(stream) == 0) return;
    const int reason = errno;
    std::fprintf(ErrorStream(), "\ncan't read %s \n", name);
    TellPerson(std::strerror(reason));
}

/// What freadck1 does at the end of a stream.
int TellEnd(FILE* stream, const char* name) {
    TellReadError(stream, name);
    EndStream(stream);
    std::fprintf(ErrorStream(), "\nEnd of file %s\n", name);
    RingBell();
    return 0;
}

/// Reads one blank-delimited word; false at the end of the stream.
bool ReadWord(FILE* stream, char* destination, int length) {
    int c = NextNonBlank(stream);
    if (c == EOF) return false;
    int stored = 0;
    for (; c != EOF && !std::isspace(c); c = NextCharacter(stream))
        if (stored < length) destination[stored++] = static_cast<char>(c);
    if (c != EOF) std::ungetc(c, stream);
    destination[stored] = '\0';
    return std::ferror(stream) == 0;
}

/// Leaves a stream at its beginning behind the mark that some editors put before UTF-8 text.
void SkipByteOrderMark(FILE* stream) {
    const int first = std::fgetc(stream);
    if (first != 0xEF) {
        if (first != EOF) std::ungetc(first, stream);
        return;
    }
    if (std::fgetc(stream) == 0xBB && std::fgetc(stream) == 0xBF) return;
    std::fseek(stream, 0, SEEK_SET);  // keeps the sign of a read error, unlike rewind
}

bool EndsField(int c, bool tabEndsField) {
    return c == '\n' || c == '\r' || (tabEndsField && c == '\t');
}

/// freadlineck and freadlineckTEMP: they differ in what a tab does.
void ReadLineField(FILE* stream, int n, char* destination, const char* name, bool tabEndsField) {
    int c = NextCharacter(stream);
    while (c == ' ' || c == '\t' || c == '\n' || c == '\r') c = NextCharacter(stream);
    if (c != EOF) std::ungetc(c, stream);
    destination[0] = '\0';
    if (n <= 0) return;
    if (c == EOF) FailAtEnd(stream, name);
    int stored = 0;
    while (stored < n) {
        c = NextCharacter(stream);
        if (c == EOF || EndsField(c, tabEndsField)) break;
        destination[stored++] = c == '\t' ? ' ' : static_cast<char>(c);
    }
    if (std::ferror(stream) != 0) FailAtEnd(stream, name);
    destination[stored] = '\0';
}

bool IsListed(const char* accepted, double number) {
    const char* rest = accepted;
    for (;;) {
        char* end = nullptr;
        const double entry = std::strtod(rest, &end);
        if (end == rest) return false;
        if (number == entry) return true;
        rest = end;
    }
}

}  // namespace

void TellUnopened(const char* name, const char* prefix) {
    const int reason = errno;
    std::fprintf(ErrorStream(), "\ncan't open %s%s \n", prefix != nullptr ? prefix : "", name);
    TellPerson(std::strerror(reason));
    RingBell();
}

namespace {

FILE* OpenRegular(const char* name, const char* mode) {
    struct stat status;
    // Looked at before it is opened: the opening of a pipe waits for whoever writes into it.
    if (stat(name, &status) != 0) return nullptr;
    if (!S_ISREG(status.st_mode)) {
        errno = S_ISDIR(status.st_mode) ? EISDIR : ENOTSUP;
        return nullptr;
    }
    FILE* const stream = std::fopen(name, mode);
    return stream;
}

}  // namespace

FILE* OpenToRead(const char* name, const char* mode) {
    FILE* stream = IsFirstRank() ? OpenRegular(name, mode) : nullptr;
    if (Ranks() > 1) stream = ShareFile(stream);
    if (stream != nullptr) SkipByteOrderMark(stream);
    return stream;
}

FILE* fopenck(const char* name, const char* prefix, const char* mode) {
    const std::string fullName = std::string(prefix != nullptr ? prefix : "") + name;
    FILE* const stream =
        *mode == 'r' ? OpenToRead(fullName.c_str(), mode) : std::fopen(fullName.c_str(), mode);
    if (stream == nullptr) TellUnopened(name, prefix);
    return stream;
}

void SetInputFinished(bool finished) {
    inputFinished = finished;
}

bool InputFinished() {
    return inputFinished;
}

void EndStream(FILE* stream) {
    if (stream != stdin) {
        std::fclose(stream);
        return;
    }
    inputFinished = true;
    if (processEndings.inputEnds != nullptr) processEndings.inputEnds();
}

void FailAtEnd(FILE* stream, const char* name) {
    TellReadError(stream, name);
    EndStream(stream);
    std::fprintf(ErrorStream(), "\nfile %s ", name);
    RingBell();
    RaiseError(kEndOfFile);
}

void freadck(FILE* stream, const char* format, void* destination, const char* name) {
    if (ReadField(stream, format, destination) < 1) FailAtEnd(stream, name);
}

int freadck1(FILE* stream, const char* format, void* destination, const char* name) {
    for (;;) {
        const FieldMet met = ReadFieldAmidText(stream, format, destination);
        if (met == kField) return 1;
        if (met == kWordSkipped) continue;
        if (met == kStreamEnd || NextCharacter(stream) == EOF) return TellEnd(stream, name);
    }
}

void freadckWord(FILE* stream, char* destination, int length, const char* name) {
    if (!ReadWord(stream, destination, length)) FailAtEnd(stream, name);
}

int freadck1Word(FILE* stream, char* destination, int length, const char* name) {
    return ReadWord(stream, destination, length) ? 1 : TellEnd(stream, name);
}

long long CountNumbersLeft(FILE* stream) {
    constexpr int kLongestWord = 255;
    char word[kLongestWord + 1];
    long long count = 0;
    while (ReadWord(stream, word, kLongestWord)) count += CountNumbers(word);
    return count;
}

void freadlineck(FILE* stream, int n, char* destination, const char* name) {
    ReadLineField(stream, n, destination, name, true);
}

void freadlineckTEMP(FILE* stream, int n, char* destination, const char* name) {
    ReadLineField(stream, n, destination, name, false);
}

int ScanChar(FILE* stream, const char* accepted, const char* name) {
    const bool anyCharacter = accepted == nullptr || *accepted == '\0';
    for (;;) {
        int c = NextCharacter(stream);
        if (c == EOF) {
            TellReadError(stream, name);
            EndStream(stream);
            std::fprintf(ErrorStream(), "\nfile %s ", name);
            RaiseError(kEndOfFile);
        }
        c = std::tolower(c);
        if (anyCharacter) {
            if (c != '\t' && c != '\n' && c != ' ') return c;
            continue;
        }
        if (c == ' ' || std::iscntrl(c)) continue;
        for (const char* entry = accepted; *entry != '\0'; entry++)
            if (c == std::tolower(static_cast<unsigned char>(*entry))) return c;
        RingBell();
        std::fprintf(ErrorStream(), "\nIncorrect input = %c. Reenter.\n", c);
        std::fprintf(ErrorStream(), "Accepted input: %s\n", accepted);
    }
}

bool ScanNumberOrEnd(FILE* stream, const char* name, const char* accepted, double lower,
                     double upper, double* number) {
    if (accepted == nullptr) return freadck1(stream, "%lf", number, name) == 1;
    const bool isRange = *accepted == '-';
    for (;;) {
        if (freadck1(stream, "%lf", number, name) == 0) {
            RingBell();
            RestForever();
        }
        if (*accepted == '\0') return true;
        if (isRange ? *number >= lower && *number <= upper : IsListed(accepted, *number))
            return true;
        RingBell();
        std::fprintf(ErrorStream(), "\nIncorrect input = %g. Reenter.\n", Printable(*number));
        if (isRange)
            std::fprintf(ErrorStream(), "Accepted input: %g to %g\n", lower, upper);
        else
            std::fprintf(ErrorStream(), "Accepted input: %s\n", accepted);
    }
}

double ScanNumber(FILE* stream, const char* name, const char* accepted, double lower,
                  double upper) {
    constexpr double kUnread = -999.0;
    double number = kUnread;
    return ScanNumberOrEnd(stream, name, accepted, lower, upper, &number) ? number : kUnread;
}

char* ScanString(FILE* stream, int length, char* destination, const char* accepted,
                 int caseSensitive, const char* name) {
    if (freadck1Word(stream, destination, length, name) == 0) return nullptr;
    if (accepted == nullptr || *accepted == '\0') return destination;
    const std::string list = accepted;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t end = std::min(list.find('/', start), list.size());
        const std::string alternative = list.substr(start, end - start);
        const int difference = caseSensitive != 0 ? std::strcmp(destination, alternative.c_str())
                                                  : StrCmp(destination, alternative.c_str());
        if (difference == 0) return destination;
        start = end + 1;
    }
    RingBell();
    std::fprintf(ErrorStream(), "\nIncorrect input = %s. Reenter.\n", destination);
    std::fprintf(ErrorStream(), "Accepted input: %s\n", accepted);
    destination[0] = '\0';
    return nullptr;
}

int TruncateToInt(double number) {
    if (std::isnan(number)) return 0;
    if (number >= INT_MAX) return INT_MAX;
    if (number <= INT_MIN) return INT_MIN;
    return static_cast<int>(number);
}

void Wait() {
    int c = NextCharacter(stdin);
    while (c != EOF && !std::iscntrl(c)) c = NextCharacter(stdin);
    if (c == EOF)
        inputFinished = true;
    else
        std::ungetc(c, stdin);
}
