// The in-place editor on the screen: where it stands, and that its text stands exactly where the
// cell's text stood.
#include <gtest/gtest.h>

#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

// Which pixels of a rectangle are ink: not of the cell's own colour.
struct Ink {
    int width = 0;
    std::vector<bool> pixels;
    int Count() const { return static_cast<int>(std::count(pixels.begin(), pixels.end(), true)); }
    friend bool operator==(const Ink&, const Ink&) = default;
    std::string AsText() const {
        std::string text;
        for (std::size_t i = 0; i < pixels.size(); ++i) {
            if (i % static_cast<std::size_t>(width) == 0) text += '\n';
            text += pixels[i] ? '#' : '.';
        }
        return text;
    }
};

Ink InkOf(HWND window, const RECT& rect) {
    const WindowPicture picture = WindowPicture::OfScreen(window);
    const COLORREF paper = GetSysColor(COLOR_WINDOW);
    Ink ink;
    ink.width = rect.right - rect.left;
    for (int y = rect.top; y < rect.bottom; ++y) {
        for (int x = rect.left; x < rect.right; ++x)
            ink.pixels.push_back(picture.At(x, y) != paper);
    }
    return ink;
}

// The inside of a cell in pixels of the basket window's picture, without the lines on the right
// and below.
RECT CellOnPicture(BasketWindowFixture& basket, std::int32_t row, std::int32_t col) {
    const PixelRect cell = basket.Grid().CellRect(row, col);
    RECT rect{cell.left, cell.top, cell.right - 1, cell.bottom - 1};
    MapWindowPoints(basket.Child(child_id::kListe), nullptr, reinterpret_cast<POINT*>(&rect), 2);
    RECT outer{};
    GetWindowRect(basket.Handle(), &outer);
    OffsetRect(&rect, -outer.left, -outer.top);
    return rect;
}

void Repaint(BasketWindowFixture& basket) {
    basket.Pump();
    RedrawWindow(basket.Handle(), nullptr, nullptr,
                 RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
    GdiFlush();
}

// Compares the editor's text, without selection and caret, with the text that the grid draws when
// another cell is current.
void ExpectSamePlace(BasketWindowFixture& basket, std::int32_t row, std::int32_t col) {
    ASSERT_TRUE(basket.EditorOpen());
    const RECT rect = CellOnPicture(basket, row, col);
    SetFocus(basket.Child(child_id::kListe));  // takes caret and highlighting from the text
    Repaint(basket);
    const Ink edited = InkOf(basket.Handle(), rect);
    basket.Grid().Select(basket.Grid().Rows() - 1, column::kNumber + 1, basket.Grid().Rows() - 1,
                         column::kNumber + 1);  // the totals row opens no editor
    ASSERT_FALSE(basket.EditorOpen());
    Repaint(basket);
    const Ink shown = InkOf(basket.Handle(), rect);
    EXPECT_GT(shown.Count(), 10);
    EXPECT_EQ(edited, shown) << "edited" << edited.AsText() << "\nshown" << shown.AsText();
}

class WindowEditorAtDpi : public ::testing::TestWithParam<int> {};
INSTANTIATE_TEST_SUITE_P(Screens, WindowEditorAtDpi, ::testing::Values(96, 120, 144, 192));

TEST_P(WindowEditorAtDpi, TheNumbersTextStandsWhereTheCellsTextStands) {
    BasketWindowFixture basket(HostLoop::kBare, GetParam());
    basket.Link(L"");
    basket.Grid().Select(1, column::kArtNr, 1, column::kArtNr);
    basket.Pump();
    basket.messages.otherwise = MessageAnswer::kOk;
    basket.Type(L"4712");
    // the row has no article number yet, so the text is written without a look-up only when the
    // row stays as it is: compare before committing with the grid's own drawing of the same text
    const RECT rect = CellOnPicture(basket, 1, column::kArtNr);
    SetFocus(basket.Child(child_id::kListe));
    Repaint(basket);
    const Ink edited = InkOf(basket.Handle(), rect);
    basket.Grid().Select(2, 1, 2, 1);
    ASSERT_EQ(basket.Cell(1, column::kArtNr), L"4712");
    basket.Grid().Select(2, 1, 2, 1);
    Repaint(basket);
    basket.Grid().Select(2, 1, 2, 1);
    Repaint(basket);
    const Ink shown = InkOf(basket.Handle(), rect);
    EXPECT_GT(shown.Count(), 10);
    EXPECT_EQ(edited, shown) << edited.AsText() << "\n" << shown.AsText();
}

TEST_P(WindowEditorAtDpi, TheDescriptionsTextStandsWhereTheCellsTextStands) {
    BasketWindowFixture basket(HostLoop::kBare, GetParam());
    basket.Link(L"");
    ASSERT_EQ(basket.Grid().Col(), column::kBezeichnung);
    basket.Type(L"Ägypt. Öllampe (groß)");
    ExpectSamePlace(basket, 1, column::kBezeichnung);
}

// Some glyphs reach to the left of where they stand.
TEST_P(WindowEditorAtDpi, AGlyphsLeftOverhangIsWhole) {
    BasketWindowFixture basket(HostLoop::kBare, GetParam());
    const HWND grid = basket.Child(child_id::kListe);
    std::wstring text;
    HDC dc = GetDC(grid);
    const HGDIOBJ before =
        SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(grid, WM_GETFONT, 0, 0)));
    for (const wchar_t glyph : std::wstring_view(L"jJfgyA_\u0458\u012F\u0135")) {
        ABC widths{};
        if (GetCharABCWidthsW(dc, glyph, glyph, &widths) && widths.abcA < 0) text += glyph;
    }
    SelectObject(dc, before);
    ReleaseDC(grid, dc);
    ASSERT_TRUE(GetParam() < 144 || !text.empty()) << "no such glyph in this font";
    for (const wchar_t glyph : text) {
        SCOPED_TRACE(static_cast<int>(glyph));
        basket.Link(L"");
        ASSERT_EQ(basket.Grid().Col(), column::kBezeichnung);
        basket.Type(std::wstring(4, glyph));
        ExpectSamePlace(basket, basket.Lines(), column::kBezeichnung);
    }
}

