// Keys pressed for real, in every kind of host loop.
#include <gtest/gtest.h>

#include <random>

#include "basket/window/handles_win.h"
#include "grid/cell_name.h"
#include "tests/support/test_basket_window_win.h"

namespace demovex {
namespace {

class WindowKeys : public ::testing::TestWithParam<HostLoop> {};
INSTANTIATE_TEST_SUITE_P(HostLoops, WindowKeys, ::testing::ValuesIn(kHostLoops),
                         [](const auto& of) { return HostLoopName(of.param); });

constexpr WORD kCtrl = VK_CONTROL;

// Where the focus is when the key is pressed.
enum class Place { kEditor, kGrid };

void Focus(BasketWindowFixture& basket, Place place, const char* before) {
    SCOPED_TRACE(before);
    const std::int32_t col = place == Place::kEditor ? column::kMenge : column::kPreisAts;
    basket.Grid().Select(1, column::kBezeichnung, 1, column::kBezeichnung);  // a real change
    basket.Grid().Select(2, col, 2, col);
    basket.Pump();
    EXPECT_EQ(GetFocus(), place == Place::kEditor ? basket.Text() : basket.Child(child_id::kListe));
}

TEST_P(WindowKeys, EveryShortcutRunsItsCommandAndTypesNothing) {
    for (const Place place : {Place::kEditor, Place::kGrid}) {
        BasketWindowFixture basket(GetParam());
        basket.Link(L"4711", L"Seite 1", L"vex:1");
        basket.Link(L"1000", L"Seite 2", L"vex:2");
        basket.Link(L"2000", L"Seite 3", L"vex:3");
        Focus(basket, place, "N");
        basket.Press('N', {kCtrl});
        EXPECT_EQ(basket.Lines(), 4) << basket.AsText();

        Focus(basket, place, "E");
        basket.Press('E', {kCtrl});
        EXPECT_EQ(basket.Lines(), 5);
        EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
        EXPECT_EQ(basket.Cell(3, column::kArtNr), L"1000");

        basket.Grid().Select(2, column::kPreisAts, 2, column::kPreisAts);
        basket.Pump();
        basket.Press('L', {kCtrl});
        EXPECT_EQ(basket.Lines(), 4);
        EXPECT_EQ(basket.Cell(2, column::kArtNr), L"1000");

        Focus(basket, place, "U");
        basket.Press('U', {kCtrl});
        EXPECT_EQ(basket.Cell(1, column::kArtNr), L"1000");
        EXPECT_EQ(basket.Grid().Row(), 1);

        basket.Press('D', {kCtrl});
        EXPECT_EQ(basket.Cell(2, column::kArtNr), L"1000");
        EXPECT_EQ(basket.Grid().Row(), 2);

        Focus(basket, place, "G");
        basket.Press('G', {kCtrl});
        EXPECT_EQ(basket.owner->navigated, (std::vector<std::wstring>{L"vex:2"}));

        Focus(basket, place, "S");
        basket.file_dialogs.Choose(L"C:\\Basket\\neu.bsk");
        basket.Press('S', {kCtrl});
        EXPECT_TRUE(basket.files.Has(L"C:\\Basket\\neu.bsk"));

        Focus(basket, place, "O");
        basket.file_dialogs.Cancel();
        basket.messages.otherwise = MessageAnswer::kNo;  // changes are not to be saved
        basket.Press('O', {kCtrl});
        EXPECT_EQ(basket.file_dialogs.shown.size(), 2u);
        EXPECT_FALSE(basket.file_dialogs.shown.back().save);

        Focus(basket, place, "P");
        basket.Press('P', {kCtrl});
        EXPECT_EQ(basket.printer.jobs, 1);

        for (const std::wstring& text :
             {basket.Cell(1, column::kMenge), basket.Cell(2, column::kMenge)}) {
            EXPECT_EQ(text, L"1");
        }
        EXPECT_EQ(basket.sound.beeps, 0);
        EXPECT_TRUE(basket.host.commands.empty());
    }
}

TEST_P(WindowKeys, ShortcutsWorkWithTheFocusOnTheWindowItself) {
    BasketWindowFixture basket(GetParam());
    SetFocus(basket.Handle());
    basket.Press('N', {kCtrl});
    EXPECT_EQ(basket.Lines(), 1);
}

TEST_P(WindowKeys, ShortcutsLeaveAnotherWindowOfTheHostAlone) {
    BasketWindowFixture basket(GetParam());
    SetForegroundWindow(basket.host.handle);
    SetFocus(basket.host.text);
    basket.Pump();
    basket.Press('N', {kCtrl});
    EXPECT_EQ(basket.Lines(), 0);
}

TEST_P(WindowKeys, AltGrAndShiftCombinationsFireNoCommand) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"4711", L"Seite", L"vex:1");
    basket.Link(L"");
    ASSERT_TRUE(basket.EditorOpen());
    for (const WORD key : {'N', 'E', 'L', 'U', 'D', 'G', 'O', 'S', 'P'}) {
        basket.Press(key, {VK_LCONTROL, VK_RMENU});
        basket.Press(key, {kCtrl, VK_SHIFT});
    }
    EXPECT_EQ(basket.Lines(), 2);
    EXPECT_TRUE(basket.owner->navigated.empty());
    EXPECT_TRUE(basket.file_dialogs.shown.empty());
    EXPECT_EQ(basket.printer.jobs, 0);
    EXPECT_TRUE(basket.EditorOpen());
    EXPECT_EQ(basket.TextOf(basket.Text()), L"");
}

