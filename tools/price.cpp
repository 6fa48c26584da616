#include "tools/price.h"

namespace demovex::tools {
namespace {

constexpr Amount kOne = 10'000;
// Digits before the decimals that a field of the article master can hold, and more.
constexpr std::size_t kMostDigits = 14;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

std::string Decimals(Amount part, DecimalSign sign) {
    std::string digits = std::to_string(kOne + part).substr(1);
    if (digits.substr(2) == "00") digits.resize(2);
    return static_cast<char>(sign) + digits;
}

}  // namespace

std::optional<Amount> ReadPrice(std::string_view text, DecimalSign sign) {
    const bool minus = !text.empty() && text.front() == '-';
    if (minus) text.remove_prefix(1);
    const std::size_t decimal = text.find(static_cast<char>(sign));
    const std::string_view whole = text.substr(0, decimal);
    const std::string_view part =
        decimal == std::string_view::npos ? std::string_view() : text.substr(decimal + 1);
    if (whole.empty() || part.size() > 4) return std::nullopt;
    if (decimal != std::string_view::npos && part.empty()) return std::nullopt;

    const char other = sign == DecimalSign::kComma ? '.' : ',';
    char separator = 0;
    std::size_t digits = 0, in_group = 0;
    Amount amount = 0;
    for (const char c : whole) {
        if (IsDigit(c)) {
            if (++digits > kMostDigits || (separator != 0 && in_group == 3)) return std::nullopt;
            ++in_group;
            amount = amount * 10 + (c - '0');
            continue;
        }
        const bool separates = c == other || c == ' ' || c == '\xA0' || c == '\'';
        if (!separates || (separator != 0 && c != separator)) return std::nullopt;
        if (separator == 0 ? in_group == 0 || in_group > 3 : in_group != 3) return std::nullopt;
        separator = c;
        in_group = 0;
    }
    if (separator != 0 && in_group != 3) return std::nullopt;
    Amount worth = kOne;
    amount *= kOne;
    for (const char c : part) {
        if (!IsDigit(c)) return std::nullopt;
        worth /= 10;
        amount += (c - '0') * worth;
    }
    return minus ? -amount : amount;
}

std::string WritePrice(Amount amount, DecimalSign sign) {
    const Amount size = amount < 0 ? -amount : amount;
    std::string text = (amount < 0 ? "-" : "") + std::to_string(size / kOne);
    if (size % kOne != 0) text += Decimals(size % kOne, sign);
    return text;
}

std::string ShowAmount(Amount amount, DecimalSign sign) {
    const Amount size = amount < 0 ? -amount : amount;
    std::string text = std::to_string(size / kOne);
    for (std::size_t at = text.size(); at > 3; at -= 3) {
        text.insert(at - 3, 1, sign == DecimalSign::kComma ? '.' : ',');
    }
    return (amount < 0 ? "-" : "") + text + Decimals(size % kOne, sign);
}

}  // namespace demovex::tools
