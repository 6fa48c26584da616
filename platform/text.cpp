#include "platform/text.h"

#include "base/error.h"
#include "platform/number_format.h"

namespace demovex {

std::optional<double> ITextService::TryNumber(std::wstring_view text) const {
    try {
        return ToNumber(text);
    } catch (const Error&) {
        return std::nullopt;
    }
}
namespace {

// Yields the characters of a text, passing over blanks, tabs and line feeds wherever they stand.
class LenientReader {
  public:
    explicit LenientReader(std::wstring_view text) : text_(text) { Skip(); }

    // The next character; 0 at the end.
    wchar_t Peek() const { return at_ < text_.size() ? text_[at_] : L'\0'; }
    void Next() {
        ++at_;
        Skip();
    }
    bool Accept(wchar_t lower) {
        const wchar_t c = Peek();
        if (c != lower && !(c >= L'A' && c <= L'Z' && c + (L'a' - L'A') == lower)) return false;
        Next();
        return true;
    }
    std::size_t place() const { return at_; }
    void Return(std::size_t place) { at_ = place; }

  private:
    void Skip() {
        while (at_ < text_.size() &&
               (text_[at_] == L' ' || text_[at_] == L'\t' || text_[at_] == L'\n')) {
            ++at_;
        }
    }

    std::wstring_view text_;
    std::size_t at_ = 0;
};

int DigitValue(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return 99;
}

// The digits behind "&H" or "&O". As in the platform's literals, a value of up to 16 bits is a
// signed 16-bit one and a value of up to 32 bits a signed 32-bit one, unless "&" follows (then 32
// bits count); larger ones are what their digits say.
double LeadingRadixNumber(LenientReader& reader, int radix) {
    double value = 0;
    while (DigitValue(reader.Peek()) < radix) {
        value = value * radix + DigitValue(reader.Peek());
        reader.Next();
        if (value > 1e300) RaiseRuntimeError(runtime_error::kOverflow);
    }
    const bool marked_long = reader.Peek() == L'&';
    if (!marked_long && value >= 32768.0 && value <= 65535.0) return value - 65536.0;
    if (value >= 2147483648.0 && value <= 4294967295.0) return value - 4294967296.0;
    return value;
}

// The exponent behind "e" or "d"; 0 and nothing consumed when no digit follows.
std::int64_t LeadingExponent(LenientReader& reader) {
    const std::size_t start = reader.place();
    if (!reader.Accept(L'e') && !reader.Accept(L'd')) return 0;
    const bool negative = reader.Peek() == L'-';
    if (negative || reader.Peek() == L'+') reader.Next();
    if (DigitValue(reader.Peek()) > 9) {
        reader.Return(start);
        return 0;
    }
    std::int64_t exponent = 0;
    while (DigitValue(reader.Peek()) <= 9) {
        // far beyond every double, and far from overflowing
        if (exponent < 1'000'000'000'000) exponent = exponent * 10 + DigitValue(reader.Peek());
        reader.Next();
    }
    return negative ? -exponent : exponent;
}

}  // namespace

double LeadingNumber(std::wstring_view text) {
    LenientReader reader(text);
    if (reader.Accept(L'&')) {
        if (reader.Accept(L'h')) return LeadingRadixNumber(reader, 16);
        if (reader.Accept(L'o')) return LeadingRadixNumber(reader, 8);
        return 0;
    }
    const bool negative = reader.Peek() == L'-';
    if (negative || reader.Peek() == L'+') reader.Next();
    std::string digits;
    std::int64_t exponent = 0;
    bool in_decimals = false;
    for (;; reader.Next()) {
        const wchar_t c = reader.Peek();
        if (DigitValue(c) <= 9) {
            digits += static_cast<char>('0' + DigitValue(c));
            if (in_decimals) --exponent;
        } else if (c == L'.' && !in_decimals) {
            in_decimals = true;
        } else {
            break;
        }
    }
    if (digits.empty()) return 0;
    exponent += LeadingExponent(reader);
    const double value = DecimalToDouble(digits, exponent);
    return negative ? -value : value;
}

std::wstring_view TrimBlanks(std::wstring_view text) noexcept {
    while (!text.empty() && text.front() == L' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == L' ') text.remove_suffix(1);
    return text;
}

}  // namespace demovex
