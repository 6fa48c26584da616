// The commands of the running window: every toolbar button clicked, menus walked with keys, the
// view commands on real controls, and where shortcuts must keep still.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "basket/window/handles_win.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

void ClickButton(BasketWindowFixture& basket, std::wstring_view key) {
    HWND bar = basket.Child(child_id::kToolbar);
    for (int i = 0; i < static_cast<int>(ToolbarTable().size()); ++i) {
        if (ToolbarTable()[static_cast<std::size_t>(i)].key != key) continue;
        RECT button{};
        ASSERT_TRUE(SendMessageW(bar, TB_GETITEMRECT, static_cast<WPARAM>(i),
                                 reinterpret_cast<LPARAM>(&button)));
        basket.ClickAt(bar, (button.left + button.right) / 2, (button.top + button.bottom) / 2);
        return;
    }
    FAIL() << "no such button";
}

void Choose(BasketWindowFixture& basket, Command command) {
    SendMessageW(basket.Handle(), WM_COMMAND, static_cast<WPARAM>(command), 0);
    basket.Pump();
}

// Three lines with catalogue positions; the second is current.
void Fill(BasketWindowFixture& basket) {
    basket.Link(L"4711", L"Seite 1", L"vex:1");
    basket.Link(L"1000", L"Seite 2", L"vex:2");
    basket.Link(L"2000", L"Seite 3", L"vex:3");
    basket.Grid().Select(2, column::kPreisAts, 2, column::kPreisAts);
    basket.Pump();
}

std::wstring Numbers(const BasketWindowFixture& basket) {
    std::wstring numbers;
    for (std::int32_t row = 1; row <= basket.Lines(); ++row) {
        numbers += basket.Cell(row, column::kArtNr) + L" ";
    }
    return numbers;
}

TEST(WindowCommands, AClickOnEachToolbarButtonRunsItsCommand) {
    std::map<std::wstring_view, std::function<void(BasketWindowFixture&)>> after;
    after[L"New"] = [](BasketWindowFixture& basket) { EXPECT_EQ(basket.Lines(), 0); };
    after[L"Open"] = [](BasketWindowFixture& basket) {
        ASSERT_EQ(basket.file_dialogs.shown.size(), 1u);
        EXPECT_FALSE(basket.file_dialogs.shown[0].save);
    };
    after[L"Save"] = [](BasketWindowFixture& basket) {
        EXPECT_TRUE(basket.files.Has(L"C:\\Basket\\neu.bsk"));
    };
    after[L"Print"] = [](BasketWindowFixture& basket) { EXPECT_EQ(basket.printer.jobs, 1); };
    after[L"GotoCatalog"] = [](BasketWindowFixture& basket) {
        EXPECT_EQ(basket.owner->navigated, (std::vector<std::wstring>{L"vex:2"}));
    };
    after[L"NewRow"] = [](BasketWindowFixture& basket) {
        EXPECT_EQ(Numbers(basket), L"4711 1000 2000  ");
    };
    after[L"InsertRow"] = [](BasketWindowFixture& basket) {
        EXPECT_EQ(Numbers(basket), L"4711  1000 2000 ");
    };
    after[L"DeleteRow"] = [](BasketWindowFixture& basket) {
        EXPECT_EQ(Numbers(basket), L"4711 2000 ");
    };
    after[L"OptColWidth"] = [](BasketWindowFixture& basket) {
        ASSERT_EQ(basket.messages.shown.size(), 1u);
        EXPECT_EQ(basket.messages.shown[0].title, L"Optimale Spaltenbreiten");
    };
    after[L"SelectionUp"] = [](BasketWindowFixture& basket) {
        EXPECT_EQ(Numbers(basket), L"1000 4711 2000 ");
    };
    after[L"SelectionDown"] = [](BasketWindowFixture& basket) {
        EXPECT_EQ(Numbers(basket), L"4711 2000 1000 ");
    };
    for (const auto& [key, check] : after) {
        SCOPED_TRACE(std::string(key.begin(), key.end()));
        BasketWindowFixture basket;
        Fill(basket);
        basket.messages.otherwise = MessageAnswer::kNo;  // changes are not to be saved
        if (key == L"Save") {
            basket.file_dialogs.Choose(L"C:\\Basket\\neu.bsk");
        } else {
            basket.file_dialogs.Cancel();
        }
        ClickButton(basket, key);
        check(basket);
    }
}

// "Cut", "Copy" and "Paste", which go to the text box.
TEST(WindowCommands, TheClipboardButtonsWorkOnTheTextBoxThatHasTheFocus) {
    BasketWindowFixture basket;
    basket.Link(L"");
    basket.Type(L"LAMPE");
    basket.Press('A', {VK_CONTROL});
    ClickButton(basket, L"Cut");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"");
    ClickButton(basket, L"Paste");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"LAMPE");
    basket.Press('A', {VK_CONTROL});
    ClickButton(basket, L"Copy");
    basket.Press(VK_END);
    ClickButton(basket, L"Paste");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"LAMPELAMPE");
    EXPECT_EQ(GetFocus(), basket.Text());
}

