#include "platform/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

#include "base/error.h"

namespace demovex {
namespace {

constexpr wchar_t kNoBreakSpace = 0x00A0;
constexpr wchar_t kNarrowNoBreakSpace = 0x202F;

constexpr double kPowersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::int64_t kLargestExactPower = 22;
constexpr std::uint64_t kLargestExactInteger = std::uint64_t{1} << 53;
constexpr double kLargestInt32 = 2147483647.0;

bool IsDigit(wchar_t c) {
    return c >= L'0' && c <= L'9';
}

// The 15-digit decimal form of a finite value: 0.d1d2d3... * 10^point; zero has the digits "0".
struct DecimalForm {
    bool negative;
    std::string digits;  // no trailing zeros
    int point;
};

DecimalForm ToDecimal(double value) {
    DecimalForm form{std::signbit(value), {}, 0};
    char text[40];
    const int length = std::snprintf(text, sizeof text, "%.14e", std::fabs(value));
    int i = 0;
    // a host may have changed the C library's decimal point: only the digits count
    for (; i < length && text[i] != 'e'; ++i) {
        if (text[i] >= '0' && text[i] <= '9') form.digits += text[i];
    }
    int exponent = 0;
    const char* from = text + i + 1;
    if (*from == '+') ++from;
    std::from_chars(from, text + length, exponent);
    form.point = exponent + 1;
    while (form.digits.size() > 1 && form.digits.back() == '0') form.digits.pop_back();
    return form;
}

void RequireFinite(double value) {
    if (!std::isfinite(value)) RaiseRuntimeError(runtime_error::kOverflow);
}

// Integer digits with the locale's groups.
void AppendGrouped(std::wstring& out, std::string_view digits, const NumberFormat& format) {
    if (format.thousands.empty() || format.groups.empty()) {
        out.append(digits.begin(), digits.end());
        return;
    }
    // where separators go, counted in digits from the right
    std::vector<std::size_t> breaks;
    std::size_t at = 0;
    for (std::size_t group = 0;; ++group) {
        if (group >= format.groups.size() && !format.repeat_last_group) break;
        at += static_cast<std::size_t>(
            format.groups[group < format.groups.size() ? group : format.groups.size() - 1]);
        if (at >= digits.size()) break;
        breaks.push_back(digits.size() - at);
    }
    std::size_t done = 0;
    for (auto it = breaks.rbegin(); it != breaks.rend(); ++it) {
        out.append(digits.begin() + static_cast<std::ptrdiff_t>(done),
                   digits.begin() + static_cast<std::ptrdiff_t>(*it));
        out += format.thousands;
        done = *it;
    }
    out.append(digits.begin() + static_cast<std::ptrdiff_t>(done), digits.end());
}

// The usual amount, put together from the right in place; `integer` has at most kShortAmount
// digits, the separators at most kShortSeparator characters.
constexpr std::size_t kShortAmount = 20;
constexpr std::size_t kShortSeparator = 3;

void ShortAmountText(bool negative, std::string_view integer, std::string_view two_decimals,
                     const NumberFormat& format, std::wstring& out) {
    wchar_t text[3 + kShortSeparator + kShortAmount * (1 + kShortSeparator)];
    wchar_t* const end = text + sizeof text / sizeof *text;
    wchar_t* at = end;
    const auto put = [&at](wchar_t c) { *--at = c; };
    put(static_cast<wchar_t>(two_decimals[1]));
    put(static_cast<wchar_t>(two_decimals[0]));
    for (std::size_t i = format.decimal.size(); i > 0; --i) put(format.decimal[i - 1]);

    const bool grouped = !format.thousands.empty() && !format.groups.empty();
    std::size_t group = 0;
    int room = grouped ? format.groups.front() : -1;  // digits until a separator, below 0 for none
    for (std::size_t i = integer.size(); i > 0; --i) {
        if (room == 0) {
            for (std::size_t s = format.thousands.size(); s > 0; --s) put(format.thousands[s - 1]);
            if (group + 1 < format.groups.size()) {
                room = format.groups[++group];
            } else {
                room = format.repeat_last_group ? format.groups.back() : -1;
            }
        }
        put(static_cast<wchar_t>(integer[i - 1]));
        --room;
    }
    if (negative) put(L'-');
    out.assign(at, static_cast<std::size_t>(end - at));
}

void AmountText(bool negative, std::string_view integer, std::string_view two_decimals,
                const NumberFormat& format, std::wstring& out) {
    if (integer.size() <= kShortAmount && format.decimal.size() <= kShortSeparator &&
        format.thousands.size() <= kShortSeparator) {
        ShortAmountText(negative, integer, two_decimals, format, out);
        return;
    }
    out.clear();
    out.reserve(integer.size() * 2 + 4);
    if (negative) out += L'-';
    AppendGrouped(out, integer, format);
    out += format.decimal;
    out.append(two_decimals.begin(), two_decimals.end());
}

// The exact way, for values near a half and large ones.
void FormatAmountExactly(double value, const NumberFormat& format, std::wstring& out) {
    const DecimalForm form = ToDecimal(value);
    // digits of the integer part and of two decimals, then one that decides the rounding
    std::string hundredths;
    const int wanted = form.point + 2;
    bool round_up = false;
    if (wanted >= 0) {
        const std::size_t count = static_cast<std::size_t>(wanted);
        hundredths = form.digits.substr(0, count);
        hundredths.append(count - hundredths.size(), '0');
        round_up = count < form.digits.size() && form.digits[count] >= '5';
    }
    if (round_up) {
        std::size_t i = hundredths.size();
        while (i > 0 && hundredths[i - 1] == '9') hundredths[--i] = '0';
        if (i > 0) {
            ++hundredths[i - 1];
        } else {
            hundredths.insert(hundredths.begin(), '1');
        }
    }
    if (hundredths.size() < 3) hundredths.insert(0, 3 - hundredths.size(), '0');
    const bool zero = hundredths.find_first_not_of('0') == std::string::npos;
    std::string_view integer(hundredths.data(), hundredths.size() - 2);
    // (zero is "000" here, or longer when the digits began with one)
    while (integer.size() > 1 && integer.front() == '0') integer.remove_prefix(1);
    AmountText(form.negative && !zero, integer,
               std::string_view(hundredths).substr(hundredths.size() - 2), format, out);
}

// The most usual text: up to 15 digits, separators of one character, no sign and no blanks. Nothing
// for any other text, which may be a number all the same.
std::optional<double> ReadShortNumber(std::wstring_view text, const NumberFormat& format) {
    constexpr std::size_t kMostDigits = 15;  // an exact double, and so is the power of ten below it
    if (text.size() > 2 * kMostDigits || format.decimal.size() != 1 ||
        format.thousands.size() != 1) {
        return std::nullopt;
    }
    const wchar_t decimal = format.decimal[0];
    const wchar_t thousands = format.thousands[0];
    // Nine digits and the rest apart: a 32-bit program pays dearly for larger integers.
    constexpr std::size_t kHeadDigits = 9;
    std::int32_t head = 0;
    std::int32_t tail = 0;
    std::size_t digits = 0;
    std::size_t decimals = 0;
    bool in_decimals = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const wchar_t c = text[i];
        if (IsDigit(c)) {
            if (digits == kMostDigits) return std::nullopt;
            std::int32_t& part = digits < kHeadDigits ? head : tail;
            part = part * 10 + (c - L'0');
            ++digits;
            if (in_decimals) ++decimals;
        } else if (c == decimal && !in_decimals) {
            in_decimals = true;
        } else if (in_decimals || c != thousands || digits == 0 || i + 1 == text.size() ||
                   !IsDigit(text[i + 1])) {
            return std::nullopt;
        }
    }
    if (digits == 0) return std::nullopt;
    double integer = head;
    if (digits > kHeadDigits) integer = integer * kPowersOfTen[digits - kHeadDigits] + tail;
    return integer / kPowersOfTen[decimals];
}

// True and moves `at` behind it when a separator stands there; no-break spaces of either width
// stand for each other.
bool SkipSeparator(std::wstring_view text, std::size_t& at, std::wstring_view separator) {
    if (separator.empty()) return false;
    if (text.substr(at, separator.size()) == separator) {
        at += separator.size();
        return true;
    }
    if (separator.size() == 1 &&
        (separator[0] == kNoBreakSpace || separator[0] == kNarrowNoBreakSpace) &&
        (text[at] == kNoBreakSpace || text[at] == kNarrowNoBreakSpace)) {
        ++at;
        return true;
    }
    return false;
}

}  // namespace

