#include "TSLCLI/utf8.h"

namespace {

constexpr unsigned kFollowerMask = 0xC0U;
constexpr unsigned kFollower = 0x80U;

bool IsFollower(char byte) {
    return (static_cast<unsigned char>(byte) & kFollowerMask) == kFollower;
}

struct Form {
    unsigned mask, lead;
    std::size_t bytes;
    unsigned least;  ///< smallest character that needs so many bytes
};
constexpr Form kForms[] = {
    {0xE0U, 0xC0U, 2, 0x80U}, {0xF0U, 0xE0U, 3, 0x800U}, {0xF8U, 0xF0U, 4, 0x10000U}};

/// Bytes of the character at the beginning of `text`, which is none of ASCII; 0 where none is.
std::size_t CharacterBytes(std::string_view text) {
    constexpr unsigned kFirstSurrogate = 0xD800U;
    constexpr unsigned kLastSurrogate = 0xDFFFU;
    constexpr unsigned kLast = 0x10FFFFU;
    const auto lead = static_cast<unsigned char>(text[0]);
    for (const Form& form : kForms) {
        if ((lead & form.mask) != form.lead) continue;
        if (text.size() < form.bytes) return 0;
        unsigned code = lead & ~form.mask;
        for (std::size_t k = 1; k < form.bytes; k++) {
            if (!IsFollower(text[k])) return 0;
            code = code << 6U | (static_cast<unsigned char>(text[k]) & ~kFollowerMask);
        }
        const bool isSurrogate = code >= kFirstSurrogate && code <= kLastSurrogate;
        return code < form.least || code > kLast || isSurrogate ? 0 : form.bytes;
    }
    return 0;
}

}  // namespace

std::size_t ValidUtf8(std::string_view text) {
    std::size_t valid = 0;
    while (valid < text.size()) {
        if (static_cast<unsigned char>(text[valid]) < kFollower) {
            valid++;
            continue;
        }
        const std::size_t bytes = CharacterBytes(text.substr(valid));
        if (bytes == 0) break;
        valid += bytes;
    }
    return valid;
}

std::string_view CutUtf8(std::string_view text, std::size_t bytes) {
    if (text.size() <= bytes) return text;
    while (bytes > 0 && IsFollower(text[bytes])) bytes--;
    return text.substr(0, bytes);
}
