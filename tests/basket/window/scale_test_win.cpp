// The window on screens of every scale, and on its way from one to another. A host may mind each
// monitor, one of them, or none: the window minds what its host does.
#include <gtest/gtest.h>

#include <array>

#include "basket/window/handles_win.h"
#include "platform/screen_scale_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

constexpr UINT kDpiChanged = 0x02E0;

// What the calling thread minds, as hosts say it: -1 nothing, -2 the system's scale, -4 each
// monitor's.
class ThreadMinds {
  public:
    explicit ThreadMinds(INT_PTR what) : before_(Set()(reinterpret_cast<HANDLE>(what))) {
        // older systems know only the first way of minding each monitor
        if (what == -4 && before_ == nullptr) before_ = Set()(reinterpret_cast<HANDLE>(-3));
    }
    ~ThreadMinds() { Set()(before_); }
    ThreadMinds(const ThreadMinds&) = delete;
    ThreadMinds& operator=(const ThreadMinds&) = delete;
    bool Understood() const { return before_ != nullptr; }

  private:
    using Function = HANDLE(WINAPI*)(HANDLE);
    static Function Set() {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleW(L"user32.dll"), "SetThreadDpiAwarenessContext")));
    }
    HANDLE before_;
};

class ScaledWindow : public BasketWindowFixture {
  public:
    explicit ScaledWindow(int dpi = 0) : BasketWindowFixture(HostLoop::kBare, dpi) {}

    // As the system does when the window has come to another screen.
    void GoToScale(int dpi, int width = 0, int height = 0) {
        RECT rect = Of(Handle());
        if (width > 0) rect.right = rect.left + width;
        if (height > 0) rect.bottom = rect.top + height;
        SendMessageW(Handle(), kDpiChanged, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&rect));
        Pump();
    }
    static RECT Of(HWND control) {
        RECT rect{};
        GetWindowRect(control, &rect);
        return rect;
    }
    RECT InWindow(HWND child) const {
        RECT rect = Of(child);
        MapWindowPoints(nullptr, Handle(), reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    // Whether a row stands clear of the lower edge by the 90 twips that the editor asks for.
    bool InView(std::int32_t row) const { return Grid().RowPos(row + 1) <= Grid().Height() - 90; }
    // The inside of a cell on the screen, without its lines.
    RECT CellOnScreen(std::int32_t row, std::int32_t col) const {
        const PixelRect cell = Grid().CellRect(row, col);
        RECT rect{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
        MapWindowPoints(Child(child_id::kListe), nullptr, reinterpret_cast<POINT*>(&rect), 2);
        return rect;
    }
    int FontHeight(HWND control) const {
        LOGFONTW font{};
        GetObjectW(reinterpret_cast<HFONT>(SendMessageW(control, WM_GETFONT, 0, 0)), sizeof font,
                   &font);
        return -static_cast<int>(font.lfHeight);
    }
    int GlyphSide() const {
        int width = 0, height = 0;
        ImageList_GetIconSize(reinterpret_cast<HIMAGELIST>(
                                  SendMessageW(Child(child_id::kToolbar), TB_GETIMAGELIST, 0, 0)),
                              &width, &height);
        return width;
    }
};

std::string Told(const RECT& r) {
    return std::to_string(r.left) + "," + std::to_string(r.top) + " to " + std::to_string(r.right) +
           "," + std::to_string(r.bottom);
}

// What a window looks like that was made for its screen.
std::string Looks(const ScaledWindow& basket) {
    std::string looks;
    for (const int id : {child_id::kToolbar, child_id::kStatusBar, child_id::kListe}) {
        looks += Told(basket.InWindow(basket.Child(id))) + "; ";
    }
    const PixelRect cell = basket.Grid().CellRect(1, column::kMenge);
    looks += "cell " + Told({cell.left, cell.top, cell.right, cell.bottom});
    for (const int id : {child_id::kStatusBar, child_id::kListe, child_id::kIPComboList}) {
        looks += "; font " + std::to_string(basket.FontHeight(basket.Child(id)));
    }
    looks += "; glyphs " + std::to_string(basket.GlyphSide());
    RECT button{};
    SendMessageW(basket.Child(child_id::kToolbar), TB_GETITEMRECT, 0,
                 reinterpret_cast<LPARAM>(&button));
    looks += "; button " + Told(button);
    return looks;
}

constexpr std::array kScales = {96, 106, 110, 120, 130, 134, 144, 154, 168, 192, 240, 288, 384};

TEST(WindowScale, TheEditorLiesOnThePixelsOfItsCellAtEveryScale) {
    for (const int dpi : kScales) {
        ScaledWindow basket(dpi);
        // lines without an article: their first column is in view at any scale
        for (int i = 0; i < 12; ++i) {
            SendMessageW(basket.Handle(), WM_COMMAND,
                         static_cast<WPARAM>(Command::mnuEditNeueZeile), 0);
        }
        basket.Grid().SetTopRow(1);
        for (const std::int32_t row : {1, 2, 3, 5, 8}) {
            SCOPED_TRACE(::testing::Message() << dpi << " dpi, row " << row);
            // how many rows of the largest scales the display shows is up to the system's bars
            if (!basket.InView(row)) {
                EXPECT_GT(dpi, 240);
                EXPECT_GT(row, 5);
                break;
            }
            basket.Grid().Select(row, column::kArtNr, row, column::kArtNr);
            basket.Pump();
            ASSERT_TRUE(basket.EditorOpen());
            EXPECT_EQ(Told(ScaledWindow::Of(basket.Background())),
                      Told(basket.CellOnScreen(row, column::kArtNr)));
        }
    }
}

TEST(WindowScale, AWindowThatComesToAnotherScreenLooksAsIfMadeForIt) {
    const ThreadMinds each_monitor(-4);
    ASSERT_TRUE(each_monitor.Understood());
    ScaledWindow basket;
    basket.Link(L"4711");
    const int first_dpi = WindowDpi(basket.Handle());
    const RECT first = ScaledWindow::Of(basket.Handle());
    const std::string first_looks = Looks(basket);
    for (const int dpi : {144, 110, 192, 384}) {
        SCOPED_TRACE(dpi);
        ScaledWindow made(dpi);
        made.Link(L"4711");
        const RECT rect = ScaledWindow::Of(made.Handle());
        basket.GoToScale(dpi, rect.right - rect.left, rect.bottom - rect.top);
        EXPECT_EQ(Looks(basket), Looks(made));
    }
    basket.GoToScale(first_dpi, first.right - first.left, first.bottom - first.top);
    EXPECT_EQ(Looks(basket), first_looks);
}

TEST(WindowScale, WhatIsBeingTypedComesAlong) {
    const ThreadMinds each_monitor(-4);
    ScaledWindow basket;
    basket.Link(L"4711");
    basket.ClickCell(1, column::kMenge);
    basket.Type(L"77");
    basket.window->View().ShowNote(L"gesagt");
    basket.GoToScale(144, 1400, 700);
    EXPECT_TRUE(basket.EditorOpen());
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Text()), L"77");
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1");
    EXPECT_EQ(Told(ScaledWindow::Of(basket.Background())),
              Told(basket.CellOnScreen(1, column::kMenge)));
    for (const HWND control : {basket.Text(), basket.Child(child_id::kIPComboList),
                               basket.Child(child_id::kStatusBar)}) {
        EXPECT_EQ(basket.FontHeight(control), basket.FontHeight(basket.Child(child_id::kListe)));
    }
    const RECT note = ScaledWindow::Of(basket.Child(child_id::kNote));
    const RECT bar = ScaledWindow::Of(basket.Child(child_id::kStatusBar));
    EXPECT_EQ(note.right, bar.right - GetSystemMetrics(SM_CXVSCROLL));
    EXPECT_GE(note.top, bar.top);
    EXPECT_LE(note.bottom, bar.bottom);
    basket.Press(VK_RETURN);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"77");
}