TEST_P(WindowEditorAtDpi, TheQuantityStandsRightWhereTheCellsTextStands) {
    BasketWindowFixture basket(HostLoop::kBare, GetParam());
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    basket.Type(L"1250");
    ExpectSamePlace(basket, 1, column::kMenge);
}

TEST_P(WindowEditorAtDpi, TheBackgroundCoversTheInsideOfTheCell) {
    BasketWindowFixture basket(HostLoop::kBare, GetParam());
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    RECT background{}, outer{};
    GetWindowRect(basket.Background(), &background);
    GetWindowRect(basket.Handle(), &outer);
    OffsetRect(&background, -outer.left, -outer.top);
    const RECT cell = CellOnPicture(basket, 1, column::kMenge);
    EXPECT_EQ(background.left, cell.left);
    EXPECT_EQ(background.top, cell.top);
    EXPECT_EQ(background.right, cell.right);
    EXPECT_EQ(background.bottom, cell.bottom);
    RECT text{};
    GetWindowRect(basket.Text(), &text);
    OffsetRect(&text, -outer.left, -outer.top);
    const Scale scale(GetParam());
    EXPECT_EQ(text.left - background.left, scale.ToPixels(45));
    EXPECT_EQ(text.top - background.top, scale.ToPixels(15));
    EXPECT_EQ(text.right, background.right);
    EXPECT_EQ(text.bottom, background.bottom);
}

TEST(WindowEditor, IPTextIsAStandardTextBoxAndTheListAStandardListBox) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    wchar_t name[64] = L"";
    GetClassNameW(basket.Text(), name, 64);
    EXPECT_STREQ(name, L"Edit");
    EXPECT_EQ(GetDlgItem(basket.Background(), child_id::kIPText), basket.Text());
    GetClassNameW(basket.Child(child_id::kIPComboList), name, 64);
    EXPECT_STREQ(name, L"ListBox");
    EXPECT_FALSE(IsWindowVisible(basket.Child(child_id::kIPComboList)));
}