TEST_P(WindowKeys, AltGrCharactersAreTyped) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"");
    basket.Type(L"a@b€c{d}");
    EXPECT_EQ(basket.TextOf(basket.Text()), L"a@b€c{d}");
}

TEST_P(WindowKeys, ClipboardKeysSelectAllAndUndoStayWithTheTextBox) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"");
    const auto text = [&] { return basket.TextOf(basket.Text()); };
    basket.Type(L"Lampe");
    basket.Press('A', {kCtrl});
    basket.Press('C', {kCtrl});
    basket.Press(VK_END);
    basket.Press('V', {kCtrl});
    EXPECT_EQ(text(), L"LampeLampe");
    basket.Press('A', {kCtrl});
    basket.Press('X', {kCtrl});
    EXPECT_EQ(text(), L"");
    basket.Press('Z', {kCtrl});
    EXPECT_EQ(text(), L"LampeLampe");
    EXPECT_EQ(basket.Lines(), 1);
    EXPECT_EQ(basket.clipboard.sets, 0);  // the text box's own clipboard handling
}

TEST_P(WindowKeys, ControlCharactersAreNeverTyped) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"");
    basket.Type(L"AB");
    for (WORD key = 'A'; key <= 'Z'; ++key) {
        if (key == 'X' || key == 'V' || key == 'Z' || CommandForShortcut(key) != Command::kNone) {
            continue;
        }
        basket.Press(key, {kCtrl});
    }
    basket.Press(VK_BACK, {kCtrl});
    basket.Press(VK_ESCAPE);
    EXPECT_EQ(basket.TextOf(basket.Text()), L"AB");
}

TEST_P(WindowKeys, EscapeKeepsTheTypedTextAndMovingAwayCommitsIt) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"");
    basket.Type(L"Vase");
    basket.Press(VK_ESCAPE);
    EXPECT_EQ(basket.TextOf(basket.Text()), L"Vase");
    basket.Press(VK_RIGHT);
    EXPECT_EQ(basket.Cell(1, column::kBezeichnung), L"Vase");
}