// Windows themselves scale the window of a host that minds one scale or none.
TEST(WindowScale, TheWindowHasTheScaleThatItsHostMinds) {
    {
        const ThreadMinds nothing(-1);
        ASSERT_TRUE(nothing.Understood());
        ScaledWindow basket;
        EXPECT_EQ(Looks(basket), Looks(ScaledWindow(96)));
    }
    {
        const ThreadMinds one(-2);
        ScaledWindow basket;
        const int system = SystemDpi();
        if (const char* expected = std::getenv("DEMOVEX_DPI")) {
            EXPECT_EQ(system, std::atoi(expected));
        }
        EXPECT_EQ(Looks(basket), Looks(ScaledWindow(system)));
    }
    {
        const ThreadMinds each(-4);
        ScaledWindow basket;
        EXPECT_EQ(Looks(basket), Looks(ScaledWindow(WindowDpi(basket.Handle()))));
    }
}

TEST(WindowScale, AnImpossibleScaleOrPlaceIsIgnored) {
    const ThreadMinds each_monitor(-4);
    ScaledWindow basket;
    const int own = WindowDpi(basket.Handle());
    basket.Link(L"4711");
    const std::string looks = Looks(basket);
    const RECT rect = ScaledWindow::Of(basket.Handle());
    for (const int dpi : {0, 1, 65535}) basket.GoToScale(dpi);
    EXPECT_EQ(Looks(basket), looks);
    // addresses that another program has made up
    for (const LPARAM place : {LPARAM{0}, LPARAM{4}, static_cast<LPARAM>(0x7FFFFFF0)}) {
        SendMessageW(basket.Handle(), kDpiChanged, MAKEWPARAM(own, own), place);
    }
    basket.Pump();
    EXPECT_EQ(Looks(basket), looks);
    EXPECT_EQ(Told(ScaledWindow::Of(basket.Handle())), Told(rect));
}