TEST(WindowEditor, OpensWithTheWholeTextSelectedAndTheFocus) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    EXPECT_EQ(GetFocus(), basket.Text());
    DWORD start = 9, end = 9;
    SendMessageW(basket.Text(), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(start, 0u);
    EXPECT_EQ(end, 1u);
}

TEST(WindowEditor, ReturnKeepsItOnTheScreenUnlessTheTotalsCannotBeReckoned) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    PostMessageW(basket.Text(), WM_KEYDOWN, VK_RETURN, 1);
    basket.Pump();
    EXPECT_TRUE(IsWindowVisible(basket.Background()));
    EXPECT_EQ(GetFocus(), basket.Text());
    // a quantity whose total no number can hold
    SendMessageW(basket.Text(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"1e307"));
    PostMessageW(basket.Text(), WM_KEYDOWN, VK_RETURN, 1);
    basket.Pump();
    EXPECT_FALSE(IsWindowVisible(basket.Background()));
    EXPECT_EQ(GetFocus(), basket.Child(child_id::kListe));
}

TEST(WindowEditor, LosingTheFocusToAnotherProgramAndComingBackLeavesTheEditAsItWas) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    basket.Type(L"123");
    basket.Press(VK_LEFT);
    basket.Press(VK_LEFT, {VK_SHIFT});
    SetForegroundWindow(basket.host.handle);
    basket.Pump();
    ASSERT_NE(GetFocus(), basket.Text());
    SetForegroundWindow(basket.Handle());
    basket.Pump();
    EXPECT_EQ(GetFocus(), basket.Text());
    EXPECT_EQ(basket.TextOf(basket.Text()), L"123");
    DWORD start = 9, end = 9;
    SendMessageW(basket.Text(), EM_GETSEL, reinterpret_cast<WPARAM>(&start),
                 reinterpret_cast<LPARAM>(&end));
    EXPECT_EQ(start, 1u);
    EXPECT_EQ(end, 2u);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"1");  // not committed
}

TEST(WindowEditor, TheQuantityTakesNumbersOnlyWhateverIsPasted) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    const auto type_over = [&](const std::wstring& text) {
        SendMessageW(basket.Text(), EM_SETSEL, 0, -1);
        SendMessageW(basket.Text(), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.c_str()));
        basket.Pump();
        return basket.TextOf(basket.Text());
    };
    EXPECT_EQ(type_over(L"7"), L"7");
    EXPECT_EQ(type_over(L"1a"), L"7");
    EXPECT_EQ(type_over(L"-"), L"7");
    EXPECT_EQ(type_over(L"1e400"), L"7");
    EXPECT_EQ(type_over(L""), L"7");
    EXPECT_EQ(type_over(std::wstring(10000, L'x')), L"7");
    EXPECT_EQ(type_over(L"(5)"), L"(5)");
    EXPECT_EQ(type_over(L"2,5"), L"2,5");
}

TEST(WindowEditor, AQuantityThatTheTextBoxCannotHoldIsNoEndlessChange) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().SetTextMatrix(1, column::kMenge, std::wstring_view(L"a\0b", 3));
    basket.ClickCell(1, column::kPreisAts);
    basket.Press(VK_LEFT);
    ASSERT_TRUE(basket.EditorOpen());
    EXPECT_EQ(basket.TextOf(basket.Text()), L"a");
    SendMessageW(basket.Text(), EM_SETSEL, 1, 1);
    basket.Type(L"x");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"a");
    basket.Press('A', {VK_CONTROL});
    basket.Type(L"6");
    basket.Press(VK_RETURN);
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"600,00");
}

