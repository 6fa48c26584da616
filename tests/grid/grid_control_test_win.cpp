// The real control in a parent window: messages, real input, pixels, scroll bars.
#include <gtest/gtest.h>

#include <stdexcept>

#include "grid/gdi_surface_win.h"
#include "platform/gdi_win.h"
#include "tests/support/grid_dump.h"
#include "tests/support/grid_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

class GridControl : public testing::Test {
  protected:
    GridControl() {
        w.FillBasket(100);
        w.Listen();
        SetFocus(w.Handle());
        PumpMessages();
        w.log->Take();
    }
    // The middle of a cell in view, in pixels of the client area.
    POINT Middle(std::int32_t row, std::int32_t col) {
        const PixelRect r = w.Grid().CellRect(row, col);
        return {(r.left + r.right) / 2, (r.top + r.bottom) / 2};
    }
    void Click(std::int32_t row, std::int32_t col, WPARAM keys = 0) {
        const POINT p = Middle(row, col);
        w.Mouse(WM_LBUTTONDOWN, p.x, p.y, MK_LBUTTON | keys);
        w.Mouse(WM_LBUTTONUP, p.x, p.y, keys);
    }
    std::string At() {
        FlexGrid& g = w.Grid();
        return std::to_string(g.Row()) + "," + std::to_string(g.Col()) + ":" +
               std::to_string(g.RowSel()) + "," + std::to_string(g.ColSel());
    }
    SCROLLINFO Bar(int bar) {
        SCROLLINFO info{};
        info.cbSize = sizeof info;
        info.fMask = SIF_ALL;
        GetScrollInfo(w.Handle(), bar, &info);
        return info;
    }
    // A scroll bar follows a moment after the text.
    bool BarReaches(int position) {
        return PumpUntil([&] { return Bar(SB_VERT).nPos == position; });
    }
    // A key with its up stroke through the system's input queue.
    static void Type(WORD key, bool shift = false) {
        INPUT inputs[4] = {};
        int n = 0;
        const auto add = [&](WORD k, DWORD flags) {
            inputs[n].type = INPUT_KEYBOARD;
            inputs[n].ki.wVk = k;
            inputs[n++].ki.dwFlags = flags | KEYEVENTF_EXTENDEDKEY;
        };
        if (shift) add(VK_SHIFT, 0);
        add(key, 0);
        add(key, KEYEVENTF_KEYUP);
        if (shift) add(VK_SHIFT, KEYEVENTF_KEYUP);
        ASSERT_EQ(SendInput(static_cast<UINT>(n), inputs, sizeof(INPUT)), static_cast<UINT>(n));
    }

    GridWindow w;
};

TEST_F(GridControl, HasItsPublishedClassAndId) {
    wchar_t name[64];
    GetClassNameW(w.Handle(), name, 64);
    EXPECT_STREQ(name, L"DemoVexClient.FlexGrid");
    EXPECT_EQ(GetDlgCtrlID(w.Handle()), 7);
    EXPECT_EQ(GetParent(w.Handle()), w.Parent());
}

TEST_F(GridControl, AKeySentAfterTheWindowHasGoneReachesNobody) {
    DestroyWindow(w.Handle());
    ASSERT_EQ(w.Handle(), nullptr);
    w.control->SendKey(GridKey::kDown);
    // a message without a window would end in the host's loop
    MSG stray{};
    EXPECT_FALSE(PeekMessageW(&stray, reinterpret_cast<HWND>(-1), 0, 0, PM_REMOVE))
        << stray.message;
}

