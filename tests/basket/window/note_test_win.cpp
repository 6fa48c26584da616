// The note of the running window: where it stands, what it covers, who hears of it, when it goes.
#include <gtest/gtest.h>

#include <oleacc.h>

#include "basket/window/handles_win.h"
#include "tests/support/heard_events_win.h"
#include "tests/support/test_basket_window_win.h"
#include "tests/support/window_picture_win.h"

namespace demovex {
namespace {

constexpr DWORD kLiveRegionChanged = 0x8019;

class NoteWindow : public BasketWindowFixture {
  public:
    explicit NoteWindow(int dpi = 0) : BasketWindowFixture(HostLoop::kBare, dpi) {}
    HWND Note() const { return FindWindowExW(Handle(), nullptr, L"DemoVexClient.Note", nullptr); }
    HWND Bar() const { return Child(child_id::kStatusBar); }
    void Say(std::wstring_view said) {
        window->View().ShowNote(said);
        Pump();
    }
    static RECT Of(HWND control) {
        RECT rect{};
        GetWindowRect(control, &rect);
        return rect;
    }
    int Width() const { return Of(Note()).right - Of(Note()).left; }
};

TEST(WindowNote, StandsAtTheRightEndOfTheStatusBarAtEveryDpi) {
    for (const int dpi : {96, 110, 134, 144, 192, 288, 384}) {
        SCOPED_TRACE(dpi);
        NoteWindow basket(dpi);
        ASSERT_NE(basket.Note(), nullptr);
        EXPECT_EQ(basket.Note(), basket.Child(child_id::kNote));
        EXPECT_EQ(basket.Width(), 0);
        basket.Say(L"Rückgängig: 3 Zeilen gelöscht");
        const RECT bar = NoteWindow::Of(basket.Bar());
        const RECT note = NoteWindow::Of(basket.Note());
        EXPECT_GE(note.top, bar.top);
        EXPECT_LE(note.bottom, bar.bottom);
        EXPECT_GT(note.left, bar.left);
        EXPECT_EQ(note.right, bar.right - GetSystemMetrics(SM_CXVSCROLL)) << "the grip is free";
        EXPECT_EQ(BasketWindowFixture::TextOf(basket.Note()), L"Rückgängig: 3 Zeilen gelöscht");
        // its line of text fits
        HDC dc = GetDC(basket.Note());
        const HGDIOBJ before =
            SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(basket.Bar(), WM_GETFONT, 0, 0)));
        TEXTMETRICW metrics{};
        GetTextMetricsW(dc, &metrics);
        SIZE size{};
        GetTextExtentPoint32W(dc, L"Rückgängig: 3 Zeilen gelöscht", 29, &size);
        SelectObject(dc, before);
        ReleaseDC(basket.Note(), dc);
        EXPECT_GE(note.bottom - note.top, metrics.tmHeight);
        EXPECT_GE(note.right - note.left, size.cx);
        EXPECT_LE(note.right - note.left, size.cx + 2 * dpi / 10) << "covers no more than it must";
    }
}

TEST(WindowNote, IsAsWideAsItsTextAndGoesWithIt) {
    NoteWindow basket;
    basket.Say(L"kurz");
    const int brief = basket.Width();
    basket.Say(L"ein längerer Text als zuvor");
    EXPECT_GT(basket.Width(), brief);
    basket.Say(L"kurz");
    EXPECT_EQ(basket.Width(), brief);
    basket.Say(L"");
    EXPECT_EQ(basket.Width(), 0);
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Note()), L"");
}

TEST(WindowNote, ATextThatDoesNotFitIsAsWideAsTheBarAndIsStillTheNotesName) {
    NoteWindow basket;
    const std::wstring text(250, L'W');
    basket.Say(text);
    EXPECT_EQ(NoteWindow::Of(basket.Note()).left, NoteWindow::Of(basket.Bar()).left);
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Note()), text);
}

