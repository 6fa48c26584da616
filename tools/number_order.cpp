#include "tools/number_order.h"

#include <algorithm>

#include "tools/encodings.h"

namespace demovex::tools {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsLetter(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

// Whether a text is more for going on with `next` where the other ends, in every locale.
bool AddsAtTheEnd(char next, bool behind_letter) {
    return IsDigit(next) || (IsLetter(next) && !behind_letter);
}

}  // namespace

std::optional<int> QuickOrder(std::string_view a, std::string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    bool behind_letter = false;
    for (std::size_t i = 0; i < common; ++i) {
        const char x = a[i], y = b[i];
        if (x == y) {
            // what is neither may be passed over or belong to its neighbours
            if (!IsDigit(x) && !IsLetter(x)) return std::nullopt;
            behind_letter = IsLetter(x);
            continue;
        }
        if (IsDigit(x) && IsDigit(y)) return x < y ? -1 : 1;
        if (behind_letter) return std::nullopt;
        if (IsDigit(x) && IsLetter(y)) return -1;
        if (IsLetter(x) && IsDigit(y)) return 1;
        return std::nullopt;
    }
    if (a.size() == b.size()) return 0;
    if (a.size() < b.size() && AddsAtTheEnd(b[common], behind_letter)) return -1;
    if (b.size() < a.size() && AddsAtTheEnd(a[common], behind_letter)) return 1;
    return std::nullopt;
}

int CompareNumberBytes(std::string_view a, std::string_view b) {
    if (const auto order = QuickOrder(a, b)) return *order;
    return CompareNumbers(FromWindows1252(a), FromWindows1252(b));
}

}  // namespace demovex::tools
