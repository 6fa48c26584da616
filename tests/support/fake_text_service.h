// The text service for native tests: the component's own number code in a chosen locale, a full
// grammar for unusually written numbers, a plain collation and the ANSI code page 1252.
//
//   FakeTextService text;                          // de-AT: decimal "," and thousands U+00A0
//   FakeTextService german(FakeLocale::kGermany);  // "1.234,56"
//   text.CompareText(L"4711a", L"4711A");          // 0
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "base/error.h"
#include "platform/number_format.h"
#include "platform/text.h"

namespace demovex {

enum class FakeLocale { kAustria, kGermany, kUnitedStates };

class FakeTextService : public ITextService {
  public:
    explicit FakeTextService(FakeLocale locale = FakeLocale::kAustria) { SetLocale(locale); }

    void SetLocale(FakeLocale locale) {
        format_ = NumberFormat();
        if (locale == FakeLocale::kAustria) format_.thousands = L"\u00A0";
        if (locale == FakeLocale::kUnitedStates) {
            format_.decimal = L".";
            format_.thousands = L",";
        }
    }
    bool own_format = true;  // what UsesOwnFormat answers
    bool UsesOwnFormat() const override { return own_format; }

    const NumberFormat& format() const { return format_; }

    // Letters without case; umlauts and accents beside their base letter; "ß" as "ss"; signs before
    // digits before letters; hyphens and apostrophes count only between otherwise equal texts.
    int CompareText(std::wstring_view a, std::wstring_view b) const override {
        const Key left = KeyOf(a), right = KeyOf(b);
        if (const int order = Sign(left.letters.compare(right.letters))) return order;
        if (const int order = Sign(left.accents.compare(right.accents))) return order;
        return Sign(left.hyphens.compare(right.hyphens));
    }

    std::wstring LowerCase(std::wstring_view text) const override {
        std::wstring out(text);
        for (wchar_t& c : out) c = Lower(c);
        return out;
    }

    double ToNumber(std::wstring_view text) const override {
        if (const auto plain = ReadPlainNumber(text, format_)) return *plain;
        return ReadUnusual(text);
    }

    std::wstring FromNumber(double value) const override { return FormatGeneral(value, format_); }
    void WriteAmount(double value, std::wstring& text) const override {
        demovex::FormatAmount(value, format_, text);
    }

    std::string ToAnsi(std::wstring_view text, bool* lossy = nullptr) const override {
        std::string out;
        for (std::size_t i = 0; i < text.size(); ++i) {
            const auto code = static_cast<unsigned long>(text[i]);
            const auto& table = UpperControls();
            const auto found = std::find(table.begin(), table.end(), text[i]);
            if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) {
                out += static_cast<char>(static_cast<unsigned char>(code));
            } else if (found != table.end()) {
                out += static_cast<char>(0x80 + (found - table.begin()));
            } else {
                // a character beyond the basic plane is two units on Windows and two marks there
                out += code > 0xFFFF ? "??" : "?";
                if (lossy) *lossy = true;
            }
        }
        return out;
    }

