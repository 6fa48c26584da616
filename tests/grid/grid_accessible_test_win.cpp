// The grid as a screen reader sees it.
#include <gtest/gtest.h>

#include <oleacc.h>

#include <functional>
#include <set>
#include <string>
#include <vector>

#include "tests/support/grid_window_win.h"
#include "tests/support/heard_events_win.h"

namespace demovex {
namespace {

VARIANT Child(LONG id) {
    VARIANT v;
    VariantInit(&v);
    v.vt = VT_I4;
    v.lVal = id;
    return v;
}

// Owns one reference.
template <class T>
class Com {
  public:
    Com() = default;
    ~Com() {
        if (p_ != nullptr) p_->Release();
    }
    Com(const Com&) = delete;
    Com& operator=(const Com&) = delete;
    T** operator&() { return &p_; }
    T* operator->() const { return p_; }
    T* get() const { return p_; }

  private:
    T* p_ = nullptr;
};

class GridAccess : public testing::Test {
  protected:
    GridAccess() {
        CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
        w = std::make_unique<GridWindow>();
        w->FillBasket(100);
        w->Listen();
        SetFocus(w->Handle());
        PumpMessages();
        EXPECT_EQ(AccessibleObjectFromWindow(w->Handle(), static_cast<DWORD>(OBJID_CLIENT),
                                             IID_IAccessible, reinterpret_cast<void**>(&acc)),
                  S_OK);
    }
    ~GridAccess() override {
        w.reset();
        CoUninitialize();
    }
    void SetUp() override { ASSERT_NE(acc.get(), nullptr); }
    LONG Id(int row, int col) { return row * w->Grid().Cols() + col + 1; }
    std::wstring Name(LONG id) {
        BSTR text = nullptr;
        EXPECT_EQ(acc->get_accName(Child(id), &text), S_OK);
        return Take(text);
    }
    std::wstring Value(LONG id) {
        BSTR text = nullptr;
        EXPECT_EQ(acc->get_accValue(Child(id), &text), S_OK);
        return Take(text);
    }
    static std::wstring Take(BSTR text) {
        std::wstring result(text == nullptr ? L"" : text, SysStringLen(text));
        SysFreeString(text);
        return result;
    }
    LONG Role(LONG id) {
        VARIANT v;
        EXPECT_EQ(acc->get_accRole(Child(id), &v), S_OK);
        return v.lVal;
    }
    LONG State(LONG id) {
        VARIANT v;
        EXPECT_EQ(acc->get_accState(Child(id), &v), S_OK);
        return v.lVal;
    }
    LONG Navigate(LONG direction, LONG from) {
        VARIANT v;
        return acc->accNavigate(direction, Child(from), &v) == S_OK ? v.lVal : -1;
    }

