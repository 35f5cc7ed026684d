#include "model/text_codec.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace mw {
namespace {

// Code points of bytes 0x80..0x9F; the five undefined bytes keep their own value.
constexpr std::array<char32_t, 32> kHighTable{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

char32_t CodePointOf(unsigned char byte) {
    if (byte >= 0x80 && byte <= 0x9F) return kHighTable[byte - 0x80];
    return byte;
}

void AppendUtf8(std::string& out, char32_t cp) {
    if (cp < 0x80) {
        out.push_back(static_cast<char>(cp));
    } else if (cp < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (cp >> 6)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xE0 | (cp >> 12)));
        out.push_back(static_cast<char>(0x80 | ((cp >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (cp & 0x3F)));
    }
}

// The bytes of the UTF-8 sequence that starts with `lead` (1 for a stray byte).
std::size_t SequenceLength(unsigned char lead) {
    if ((lead & 0xE0) == 0xC0) return 2;
    if ((lead & 0xF0) == 0xE0) return 3;
    if ((lead & 0xF8) == 0xF0) return 4;
    return 1;
}

}  // namespace

std::string LowerCase1252(std::string_view bytes) {
    std::string out(bytes);
    for (char& ch : out) {
        const auto b = static_cast<unsigned char>(ch);
        if ((b >= 'A' && b <= 'Z') || (b >= 0xC0 && b <= 0xDE && b != 0xD7)) {
            ch = static_cast<char>(b + 0x20);
        } else if (b == 0x8A || b == 0x8C || b == 0x8E) {
            ch = static_cast<char>(b + 0x10);
        } else if (b == 0x9F) {
            ch = static_cast<char>(0xFF);
        }
    }
    return out;
}

std::string Utf8From1252(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (char ch : bytes)
        AppendUtf8(out, CodePointOf(static_cast<unsigned char>(ch)));
    return out;
}

std::optional<std::string> Cp1252FromUtf8Exact(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t i = 0;
    while (i < utf8.size()) {
        const auto b = static_cast<unsigned char>(utf8[i]);
        const std::size_t len = SequenceLength(b);
        if (len == 1 && b >= 0x80) return std::nullopt;
        if (i + len > utf8.size()) return std::nullopt;
        char32_t cp = len == 1 ? b : b & (0x7F >> len);
        for (std::size_t k = 1; k < len; ++k) {
            const auto c = static_cast<unsigned char>(utf8[i + k]);
            if ((c & 0xC0) != 0x80) return std::nullopt;
            cp = (cp << 6) | (c & 0x3F);
        }
        i += len;
        if (cp < 0x80 || (cp >= 0xA0 && cp <= 0xFF)) {
            out.push_back(static_cast<char>(cp));
            continue;
        }
        const auto* at = std::find(kHighTable.begin(), kHighTable.end(), cp);
        if (at == kHighTable.end()) return std::nullopt;
        out.push_back(static_cast<char>(0x80 + (at - kHighTable.begin())));
    }
    return out;
}

std::string Cp1252FromUtf8(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    std::size_t i = 0;
    while (i < utf8.size()) {
        // A character without a form in the code page, or a broken sequence, becomes '?'.
        const std::size_t len =
            std::min(SequenceLength(static_cast<unsigned char>(utf8[i])), utf8.size() - i);
        const auto one = Cp1252FromUtf8Exact(utf8.substr(i, len));
        out += one ? *one : std::string("?");
        i += len;
    }
    return out;
}

std::string_view TrimSpaces(std::string_view text, std::string_view chars) {
    const auto first = text.find_first_not_of(chars);
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(chars);
    return text.substr(first, last - first + 1);
}

}  // namespace mw