TEST_P(WindowKeys, ArrowsMoveFromCellToCellAndWithinTheText) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"4711");
    basket.Link(L"1000");
    basket.Link(L"2000");
    FlexGrid& grid = basket.Grid();
    grid.Select(2, column::kMenge, 2, column::kMenge);
    basket.Pump();
    basket.Press(VK_DOWN);
    EXPECT_EQ(grid.Row(), 3);
    EXPECT_EQ(GetFocus(), basket.Text());
    basket.Press(VK_UP);
    basket.Press(VK_UP);
    EXPECT_EQ(grid.Row(), 1);
    basket.Press(VK_UP);  // stays: nothing above
    EXPECT_EQ(grid.Row(), 1);
    basket.Press('A', {kCtrl});
    basket.Type(L"12");
    basket.Press(VK_LEFT);  // within the text
    EXPECT_EQ(grid.Col(), column::kMenge);
    basket.Press(VK_HOME);
    basket.Press(VK_LEFT);  // out of it
    EXPECT_EQ(grid.Col(), column::kBezeichnung);
    EXPECT_FALSE(basket.EditorOpen());
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"12");
    EXPECT_EQ(basket.Cell(1, column::kGesamtAts), basket.text.FormatAmount(1200));
    EXPECT_EQ(GetFocus(), basket.Child(child_id::kListe));
    basket.Press(VK_RIGHT);
    EXPECT_EQ(grid.Col(), column::kMenge);
    EXPECT_TRUE(basket.EditorOpen());
    basket.Press(VK_RIGHT);
    EXPECT_EQ(grid.Col(), column::kPreisAts);
}

TEST_P(WindowKeys, ShiftArrowsExtendTheSelectionOverRows) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"4711");
    basket.Link(L"1000");
    FlexGrid& grid = basket.Grid();
    grid.Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    basket.Press(VK_DOWN, {VK_SHIFT});
    EXPECT_EQ(grid.Row(), 1);
    EXPECT_EQ(grid.RowSel(), 2);
    EXPECT_FALSE(basket.EditorOpen());
}

TEST_P(WindowKeys, TabGoesFromCellToCellAndShiftTabBack) {
    BasketWindowFixture basket(GetParam());
    basket.Link(L"4711");
    basket.Link(L"");
    basket.ClickCell(1, column::kMenge);
    basket.Type(L"3");
    basket.Press(VK_TAB);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"3");
    EXPECT_EQ(CellName(basket.Grid(), basket.Grid().Row(), basket.Grid().Col()),
              CellName(basket.Grid(), 2, column::kArtNr));
    EXPECT_EQ(GetFocus(), basket.Text());
    basket.Press(VK_TAB);
    basket.Press(VK_TAB);  // the last one
    EXPECT_EQ(basket.Grid().Col(), column::kBezeichnung);
    EXPECT_EQ(GetFocus(), basket.Text());
    basket.Type(L"AB");
    basket.Press(VK_TAB, {VK_SHIFT});
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"AB");
    basket.Press(VK_TAB, {VK_SHIFT});
    EXPECT_EQ(basket.Grid().Row(), 1);
    EXPECT_EQ(GetFocus(), basket.Text());
    basket.ClickCell(1, column::kPreisAts);
    ASSERT_EQ(GetFocus(), basket.Child(child_id::kListe));
    basket.Press(VK_TAB);
    EXPECT_EQ(basket.Grid().Row(), 2);
    EXPECT_EQ(basket.Grid().Col(), column::kArtNr);
    EXPECT_EQ(GetFocus(), basket.Text());
    EXPECT_TRUE(basket.host.commands.empty());
}

TEST_P(WindowKeys, WhatIsTypedRightAfterAnArrowGoesIntoTheNextCell) {
    BasketWindowFixture basket(GetParam());
    for (int i = 0; i < 3; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.Grid().Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    // all keys wait in the queue before the first is handled, as with a fast typist
    basket.PressAtOnce({{'7', true},
                        {'7', false},
                        {VK_DOWN, true},
                        {VK_DOWN, false},
                        {'8', true},
                        {'8', false},
                        {VK_DOWN, true},
                        {VK_DOWN, false},
                        {'9', true},
                        {'9', false},
                        {VK_UP, true},
                        {VK_UP, false}});
    PumpUntil([&] { return basket.Grid().Row() == 2 && basket.Cell(3, column::kMenge) == L"9"; });
    basket.Pump();
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"7");
    EXPECT_EQ(basket.Cell(2, column::kMenge), L"8");
    EXPECT_EQ(basket.Cell(3, column::kMenge), L"9");
}