TEST(WindowEditor, TheWheelOverToolbarAndStatusBarScrollsTheGrid) {
    BasketWindowFixture basket;
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    const FlexGrid& grid = basket.Grid();
    for (const int bar : {child_id::kToolbar, child_id::kStatusBar, 0}) {
        const HWND target = bar != 0 ? basket.Child(bar) : basket.Handle();
        basket.Grid().SetTopRow(1);
        SendMessageW(target, WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)), 0);
        EXPECT_GT(grid.TopRow(), 1) << bar;
    }
    SetWindowPos(basket.Handle(), nullptr, 0, 0, 440, 400, SWP_NOMOVE | SWP_NOZORDER);
    SendMessageW(basket.Handle(), WM_MOUSEHWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    EXPECT_GT(grid.LeftCol(), 1);
}

TEST(WindowEditor, ADescriptionIsCutAt25Characters) {
    BasketWindowFixture basket;
    basket.Link(L"");
    basket.Type(L"ABCDEFGHIJKLMNOPQRSTUVWXYZ0123");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"ABCDEFGHIJKLMNOPQRSTUVWXY");
}

TEST(WindowEditor, ACellCutOffByTheEdgeOpensNoEditorUntilScrolledIntoView) {
    BasketWindowFixture basket;
    for (int i = 0; i < 40; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    FlexGrid& grid = basket.Grid();
    grid.SetTopRow(1);
    grid.Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    EXPECT_TRUE(basket.EditorOpen());
    grid.SetTopRow(5);  // row 1 is out of view
    EXPECT_FALSE(basket.EditorOpen());
    grid.SetTopRow(1);
    EXPECT_TRUE(basket.EditorOpen());
}

TEST(WindowEditor, TheWheelCommitsTheEditAndScrollsTheGrid) {
    BasketWindowFixture basket;
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    FlexGrid& grid = basket.Grid();
    grid.SetTopRow(1);
    grid.Select(2, column::kMenge, 2, column::kMenge);
    basket.Pump();
    basket.Type(L"9");
    RECT rect{};
    GetWindowRect(basket.Text(), &rect);
    SendMessageW(basket.Text(), WM_MOUSEWHEEL, MAKEWPARAM(0, static_cast<WORD>(-WHEEL_DELTA)),
                 MAKELPARAM(rect.left, rect.top));
    basket.Pump();
    EXPECT_GT(grid.TopRow(), 1);
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"9");
}

TEST(WindowEditor, ClickingAnotherCellCommitsMovesAndReopensInOneGo) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Link(L"4712");
    basket.ClickCell(1, column::kMenge);
    ASSERT_TRUE(basket.EditorOpen());
    basket.Type(L"5");
    basket.ClickCell(2, column::kMenge);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"5");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), L"500,00");
    EXPECT_EQ(basket.Grid().Row(), 2);
    ASSERT_TRUE(basket.EditorOpen());
    EXPECT_EQ(GetFocus(), basket.Text());
    EXPECT_EQ(basket.TextOf(basket.Text()), L"1");
}

TEST(WindowEditor, TheWholeCellTakesTheFocusWhenClicked) {
    BasketWindowFixture basket;
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    SetFocus(basket.Child(child_id::kListe));
    basket.ClickAt(basket.Background(), 1, 4);  // left of the text box
    EXPECT_EQ(GetFocus(), basket.Text());
}

// --- the drop-down list, which no cell offers unless a test says so

TEST(WindowEditor, TheListDropsDownTakesAnEntryAndCloses) {
    BasketWindowFixture basket;
    basket.window->Form()->SetOffersList([](std::int32_t, std::int32_t) { return true; });
    basket.Link(L"4711");
    const HWND list = basket.Child(child_id::kIPComboList);
    for (const wchar_t* entry : {L"1", L"2", L"3"}) {
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(entry));
    }
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    const HWND button = GetDlgItem(basket.Background(), child_id::kIPComboButton);
    ASSERT_TRUE(IsWindowVisible(button));
    basket.Press(VK_F4);
    ASSERT_TRUE(IsWindowVisible(list));
    EXPECT_EQ(GetFocus(), list);
    EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 0);  // the cell's own text
    RECT rect{};
    GetClientRect(list, &rect);
    EXPECT_EQ(rect.bottom, 3 * SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
    EXPECT_EQ(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0), 13);  // 195 twips
    const int row = static_cast<int>(SendMessageW(list, LB_GETITEMHEIGHT, 0, 0));
    SendMessageW(list, WM_MOUSEMOVE, 0, MAKELPARAM(5, 2 * row + 3));
    EXPECT_EQ(SendMessageW(list, LB_GETCURSEL, 0, 0), 2);
    SendMessageW(list, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, row + 3));
    SendMessageW(list, WM_LBUTTONUP, 0, MAKELPARAM(5, row + 3));
    basket.Pump();
    EXPECT_FALSE(IsWindowVisible(list));
    EXPECT_EQ(basket.TextOf(basket.Text()), L"2");
    EXPECT_EQ(GetFocus(), basket.Text());
}

