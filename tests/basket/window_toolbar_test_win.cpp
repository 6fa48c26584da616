// The toolbar of the running window, read back through the system.
#include <gtest/gtest.h>

#include <set>

#include "basket/window_handles_win.h"
#include "basket/window_toolbar_win.h"
#include "tests/support/basket_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

TEST(WindowToolbar, ButtonsEqualTheTableInOrderImageAndState) {
    BasketWindowFixture basket;
    HWND bar = basket.Child(child_id::kToolbar);
    ASSERT_EQ(SendMessageW(bar, TB_BUTTONCOUNT, 0, 0), 19);
    for (int i = 0; i < 19; ++i) {
        SCOPED_TRACE(i);
        TBBUTTON button{};
        ASSERT_TRUE(SendMessageW(bar, TB_GETBUTTON, i, reinterpret_cast<LPARAM>(&button)));
        const ToolbarButton& expected = ToolbarTable()[i];
        EXPECT_EQ(button.idCommand, child_id::kFirstButton + i);
        EXPECT_EQ(WindowToolbar::KeyOf(button.idCommand), expected.key);
        EXPECT_EQ((button.fsStyle & BTNS_SEP) != 0, expected.key.empty());
        if (expected.key.empty()) continue;
        EXPECT_EQ(ImageTable()[button.iBitmap].key, expected.key);
        EXPECT_EQ(button.fsState & TBSTATE_ENABLED, TBSTATE_ENABLED);
    }
}

TEST(WindowToolbar, TheImageListHoldsFourteenGlyphsOfTheScreensSize) {
    const std::pair<int, int> sizes[] = {{96, 16}, {120, 20}, {144, 24}, {192, 32}};
    for (const auto& [dpi, size] : sizes) {
        BasketWindowFixture basket(HostLoop::kBare, dpi);
        HWND bar = basket.Child(child_id::kToolbar);
        auto images = reinterpret_cast<HIMAGELIST>(SendMessageW(bar, TB_GETIMAGELIST, 0, 0));
        EXPECT_EQ(ImageList_GetImageCount(images), 14);
        int width = 0, height = 0;
        ImageList_GetIconSize(images, &width, &height);
        EXPECT_EQ(width, size);
        EXPECT_EQ(height, size);
        auto faded = reinterpret_cast<HIMAGELIST>(SendMessageW(bar, TB_GETDISABLEDIMAGELIST, 0, 0));
        EXPECT_EQ(ImageList_GetImageCount(faded), 14);
    }
}

TEST(WindowToolbar, ButtonsFitInto360TwipsAtEveryDpi) {
    for (const int dpi : {96, 120, 144, 192}) {
        SCOPED_TRACE(dpi);
        BasketWindowFixture basket(HostLoop::kBare, dpi);
        HWND bar = basket.Child(child_id::kToolbar);
        RECT rect{};
        GetClientRect(bar, &rect);
        EXPECT_EQ(rect.bottom, dpi / 4);
        for (int i = 0; i < 19; ++i) {
            RECT button{};
            SendMessageW(bar, TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&button));
            EXPECT_GE(button.top, 0);
            EXPECT_LE(button.bottom, rect.bottom);
            EXPECT_LE(button.right, rect.right);
        }
    }
}

TEST(WindowToolbar, EachButtonTellsItsToolTip) {
    BasketWindowFixture basket;
    HWND bar = basket.Child(child_id::kToolbar);
    const auto tips = reinterpret_cast<HWND>(SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
    ASSERT_NE(tips, nullptr);
    int told = 0;
    for (int i = 0; i < 19; ++i) {
        if (ToolbarTable()[i].key.empty()) continue;
        wchar_t text[256] = L"";
        TTTOOLINFOW info{};
        info.cbSize = TTTOOLINFOW_V1_SIZE;
        info.hwnd = bar;
        info.uId = static_cast<UINT_PTR>(child_id::kFirstButton + i);
        info.lpszText = text;
        SendMessageW(tips, TTM_GETTEXTW, 0, reinterpret_cast<LPARAM>(&info));
        EXPECT_EQ(text, ToolbarTable()[i].tool_tip);
        ++told;
    }
    EXPECT_EQ(told, 14);
}

TEST(WindowToolbar, AClickOnAButtonRunsItsCommandAndLeavesTheFocusInTheEditor) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    HWND bar = basket.Child(child_id::kToolbar);
    const HWND text = basket.Text();
    ASSERT_EQ(GetFocus(), text);
    RECT button{};
    SendMessageW(bar, TB_GETITEMRECT, 7, reinterpret_cast<LPARAM>(&button));  // "Copy"
    basket.ClickAt(bar, (button.left + button.right) / 2, (button.top + button.bottom) / 2);
    EXPECT_EQ(GetFocus(), text);
    ASSERT_TRUE(OpenClipboard(nullptr));
    HANDLE data = GetClipboardData(CF_UNICODETEXT);
    ASSERT_NE(data, nullptr);
    EXPECT_STREQ(static_cast<const wchar_t*>(GlobalLock(data)), L"1");
    GlobalUnlock(data);
    CloseClipboard();

    SendMessageW(bar, TB_GETITEMRECT, 11, reinterpret_cast<LPARAM>(&button));  // "NewRow"
    basket.ClickAt(bar, (button.left + button.right) / 2, (button.top + button.bottom) / 2);
    EXPECT_EQ(basket.Lines(), 2);
}

TEST(WindowToolbar, ADisabledGlyphKeepsItsShape) {
    BasketWindowFixture basket;
    HWND bar = basket.Child(child_id::kToolbar);
    for (int i = 0; i < 19; ++i) {
        if (ToolbarTable()[i].key.empty()) continue;
        SendMessageW(bar, TB_ENABLEBUTTON, child_id::kFirstButton + i, MAKELPARAM(FALSE, 0));
    }
    RedrawWindow(bar, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    PumpUntilPainted(bar);
    const WindowPicture picture = WindowPicture::OfScreen(bar);
    const COLORREF dark = GetSysColor(COLOR_BTNSHADOW);
    for (int i = 0; i < 19; ++i) {
        if (ToolbarTable()[i].key.empty()) continue;
        RECT button{};
        SendMessageW(bar, TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&button));
        EXPECT_GE(picture.Count(button, dark), 20) << i;
    }
}

TEST(WindowToolbar, NoTwoGlyphsLookAlike) {
    BasketWindowFixture basket;
    HWND bar = basket.Child(child_id::kToolbar);
    PumpUntilPainted(bar);
    const WindowPicture picture = WindowPicture::OfScreen(bar);
    std::set<std::vector<COLORREF>> looks;
    for (int i = 0; i < 19; ++i) {
        if (ToolbarTable()[i].key.empty()) continue;
        RECT button{};
        SendMessageW(bar, TB_GETITEMRECT, i, reinterpret_cast<LPARAM>(&button));
        std::vector<COLORREF> look;
        for (int y = button.top; y < button.bottom; ++y) {
            for (int x = button.left; x < button.right; ++x) look.push_back(picture.At(x, y));
        }
        EXPECT_GT(std::set<COLORREF>(look.begin(), look.end()).size(), 2u) << i;
        looks.insert(look);
    }
    EXPECT_EQ(looks.size(), 14u);
}

}  // namespace
}  // namespace demovex