// Another program may send what only the system should.
TEST_F(GridControl, BelievesNoFakedCreationOrDestruction) {
    const HWND grid = w.Handle();
    CREATESTRUCTW create{};
    create.lpCreateParams = reinterpret_cast<void*>(16);
    SetWindowTextW(grid, L"Warenkorb");
    w.Send(WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&create));
    w.Send(WM_DESTROY);
    w.Send(WM_NCDESTROY);
    w.Send(WM_CLOSE);
    // its hidden child neither
    const HWND child = GetWindow(grid, GW_CHILD);
    ASSERT_NE(child, nullptr);
    EXPECT_FALSE(IsWindowVisible(child));
    SendMessageW(child, WM_NCCREATE, 0, reinterpret_cast<LPARAM>(&create));
    SendMessageW(child, WM_CLOSE, 0, 0);
    EXPECT_TRUE(IsWindow(child));
    EXPECT_EQ(w.Handle(), grid);
    wchar_t name[64];
    GetWindowTextW(grid, name, 64);
    EXPECT_STREQ(name, L"Warenkorb");
    const std::int32_t row = w.Grid().Row();
    w.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(w.Grid().Row(), row + 1);
    // a real one is
    DestroyWindow(w.Parent());
    EXPECT_EQ(w.Handle(), nullptr);
}

TEST_F(GridControl, StandsWhereItWasPutAndMovesInTwips) {
    RECT r{};
    GetWindowRect(w.Handle(), &r);
    MapWindowPoints(nullptr, w.Parent(), reinterpret_cast<POINT*>(&r), 2);
    EXPECT_EQ(r.left, 10);
    EXPECT_EQ(r.top, 20);
    EXPECT_EQ(r.right - r.left, 640);
    EXPECT_EQ(r.bottom - r.top, 320);
    EXPECT_EQ(w.Grid().Width(), 9600);
    EXPECT_EQ(w.Grid().Height(), 4800);
    w.control->Move({300, 150, 4500, 3000});
    EXPECT_EQ(w.Grid().Width(), 4500);
    EXPECT_EQ(w.Grid().Height(), 3000);
}

TEST_F(GridControl, TheViewIsTheWindowsClientArea) {
    for (const TwipsRect& place : {TwipsRect{0, 0, 9600, 4800}, TwipsRect{0, 0, 4500, 3000},
                                   TwipsRect{0, 0, 15000, 30000}}) {
        w.control->Move(place);
        RECT client{};
        GetClientRect(w.Handle(), &client);
        EXPECT_EQ(w.Grid().View(), (PixelRect{0, 0, client.right, client.bottom}))
            << place.width << "x" << place.height;
    }
}

TEST_F(GridControl, ASiblingPlacedByTheGridsPlacesCoversTheCellExactly) {
    w.Grid().SetTopRow(7);
    w.Grid().SetRow(9);
    w.Grid().SetCol(2);
    w.Grid().SetFocusRect(FocusRectStyle::kNone);
    PumpUntilPainted(w.Handle());
    const WindowPicture picture = WindowPicture::OfScreen(w.Handle());
    const int left = w.Grid().CellLeft() / 15;
    const int top = w.Grid().CellTop() / 15;
    const int right = left + w.Grid().CellWidth() / 15;
    const int bottom = top + w.Grid().CellHeight() / 15;
    const COLORREF line = GdiSurface::Color(GridColor::kGridLine);
    EXPECT_EQ(picture.At(left + 5, bottom), line) << "the line below stays in view";
    EXPECT_EQ(picture.At(right, top + 2), line) << "and the one on the right";
    EXPECT_EQ(picture.At(left - 1, top + 2), line);
    EXPECT_EQ(picture.At(left + 5, top - 1), line);
    EXPECT_EQ(picture.At(right - 1, bottom - 1), GetSysColor(COLOR_WINDOW));
}

// Where the ink of a cell lies: what is not window colour.
RECT InkOf(const WindowPicture& picture, const RECT& cell) {
    RECT ink{cell.right, cell.bottom, cell.left, cell.top};
    for (LONG y = cell.top; y < cell.bottom; ++y) {
        for (LONG x = cell.left; x < cell.right; ++x) {
            if (picture.At(x, y) == GetSysColor(COLOR_WINDOW)) continue;
            ink = {std::min(ink.left, x), std::min(ink.top, y), std::max(ink.right, x + 1),
                   std::max(ink.bottom, y + 1)};
        }
    }
    return ink;
}