    std::unique_ptr<GridWindow> w;
    Com<IAccessible> acc;
};

TEST_F(GridAccess, IsATableOfCellsWithHeaders) {
    EXPECT_EQ(Role(CHILDID_SELF), ROLE_SYSTEM_TABLE);
    LONG count = 0;
    EXPECT_EQ(acc->get_accChildCount(&count), S_OK);
    EXPECT_EQ(count, 102 * 10);
    EXPECT_EQ(Role(Id(3, 2)), ROLE_SYSTEM_CELL);
    EXPECT_EQ(Role(Id(0, 2)), ROLE_SYSTEM_COLUMNHEADER);
    EXPECT_EQ(Role(Id(3, 0)), ROLE_SYSTEM_ROWHEADER);
}

TEST_F(GridAccess, ACellTellsColumnTitleRowNumberAndContent) {
    EXPECT_EQ(Name(Id(3, 3)), L"Menge, Zeile 3");
    EXPECT_EQ(Value(Id(3, 3)), std::wstring(w->Grid().TextMatrix(3, 3)));
    EXPECT_EQ(Name(Id(0, 3)), L"Menge");
    EXPECT_EQ(Name(Id(3, 0)), L"Zeile 3");
    EXPECT_EQ(Name(Id(101, 8)), L"Gesamt ATS, Zeile 101");
    w->Grid().SetTextMatrix(3, 3, L"42");
    EXPECT_EQ(Value(Id(3, 3)), L"42");
}

TEST_F(GridAccess, TheTableHasAName) {
    EXPECT_EQ(Name(CHILDID_SELF), L"Tabelle");
    SetWindowTextW(w->Handle(), L"Warenkorb");
    EXPECT_EQ(Name(CHILDID_SELF), L"Warenkorb");
}

TEST_F(GridAccess, StatesTellSelectionFocusAndVisibility) {
    w->Grid().Select(3, 2, 4, 3);
    EXPECT_NE(State(Id(3, 2)) & STATE_SYSTEM_FOCUSED, 0);
    EXPECT_NE(State(Id(3, 2)) & STATE_SYSTEM_SELECTED, 0);
    EXPECT_NE(State(Id(4, 3)) & STATE_SYSTEM_SELECTED, 0);
    EXPECT_EQ(State(Id(4, 3)) & STATE_SYSTEM_FOCUSED, 0);
    EXPECT_EQ(State(Id(5, 3)) & STATE_SYSTEM_SELECTED, 0);
    EXPECT_NE(State(Id(5, 3)) & STATE_SYSTEM_READONLY, 0);
    EXPECT_NE(State(Id(5, 6)) & STATE_SYSTEM_INVISIBLE, 0) << "a hidden column";
    EXPECT_NE(State(Id(90, 2)) & STATE_SYSTEM_OFFSCREEN, 0);
    EXPECT_EQ(State(Id(5, 3)) & (STATE_SYSTEM_INVISIBLE | STATE_SYSTEM_OFFSCREEN), 0);
    SetFocus(w->Parent());
    EXPECT_EQ(State(Id(3, 2)) & STATE_SYSTEM_FOCUSED, 0);
}

TEST_F(GridAccess, FocusIsTheCurrentCell) {
    w->Grid().SetRow(5);
    w->Grid().SetCol(4);
    VARIANT v;
    EXPECT_EQ(acc->get_accFocus(&v), S_OK);
    EXPECT_EQ(v.vt, VT_I4);
    EXPECT_EQ(v.lVal, Id(5, 4));
    SetFocus(w->Parent());
    EXPECT_EQ(acc->get_accFocus(&v), S_FALSE);
    EXPECT_EQ(v.vt, VT_EMPTY);
}

TEST_F(GridAccess, SelectionIsOneCellOrAnEnumeration) {
    VARIANT v;
    w->Grid().SetRow(5);
    EXPECT_EQ(acc->get_accSelection(&v), S_OK);
    EXPECT_EQ(v.lVal, Id(5, 1));
    w->Grid().Select(6, 3, 5, 2);
    EXPECT_EQ(acc->get_accSelection(&v), S_OK);
    ASSERT_EQ(v.vt, VT_UNKNOWN);
    Com<IEnumVARIANT> cells;
    EXPECT_EQ(v.punkVal->QueryInterface(IID_IEnumVARIANT, reinterpret_cast<void**>(&cells)), S_OK);
    VariantClear(&v);
    std::vector<LONG> ids;
    VARIANT one;
    while (cells->Next(1, &one, nullptr) == S_OK) ids.push_back(one.lVal);
    EXPECT_EQ(ids, (std::vector<LONG>{Id(5, 2), Id(5, 3), Id(6, 2), Id(6, 3)}));
    EXPECT_EQ(cells->Reset(), S_OK);
    EXPECT_EQ(cells->Skip(3), S_OK);
    VARIANT rest[5];
    ULONG fetched = 0;
    EXPECT_EQ(cells->Next(5, rest, &fetched), S_FALSE);
    EXPECT_EQ(fetched, 1U);
}

TEST_F(GridAccess, LocationAndHitTestAgree) {
    LONG x = 0, y = 0, width = 0, height = 0;
    ASSERT_EQ(acc->accLocation(&x, &y, &width, &height, Child(Id(4, 2))), S_OK);
    const PixelRect cell = w->Grid().CellRect(4, 2);
    EXPECT_EQ(width, cell.width());
    EXPECT_EQ(height, cell.height());
    VARIANT v;
    EXPECT_EQ(acc->accHitTest(x + width / 2, y + height / 2, &v), S_OK);
    EXPECT_EQ(v.lVal, Id(4, 2));
    RECT outer{};
    GetWindowRect(w->Handle(), &outer);
    EXPECT_EQ(x, outer.left + 2 + cell.left);
    EXPECT_EQ(acc->accHitTest(outer.right + 5, outer.top, &v), S_FALSE);
    EXPECT_EQ(acc->accLocation(&x, &y, &width, &height, Child(Id(90, 2))), S_FALSE);
    EXPECT_EQ(width, 0);
    EXPECT_EQ(acc->accLocation(&x, &y, &width, &height, Child(CHILDID_SELF)), S_OK);
    EXPECT_EQ(width, w->Grid().View().right);
}

TEST_F(GridAccess, NavigationStepsOverHiddenColumns) {
    EXPECT_EQ(Navigate(NAVDIR_RIGHT, Id(2, 5)), Id(2, 8));
    EXPECT_EQ(Navigate(NAVDIR_LEFT, Id(2, 8)), Id(2, 5));
    EXPECT_EQ(Navigate(NAVDIR_DOWN, Id(2, 5)), Id(3, 5));
    EXPECT_EQ(Navigate(NAVDIR_UP, Id(1, 5)), Id(0, 5));
    EXPECT_EQ(Navigate(NAVDIR_UP, Id(0, 5)), -1);
    EXPECT_EQ(Navigate(NAVDIR_RIGHT, Id(2, 9)), -1);
    EXPECT_EQ(Navigate(NAVDIR_NEXT, Id(2, 9)), Id(3, 0));
    EXPECT_EQ(Navigate(NAVDIR_PREVIOUS, Id(0, 0)), -1);
    EXPECT_EQ(Navigate(NAVDIR_FIRSTCHILD, CHILDID_SELF), Id(0, 0));
    EXPECT_EQ(Navigate(NAVDIR_LASTCHILD, CHILDID_SELF), Id(101, 9));
}

TEST_F(GridAccess, SelectingMakesACellCurrentAndShowsIt) {
    EXPECT_EQ(acc->accSelect(SELFLAG_TAKEFOCUS | SELFLAG_TAKESELECTION, Child(Id(80, 3))), S_OK);
    EXPECT_EQ(w->Grid().Row(), 80);
    EXPECT_FALSE(w->Grid().CellRect(80, 3).empty());
    EXPECT_EQ(acc->accSelect(SELFLAG_EXTENDSELECTION, Child(Id(82, 4))), S_OK);
    EXPECT_EQ(w->Grid().Row(), 80);
    EXPECT_EQ(w->Grid().RowSel(), 82);
    EXPECT_EQ(acc->accSelect(SELFLAG_TAKESELECTION, Child(Id(0, 3))), E_INVALIDARG);
    EXPECT_EQ(acc->accSelect(0, Child(Id(3, 3))), E_INVALIDARG);
}

TEST_F(GridAccess, BadChildrenAndNullPointersAreRefused) {
    BSTR text = nullptr;
    EXPECT_EQ(acc->get_accName(Child(102 * 10 + 1), &text), E_INVALIDARG);
    EXPECT_EQ(acc->get_accName(Child(-5), &text), E_INVALIDARG);
    VARIANT odd;
    VariantInit(&odd);
    EXPECT_EQ(acc->get_accName(odd, &text), E_INVALIDARG);
    EXPECT_EQ(acc->get_accName(Child(1), nullptr), E_POINTER);
    EXPECT_EQ(acc->get_accFocus(nullptr), E_POINTER);
    EXPECT_EQ(acc->get_accChildCount(nullptr), E_POINTER);
}

TEST_F(GridAccess, AnErrorOfAHandlerBecomesAResultCode) {
    w->log->on_row_col_change = [] { RaiseRuntimeError(runtime_error::kTypeMismatch); };
    EXPECT_EQ(acc->accSelect(SELFLAG_TAKESELECTION, Child(Id(7, 3))), E_FAIL);
}

TEST_F(GridAccess, OutlivesTheWindowAndThenSaysSo) {
    w.reset();
    BSTR text = nullptr;
    VARIANT v;
    LONG n = 0;
    EXPECT_EQ(acc->get_accName(Child(1), &text), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accFocus(&v), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->get_accChildCount(&n), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(acc->accSelect(SELFLAG_TAKESELECTION, Child(1)), CO_E_OBJNOTCONNECTED);
    acc->AddRef();
    EXPECT_EQ(acc->Release(), 1U) << "the window's own reference is gone";
}

TEST_F(GridAccess, IsDisconnectedAsSoonAsTheWindowIsGone) {
    DestroyWindow(w->Handle());
    BSTR text = nullptr;
    EXPECT_EQ(acc->get_accName(Child(1), &text), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(text, nullptr);
}

TEST_F(GridAccess, AHeldObjectKeepsTheModuleLock) {
    GridWindow other;
    auto lock = std::make_shared<int>(0);
    const std::weak_ptr<int> watch = lock;
    other.control->SetModuleLock(std::move(lock));
    {
        Com<IAccessible> held;
        ASSERT_EQ(AccessibleObjectFromWindow(other.Handle(), static_cast<DWORD>(OBJID_CLIENT),
                                             IID_IAccessible, reinterpret_cast<void**>(&held)),
                  S_OK);
        other.control.reset();
        EXPECT_FALSE(watch.expired());
    }
    EXPECT_TRUE(watch.expired());
}

// --- what is told ---

TEST_F(GridAccess, AMovedCurrentCellIsTold) {
    HeardEvents heard(EVENT_OBJECT_FOCUS, EVENT_OBJECT_SELECTIONWITHIN);
    w->Send(WM_KEYDOWN, VK_DOWN);
    const LONG id = Id(2, 1);
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_FOCUS, w->Handle(), id));
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_SELECTION, w->Handle(), id));
    w->Grid().SetRowSel(4);
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_SELECTIONWITHIN, w->Handle()));
    EXPECT_EQ(Name(id) + L": " + Value(id), L"ArtNr, Zeile 2: 471102");
}