TEST(WindowCommands, ADoubleClickShowsTheLineInTheCatalogueAndOneOnALineWithoutPositionNothing) {
    BasketWindowFixture basket;
    Fill(basket);
    basket.Link(L"4712");
    basket.ClickCell(2, column::kPreisAts);
    basket.ClickCell(2, column::kPreisAts);
    EXPECT_EQ(basket.owner->navigated, (std::vector<std::wstring>{L"vex:2"}));
    basket.ClickCell(4, column::kPreisAts);
    basket.ClickCell(4, column::kPreisAts);
    EXPECT_EQ(basket.owner->navigated.size(), 1u);
}

TEST(WindowCommands, TheContextMenuIsWalkedWithKeys) {
    BasketWindowFixture basket;
    Fill(basket);
    // opens with the first entry chosen or none; its access key chooses it in both cases
    basket.PressAtOnce({{VK_APPS, true}, {VK_APPS, false}, {'G', true}, {'G', false}});
    PumpUntil([&] { return !basket.owner->navigated.empty(); }, 2000);
    EXPECT_EQ(basket.owner->navigated, (std::vector<std::wstring>{L"vex:2"}));

    basket.Grid().Select(2, column::kArtNr, 3, column::kMenge);
    basket.Pump();
    basket.PressAtOnce({{VK_APPS, true}, {VK_APPS, false}, {'K', true}, {'K', false}});
    PumpUntil([&] { return basket.clipboard.sets == 1; }, 2000);
    EXPECT_NE(basket.clipboard.text.find(L"1000\tBleistift HB\t1"), std::wstring::npos);
    EXPECT_NE(basket.clipboard.text.find(L"2000\tRadiergummi\t1"), std::wstring::npos);
    EXPECT_EQ(basket.clipboard.text.find(L"4711"), std::wstring::npos);
}

TEST(WindowCommands, SendingToTheClipboardThroughTheFileMenuCopiesTheWholeBasket) {
    BasketWindowFixture basket;
    Fill(basket);
    basket.PressAtOnce({{VK_MENU, true},
                        {'D', true},
                        {'D', false},
                        {VK_MENU, false},
                        {'E', true},  // "S&enden an"
                        {'E', false},
                        {'Z', true},  // "&Zwischenablage"
                        {'Z', false}});
    PumpUntil([&] { return basket.clipboard.sets == 1; }, 2000);
    for (const wchar_t* number : {L"ArtNr", L"4711", L"1000", L"2000", L"Gesamt"}) {
        EXPECT_NE(basket.clipboard.text.find(number), std::wstring::npos);
    }
}

TEST(WindowCommands, OpeningAMenuChangesNoItemAndEveryMenuClosesTheList) {
    BasketWindowFixture basket;
    basket.window->Form()->SetOffersList([](std::int32_t, std::int32_t) { return true; });
    Fill(basket);
    const HMENU bar = GetMenu(basket.Handle());
    const auto states = [&] {
        std::vector<UINT> found;
        for (int menu = 0; menu < GetMenuItemCount(bar); ++menu) {
            const HMENU popup = GetSubMenu(bar, menu);
            for (int item = 0; item < GetMenuItemCount(popup); ++item) {
                found.push_back(GetMenuState(popup, static_cast<UINT>(item), MF_BYPOSITION));
            }
        }
        return found;
    };
    const std::vector<UINT> before = states();
    const HWND list = basket.Child(child_id::kIPComboList);
    ASSERT_EQ(GetMenuItemCount(bar), 4);
    for (int menu = 0; menu < 4; ++menu) {
        SCOPED_TRACE(menu);
        basket.Grid().Select(1, column::kPreisAts, 1, column::kPreisAts);
        basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
        basket.Pump();
        basket.Press(VK_F4);
        ASSERT_TRUE(IsWindowVisible(list));
        SendMessageW(basket.Handle(), WM_INITMENUPOPUP,
                     reinterpret_cast<WPARAM>(GetSubMenu(bar, menu)), menu);
        EXPECT_FALSE(IsWindowVisible(list));
        EXPECT_TRUE(basket.EditorOpen());
        EXPECT_EQ(states(), before);
    }
}

// --- the view