TEST_F(GridControl, ATextBoxInsideTheCellShowsTheSameTextInTheSamePlace) {
    FlexGrid& grid = w.Grid();
    grid.SetFocusRect(FocusRectStyle::kNone);
    grid.SetTextMatrix(3, 2, L"4711 0815");
    grid.SetRow(3);
    for (const std::int32_t col : {1, 2}) {
        grid.SetCol(col);
        PumpUntilPainted(w.Handle());
        const WindowPicture before = WindowPicture::OfScreen(w.Handle());
        // as the basket lays its editor over the cell
        const int left = grid.CellLeft() / 15;
        const int top = grid.CellTop() / 15;
        const RECT cell{left, top, left + grid.CellWidth() / 15, top + grid.CellHeight() / 15};
        const HWND edit = CreateWindowExW(0, L"EDIT", std::wstring(grid.TextMatrix(3, col)).c_str(),
                                          WS_CHILD | WS_VISIBLE, 10 + left + 3, 20 + top + 1,
                                          cell.right - cell.left - 3, cell.bottom - cell.top - 1,
                                          w.Parent(), nullptr, GetModuleHandleW(nullptr), nullptr);
        ASSERT_NE(edit, nullptr);
        SendMessageW(edit, WM_SETFONT, reinterpret_cast<WPARAM>(w.control->Font()), TRUE);
        SendMessageW(edit, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, 0);
        BringWindowToTop(edit);
        InvalidateRect(edit, nullptr, TRUE);
        PumpUntilPainted(edit);
        const WindowPicture after = WindowPicture::OfScreen(w.Handle());
        DestroyWindow(edit);
        const RECT cell_ink = InkOf(before, cell);
        const RECT edit_ink = InkOf(after, cell);
        EXPECT_LT(cell_ink.left, cell_ink.right);
        EXPECT_TRUE(EqualRect(&cell_ink, &edit_ink))
            << cell_ink.left << "," << cell_ink.top << " " << cell_ink.right << ","
            << cell_ink.bottom << " against " << edit_ink.left << "," << edit_ink.top << " "
            << edit_ink.right << "," << edit_ink.bottom;
        // digits are not kerned, so that every pixel is the same
        int different = 0;
        for (LONG y = cell.top; y < cell.bottom; ++y) {
            for (LONG x = cell.left; x < cell.right; ++x) {
                different += before.At(x, y) != after.At(x, y);
            }
        }
        EXPECT_EQ(different, 0) << "pixels in column " << col;
    }
}

TEST_F(GridControl, RealKeysMoveTheCurrentCell) {
    Type(VK_DOWN);
    ASSERT_TRUE(PumpUntil([&] { return w.Grid().Row() == 2; })) << w.Grid();
    Type(VK_RIGHT);
    ASSERT_TRUE(PumpUntil([&] { return w.Grid().Col() == 2; }));
    Type(VK_DOWN, true);
    ASSERT_TRUE(PumpUntil([&] { return w.Grid().RowSel() == 3; }));
    EXPECT_EQ(At(), "2,2:3,2");
    Type(VK_NEXT);
    ASSERT_TRUE(PumpUntil([&] { return w.Grid().Row() > 10; }));
    EXPECT_EQ(At(), std::to_string(w.Grid().Row()) + ",2:" + std::to_string(w.Grid().Row()) + ",2");
}

TEST_F(GridControl, ASentKeyMovesTheCellAfterTheCurrentHandler) {
    w.control->SendKey(GridKey::kDown);
    w.control->SendKey(GridKey::kRight);
    EXPECT_EQ(At(), "1,1:1,1") << "queued";
    PumpMessages();
    EXPECT_EQ(At(), "2,2:2,2");
    EXPECT_EQ(w.log->Take(), "RowColChange(2,1) RowColChange(2,2)");
}

TEST_F(GridControl, AMessageWithAnUnknownKeyIsIgnored) {
    w.Send(WM_USER + 1, 99, 0);
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_EQ(w.mouse.Take(), "");
}

TEST_F(GridControl, WantsTheArrowsInADialogLoopButNotTheTabKey) {
    EXPECT_EQ(w.Send(WM_GETDLGCODE), DLGC_WANTARROWS);
}