TEST(WindowKey, HoldingAnArrowThroughAThousandRowsEndsOnTheRightCell) {
    BasketWindowFixture basket;
    for (int i = 0; i < 1001; ++i) {
        bool info = false;
        basket.window->Form()->AddArtikel(i % 2 == 0 ? L"4711" : L"4712", L"", L"", info, 1, true);
    }
    FlexGrid& grid = basket.Grid();
    grid.SetTopRow(1);
    grid.Select(1, column::kMenge, 1, column::kMenge);
    basket.Pump();
    for (int i = 0; i < 1000; ++i) {
        // key down only: a key that is held repeats
        basket.PressAtOnce({{VK_DOWN, true}});
    }
    basket.PressAtOnce({{VK_DOWN, false}});
    PumpUntil([&] { return grid.Row() == 1001; });
    EXPECT_EQ(grid.Row(), 1001);
    EXPECT_EQ(grid.Col(), column::kMenge);
    EXPECT_TRUE(basket.EditorOpen());
    EXPECT_EQ(GetFocus(), basket.Text());
}

TEST_P(WindowKeys, AnOrderOfFiftyLinesIsTypedWithoutTheMouse) {
    BasketWindowFixture basket(GetParam());
    const wchar_t* const numbers[] = {L"1000", L"2000", L"4711", L"4712", L"ABC"};
    const double prices[] = {3.50, 0.10, 100, 100, 45.90};
    double sum = 0;
    for (int line = 1; line <= 50; ++line) {
        const int article = line % 5;
        const int quantity = line * 7 % 30 + 1;
        basket.Press('N', {VK_CONTROL});  // a new line, editor on the description
        basket.Press(VK_LEFT);            // to the number
        basket.Type(numbers[article]);
        basket.Press(VK_RETURN);  // looked up; the editor opens on the quantity
        ASSERT_EQ(basket.Grid().Col(), column::kMenge) << basket.AsText();
        basket.Type(std::to_wstring(quantity));
        basket.Press(VK_RETURN);
        sum += prices[article] * quantity;
    }
    ASSERT_EQ(basket.Lines(), 50);
    for (int line = 1; line <= 50; ++line) {
        const int article = line % 5;
        const int quantity = line * 7 % 30 + 1;
        EXPECT_EQ(basket.Cell(line, column::kNumber), std::to_wstring(line));
        EXPECT_EQ(basket.Cell(line, column::kArtNr), numbers[article]);
        EXPECT_EQ(basket.Cell(line, column::kMenge), std::to_wstring(quantity));
        EXPECT_EQ(basket.Cell(line, column::kGesamtAts),
                  basket.text.FormatAmount(prices[article] * quantity));
    }
    EXPECT_EQ(basket.Cell(51, column::kGesamtAts), basket.text.FormatAmount(sum));
    EXPECT_TRUE(basket.messages.shown.empty());
}

// --- a walk with real input

bool EditorShouldBeOpen(BasketWindowFixture& basket) {
    const FlexGrid& grid = basket.Grid();
    const std::int32_t row = grid.Row(), col = grid.Col();
    if (row < 1 || row >= grid.Rows() - 1 || row != grid.RowSel() || col != grid.ColSel()) {
        return false;
    }
    const bool article = !basket.Cell(row, column::kArtNr).empty();
    const bool editable = (article && col == column::kMenge) ||
                          (!article && (col == column::kArtNr || col == column::kBezeichnung));
    return editable && row >= grid.TopRow() && grid.RowPos(row + 1) <= grid.Height() - 90 &&
           col >= grid.LeftCol() && grid.ColPos(col + 1) < grid.Width() - 90;
}

