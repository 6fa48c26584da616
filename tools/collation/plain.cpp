// The order of article numbers and the sign of decimals where there is no Windows to ask.
#include <algorithm>

#include "tools/number_order.h"
#include "tools/price.h"

namespace demovex::tools {
namespace {

wchar_t Folded(wchar_t c) {
    return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c - L'A' + L'a') : c;
}

}  // namespace

int CompareNumbers(std::wstring_view a, std::wstring_view b) {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const wchar_t x = Folded(a[i]);
        const wchar_t y = Folded(b[i]);
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : a.size() < b.size() ? -1 : 1;
}

bool OrderIsKnown(std::string_view number) {
    return std::all_of(number.begin(), number.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    });
}

DecimalSign SystemDecimalSign() {
    return DecimalSign::kComma;
}

}  // namespace demovex::tools