    void ReadAnsi(std::string_view bytes, std::wstring& text) const override {
        text.resize(bytes.size());
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            const auto byte = static_cast<unsigned char>(bytes[i]);
            text[i] = byte >= 0x80 && byte < 0xA0 ? UpperControls()[byte - 0x80u]
                                                  : static_cast<wchar_t>(byte);
        }
    }

  private:
    struct Key {
        std::wstring letters, accents, hyphens;
    };

    static int Sign(int order) { return order < 0 ? -1 : order > 0 ? 1 : 0; }

    static wchar_t Lower(wchar_t c) {
        if (c >= L'A' && c <= L'Z') return static_cast<wchar_t>(c + 32);
        if (c >= 0xC0 && c <= 0xDE && c != 0xD7) return static_cast<wchar_t>(c + 32);
        if (c == 0x0160 || c == 0x0152 || c == 0x017D) return static_cast<wchar_t>(c + 1);
        if (c == 0x0178) return static_cast<wchar_t>(0xFF);
        if (c >= 0x0391 && c <= 0x03A9 && c != 0x03A2) return static_cast<wchar_t>(c + 32);
        if (c >= 0x0410 && c <= 0x042F) return static_cast<wchar_t>(c + 32);
        return c;
    }

    static Key KeyOf(std::wstring_view text) {
        static constexpr std::wstring_view accented =
            L"\u00E0\u00E1\u00E2\u00E3\u00E4\u00E5\u00E7\u00E8\u00E9\u00EA\u00EB\u00EC\u00ED\u00EE"
            L"\u00EF\u00F1\u00F2\u00F3\u00F4\u00F5\u00F6\u00F9\u00FA\u00FB\u00FC\u00FD\u00FF";
        static constexpr std::wstring_view base = L"aaaaaaceeeeiiiinooooouuuuyy";
        static_assert(accented.size() == base.size());
        Key key;
        for (wchar_t original : text) {
            const wchar_t c = Lower(original);
            if (c == L'-' || c == L'\'') {
                key.hyphens += static_cast<wchar_t>(key.letters.size() + 1);
                key.hyphens += c;
                continue;
            }
            if (c == 0xDF) {
                key.letters += L"\u2001s\u2001s";
                key.accents += L"\u0001\u0001";
                continue;
            }
            const std::size_t found = accented.find(c);
            const bool folded = found != std::wstring_view::npos;
            const wchar_t letter = folded ? base[found] : c;
            const bool digit = letter >= L'0' && letter <= L'9';
            const bool is_letter = (letter >= L'a' && letter <= L'z') || letter >= 0xC0;
            key.letters += is_letter ? L'\u2001' : digit ? L'\u1001' : L'\u0001';
            key.letters += letter;
            key.accents += folded ? static_cast<wchar_t>(2 + found) : L'\u0001';
        }
        return key;
    }

    // Parentheses, a sign behind, a currency sign, an exponent, "&H" and "&O".
    double ReadUnusual(std::wstring_view text) const {
        const auto is_blank = [](wchar_t c) {
            return c == L' ' || (c >= L'\t' && c <= L'\r') || c == 0xA0;
        };
        const auto trim = [&] {
            while (!text.empty() && is_blank(text.front())) text.remove_prefix(1);
            while (!text.empty() && is_blank(text.back())) text.remove_suffix(1);
        };
        trim();
        if (text.size() > 2 && text[0] == L'&') {
            const bool hex = text[1] == L'h' || text[1] == L'H';
            const bool octal = text[1] == L'o' || text[1] == L'O';
            const std::wstring_view allowed = hex     ? L"0123456789abcdefABCDEF"
                                              : octal ? L"01234567"
                                                      : L"";
            if (text.find_first_not_of(allowed, 2) != std::wstring_view::npos) Mismatch();
            return LeadingNumber(text);
        }
        bool negative = false, signed_ = false;
        if (!text.empty() && text.front() == L'(' && text.back() == L')') {
            negative = signed_ = true;
            text = text.substr(1, text.size() - 2);
        }
        for (int pass = 0; pass < 4 && !text.empty(); ++pass) {
            trim();
            if (text.empty()) Mismatch();
            const auto take = [&](bool front) {
                const wchar_t c = front ? text.front() : text.back();
                if (c == 0x20AC || c == L'$') {
                    front ? text.remove_prefix(1) : text.remove_suffix(1);
                } else if ((c == L'-' || c == L'+') && !signed_) {
                    signed_ = true;
                    negative = c == L'-';
                    front ? text.remove_prefix(1) : text.remove_suffix(1);
                }
            };
            take(true);
            if (!text.empty()) take(false);
        }
        std::int64_t exponent = 0;
        const std::size_t e = text.find_first_of(L"eE");
        if (e != std::wstring_view::npos) {
            std::wstring_view tail = text.substr(e + 1);
            const bool down = !tail.empty() && tail.front() == L'-';
            if (!tail.empty() && (down || tail.front() == L'+')) tail.remove_prefix(1);
            if (tail.empty() || tail.find_first_not_of(L"0123456789") != std::wstring_view::npos) {
                Mismatch();
            }
            for (wchar_t c : tail)
                exponent = std::min<std::int64_t>(exponent * 10 + (c - L'0'), 1'000'000);
            if (down) exponent = -exponent;
            text = text.substr(0, e);
        }
        std::string digits;
        bool in_decimals = false;
        for (wchar_t c : text) {
            if (c >= L'0' && c <= L'9') {
                digits += static_cast<char>('0' + (c - L'0'));
                if (in_decimals) --exponent;
            } else if (c == format_.decimal[0] && !in_decimals) {
                in_decimals = true;
            } else if (digits.empty() || !IsSeparator(c)) {
                Mismatch();
            }
        }
        if (digits.empty()) Mismatch();
        const double value = DecimalToDouble(digits, exponent);
        return negative ? -value : value;
    }

    // Thousands separators are passed over wherever a digit went before; where a no-break space
    // groups, the system also takes the blank and the point of money amounts.
    bool IsSeparator(wchar_t c) const {
        return c == format_.thousands[0] ||
               (format_.thousands[0] == 0xA0 && (c == L' ' || c == L'.'));
    }

    [[noreturn]] static void Mismatch() { RaiseRuntimeError(runtime_error::kTypeMismatch); }

    // What the bytes 0x80 to 0x9F of the code page stand for.
    static const std::array<wchar_t, 32>& UpperControls() {
        static constexpr std::array<wchar_t, 32> table = {
            0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
            0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
            0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
        return table;
    }

    NumberFormat format_;
};

}  // namespace demovex