TEST_F(GridAccess, TheCurrentCellIsToldWhenTheGridGetsTheFocus) {
    SetFocus(w->Parent());
    HeardEvents heard(EVENT_OBJECT_FOCUS, EVENT_OBJECT_SELECTIONWITHIN);
    SetFocus(w->Handle());
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_FOCUS, w->Handle(), Id(w->Grid().Row(), w->Grid().Col())));
}

// A link that is followed in the host moves the current cell, and the focus is the host's.
TEST_F(GridAccess, WithTheFocusElsewhereAMovedCurrentCellIsNotTheFocus) {
    const HWND host = CreateWindowExW(0, L"EDIT", L"", WS_POPUP | WS_VISIBLE, 0, 0, 50, 20, nullptr,
                                      nullptr, nullptr, nullptr);
    SetFocus(host);
    ASSERT_EQ(GetFocus(), host);
    PumpMessages();
    HeardEvents heard(EVENT_OBJECT_FOCUS, EVENT_OBJECT_SELECTIONWITHIN);
    w->Grid().SetRow(5);
    const LONG id = Id(5, w->Grid().Col());
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_SELECTION, w->Handle(), id));
    EXPECT_EQ(heard.Count(EVENT_OBJECT_FOCUS, w->Handle(), id), 0);
    DestroyWindow(host);
}