TEST_F(GridControl, AClickTakesTheFocusAndReportsButtonAndPlace) {
    SetFocus(w.Parent());
    EXPECT_FALSE(w.Grid().Focused());
    const POINT p = Middle(3, 2);
    Click(3, 2);
    EXPECT_EQ(At(), "3,2:3,2");
    EXPECT_EQ(GetFocus(), w.Handle());
    EXPECT_TRUE(w.Grid().Focused());
    EXPECT_EQ(w.mouse.Take(), "MouseUp(1,0," + std::to_string((p.x + 2) * 15) + "," +
                                  std::to_string((p.y + 2) * 15) + ")");
}

TEST_F(GridControl, ShiftClickExtendsAndDraggingToo) {
    Click(3, 2);
    Click(5, 4, MK_SHIFT);
    EXPECT_EQ(At(), "3,2:5,4");
    const POINT from = Middle(2, 1);
    const POINT to = Middle(4, 3);
    w.Mouse(WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    EXPECT_EQ(GetCapture(), w.Handle());
    w.Mouse(WM_MOUSEMOVE, to.x, to.y, MK_LBUTTON);
    EXPECT_EQ(At(), "2,1:4,3");
    w.Mouse(WM_LBUTTONUP, to.x, to.y);
    EXPECT_EQ(GetCapture(), nullptr);
    w.Mouse(WM_MOUSEMOVE, from.x, from.y);
    EXPECT_EQ(At(), "2,1:4,3");
}

TEST_F(GridControl, ADragBeyondTheEdgeScrollsByItself) {
    const POINT from = Middle(2, 1);
    w.Mouse(WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    w.Mouse(WM_MOUSEMOVE, from.x, 2000, MK_LBUTTON);
    EXPECT_TRUE(PumpUntil([&] { return w.Grid().TopRow() >= 4; }));
    w.Mouse(WM_LBUTTONUP, from.x, 2000);
    EXPECT_GT(w.Grid().RowSel(), 20);
    EXPECT_EQ(w.Grid().Row(), 2);
}

TEST_F(GridControl, LosingTheCaptureEndsTheDrag) {
    const POINT from = Middle(2, 1);
    w.Mouse(WM_LBUTTONDOWN, from.x, from.y, MK_LBUTTON);
    ReleaseCapture();
    const POINT to = Middle(4, 3);
    w.Mouse(WM_MOUSEMOVE, to.x, to.y);
    EXPECT_EQ(At(), "2,1:2,1");
}

TEST_F(GridControl, ARightClickChangesNeitherCellNorSelection) {
    Click(3, 2);
    Click(5, 4, MK_SHIFT);
    w.mouse.Take();
    w.log->Take();
    const POINT p = Middle(8, 1);
    w.Mouse(WM_RBUTTONDOWN, p.x, p.y, MK_RBUTTON);
    w.Mouse(WM_RBUTTONUP, p.x, p.y);
    EXPECT_EQ(At(), "3,2:5,4");
    EXPECT_EQ(w.log->Take(), "");
    EXPECT_EQ(w.mouse.Take(), "MouseUp(2,0," + std::to_string((p.x + 2) * 15) + "," +
                                  std::to_string((p.y + 2) * 15) + ")");
}

TEST_F(GridControl, ADoublePressOnACellIsReportedOnAHeaderNot) {
    const POINT cell = Middle(3, 2);
    w.Mouse(WM_LBUTTONDBLCLK, cell.x, cell.y, MK_LBUTTON);
    EXPECT_EQ(w.mouse.Take(), "DblClick");
    const POINT header = Middle(0, 2);
    w.Mouse(WM_LBUTTONDBLCLK, header.x, header.y, MK_LBUTTON);
    const POINT number = Middle(2, 0);
    w.Mouse(WM_LBUTTONDBLCLK, number.x, number.y, MK_LBUTTON);
    EXPECT_EQ(w.mouse.Take(), "");
}

TEST_F(GridControl, WhatItHasNoUseForIsHandedToTheListenerAndMovesNothing) {
    w.Send(WM_KEYDOWN, VK_TAB);
    w.Send(WM_KEYDOWN, VK_F2);
    w.Send(WM_KEYDOWN, VK_F5);
    EXPECT_EQ(w.mouse.Take(), "Key(9,0) Key(113,0) Key(116,0)");
    w.Send(WM_CHAR, L'7');
    w.Send(WM_CHAR, 0x20AC);
    EXPECT_EQ(w.mouse.Take(), "Char(55) Char(8364)");
    EXPECT_EQ(At(), "1,1:1,1");
    EXPECT_EQ(w.mouse.acts, 0);
}

TEST_F(GridControl, KeysSentKeysAndClicksTellWhenTheCellHasMoved) {
    std::string at;
    w.mouse.on_act = [&] { at = At(); };
    w.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(at, "2,1:2,1");
    w.control->SendKey(GridKey::kRight);
    PumpMessages();
    EXPECT_EQ(at, "2,2:2,2");
    Click(5, 3);
    EXPECT_EQ(at, "5,3:5,3");
    EXPECT_EQ(w.mouse.acts, 3);
    w.Send(WM_KEYDOWN, VK_F5);
    w.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(w.mouse.acts, 3);
    w.mouse.on_act = nullptr;
}

TEST_F(GridControl, TheWheelScrollsRowsByTheUsersSetting) {
    UINT lines = 0;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    w.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(w.Grid().TopRow(), 1 + static_cast<int>(lines));
    EXPECT_EQ(At(), "1,1:1,1");
    w.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
    EXPECT_EQ(w.Grid().TopRow(), 1);
}

TEST_F(GridControl, AFineWheelAddsUpItsFractions) {
    for (int i = 0; i < 12; ++i) w.Send(WM_MOUSEWHEEL, MAKEWPARAM(0, -10), 0);
    UINT lines = 0;
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &lines, 0);
    EXPECT_EQ(w.Grid().TopRow(), 1 + static_cast<int>(lines));
}

TEST_F(GridControl, ShiftWithTheWheelScrollsColumns) {
    w.control->Move({150, 300, 4500, 4800});
    w.log->Take();
    w.Send(WM_MOUSEWHEEL, MAKEWPARAM(MK_SHIFT, -WHEEL_DELTA), 0);
    EXPECT_EQ(w.Grid().LeftCol(), 2);
    EXPECT_EQ(w.Grid().TopRow(), 1);
    w.Send(WM_MOUSEHWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
    EXPECT_EQ(w.Grid().LeftCol(), 1);
    EXPECT_EQ(w.log->Take(), "Scroll(1,2) Scroll(1,1)");
}

TEST_F(GridControl, TheHorizontalWheelScrollsColumnsByTheUsersSetting) {
    w.control->Move({150, 300, 3000, 4800});
    UINT before = 0;
    ASSERT_TRUE(SystemParametersInfoW(SPI_GETWHEELSCROLLCHARS, 0, &before, 0));
    for (const UINT columns : {3U, 2U, 0U}) {
        SystemParametersInfoW(SPI_SETWHEELSCROLLCHARS, columns, nullptr, 0);
        w.Send(WM_MOUSEHWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
        EXPECT_EQ(w.Grid().LeftCol(), 1 + static_cast<int>(columns));
        w.Send(WM_MOUSEHWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
        EXPECT_EQ(w.Grid().LeftCol(), 1);
    }
    SystemParametersInfoW(SPI_SETWHEELSCROLLCHARS, before, nullptr, 0);
    EXPECT_EQ(w.Grid().TopRow(), 1);
}

TEST_F(GridControl, ScrollBarsFollowTheGrid) {
    SCROLLINFO bar = Bar(SB_VERT);
    EXPECT_EQ(bar.nMin, 1);
    EXPECT_EQ(bar.nMax, 101);
    EXPECT_EQ(bar.nPos, 1);
    w.Grid().SetTopRow(40);
    EXPECT_TRUE(BarReaches(40));
    w.Grid().SetTopRow(101);
    EXPECT_TRUE(BarReaches(w.Grid().TopRow()));
    bar = Bar(SB_VERT);
    EXPECT_EQ(bar.nPos, bar.nMax - static_cast<int>(bar.nPage) + 1);
    EXPECT_NE(GetWindowLongW(w.Handle(), GWL_STYLE) & WS_VSCROLL, 0);
    w.Grid().RemoveItem(1, 95);
    EXPECT_EQ(GetWindowLongW(w.Handle(), GWL_STYLE) & WS_VSCROLL, 0);
    EXPECT_EQ(w.Grid().TopRow(), 1);
}

TEST_F(GridControl, ScrollBarArrowsAndPagesScroll) {
    w.Send(WM_VSCROLL, SB_LINEDOWN);
    EXPECT_EQ(w.Grid().TopRow(), 2);
    w.Send(WM_VSCROLL, SB_PAGEDOWN);
    EXPECT_EQ(w.Grid().TopRow(), 2 + w.Grid().RowAxis().Page());
    w.Send(WM_VSCROLL, SB_PAGEUP);
    w.Send(WM_VSCROLL, SB_LINEUP);
    EXPECT_EQ(w.Grid().TopRow(), 1);
    w.Send(WM_VSCROLL, SB_BOTTOM);
    EXPECT_EQ(w.Grid().TopRow(), w.Grid().RowAxis().MaxFirst());
    w.Send(WM_VSCROLL, SB_TOP);
    EXPECT_EQ(w.Grid().TopRow(), 1);
}

TEST_F(GridControl, AThumbTracksBeyondSixteenBits) {
    w.Grid().SetRows(10'000'000);
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS;
    info.nPos = 7'654'321;
    SetScrollInfo(w.Handle(), SB_VERT, &info, FALSE);
    // the message's own 16 bits say something else
    w.Send(WM_VSCROLL, MAKEWPARAM(SB_THUMBPOSITION, 7'654'321 & 0xFFFF));
    EXPECT_EQ(w.Grid().TopRow(), 7'654'321);
    w.Grid().SetTopRow(9'999'999);
    EXPECT_TRUE(BarReaches(w.Grid().RowAxis().MaxFirst()));
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
}

TEST_F(GridControl, PaintsHeaderLinesSelectionAndCurrentCellInSystemColours) {
    w.Grid().Select(3, 1, 5, 3);
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    const WindowPicture picture = WindowPicture::OfScreen(w.Handle());
    // in view coordinates: the border is two pixels wide; a place in the right part of the cell
    const auto at = [&](std::int32_t row, std::int32_t col) {
        const PixelRect r = w.Grid().CellRect(row, col);
        return picture.At(2 + r.right - 3, 2 + r.bottom - 3);
    };
    EXPECT_EQ(at(0, 2), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(at(4, 0), GetSysColor(COLOR_BTNFACE));
    EXPECT_EQ(at(1, 2), GetSysColor(COLOR_WINDOW));
    EXPECT_EQ(at(3, 1), GetSysColor(COLOR_WINDOW)) << "the current cell";
    EXPECT_EQ(at(4, 1), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(at(5, 3), GetSysColor(COLOR_HIGHLIGHT));
    EXPECT_EQ(at(6, 3), GetSysColor(COLOR_WINDOW));
    const PixelRect header = w.Grid().CellRect(0, 1);
    EXPECT_EQ(picture.At(2 + header.right - 1, 2 + 5), GetSysColor(COLOR_BTNSHADOW));
    EXPECT_EQ(picture.At(2 + header.left, 2 + 5), GetSysColor(COLOR_BTNHIGHLIGHT));
    // there is text: dark pixels in a described cell, none in an empty one
    const auto dark = [&](std::int32_t row, std::int32_t col) {
        const PixelRect r = w.Grid().CellRect(row, col);
        return picture.Count({2 + r.left, 2 + r.top, 2 + r.right, 2 + r.bottom},
                             GetSysColor(COLOR_WINDOWTEXT));
    };
    EXPECT_GT(dark(1, 2), 20);
}

TEST_F(GridControl, AScrolledPictureEqualsAFreshlyPaintedOne) {
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    for (const int top : {2, 3, 9, 8, 60, 61, 1}) {
        w.Grid().SetTopRow(top);
        ASSERT_TRUE(PumpUntilPainted(w.Handle()));
        const WindowPicture scrolled = WindowPicture::OfScreen(w.Handle());
        InvalidateRect(w.Handle(), nullptr, FALSE);
        ASSERT_TRUE(PumpUntilPainted(w.Handle()));
        const WindowPicture fresh = WindowPicture::OfScreen(w.Handle());
        int different = 0;
        for (int y = 2; y < 2 + w.Grid().View().bottom; ++y) {
            for (int x = 2; x < 2 + w.Grid().View().right; ++x)
                different += fresh.At(x, y) != scrolled.At(x, y);
        }
        ASSERT_EQ(different, 0) << "TopRow " << top;
    }
}

TEST_F(GridControl, AScrolledLineInvalidatesTheNewStripOnly) {
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    w.Grid().SetTopRow(2);
    RECT update{};
    ASSERT_TRUE(GetUpdateRect(w.Handle(), &update, FALSE));
    const PixelRect view = w.Grid().View();
    EXPECT_EQ(update.bottom, view.bottom);
    EXPECT_EQ(update.top, view.bottom - 16);
    ValidateRect(w.Handle(), nullptr);
}

TEST_F(GridControl, WhileRedrawIsOffNothingIsInvalidated) {
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    w.Grid().SetRedraw(false);
    w.Grid().SetTextMatrix(1, 1, L"x");
    w.Grid().SetTopRow(30);
    EXPECT_FALSE(GetUpdateRect(w.Handle(), nullptr, FALSE));
    w.Grid().SetRedraw(true);
    EXPECT_TRUE(GetUpdateRect(w.Handle(), nullptr, FALSE));
    EXPECT_TRUE(BarReaches(30));
}

TEST_F(GridControl, TheFocusShowsInTheCurrentCell) {
    w.Grid().SetRow(3);
    w.Grid().SetCol(6 + 2);
    SetFocus(w.Parent());
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    const PixelRect r = w.Grid().CellRect(3, 8);
    const RECT edge{2 + r.left, 2 + r.top, 2 + r.right - 1, 2 + r.top + 1};
    const COLORREF window = GetSysColor(COLOR_WINDOW);
    const WindowPicture without = WindowPicture::OfScreen(w.Handle());
    EXPECT_EQ(without.Count(edge, window), edge.right - edge.left);
    SetFocus(w.Handle());
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    const WindowPicture with = WindowPicture::OfScreen(w.Handle());
    EXPECT_LT(with.Count(edge, window), edge.right - edge.left);
    w.Grid().SetFocusRect(FocusRectStyle::kNone);
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    const WindowPicture none = WindowPicture::OfScreen(w.Handle());
    EXPECT_EQ(none.Count(edge, window), edge.right - edge.left);
}

TEST_F(GridControl, PrintsItselfOnAForeignDeviceContext) {
    const WindowDc dc(nullptr);
    BackBuffer buffer;
    const HDC memory = buffer.Get(dc.get(), 640, 320);
    ASSERT_NE(memory, nullptr);
    w.Send(WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory), PRF_CLIENT);
    EXPECT_EQ(GetPixel(memory, 10, 8), GetSysColor(COLOR_BTNFACE));
}

TEST_F(GridControl, ErrorsOfHandlersEndAtTheWindowProcedure) {
    w.log->on_row_col_change = [] { RaiseRuntimeError(runtime_error::kTypeMismatch); };
    w.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(w.mouse.Take(), "Failed(13)");
    EXPECT_EQ(w.Grid().Row(), 2) << "the change itself stays";
    w.log->on_row_col_change = [] { throw std::bad_alloc(); };
    w.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(w.mouse.Take(), "Failed(7)");
    w.log->on_row_col_change = [] { throw 5; };
    w.Send(WM_KEYDOWN, VK_DOWN);
    EXPECT_EQ(w.mouse.Take(), "Failed(5)");
}

TEST_F(GridControl, AHandlerMayDestroyTheParentInTheMiddleOfAKey) {
    w.log->on_row_col_change = [&] { DestroyWindow(w.Parent()); };
    w.Send(WM_KEYDOWN, VK_END);
    EXPECT_EQ(w.Handle(), nullptr);
    EXPECT_EQ(w.Grid().Rows(), 102) << "the grid itself is still whole";
    w.Grid().SetRow(50);
    w.Grid().SetTopRow(20);
    w.control->SendKey(GridKey::kDown);
}

TEST_F(GridControl, AHandlerMayDestroyTheControlInTheMiddleOfAPress) {
    w.log->on_row_col_change = [&] { w.control.reset(); };
    const HWND window = w.Handle();
    const POINT p = Middle(15, 3);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(p.x, p.y));
    EXPECT_EQ(w.control, nullptr);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_EQ(GetCapture(), nullptr);
}

TEST_F(GridControl, ManyControlsLeaveNoHandlesBehind) {
    const auto objects = [] { return GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS); };
    const auto round = [] {
        GridWindow other;
        other.FillBasket(3);
        PumpUntilPainted(other.Handle());
    };
    round();
    const DWORD before = objects();
    for (int i = 0; i < 20; ++i) round();
    EXPECT_LE(objects(), before + 2);
}

TEST_F(GridControl, AFontHigherThanARowMakesTheRowsHigher) {
    LOGFONTW big{};
    GetObjectW(w.control->Font(), sizeof big, &big);
    big.lfHeight = -40;
    const UniqueFont font(CreateFontIndirectW(&big));
    w.control->SetFont(font.get());
    EXPECT_GT(w.Grid().RowHeight(1), 40 * 15);
    EXPECT_EQ(reinterpret_cast<HFONT>(w.Send(WM_GETFONT)), font.get());
    EXPECT_GT(w.control->TextWidth(L"Bezeichnung", true), w.control->TextWidth(L"Bez", true));
    w.control->SetFont(nullptr);
    EXPECT_LT(w.Grid().RowHeight(1), 20 * 15);
}

TEST_F(GridControl, AWindowTooSmallForItsScrollBarsIsPaintedWhole) {
    w.control->Move({0, 0, 150, 150});
    w.control->Move({0, 0, 0, 0});
    w.control->Move({0, 0, 300, 90});
    EXPECT_TRUE(PumpUntilPainted(w.Handle()));
    w.Send(WM_KEYDOWN, VK_NEXT);
    EXPECT_EQ(w.Grid().Row(), 2);
}

class GridControlDpi : public testing::TestWithParam<int> {};

TEST_P(GridControlDpi, PlacesAndTextSizeFollowTheScreen) {
    const int dpi = GetParam();
    GridWindow w(dpi, {150, 150, 7000, 3000});
    w.FillBasket(4);
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    FlexGrid& grid = w.Grid();
    EXPECT_EQ(grid.CellRect(1, 1).width(), w.scale.ToPixels(1000));
    TEXTMETRICW metrics{};
    {
        const WindowDc dc(w.Handle());
        const SelectedObject selected(dc.get(), w.control->Font());
        GetTextMetricsW(dc.get(), &metrics);
    }
    // the text, with the space above and the line below, fits into a row
    EXPECT_LE(metrics.tmHeight + w.scale.ToPixels(15) + 1, grid.CellRect(1, 1).height());
    grid.SetRow(2);
    grid.SetCol(2);
    ASSERT_TRUE(PumpUntilPainted(w.Handle()));
    const WindowPicture picture = WindowPicture::OfScreen(w.Handle());
    const int bottom = w.scale.ToPixels(grid.CellTop() + grid.CellHeight());
    const int left = w.scale.ToPixels(grid.CellLeft());
    EXPECT_EQ(picture.At(left + 2, bottom), GdiSurface::Color(GridColor::kGridLine));
    EXPECT_EQ(picture.At(left - 1, bottom - 3), GdiSurface::Color(GridColor::kGridLine));
}

INSTANTIATE_TEST_SUITE_P(Dpi, GridControlDpi, testing::Values(96, 120, 144, 192));

}  // namespace
}  // namespace demovex
