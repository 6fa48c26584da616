#include "base/one_line.h"

#include <gtest/gtest.h>

namespace demovex {
namespace {

TEST(OneLine, EveryControlCharacterIsABlankAndNothingElseChanges) {
    for (unsigned code = 0; code < 0x300; ++code) {
        const auto c = static_cast<wchar_t>(code);
        const bool control = code < 0x20 || code == 0x7F;
        const std::wstring text = std::wstring(L"a") + c + L"b";
        EXPECT_EQ(HasControls(text), control) << code;
        EXPECT_EQ(OneLine(text), control ? L"a b" : text) << code;
        std::wstring changed = text;
        BlankControls(changed);
        EXPECT_EQ(changed, OneLine(text));
    }
    EXPECT_EQ(OneLine(L""), L"");
    EXPECT_FALSE(HasControls(L""));
    EXPECT_EQ(OneLine(std::wstring(L"\r\n\t\0", 4)), L"    ");
}

}  // namespace
}  // namespace demovex