// A larger text for everything, as the user sets it in the system's settings.
class LargerText {
  public:
    explicit LargerText(int percent) {
        before_.cbSize = sizeof before_;
        SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof before_, &before_, 0);
        NONCLIENTMETRICSW larger = before_;
        larger.lfMessageFont.lfHeight = larger.lfMessageFont.lfHeight * percent / 100;
        SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof larger, &larger, 0);
    }
    ~LargerText() { SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof before_, &before_, 0); }
    LargerText(const LargerText&) = delete;
    LargerText& operator=(const LargerText&) = delete;

  private:
    NONCLIENTMETRICSW before_{};
};

TEST(WindowScale, ALargerTextIsTakenOverAtOnce) {
    ScaledWindow basket;
    basket.Link(L"4711");
    basket.ClickCell(1, column::kMenge);
    const int before = basket.FontHeight(basket.Child(child_id::kListe));
    const std::string looks = Looks(basket);
    {
        const LargerText larger(200);
        SendMessageW(basket.Handle(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
        basket.Pump();
        EXPECT_NEAR(basket.FontHeight(basket.Child(child_id::kListe)), 2 * before, 1);
        EXPECT_NE(Looks(basket), looks);
        ScaledWindow made;
        made.Link(L"4711");
        RECT rect = ScaledWindow::Of(basket.Handle());
        SetWindowPos(made.Handle(), nullptr, 0, 0, rect.right - rect.left, rect.bottom - rect.top,
                     SWP_NOMOVE | SWP_NOZORDER);
        made.Pump();
        EXPECT_EQ(Looks(basket), Looks(made));
        EXPECT_TRUE(basket.EditorOpen());
        EXPECT_EQ(Told(ScaledWindow::Of(basket.Background())),
                  Told(basket.CellOnScreen(1, column::kMenge)));
    }
    SendMessageW(basket.Handle(), WM_SETTINGCHANGE, SPI_SETNONCLIENTMETRICS, 0);
    basket.Pump();
    EXPECT_EQ(Looks(basket), looks);
}

// Controls hear of colours and settings from their window alone.
std::vector<UINT> heard_by_control;

LRESULT CALLBACK ListeningProcedure(HWND window, UINT message, WPARAM wparam, LPARAM lparam) {
    if (message == WM_SYSCOLORCHANGE || message == WM_SETTINGCHANGE) {
        heard_by_control.push_back(message);
    }
    return DefWindowProcW(window, message, wparam, lparam);
}

TEST(WindowScale, TheControlsHearOfColoursAndSettings) {
    ScaledWindow basket;
    WNDCLASSW info{};
    info.lpfnWndProc = &ListeningProcedure;
    info.hInstance = GetModuleHandleW(nullptr);
    info.lpszClassName = L"DemoVexTest.Control";
    RegisterClassW(&info);
    const HWND control = CreateWindowExW(0, info.lpszClassName, L"", WS_CHILD, 0, 0, 1, 1,
                                         basket.Handle(), nullptr, info.hInstance, nullptr);
    ASSERT_NE(control, nullptr);
    heard_by_control.clear();
    SendMessageW(basket.Handle(), WM_SYSCOLORCHANGE, 0, 0);
    SendMessageW(basket.Handle(), WM_SETTINGCHANGE, 0, 0);
    EXPECT_EQ(heard_by_control, (std::vector<UINT>{WM_SYSCOLORCHANGE, WM_SETTINGCHANGE}));
    DestroyWindow(control);
}

TEST(WindowScale, AThemeThatChangesLaysTheWindowOutAnew) {
    ScaledWindow basket;
    const std::string looks = Looks(basket);
    // as a theme with larger bars does
    SendMessageW(basket.Child(child_id::kStatusBar), SB_SETMINHEIGHT, 60, 0);
    SendMessageW(basket.Handle(), WM_THEMECHANGED, 0, 0);
    basket.Pump();
    EXPECT_NE(Looks(basket), looks);
    const RECT grid = basket.InWindow(basket.Child(child_id::kListe));
    EXPECT_EQ(grid.bottom, basket.InWindow(basket.Child(child_id::kStatusBar)).top);
}

TEST(WindowScale, GlyphsGrowUpTo400Percent) {
    const std::pair<int, int> sizes[] = {{96, 16},  {119, 16}, {120, 20}, {144, 24},
                                         {191, 24}, {192, 32}, {240, 40}, {288, 48},
                                         {383, 48}, {384, 64}, {480, 64}};
    for (const auto& [dpi, size] : sizes) {
        SCOPED_TRACE(dpi);
        ScaledWindow basket(dpi);
        EXPECT_EQ(basket.GlyphSide(), size);
    }
}

}  // namespace
}  // namespace demovex