TEST(WindowCommands, SwitchingABarOffAndOnRestoresLayoutAndCheckMark) {
    BasketWindowFixture basket;
    const HMENU bar = GetMenu(basket.Handle());
    const auto place = [&] {
        RECT rect{};
        GetWindowRect(basket.Child(child_id::kListe), &rect);
        return std::vector<LONG>{rect.left, rect.top, rect.right, rect.bottom};
    };
    for (const auto& [command, child] :
         {std::pair{Command::mnuAnsichtSymbolleiste, child_id::kToolbar},
          std::pair{Command::mnuAnsichtStatusleiste, child_id::kStatusBar}}) {
        const auto checked = [&, id = static_cast<UINT>(command)] {
            return (GetMenuState(bar, id, MF_BYCOMMAND) & MF_CHECKED) != 0;
        };
        const std::vector<LONG> before = place();
        EXPECT_TRUE(checked());
        Choose(basket, command);
        EXPECT_FALSE(checked());
        EXPECT_FALSE(IsWindowVisible(basket.Child(child)));
        EXPECT_NE(place(), before);
        Choose(basket, command);
        EXPECT_TRUE(checked());
        EXPECT_TRUE(IsWindowVisible(basket.Child(child)));
        EXPECT_EQ(place(), before);
    }
}

// The widest text of each column in the grid's own font, bold in the header alone, and 120 twips.
TEST(WindowCommands, OptimalWidthsAreThoseOfTheWidestTextsAtEveryDpi) {
    for (const int dpi : {96, 144}) {
        SCOPED_TRACE(dpi);
        BasketWindowFixture basket(HostLoop::kBare, dpi);
        basket.Link(L"6000");
        basket.Link(L"4711");
        basket.Grid().Select(2, column::kPreisAts, 2, column::kPreisAts);
        basket.Pump();
        const FlexGrid& grid = basket.Grid();
        std::vector<Twips> before;
        for (std::int32_t col = 0; col < grid.Cols(); ++col) before.push_back(grid.ColWidth(col));
        for (const MessageAnswer answer : {MessageAnswer::kNo, MessageAnswer::kCancel}) {
            basket.messages.answers = {answer};
            Choose(basket, Command::mnuAnsichtOptColWidth);
            for (std::int32_t col = 0; col < grid.Cols(); ++col) {
                EXPECT_EQ(grid.ColWidth(col), before[static_cast<std::size_t>(col)]);
            }
        }
        basket.messages.answers = {MessageAnswer::kYes};
        Choose(basket, Command::mnuAnsichtOptColWidth);
        IBasketView& view = basket.window->View();
        for (std::int32_t col = 0; col < grid.Cols(); ++col) {
            SCOPED_TRACE(col);
            const Twips old = before[static_cast<std::size_t>(col)];
            if (col < column::kBezeichnung || old == 0) {
                EXPECT_EQ(grid.ColWidth(col), old);
                continue;
            }
            Twips widest = 0;
            for (std::int32_t row = 0; row < grid.Rows(); ++row) {
                widest =
                    std::max(widest, view.MeasureGridText(grid.TextMatrix(row, col), row == 0));
            }
            EXPECT_GT(widest, 0);
            EXPECT_EQ(grid.ColWidth(col), widest + 120);
        }
        EXPECT_TRUE(grid.Redraw());
    }
}

// --- where shortcuts keep still, or work all the same

TEST(WindowCommands, AShortcutWorksWhileTheListHasTheFocus) {
    BasketWindowFixture basket;
    basket.window->Form()->SetOffersList([](std::int32_t, std::int32_t) { return true; });
    Fill(basket);
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    basket.Press(VK_F4);
    ASSERT_EQ(GetFocus(), basket.Child(child_id::kIPComboList));
    basket.Press('N', {VK_CONTROL});
    EXPECT_EQ(basket.Lines(), 4);
    EXPECT_FALSE(IsWindowVisible(basket.Child(child_id::kIPComboList)));
}

// As behind a dialog of the basket's or the host's.
TEST(WindowCommands, ADisabledWindowTakesNoShortcutAndNoCommand) {
    BasketWindowFixture basket;
    Fill(basket);
    EnableWindow(basket.Handle(), FALSE);
    basket.Press('N', {VK_CONTROL});
    Choose(basket, Command::mnuEditNeueZeile);
    EXPECT_EQ(basket.Lines(), 3);
    EnableWindow(basket.Handle(), TRUE);
    SetForegroundWindow(basket.Handle());
    SetFocus(basket.Child(child_id::kListe));
    basket.Pump();
    basket.Press('N', {VK_CONTROL});
    EXPECT_EQ(basket.Lines(), 4);
}

TEST(WindowCommands, AnOpenMenuKeepsTheKeysForItself) {
    BasketWindowFixture basket;
    Fill(basket);
    basket.PressAtOnce({{VK_MENU, true},
                        {'A', true},
                        {'A', false},
                        {VK_MENU, false},
                        {VK_CONTROL, true},
                        {'L', true},
                        {'L', false},
                        {VK_CONTROL, false},
                        {VK_ESCAPE, true},
                        {VK_ESCAPE, false},
                        {VK_ESCAPE, true},
                        {VK_ESCAPE, false}});
    PumpUntil([] { return FindWindowW(L"#32768", nullptr) == nullptr; });
    EXPECT_EQ(basket.Lines(), 3);
    basket.Press('L', {VK_CONTROL});
    EXPECT_EQ(basket.Lines(), 2);
}

}  // namespace
}  // namespace demovex