// The platform's own drawing of a drop-down button, in a bitmap.
std::vector<COLORREF> ButtonFace(int width, int height, UINT state) {
    const HDC screen = GetDC(nullptr);
    const HDC memory = CreateCompatibleDC(screen);
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, width, height);
    const HGDIOBJ before = SelectObject(memory, bitmap);
    RECT rect{0, 0, width, height};
    DrawFrameControl(memory, &rect, DFC_SCROLL, state);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) pixels.push_back(GetPixel(memory, x, y));
    }
    SelectObject(memory, before);
    DeleteObject(bitmap);
    DeleteDC(memory);
    ReleaseDC(nullptr, screen);
    return pixels;
}

TEST(WindowEditor, TheDropDownButtonIsDrawnAsThePlatformDoesPressedAndReleased) {
    BasketWindowFixture basket;
    basket.window->Form()->SetOffersList([](std::int32_t, std::int32_t) { return true; });
    basket.Link(L"4711");
    basket.ClickCell(1, column::kMenge);
    const HWND button = GetDlgItem(basket.Background(), child_id::kIPComboButton);
    RECT rect{};
    GetClientRect(button, &rect);
    ASSERT_GT(rect.right, 0);
    EXPECT_EQ(rect.right, 255 / 15);
    const auto shown = [&] {
        Repaint(basket);
        const WindowPicture picture = WindowPicture::OfScreen(button);
        std::vector<COLORREF> pixels;
        for (int y = 0; y < rect.bottom; ++y) {
            for (int x = 0; x < rect.right; ++x) pixels.push_back(picture.At(x, y));
        }
        return pixels;
    };
    const auto face = [&](UINT state) { return ButtonFace(rect.right, rect.bottom, state); };
    constexpr UINT kReleased = DFCS_SCROLLCOMBOBOX | DFCS_FLAT;
    constexpr UINT kPressed = DFCS_SCROLLCOMBOBOX | DFCS_PUSHED;
    ASSERT_NE(face(kReleased), face(kPressed));
    ASSERT_NE(face(kReleased), face(DFCS_SCROLLCOMBOBOX));
    EXPECT_EQ(shown(), face(kReleased));
    basket.Press(VK_F4);
    EXPECT_EQ(shown(), face(kPressed));
    basket.Press(VK_F4);
    EXPECT_EQ(shown(), face(kReleased));
}

TEST(WindowEditor, TheListClosesWhenItLosesTheFocusOrAMenuOpens) {
    BasketWindowFixture basket;
    basket.window->Form()->SetOffersList([](std::int32_t, std::int32_t) { return true; });
    basket.Link(L"4711");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    const HWND list = basket.Child(child_id::kIPComboList);
    basket.Press(VK_F4);
    ASSERT_TRUE(IsWindowVisible(list));
    SetFocus(basket.Child(child_id::kListe));
    EXPECT_TRUE(PumpUntil([&] { return !IsWindowVisible(list); }));

    SetFocus(basket.Text());
    basket.Press(VK_F4);
    ASSERT_TRUE(IsWindowVisible(list));
    HMENU file = GetSubMenu(GetMenu(basket.Handle()), 0);
    SendMessageW(basket.Handle(), WM_INITMENUPOPUP, reinterpret_cast<WPARAM>(file), 0);
    EXPECT_FALSE(IsWindowVisible(list));
}

}  // namespace
}  // namespace demovex
