#include "TSLCLI/settings_text.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstdlib>

#include "TSLCLI/failure.h"

namespace {

bool IsBareCharacter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || (c & 0x80) != 0 ||
           std::string_view("+-_./:*\\").find(c) != std::string_view::npos;
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r';
}

bool IsControl(char c) {
    return static_cast<unsigned char>(c) < 0x20 && c != '\t';
}

/// The number of a character as UTF-8.
std::string Utf8(unsigned long code) {
    const auto tail = [code](int shift) {
        return static_cast<char>(0x80 | (code >> shift & 0x3F));
    };
    const auto head = [code](unsigned long mark, int shift) {
        return static_cast<char>(mark | code >> shift);
    };
    if (code < 0x80) return {static_cast<char>(code)};
    if (code < 0x800) return {head(0xC0, 6), tail(0)};
    if (code < 0x10000) return {head(0xE0, 12), tail(6), tail(0)};
    return {head(0xF0, 18), tail(12), tail(6), tail(0)};
}

bool IsCharacter(unsigned long code) {
    return code > 0 && code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

class Reader {
  public:
    Reader(std::string_view text, const std::string& file) : rest_(text), file_(file) {
        if (rest_.substr(0, 3) == "\xEF\xBB\xBF") rest_.remove_prefix(3);
    }

    std::vector<SettingsEntry> Read() {
        while (SkipToNext(), !rest_.empty()) {
            if (Takes('[')) {
                ReadHeader();
            } else {
                ReadEntry();
            }
            SkipBlanks();
            if (!rest_.empty() && rest_[0] != '\n' && rest_[0] != '#')
                Fail("a value ends where the line goes on: put it in quotes, or # before a remark");
        }
        return std::move(entries_);
    }

  private:
    [[noreturn]] void Fail(const std::string& problem) const {
        FailUsage(file_ + ", line " + std::to_string(line_) + ": " + problem);
    }

    bool Takes(char c) {
        if (rest_.empty() || rest_[0] != c) return false;
        rest_.remove_prefix(1);
        return true;
    }

    void SkipBlanks() {
        while (!rest_.empty() && IsBlank(rest_[0])) rest_.remove_prefix(1);
    }

    /// Past blanks, remarks and line ends.
    void SkipToNext() {
        for (;;) {
            SkipBlanks();
            if (!rest_.empty() && rest_[0] == '#')
                rest_.remove_prefix(std::min(rest_.find('\n'), rest_.size()));
            if (!Takes('\n')) return;
            line_++;
        }
    }

    std::string ReadBare(std::string_view what, bool withDots) {
        std::size_t length = 0;
        while (length < rest_.size() && IsBareCharacter(rest_[length]) &&
               (withDots || rest_[length] != '.'))
            length++;
        if (length == 0) Fail(std::string(what) + " is missing");
        return Take(length);
    }

    std::string Take(std::size_t length) {
        std::string taken(rest_.substr(0, length));
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string ReadEscape() {
        constexpr std::string_view kLetters = "btnfr\"\\";
        constexpr std::string_view kMeant = "\b\t\n\f\r\"\\";
        const std::string letter = Take(1);
        if (kLetters.find(letter) < kLetters.size() && !letter.empty())
            return std::string(1, kMeant[kLetters.find(letter)]);
        const std::string digits = Take(letter == "u" ? 4 : letter == "U" ? 8 : 0);
        const bool isWhole =
            digits.size() == (letter == "u" ? 4 : 8) &&
            digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
        const unsigned long code = isWhole ? std::stoul(digits, nullptr, 16) : 0;
        if (!IsCharacter(code))
            Fail("\\ in double quotes stands before \" \\ b t n f r u: use '...' instead");
        return Utf8(code);
    }

    std::string ReadQuoted(char quote) {
        std::string text;
        while (!Takes(quote)) {
            if (rest_.empty() || IsControl(rest_[0])) Fail("a quote is not closed on its line");
            text += quote == '"' && Takes('\\') ? ReadEscape() : Take(1);
        }
        return text;
    }

    std::string ReadOne(std::string_view what, bool withDots = true) {
        for (const char quote : {'"', '\''})
            if (Takes(quote)) return ReadQuoted(quote);
        return ReadBare(what, withDots);
    }

    std::vector<std::string> ReadList() {
        std::vector<std::string> values;
        for (;;) {
            SkipToNext();
            if (Takes(']')) return values;
            values.push_back(ReadOne("a value of the list, or its ]"));
            SkipToNext();
            if (!Takes(',') && (rest_.empty() || rest_[0] != ']'))
                Fail("the values of a list are parted by commas, and ] ends it");
        }
    }

    /// Keys that dots part belong to tables within tables.
    std::vector<std::string> ReadDotted() {
        std::vector<std::string> parts;
        do {
            SkipBlanks();
            parts.push_back(ReadOne("a name", false));
            SkipBlanks();
        } while (Takes('.'));
        return parts;
    }

    void ReadHeader() {
        table_ = ReadDotted();
        if (!Takes(']')) Fail("a table's name ends with ]");
    }

    void ReadEntry() {
        std::vector<std::string> name = ReadDotted();
        if (!Takes('=')) Fail("a setting has the form: name = value");
        SettingsEntry entry = {table_, name.back(), {}, line_};
        name.pop_back();
        entry.table.insert(entry.table.end(), name.begin(), name.end());
        SkipBlanks();
        entry.values = Takes('[') ? ReadList() : std::vector<std::string>{ReadOne("the value")};
        for (const SettingsEntry& other : entries_)
            if (other.table == entry.table && other.key == entry.key)
                Fail(entry.key + " was already set in line " + std::to_string(other.line));
        entries_.push_back(std::move(entry));
    }

    std::string_view rest_;
    const std::string& file_;
    int line_ = 1;
    std::vector<std::string> table_;
    std::vector<SettingsEntry> entries_;
};

bool IsNumberOrTruth(const std::string& value) {
    if (value == "true" || value == "false") return true;
    if (value.empty() || !std::all_of(value.begin(), value.end(), IsBareCharacter)) return false;
    const char last = value.back();
    if (std::isdigit(static_cast<unsigned char>(value[0])) == 0 && value[0] != '-') return false;
    if (std::isdigit(static_cast<unsigned char>(last)) == 0) return false;
    char* end = nullptr;
    std::strtod(value.c_str(), &end);
    return *end == '\0';
}

}  // namespace

std::vector<SettingsEntry> ReadSettingsText(std::string_view text, const std::string& file) {
    return Reader(text, file).Read();
}

std::string SettingsValue(const std::string& value) {
    if (IsNumberOrTruth(value)) return value;
    std::string quoted = "\"";
    for (const char c : value) {
        if (c == '"' || c == '\\') quoted.push_back('\\');
        char code[8] = {c, '\0'};
        if (IsControl(c)) std::snprintf(code, sizeof code, "\\u%04x", c);
        quoted.append(code);
    }
    return quoted + "\"";
}

std::string SettingsList(const std::vector<std::string>& values) {
    std::string list = "[";
    for (const std::string& value : values)
        list.append(list.size() > 1 ? ", " : "").append(SettingsValue(value));
    return list + "]";
}
