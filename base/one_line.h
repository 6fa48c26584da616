// Text that stands in one line of printable characters, as the cells of the basket do.
//
// Whatever comes from outside (a link, a file, the article master, a text box) passes here before
// it becomes a cell's text: a tab or a line break would begin a field or a line of its own when the
// basket is saved, and a NUL would hide what follows it from whoever takes it for the text's end.
#pragma once

#include <string>
#include <string_view>

namespace demovex {

// Characters below U+0020, and U+007F.
[[nodiscard]] constexpr bool IsControl(wchar_t c) noexcept {
    return static_cast<unsigned long>(c) < 0x20 || c == 0x7F;
}

[[nodiscard]] bool HasControls(std::wstring_view text) noexcept;

// Makes every control character a blank.
void BlankControls(std::wstring& text) noexcept;

// The same of a copy.
[[nodiscard]] std::wstring OneLine(std::wstring_view text);

}  // namespace demovex
