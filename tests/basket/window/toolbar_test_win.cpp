// The toolbar of the running window, read back through the system.
#include <gtest/gtest.h>

#include <set>

#include "basket/window/handles_win.h"
#include "basket/window/toolbar_win.h"
#include "tests/support/test_basket_window_win.h"
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
        RECT rect{}, place{};
        GetClientRect(bar, &rect);
        GetWindowRect(bar, &place);
        MapWindowPoints(nullptr, basket.Handle(), reinterpret_cast<POINT*>(&place), 2);
        EXPECT_GE(place.top, 0);
        EXPECT_EQ(place.bottom, dpi / 4);
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

// Changes system colours for as long as it lives, as a change of the user's scheme does.
class SystemColours {
  public:
    explicit SystemColours(const std::vector<std::pair<int, COLORREF>>& scheme) {
        for (const auto& [element, colour] : scheme) {
            elements_.push_back(element);
            before_.push_back(GetSysColor(element));
            now_.push_back(colour);
        }
        SetSysColors(static_cast<int>(elements_.size()), elements_.data(), now_.data());
    }
    ~SystemColours() {
        SetSysColors(static_cast<int>(elements_.size()), elements_.data(), before_.data());
    }
    SystemColours(const SystemColours&) = delete;
    SystemColours& operator=(const SystemColours&) = delete;

  private:
    std::vector<int> elements_;
    std::vector<COLORREF> before_;
    std::vector<COLORREF> now_;
};

int BrightnessOf(COLORREF colour) {
    return (GetRValue(colour) * 3 + GetGValue(colour) * 6 + GetBValue(colour)) / 10;
}

// A glyph drawn for light faces would be black on black.
TEST(WindowToolbar, EveryGlyphStandsOutFromTheFaceInADarkScheme) {
    const SystemColours dark({{COLOR_BTNFACE, RGB(0, 0, 0)},
                              {COLOR_BTNTEXT, RGB(255, 255, 255)},
                              {COLOR_GRAYTEXT, RGB(0, 255, 0)}});
    for (const int dpi : {96, 192}) {
        for (const bool enabled : {true, false}) {
            SCOPED_TRACE(::testing::Message() << dpi << " dpi, enabled: " << enabled);
            BasketWindowFixture basket(HostLoop::kBare, dpi);
            HWND bar = basket.Child(child_id::kToolbar);
            auto images = reinterpret_cast<HIMAGELIST>(
                SendMessageW(bar, enabled ? TB_GETIMAGELIST : TB_GETDISABLEDIMAGELIST, 0, 0));
            const int size = GlyphSize(dpi);
            const HDC screen = GetDC(nullptr);
            const HDC memory = CreateCompatibleDC(screen);
            const HBITMAP canvas = CreateCompatibleBitmap(screen, size, size);
            const HGDIOBJ previous = SelectObject(memory, canvas);
            for (int i = 0; i < 14; ++i) {
                RECT all{0, 0, size, size};
                FillRect(memory, &all, GetSysColorBrush(COLOR_BTNFACE));
                ImageList_Draw(images, i, memory, 0, 0, ILD_TRANSPARENT);
                int bright = 0;
                for (int y = 0; y < size; ++y) {
                    for (int x = 0; x < size; ++x) {
                        bright += BrightnessOf(GetPixel(memory, x, y)) >= 75;
                    }
                }
                EXPECT_GE(bright, size * size / 8) << i;
            }
            SelectObject(memory, previous);
            DeleteObject(canvas);
            DeleteDC(memory);
            ReleaseDC(nullptr, screen);
        }
    }
}

TEST(WindowToolbar, AChangeOfSchemeRedrawsTheGlyphs) {
    BasketWindowFixture basket;
    HWND bar = basket.Child(child_id::kToolbar);
    RECT button{};
    SendMessageW(bar, TB_GETITEMRECT, 6, reinterpret_cast<LPARAM>(&button));  // "Cut"
    const auto bright = [&] {
        PumpUntilPainted(bar);
        const WindowPicture picture = WindowPicture::OfScreen(bar);
        int count = 0;
        for (int y = button.top; y < button.bottom; ++y) {
            for (int x = button.left; x < button.right; ++x) {
                count += BrightnessOf(picture.At(x, y)) >= 75;
            }
        }
        return count;
    };
    const int face = (button.right - button.left) * (button.bottom - button.top);
    EXPECT_GE(bright(), face / 2);
    const SystemColours dark({{COLOR_BTNFACE, RGB(0, 0, 0)}});
    SendMessageW(basket.Handle(), WM_SYSCOLORCHANGE, 0, 0);
    basket.Pump();
    EXPECT_LE(bright(), face / 2);
    EXPECT_GE(bright(), 25);
}

TEST(WindowToolbar, ButtonsAndGlyphsStandInTheMiddleOfTheBar) {
    for (const int dpi : {96, 120, 144, 192}) {
        SCOPED_TRACE(dpi);
        BasketWindowFixture basket(HostLoop::kBare, dpi);
        HWND bar = basket.Child(child_id::kToolbar);
        RECT place{}, button{};
        GetWindowRect(bar, &place);
        MapWindowPoints(nullptr, basket.Handle(), reinterpret_cast<POINT*>(&place), 2);
        SendMessageW(bar, TB_GETITEMRECT, 0, reinterpret_cast<LPARAM>(&button));
        EXPECT_NEAR(place.top + button.top, dpi / 4 - place.top - button.bottom, 1);
        // the page of "New" reaches from the first to the last line of its picture but one
        PumpUntilPainted(bar);
        const WindowPicture picture = WindowPicture::OfScreen(bar);
        const int middle = (button.left + button.right) / 2;
        int first = -1, last = -1;
        for (int y = button.top; y < button.bottom; ++y) {
            if (BrightnessOf(picture.At(middle, y)) >= 75) continue;
            if (first < 0) first = y;
            last = y;
        }
        EXPECT_NEAR(place.top + first, dpi / 4 - place.top - 1 - last, 1 + dpi / 96);
        // and across
        int left = -1, right = -1;
        for (int x = button.left; x < button.right; ++x) {
            if (BrightnessOf(picture.At(x, (first + last) / 2)) >= 75) continue;
            if (left < 0) left = x;
            right = x;
        }
        EXPECT_NEAR(left - button.left, button.right - 1 - right, 1 + dpi / 96);
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
