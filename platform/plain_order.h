// How two texts sort where no collation needs to be asked: article numbers, for the most part.
//
//   OrderOfPlainText(L"KB-11", std::string_view("KB-2"));   // -1: digits decide
//   OrderOfPlainText(L"KB", std::string_view("KC"));        // nothing: ask the system
//
// Valid in every locale, because in all of them the ten digits sort by value and below every
// letter, and no digit is part of a contraction (two or three characters that sort as one letter,
// Welsh "ng"; Microsoft's published sorting weight tables, MS-UCODEREF 3.1.5.2). Letter case
// ignored.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace demovex {

template <typename Char>
constexpr bool IsAsciiDigit(Char c) noexcept {
    return c >= '0' && c <= '9';
}

template <typename Char>
constexpr bool IsAsciiLetter(Char c) noexcept {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// -1, 0 or 1 as `a` sorts before, with or after `b`; nothing when only a collation can tell. Bytes
// may be given in any ANSI code page: from 0x80 on none is looked at. Texts that begin with the
// same ASCII characters are passed over as far as they are the same; what comes then decides when
// no letter before it could reach over it: a digit against a digit always, a digit against a letter
// or a text's end against either only at the start or behind a digit, except that a text's end
// comes before a digit always.
template <typename A, typename B>
std::optional<int> OrderOfPlainText(std::basic_string_view<A> a,
                                    std::basic_string_view<B> b) noexcept {
    const auto ascii = [](auto c) { return c >= 0 && c < 0x80; };
    const std::size_t shorter = std::min(a.size(), b.size());
    std::size_t i = 0;
    while (i < shorter && ascii(a[i]) && ascii(b[i]) &&
           static_cast<int>(a[i]) == static_cast<int>(b[i])) {
        ++i;
    }
    if (i == a.size() && i == b.size()) return 0;
    const bool alone = i == 0 || IsAsciiDigit(a[i - 1]);
    // what follows a text that has ended
    const auto below = [alone](auto next) {
        return IsAsciiDigit(next) || (alone && IsAsciiLetter(next));
    };
    if (i == a.size()) return below(b[i]) ? std::optional(-1) : std::nullopt;
    if (i == b.size()) return below(a[i]) ? std::optional(1) : std::nullopt;
    const bool left = IsAsciiDigit(a[i]), right = IsAsciiDigit(b[i]);
    if (left && right) return static_cast<int>(a[i]) < static_cast<int>(b[i]) ? -1 : 1;
    if (alone && left && IsAsciiLetter(b[i])) return -1;
    if (alone && right && IsAsciiLetter(a[i])) return 1;
    return std::nullopt;
}

}  // namespace demovex