void NumberFormat::SetGrouping(std::wstring_view pattern) {
    groups.clear();
    repeat_last_group = false;
    for (std::size_t i = 0; i < pattern.size(); i += 2) {
        const bool last = i + 1 == pattern.size();
        if (!IsDigit(pattern[i]) || (!last && pattern[i + 1] != L';')) {
            groups.clear();
            return;
        }
        const int size = pattern[i] - L'0';
        if (size == 0) {
            repeat_last_group = last && !groups.empty();
            if (!last) groups.clear();
            return;
        }
        groups.push_back(size);
    }
}

double DecimalToDouble(std::string_view digits, std::int64_t exponent) {
    while (digits.size() > 1 && digits.front() == '0') digits.remove_prefix(1);
    if (digits == "0") return 0;
    if (digits.size() <= 18) {
        std::uint64_t integer = 0;
        for (char c : digits) integer = integer * 10 + static_cast<std::uint64_t>(c - '0');
        if (integer <= kLargestExactInteger) {
            // both are exact doubles, so the one operation rounds correctly
            if (exponent <= 0 && exponent >= -kLargestExactPower) {
                return static_cast<double>(integer) / kPowersOfTen[-exponent];
            }
            if (exponent > 0 && exponent <= kLargestExactPower) {
                return static_cast<double>(integer) * kPowersOfTen[exponent];
            }
        }
    }
    // 0.d1d2... * 10^point
    const std::int64_t point = static_cast<std::int64_t>(digits.size()) + exponent;
    if (point > 310) RaiseRuntimeError(runtime_error::kOverflow);
    if (point < -330) return 0;
    std::string text(digits);
    text += 'e';
    text += std::to_string(exponent);
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        if (point > 0) RaiseRuntimeError(runtime_error::kOverflow);
        return 0;
    }
    return value;
}