TEST(WindowNote, FollowsTheWindowsSize) {
    NoteWindow basket;
    basket.Say(L"gesagt");
    RECT rect{};
    GetWindowRect(basket.Handle(), &rect);
    SetWindowPos(basket.Handle(), nullptr, 0, 0, rect.right - rect.left - 50,
                 rect.bottom - rect.top - 40, SWP_NOMOVE | SWP_NOZORDER);
    basket.Pump();
    const RECT bar = NoteWindow::Of(basket.Bar());
    const RECT note = NoteWindow::Of(basket.Note());
    EXPECT_EQ(note.right, bar.right - GetSystemMetrics(SM_CXVSCROLL));
    EXPECT_GE(note.top, bar.top);
    EXPECT_LE(note.bottom, bar.bottom);
}

TEST(WindowNote, IsNoPartOfTheStatusBarsText) {
    NoteWindow basket;
    basket.Link(L"4711", L"Düfte / Seite 3", L"vex:3");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    basket.Say(L"gesagt");
    EXPECT_EQ(SendMessageW(basket.Bar(), SB_GETPARTS, 0, 0), 1);
    wchar_t text[256] = L"";
    SendMessageW(basket.Bar(), SB_GETTEXTW, 0, reinterpret_cast<LPARAM>(text));
    EXPECT_STREQ(text, L"Düfte / Seite 3");
    EXPECT_EQ(basket.window->View().StatusText(), L"Düfte / Seite 3");
}

TEST(WindowNote, IsPaintedOverTheBarInTheBarsColours) {
    NoteWindow basket;
    basket.Say(L"MMMM");
    PumpUntilPainted(basket.Note());
    const WindowPicture picture = WindowPicture::OfScreen(basket.Note());
    const RECT all{0, 0, picture.Width(), picture.Height()};
    EXPECT_GE(picture.Count(all, GetSysColor(COLOR_BTNFACE)), picture.Width() * 3);
    int dark = 0;
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 2; x < picture.Width(); ++x) {
            const COLORREF c = picture.At(x, y);
            dark += GetRValue(c) + GetGValue(c) + GetBValue(c) < 300;
        }
    }
    EXPECT_GE(dark, 40);
}

TEST(WindowNote, IsAnnouncedWithItsNameAsALiveRegion) {
    ASSERT_TRUE(SUCCEEDED(CoInitialize(nullptr)));
    {
        NoteWindow basket;
        HeardEvents heard(EVENT_OBJECT_NAMECHANGE, kLiveRegionChanged);
        basket.Say(L"3 Zeilen gelöscht");
        EXPECT_TRUE(heard.Hear(EVENT_OBJECT_NAMECHANGE, basket.Note()));
        EXPECT_TRUE(heard.Hear(kLiveRegionChanged, basket.Note()));
        IAccessible* object = nullptr;
        ASSERT_EQ(AccessibleObjectFromWindow(basket.Note(), static_cast<DWORD>(OBJID_CLIENT),
                                             IID_IAccessible, reinterpret_cast<void**>(&object)),
                  S_OK);
        VARIANT self{};
        self.vt = VT_I4;
        BSTR name = nullptr;
        EXPECT_EQ(object->get_accName(self, &name), S_OK);
        EXPECT_STREQ(name, L"3 Zeilen gelöscht");
        SysFreeString(name);
        object->Release();
        // a static text, so that its name is read
        EXPECT_EQ(SendMessageW(basket.Note(), WM_GETOBJECT, 0, OBJID_QUERYCLASSNAMEIDX), 65539);
        // the same thing said again is news
        heard.Clear();
        basket.Say(L"3 Zeilen gelöscht");
        EXPECT_TRUE(heard.Hear(kLiveRegionChanged, basket.Note()));
        // silence is not
        heard.Clear();
        basket.Say(L"");
        basket.Say(L"");
        EXPECT_EQ(heard.Count(kLiveRegionChanged, basket.Note()), 0);
    }
    CoUninitialize();
}