TEST_F(GridAccess, ACellsNewTextIsTold) {
    HeardEvents heard(EVENT_OBJECT_CREATE, EVENT_OBJECT_ACCELERATORCHANGE);
    w->Grid().SetTextMatrix(3, 3, L"42");
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_VALUECHANGE, w->Handle(), Id(3, 3)));
    EXPECT_EQ(Value(Id(3, 3)), L"42");
    EXPECT_EQ(heard.CountAll(w->Handle()), 1);
    heard.Clear();
    w->Grid().SetTextMatrix(3, 3, L"42");
    EXPECT_EQ(heard.CountAll(w->Handle()), 0) << "nothing has changed";
}

TEST_F(GridAccess, AHeadersNewTextIsItsNewName) {
    HeardEvents heard(EVENT_OBJECT_CREATE, EVENT_OBJECT_ACCELERATORCHANGE);
    w->Grid().SetTextMatrix(0, 3, L"Stück");
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_NAMECHANGE, w->Handle(), Id(0, 3)));
    EXPECT_EQ(Name(Id(0, 3)), L"Stück");
}

TEST_F(GridAccess, RowsThatComeGoOrMoveMakeProgramsAskAnew) {
    HeardEvents heard(EVENT_OBJECT_CREATE, EVENT_OBJECT_ACCELERATORCHANGE);
    FlexGrid& grid = w->Grid();
    grid.SetRow(5);
    const std::function<void()> changes[] = {
        [&] { grid.AddItem(3, 2); },
        [&] { grid.RemoveItem(3, 2); },
        [&] { grid.MoveRows(2, 3, 8); },
        [&] { grid.SetRows(grid.Rows() + 1); },
    };
    for (const auto& change : changes) {
        heard.Clear();
        change();
        EXPECT_TRUE(heard.Hear(EVENT_OBJECT_REORDER, w->Handle()));
        EXPECT_EQ(heard.Count(EVENT_OBJECT_REORDER, w->Handle()), 1);
        // the current cell has the same number and is another one
        EXPECT_EQ(heard.Count(EVENT_OBJECT_FOCUS, w->Handle(), Id(5, grid.Col())), 1);
    }
}

