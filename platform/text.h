// Text as the user's system understands it: collation, numbers, amounts, the ANSI code page.
//
// Everything that depends on the user's locale goes through ITextService, so that the deciding code
// runs with any locale natively. Cell texts and quantities are read with ToNumber, shown amounts
// are made by FormatAmount; what FormatAmount wrote, ToNumber reads back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace demovex {

class ITextService {
  public:
    virtual ~ITextService() = default;

    // -1, 0 or 1 as `a` sorts before, equal to or after `b` in the user's locale, letter case
    // ignored. A text sorts before a longer one that it begins.
    virtual int CompareText(std::wstring_view a, std::wstring_view b) const = 0;

    // Lower case by the system's rules (letters beyond ASCII included).
    virtual std::wstring LowerCase(std::wstring_view text) const = 0;

    // The number that `text` means in the user's locale (thousands separators accepted, blanks
    // around it ignored). Raises 13 for anything else, the empty text included, and 6 when the
    // number is too large for a double.
    virtual double ToNumber(std::wstring_view text) const = 0;
    // The same; nothing where that one raises 13 or 6.
    [[nodiscard]] std::optional<double> TryNumber(std::wstring_view text) const;

    // The shortest usual text of a number in the user's locale, at most 15 digits ("2,5", "1E+15").
    virtual std::wstring FromNumber(double value) const = 0;

    // "#,##0.00" in the user's locale: thousands grouping, at least one integer digit, exactly two
    // decimals; the 15-digit decimal form is rounded half away from zero. A value that rounds to
    // zero has no minus sign.
    std::wstring FormatAmount(double value) const {
        std::wstring text;
        WriteAmount(value, text);
        return text;
    }
    // The same in place of `text`, whose memory is used again.
    virtual void WriteAmount(double value, std::wstring& text) const = 0;

    // False when the user's separators cannot be used (see IsUsable) and those that are usual in
    // the locale stand for them.
    virtual bool UsesOwnFormat() const { return true; }

    // The system's ANSI code page. A character that it cannot hold becomes "?", and `*lossy` is set
    // to true then (never to false).
    virtual std::string ToAnsi(std::wstring_view text, bool* lossy = nullptr) const = 0;
    std::wstring FromAnsi(std::string_view bytes) const {
        std::wstring text;
        ReadAnsi(bytes, text);
        return text;
    }
    // The same in place of `text`, whose memory is used again.
    virtual void ReadAnsi(std::string_view bytes, std::wstring& text) const = 0;
};

// The leading number of `text`, read leniently and independent of the locale. Blanks, tabs and line
// feeds are passed over wherever they stand, also between digits ("1 234" is 1234). What is read: a
// sign, digits with one "." as decimal point, an exponent behind e, E, d or D; or "&H" and
// hexadecimal digits, "&O" and octal digits (as in the platform's literals "&HFFFF" is -1 and
// "&HFFFF&" is 65535). Reading stops at the first character that does not fit; 0 when no number
// leads. Raises 6 when it is too large for a double.
double LeadingNumber(std::wstring_view text);

// `text` without leading and trailing blanks (U+0020 only).
std::wstring_view TrimBlanks(std::wstring_view text) noexcept;

}  // namespace demovex
