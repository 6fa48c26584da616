#include "base/one_line.h"

#include <algorithm>

namespace demovex {

bool HasControls(std::wstring_view text) noexcept {
    return std::any_of(text.begin(), text.end(), IsControl);
}

void BlankControls(std::wstring& text) noexcept {
    std::replace_if(text.begin(), text.end(), IsControl, L' ');
}

std::wstring OneLine(std::wstring_view text) {
    std::wstring line(text);
    BlankControls(line);
    return line;
}

}  // namespace demovex