void ExpectWhole(BasketWindowFixture& basket) {
    const FlexGrid& grid = basket.Grid();
    const std::int32_t last = grid.Rows() - 1;
    ASSERT_EQ(basket.Cell(last, column::kBezeichnung), L"Gesamt");
    double ats = 0;
    for (std::int32_t row = 1; row < last; ++row) {
        ASSERT_EQ(basket.Cell(row, column::kNumber), std::to_wstring(row)) << basket.AsText();
        if (!basket.Cell(row, column::kArtNr).empty()) {
            ats += basket.text.ToNumber(basket.Cell(row, column::kGesamtAts));
        }
    }
    const std::wstring shown = basket.Cell(last, column::kGesamtAts);
    ASSERT_NEAR(shown.empty() ? 0 : basket.text.ToNumber(shown), ats, 0.001) << basket.AsText();
}

TEST_P(WindowKeys, ARandomWalkWithRealInputKeepsTheBasketWhole) {
    BasketWindowFixture basket(GetParam());
    basket.messages.otherwise = MessageAnswer::kNo;
    const unsigned seed = 20260514u + static_cast<unsigned>(GetParam());
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    const auto pick = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const wchar_t* const numbers[] = {L"1000", L"2000", L"4711", L"4712", L"ABC"};
    for (int step = 0; step < 600; ++step) {
        const int action = pick(20);
        switch (action) {
            case 0:
            case 1:
                if (basket.Lines() < 60) basket.Link(numbers[pick(5)]);
                break;
            case 2:
                if (basket.Lines() < 60) basket.Press('N', {kCtrl});
                break;
            case 3:
                if (basket.Lines() < 60) basket.Press('E', {kCtrl});
                break;
            case 4:
                basket.Press('L', {kCtrl});
                break;
            case 5:
                basket.Press('U', {kCtrl});
                break;
            case 6:
                basket.Press('D', {kCtrl});
                break;
            case 7:
                basket.Press(VK_UP);
                break;
            case 8:
                basket.Press(VK_DOWN);
                break;
            case 9:
                basket.Press(VK_LEFT);
                break;
            case 10:
                basket.Press(VK_RIGHT);
                break;
            case 11:
                basket.Press(pick(2) == 0 ? VK_NEXT : VK_PRIOR);
                break;
            case 12:
                basket.Press(pick(2) == 0 ? VK_UP : VK_DOWN, {VK_SHIFT});
                break;
            case 13:
                if (basket.Lines() < 60) basket.Press(VK_RETURN);
                break;
            case 14:
            case 15:
                basket.Type(std::to_wstring(pick(50) + 1));
                break;
            case 16:
                basket.Type(numbers[pick(5)]);
                break;
            case 17: {
                const FlexGrid& grid = basket.Grid();
                const std::int32_t row = grid.TopRow() + pick(18);
                if (row < grid.Rows()) basket.ClickCell(row, 1 + pick(5));
                break;
            }
            case 18:
                SendMessageW(GetFocus(), WM_MOUSEWHEEL,
                             MAKEWPARAM(0, static_cast<WORD>((pick(3) - 1) * WHEEL_DELTA)), 0);
                basket.Pump();
                break;
            default:
                basket.Press(pick(2) == 0 ? VK_BACK : VK_TAB);
                break;
        }
        SCOPED_TRACE(::testing::Message() << "step " << step << " action " << action);
        ExpectWhole(basket);
        ASSERT_EQ(basket.EditorOpen(), EditorShouldBeOpen(basket)) << basket.AsText();
        if (HasFatalFailure()) return;
    }
    for (const auto& shown : basket.messages.shown) {
        EXPECT_NE(shown.text.find(L"ist keine gültige Artikelnummer"), std::wstring::npos);
    }
}

}  // namespace
}  // namespace demovex
