// Numbers as the user's locale writes them, without asking the system: a fast reader for plainly
// written numbers, the amount format "#,##0.00" and the general number format.
//
// The caller fills NumberFormat from the locale once (NumberFormat{} is German: "1.234,56"); the
// functions are pure. Texts that are numbers in a less usual way (exponents, parentheses, currency
// signs, "&H10", ...) are none of the reader's business: it says "not plain" and the caller asks
// the system.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace demovex {

struct NumberFormat {
    std::wstring decimal = L",";    // never empty
    std::wstring thousands = L".";  // may be empty: no grouping, nothing accepted
    // Digits per group from the decimal separator leftwards; empty: no grouping.
    std::vector<int> groups = {3};
    // Whether the last group repeats to the left (3 in most of the world).
    bool repeat_last_group = true;

    // Sets the groups from the system's notation: "3;0" (3, repeated), "3;2;0", "3" (once), "0".
    // A text that is none of these leaves no grouping.
    void SetGrouping(std::wstring_view pattern);
};

// Whether numbers can be told from their separators: no separator has a digit in it.
bool IsUsable(const NumberFormat& format) noexcept;

// The number that a plainly written `text` means: blanks (U+0020) around it, a minus or plus sign
// directly before it, digits, thousands separators between digits (in any places; the no-break
// space also where the locale groups with the narrow one, and the other way round), one decimal
// separator with digits before or behind it. Nothing for any other text. Raises 6 when it is too
// large for a double.
std::optional<double> ReadPlainNumber(std::wstring_view text, const NumberFormat& format);

// "#,##0.00": the value's 15-digit decimal form is rounded half away from zero to two decimals,
// grouped, with at least one integer digit; a minus sign stands first, never before a zero. Digits
// beyond the fifteenth are zeros. Replaces `out`, whose memory is used again. Raises 6 for
// infinities and values that are no number.
void FormatAmount(double value, const NumberFormat& format, std::wstring& out);
inline std::wstring FormatAmount(double value, const NumberFormat& format) {
    std::wstring out;
    FormatAmount(value, format, out);
    return out;
}

// At most 15 digits, without trailing zeros: "2,5", "0,001", "-3". The scientific form
// ("1,5E+15", "3,33333333333333E-02", at least two digits in the exponent) is used from 1E+15 on
// and for small values whose plain form would need more than 15 decimals. Raises 6 for infinities
// and values that are no number.
std::wstring FormatGeneral(double value, const NumberFormat& format);

// The double nearest to digits * 10^exponent (`digits` are "0" to "9", at least one; no sign). 0
// when it is too small; raises 6 when it is too large.
double DecimalToDouble(std::string_view digits, std::int64_t exponent);

}  // namespace demovex
