// The order of article numbers where there is no Windows to ask.
#include <algorithm>

#include "tools/master_file.h"

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

bool OrderIsKnown(std::wstring_view number) {
    return std::all_of(number.begin(), number.end(), [](wchar_t c) {
        const wchar_t folded = Folded(c);
        return (c >= L'0' && c <= L'9') || (folded >= L'a' && folded <= L'z');
    });
}

}  // namespace demovex::tools