TEST(WindowNote, WithoutAStatusBarItIsStillAnnounced) {
    NoteWindow basket;
    basket.window->View().SetStatusbarVisible(false);
    HeardEvents heard(kLiveRegionChanged, kLiveRegionChanged);
    basket.Say(L"gesagt");
    EXPECT_EQ(basket.Width(), 0) << "covers nothing";
    EXPECT_TRUE(IsWindowVisible(basket.Note()));
    EXPECT_TRUE(heard.Hear(kLiveRegionChanged, basket.Note()));
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Note()), L"gesagt");
    basket.window->View().SetStatusbarVisible(true);
    EXPECT_GT(basket.Width(), 0);
}

TEST(WindowNote, LeavesItsPlaceToTheProgressOfLongWork) {
    NoteWindow basket;
    basket.Say(L"gesagt");
    IBasketView& view = basket.window->View();
    view.BeginProgress(L"Laden");
    const HWND progress = FindWindowExW(basket.Bar(), nullptr, PROGRESS_CLASSW, nullptr);
    double done = 0;
    EXPECT_TRUE(PumpUntil([&] {
        view.SetProgress(done += 0.005);
        return IsWindowVisible(progress) != 0;
    }));
    EXPECT_EQ(basket.Width(), 0);
    view.EndProgress();
    EXPECT_GT(basket.Width(), 0);
}

TEST(WindowNote, TheUsersNextActionTakesItBack) {
    NoteWindow basket;
    basket.Link(L"4711");
    basket.Link(L"4712");
    const auto gone = [&] { return BasketWindowFixture::TextOf(basket.Note()).empty(); };
    basket.Grid().Select(1, column::kPreisAts, 1, column::kPreisAts);
    SetFocus(basket.Child(child_id::kListe));
    basket.Pump();
    basket.Say(L"gesagt");
    basket.Press(VK_CONTROL);
    basket.Press(VK_SHIFT);
    EXPECT_FALSE(gone());
    basket.Press(VK_DOWN);  // a key in the grid
    EXPECT_TRUE(gone());
    basket.Say(L"gesagt");
    basket.ClickCell(1, column::kPreisEuro);
    EXPECT_TRUE(gone());
    basket.ClickCell(1, column::kMenge);
    ASSERT_TRUE(basket.EditorOpen());
    basket.Say(L"gesagt");
    basket.Type(L"3");
    EXPECT_TRUE(gone());
    basket.Say(L"gesagt");
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(Command::mnuEditNeueZeile), 0);
    EXPECT_TRUE(gone());
    basket.Say(L"gesagt");
    basket.Link(L"ABC");
    EXPECT_TRUE(gone());
}

// A key in the editor that moves the current cell is followed by a key for the grid that the
// window sends itself.
TEST(WindowNote, WhatAnActionSaysOutlivesWhatFollowsFromIt) {
    NoteWindow basket;
    basket.Link(L"4711");
    basket.Say(L"gesagt");
    basket.window->View().SendGridKey(GridKey::kUp);
    basket.Pump();
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Note()), L"gesagt");
}

TEST(WindowNote, GoesByItselfAfterAWhile) {
    NoteWindow basket;
    basket.Say(L"!");
    SendMessageW(basket.Note(), WM_TIMER, 1, 0);  // too early
    EXPECT_EQ(BasketWindowFixture::TextOf(basket.Note()), L"!");
    EXPECT_TRUE(
        PumpUntil([&] { return BasketWindowFixture::TextOf(basket.Note()).empty(); }, 20'000));
    EXPECT_EQ(basket.Width(), 0);
}

TEST(WindowNote, APressOnItIsMeantForTheStatusBar) {
    NoteWindow basket;
    basket.Say(L"gesagt");
    const RECT note = NoteWindow::Of(basket.Note());
    EXPECT_EQ(WindowFromPoint({(note.left + note.right) / 2, (note.top + note.bottom) / 2}),
              basket.Bar());
}

}  // namespace
}  // namespace demovex