bool IsUsable(const NumberFormat& format) noexcept {
    return std::none_of(format.decimal.begin(), format.decimal.end(), IsDigit) &&
           std::none_of(format.thousands.begin(), format.thousands.end(), IsDigit);
}

std::optional<double> ReadPlainNumber(std::wstring_view text, const NumberFormat& format) {
    if (const auto value = ReadShortNumber(text, format)) return value;
    while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
    if (text.empty()) return std::nullopt;
    bool negative = false;
    if (text.front() == L'-' || text.front() == L'+') {
        negative = text.front() == L'-';
        text.remove_prefix(1);
    }
    // the usual number needs no memory: up to 18 digits
    char few[18];
    std::size_t count = 0;
    std::string many;
    std::size_t decimals = 0;
    bool any_digit = false;
    bool in_decimals = false;
    for (std::size_t at = 0; at < text.size();) {
        const wchar_t c = text[at];
        if (IsDigit(c)) {
            const char digit = static_cast<char>('0' + (c - L'0'));
            any_digit = true;
            if (count < sizeof few) {
                few[count] = digit;
            } else {
                if (count == sizeof few) many.assign(few, count);
                many += digit;
            }
            ++count;
            if (in_decimals) ++decimals;
            ++at;
            continue;
        }
        if (in_decimals) return std::nullopt;
        if (SkipSeparator(text, at, format.decimal)) {
            in_decimals = true;
            continue;
        }
        // a thousands separator stands between two digits
        if (!any_digit || !SkipSeparator(text, at, format.thousands)) return std::nullopt;
        if (at >= text.size() || !IsDigit(text[at])) return std::nullopt;
    }
    if (!any_digit) return std::nullopt;
    const std::string_view digits = many.empty() ? std::string_view(few, count) : many;
    const double value = DecimalToDouble(digits, -static_cast<std::int64_t>(decimals));
    return negative ? -value : value;
}

void FormatAmount(double value, const NumberFormat& format, std::wstring& out) {
    RequireFinite(value);
    const double hundredths = std::fabs(value) * 100.0;
    if (hundredths < 1e11) {
        const double below = std::floor(hundredths);
        const double rest = hundredths - below;
        // Below 1e11 the product and the 15-digit form are both within 0.0006 of the true number
        // of hundredths: farther than that from a half, all roundings agree.
        if (std::fabs(rest - 0.5) > 0.001) {
            const double rounded = rest > 0.5 ? below + 1 : below;
            char text[24];
            text[0] = text[1] = '0';
            // 32 bits suffice for most, and a 32-bit program is much quicker with them
            const char* end = rounded <= kLargestInt32
                                  ? std::to_chars(text + 2, text + sizeof text,
                                                  static_cast<std::int32_t>(rounded))
                                        .ptr
                                  : std::to_chars(text + 2, text + sizeof text,
                                                  static_cast<std::int64_t>(rounded))
                                        .ptr;
            // at least three digits, out of the two zeros put before
            const char* begin = end - (text + 2) >= 3 ? text + 2 : end - 3;
            const std::string_view digits(begin, static_cast<std::size_t>(end - begin));
            AmountText(std::signbit(value) && rounded != 0, digits.substr(0, digits.size() - 2),
                       digits.substr(digits.size() - 2), format, out);
            return;
        }
    }
    FormatAmountExactly(value, format, out);
}

std::wstring FormatGeneral(double value, const NumberFormat& format) {
    RequireFinite(value);
    if (value == 0) return L"0";
    const DecimalForm form = ToDecimal(value);
    const int count = static_cast<int>(form.digits.size());
    std::wstring out;
    if (form.negative) out += L'-';
    const auto append = [&](std::string_view digits) { out.append(digits.begin(), digits.end()); };
    const std::string_view digits = form.digits;
    if (form.point > 15 || count - form.point > 15) {
        append(digits.substr(0, 1));
        if (count > 1) {
            out += format.decimal;
            append(digits.substr(1));
        }
        const int exponent = form.point - 1;
        out += exponent < 0 ? L"E-" : L"E+";
        const int size = exponent < 0 ? -exponent : exponent;
        if (size < 10) out += L'0';
        append(std::to_string(size));
    } else if (form.point <= 0) {
        out += L'0';
        out += format.decimal;
        out.append(static_cast<std::size_t>(-form.point), L'0');
        append(digits);
    } else {
        const std::size_t point = static_cast<std::size_t>(form.point);
        append(digits.substr(0, point));
        if (digits.size() > point) {
            out += format.decimal;
            append(digits.substr(point));
        } else {
            out.append(point - digits.size(), L'0');
        }
    }
    return out;
}

}  // namespace demovex