TEST_F(GridAccess, ACommandOfManyStepsIsToldInFewWords) {
    HeardEvents heard(EVENT_OBJECT_CREATE, EVENT_OBJECT_ACCELERATORCHANGE);
    FlexGrid& grid = w->Grid();
    for (int i = 0; i < 50; ++i) {
        grid.AddItem(3);
        grid.SetRow(3 + i % 7);
        for (int row = 1; row < 40; ++row) grid.SetTextMatrix(row, 0, std::to_wstring(row + i));
    }
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_REORDER, w->Handle()));
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_FOCUS, w->Handle(), Id(grid.Row(), grid.Col())));
    EXPECT_LE(heard.CountAll(w->Handle()), 3);
}

TEST_F(GridAccess, AGridThatDoesNotRepaintIsSilent) {
    HeardEvents heard(EVENT_OBJECT_CREATE, EVENT_OBJECT_ACCELERATORCHANGE);
    FlexGrid& grid = w->Grid();
    grid.SetRedraw(false);
    for (int i = 0; i < 1000; ++i) {
        grid.AddItem(3);
        grid.SetRow(3 + i % 7);
        grid.SetTextMatrix(3, 1, L"x");
    }
    EXPECT_EQ(heard.CountAll(w->Handle()), 0);
    grid.SetRedraw(true);
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_REORDER, w->Handle()));
    EXPECT_EQ(heard.Count(EVENT_OBJECT_REORDER, w->Handle()), 1);
    EXPECT_EQ(heard.Count(EVENT_OBJECT_FOCUS, w->Handle(), Id(grid.Row(), grid.Col())), 1);
    EXPECT_LE(heard.CountAll(w->Handle()), 3);
}

// Switched off again before the message arrives.
TEST_F(GridAccess, WhatIsNotToldYetIsToldWhenTheGridRepaintsAgain) {
    HeardEvents heard(EVENT_OBJECT_CREATE, EVENT_OBJECT_ACCELERATORCHANGE);
    FlexGrid& grid = w->Grid();
    grid.SetTextMatrix(3, 3, L"42");
    grid.SetRedraw(false);
    EXPECT_EQ(heard.CountAll(w->Handle()), 0);
    grid.SetRedraw(true);
    EXPECT_TRUE(heard.Hear(EVENT_OBJECT_VALUECHANGE, w->Handle(), Id(3, 3)));
}

}  // namespace
}  // namespace demovex
