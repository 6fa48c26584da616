#include "tools/encodings.h"

#include <algorithm>
#include <cstdint>
#include <stdexcept>
#include <type_traits>
#include <utility>

namespace demovex::tools {
namespace {

// What Windows-1252 has between 0x80 and 0x9F; 0 for the five places that it leaves free.
constexpr wchar_t kUpper[32] = {0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

std::uint32_t Code(wchar_t c) {
    return static_cast<std::make_unsigned_t<wchar_t>>(c);
}

[[noreturn]] void Fail(const std::wstring& message) {
    throw std::runtime_error(ToUtf8(message));
}

// Whether `bytes` are UTF-8: nothing written longer than need be, no half of a pair, nothing beyond
// the last character.
bool IsUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto lead = static_cast<unsigned char>(bytes[i++]);
        if (lead < 0x80) continue;
        if (lead < 0xC2 || lead > 0xF4) return false;
        const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
        std::uint32_t code = lead & (0x3Fu >> more);
        for (int k = 0; k < more; ++k, ++i) {
            const auto next = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
            if ((next & 0xC0) != 0x80) return false;
            code = code << 6 | (next & 0x3Fu);
        }
        if ((more == 2 && (code < 0x800 || (code >= 0xD800 && code < 0xE000))) ||
            (more == 3 && (code < 0x10000 || code > 0x10FFFF))) {
            return false;
        }
    }
    return true;
}

// The character of valid UTF-8 at `i`, which goes on to the next one.
std::uint32_t NextCode(std::string_view utf8, std::size_t& i) {
    const auto lead = static_cast<unsigned char>(utf8[i++]);
    if (lead < 0x80) return lead;
    const int more = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    std::uint32_t code = lead & (0x3Fu >> more);
    for (int k = 0; k < more; ++k)
        code = code << 6 | (static_cast<unsigned char>(utf8[i++]) & 0x3F);
    return code;
}

void AppendUtf8(std::string& bytes, std::uint32_t code) {
    if (code < 0x80) {
        bytes += static_cast<char>(code);
        return;
    }
    const int more = code < 0x800 ? 1 : code < 0x10000 ? 2 : 3;
    bytes += static_cast<char>((0xFF00 >> (more + 1) & 0xFF) | code >> (6 * more));
    for (int k = more - 1; k >= 0; --k) {
        bytes += static_cast<char>(0x80 | (code >> (6 * k) & 0x3F));
    }
}

std::string FromUtf16(std::string_view bytes, bool big) {
    const auto unit = [&](std::size_t i) -> std::uint32_t {
        const auto first = static_cast<unsigned char>(bytes[i]);
        const auto second = static_cast<unsigned char>(bytes[i + 1]);
        return big ? first << 8 | second : second << 8 | first;
    };
    std::string utf8;
    utf8.reserve(bytes.size() / 2 + bytes.size() / 16);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        std::uint32_t code = unit(i);
        if (code >= 0xD800 && code < 0xE000) {
            const std::uint32_t low = code < 0xDC00 && i + 3 < bytes.size() ? unit(i + 2) : 0;
            if (low >= 0xDC00 && low < 0xE000) {
                code = 0x10000 + ((code - 0xD800) << 10) + (low - 0xDC00);
                i += 2;
            } else {
                code = 0xFFFD;
            }
        }
        AppendUtf8(utf8, code);
    }
    return utf8;
}

}  // namespace

std::string ToWindows1252(std::wstring_view text) {
    std::string bytes;
    for (const wchar_t c : text) {
        const std::uint32_t code = Code(c);
        if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
            bytes += static_cast<char>(code);
            continue;
        }
        const wchar_t* found = c == 0 ? kUpper + 32 : std::find(kUpper, kUpper + 32, c);
        if (found == kUpper + 32) {
            Fail(L"a character that Windows-1252 lacks in \"" + std::wstring(text) + L"\"");
        }
        bytes += static_cast<char>(0x80 + (found - kUpper));
    }
    return bytes;
}

std::wstring FromWindows1252(std::string_view bytes) {
    std::wstring text;
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        const bool upper = code >= 0x80 && code < 0xA0;
        text +=
            upper && kUpper[code - 0x80] != 0 ? kUpper[code - 0x80] : static_cast<wchar_t>(code);
    }
    return text;
}

std::wstring FromUtf8(std::string_view bytes) {
    if (!IsUtf8(bytes)) Fail(L"the text is not UTF-8");
    std::wstring text;
    std::size_t i = bytes.substr(0, 3) == "\xEF\xBB\xBF" ? 3 : 0;  // a mark of the encoding
    while (i < bytes.size()) {
        const std::uint32_t code = NextCode(bytes, i);
        if (sizeof(wchar_t) == 2 && code > 0xFFFF) {
            text += static_cast<wchar_t>(0xD800 + ((code - 0x10000) >> 10));
            text += static_cast<wchar_t>(0xDC00 + ((code - 0x10000) & 0x3FF));
        } else {
            text += static_cast<wchar_t>(code);
        }
    }
    return text;
}

std::string ToUtf8(std::wstring_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::uint32_t code = Code(text[i]);
        if (sizeof(wchar_t) == 2 && code >= 0xD800 && code < 0xDC00 && i + 1 < text.size()) {
            code = 0x10000 + ((code - 0xD800) << 10) + (Code(text[++i]) - 0xDC00);
        }
        AppendUtf8(bytes, code);
    }
    return bytes;
}

bool Utf8ToWindows1252(std::string_view utf8, std::string& bytes) {
    bytes.clear();
    bool all = true;
    for (std::size_t i = 0; i < utf8.size();) {
        const std::uint32_t code = NextCode(utf8, i);
        if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
            bytes += static_cast<char>(code);
            continue;
        }
        const auto* found = std::find(kUpper, kUpper + 32, static_cast<wchar_t>(code));
        const bool held = code <= 0xFFFF && found != kUpper + 32;
        bytes += held ? static_cast<char>(0x80 + (found - kUpper)) : '?';
        all = all && held;
    }
    return all;
}

DecodedText DecodeText(std::string bytes) {
    const bool little = bytes.substr(0, 2) == "\xFF\xFE";
    const bool big = bytes.substr(0, 2) == "\xFE\xFF";
    if (little || big) return {FromUtf16(std::string_view(bytes).substr(2), big), "UTF-16"};
    // without a mark: in Latin text every other byte is zero, and no other encoding has zeros
    const std::size_t sample = std::min<std::size_t>(bytes.size(), 256) & ~std::size_t{1};
    std::size_t zeros[2] = {0, 0};
    for (std::size_t i = 0; i < sample; ++i) zeros[i % 2] += bytes[i] == 0 ? 1 : 0;
    if (sample >= 4 && zeros[0] + zeros[1] > sample / 4) {
        return {FromUtf16(bytes, zeros[0] > zeros[1]), "UTF-16"};
    }
    if (IsUtf8(bytes)) {
        if (bytes.substr(0, 3) == "\xEF\xBB\xBF") bytes.erase(0, 3);
        return {std::move(bytes), "UTF-8"};
    }
    std::string utf8;
    utf8.reserve(bytes.size() + bytes.size() / 8);
    for (const char c : bytes) {
        const auto code = static_cast<unsigned char>(c);
        const bool upper = code >= 0x80 && code < 0xA0 && kUpper[code - 0x80] != 0;
        AppendUtf8(utf8, upper ? Code(kUpper[code - 0x80]) : code);
    }
    return {std::move(utf8), "ANSI"};
}

}  // namespace demovex::tools
