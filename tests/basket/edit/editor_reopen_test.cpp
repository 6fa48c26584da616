// What keeps the current cell open to the user: input that reaches the grid, Tab, and what the text
// box may undo.
#include <gtest/gtest.h>

#include <functional>

#include "tests/support/cell_editor_fixture.h"

namespace demovex {
namespace {

using View = FakeBasketView;

class EditorReopen : public CellEditorTest {
  protected:
    // A key in the grid that it has no use for; answers whether the form used it.
    bool GridKeyDown(int key, int shift = 0) {
        basket.form.Liste_KeyDown(key, shift);
        basket.view.Tick();
        return key == 0;
    }
    bool GridType(wchar_t character) {
        int code = character;
        basket.form.Liste_KeyPress(code);
        basket.view.Tick();
        return code == 0;
    }
    void GridArrow(GridKey key, bool shift = false) {
        basket.grid.Key(key, shift, false);
        basket.form.Liste_Acted();
        basket.view.Tick();
    }
    // The editor has been closed over its cell by something else than leaving it.
    void Close() {
        basket.form.CommitCellEdit();
        basket.view.focus = View::FocusPlace::kGrid;
        ASSERT_FALSE(basket.view.EditorOpen());
    }
    bool OpenAt(std::int32_t row, std::int32_t col) {
        return basket.view.EditorOpen() && basket.form.State().EditRow == row &&
               basket.form.State().EditCol == col && basket.view.focus == View::FocusPlace::kText;
    }
};

TEST_F(EditorReopen, APressOnTheCurrentCellOpensItsEditorAgain) {
    basket.Click(1, column::kMenge);
    Close();
    basket.Click(1, column::kMenge);
    EXPECT_TRUE(OpenAt(1, column::kMenge));
}

TEST_F(EditorReopen, FTwoAndReturnOpenIt) {
    for (const int key : {View::kF2, View::kReturn}) {
        basket.Click(2, column::kBezeichnung);
        Close();
        EXPECT_TRUE(GridKeyDown(key));
        EXPECT_TRUE(OpenAt(2, column::kBezeichnung)) << key;
    }
    EXPECT_EQ(basket.Lines(), 2);  // Return only opened the cell
}

TEST_F(EditorReopen, APrintableCharacterOpensItAndIsTypedOverTheText) {
    basket.Click(1, column::kMenge);
    Close();
    EXPECT_TRUE(GridType(L'7'));
    EXPECT_TRUE(OpenAt(1, column::kMenge));
    EXPECT_EQ(basket.view.text, L"7");
    EXPECT_TRUE(GridType(L'5'));
    EXPECT_EQ(basket.view.text, L"75");
    basket.Press(View::kReturn);
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"7\u00A0500,00");
}

TEST_F(EditorReopen, ControlCharactersOpenNothing) {
    basket.Click(1, column::kMenge);
    Close();
    for (const wchar_t character : {L'\b', L'\t', L'\r', L'\x1B', L'\x16', L'\x7F'}) {
        EXPECT_FALSE(GridType(character)) << static_cast<int>(character);
    }
    EXPECT_FALSE(GridKeyDown(View::kDelete));
    EXPECT_FALSE(GridKeyDown(View::kF2, shift_state::kShift));
    EXPECT_FALSE(GridKeyDown(View::kReturn, shift_state::kCtrl));
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"3");
}

TEST_F(EditorReopen, WithAnOpenEditorCharactersInTheGridGoToTheText) {
    basket.Click(2, column::kBezeichnung);
    basket.view.Type(L"Vas");
    basket.view.focus = View::FocusPlace::kGrid;
    EXPECT_TRUE(GridType(L'e'));
    EXPECT_EQ(basket.view.text, L"Vase");
    EXPECT_EQ(basket.view.focus, View::FocusPlace::kText);
    EXPECT_TRUE(GridType(L'\b'));
    EXPECT_EQ(basket.view.text, L"Vas");
    basket.view.Select(0, 1);
    EXPECT_TRUE(GridKeyDown(View::kDelete));
    EXPECT_EQ(basket.view.text, L"as");
    EXPECT_FALSE(GridType(L'\x16'));  // pasting is for the control that has the focus
    EXPECT_TRUE(GridKeyDown(View::kReturn));
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"as");
    EXPECT_EQ(basket.Lines(), 3);
}

TEST_F(EditorReopen, TheCellIsBroughtIntoViewFirst) {
    basket.grid.SetFrame({340, 400, 2, 17, 17});
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.grid.SetTopRow(1);
    basket.Click(1, column::kMenge);
    for (const int key : {0, int{View::kF2}, int{View::kReturn}}) {
        basket.grid.SetTopRow(30);
        ASSERT_FALSE(basket.view.EditorOpen());
        EXPECT_TRUE(key == 0 ? GridType(L'4') : GridKeyDown(key));
        EXPECT_TRUE(OpenAt(1, column::kMenge));
        EXPECT_EQ(basket.grid.TopRow(), 1);
    }
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"4");
    basket.grid.SetLeftCol(column::kPreisAts);
    ASSERT_FALSE(basket.view.EditorOpen());
    EXPECT_TRUE(GridType(L'5'));
    EXPECT_EQ(basket.view.text, L"5");
}

TEST_F(EditorReopen, WhereNothingMayBeEditedInputOpensNothing) {
    for (const std::int32_t row : {0, 1, 3}) {
        basket.Select(row, column::kPreisAts, row, column::kPreisAts);
        EXPECT_FALSE(GridType(L'7'));
        EXPECT_FALSE(GridKeyDown(View::kF2));
        EXPECT_FALSE(GridKeyDown(View::kReturn));
        basket.form.Liste_Acted();
        EXPECT_FALSE(basket.view.EditorOpen());
    }
    basket.Select(2, column::kArtNr, 2, column::kBezeichnung);
    EXPECT_FALSE(GridType(L'7'));
    EXPECT_FALSE(GridKeyDown(View::kF2));
    basket.form.Liste_Acted();
    EXPECT_FALSE(basket.view.EditorOpen());
}

TEST_F(EditorReopen, InputThatOpensNothingDoesNotScroll) {
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.Select(1, column::kPreisAts, 1, column::kPreisAts);
    basket.grid.SetTopRow(30);
    EXPECT_FALSE(GridType(L'7'));
    EXPECT_FALSE(GridKeyDown(View::kF2));
    EXPECT_EQ(basket.grid.TopRow(), 30);
}

TEST_F(EditorReopen, AnArrowThatEndsOnASingleEditableCellOpensIt) {
    basket.Click(1, column::kMenge);
    basket.Press(View::kDown, shift_state::kShift);
    ASSERT_FALSE(basket.view.EditorOpen());
    GridArrow(GridKey::kUp, true);
    EXPECT_TRUE(OpenAt(1, column::kMenge));
    Close();
    GridArrow(GridKey::kUp);  // no row above: the cell stays
    EXPECT_TRUE(OpenAt(1, column::kMenge));
}

TEST_F(EditorReopen, ReadingCommandsAResizeAndBarsLeaveACellThatTheNextCharacterGoesInto) {
    const std::function<void()> acts[] = {
        [&] { basket.form.Form_Resize(); },
        [&] { basket.form.Run(Command::mnuAnsichtStatusleiste); },
        [&] {
            basket.file_dialogs.Choose(L"C:\\Basket\\a.bsk");
            basket.form.Run(Command::mnuDateiSpeichern);
        },
        [&] { basket.form.Run(Command::mnuDateiDrucken); },
        [&] { basket.form.Run(Command::mnuContextCopySelectionToClipboard); },
        [&] {
            basket.file_dialogs.Cancel();
            basket.messages.otherwise = MessageAnswer::kNo;
            basket.form.Run(Command::mnuDateiOeffnen);
        },
        [&] {
            basket.messages.otherwise = MessageAnswer::kCancel;
            basket.form.Run(Command::mnuDateiNeu);
        },
    };
    int act_number = 0;
    for (const auto& act : acts) {
        SCOPED_TRACE(act_number++);
        basket.Click(2, column::kArtNr);
        basket.Click(1, column::kMenge);
        ASSERT_TRUE(basket.view.EditorOpen());
        act();
        EXPECT_TRUE(GridType(L'8'));
        EXPECT_TRUE(OpenAt(1, column::kMenge));
        EXPECT_EQ(basket.view.text, L"8");
        basket.TypeOver(L"3");
    }
}

// --- undo belongs to its cell

TEST_F(EditorReopen, UndoNeverBringsInAnotherCellsText) {
    basket.Link(L"4712", 2);  // row 3
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"2");
    basket.Click(3, column::kMenge);  // whose text is the same
    basket.view.Undo();
    EXPECT_EQ(basket.view.text, L"2");
    basket.TypeOver(L"5");
    basket.view.Undo();
    EXPECT_EQ(basket.view.text, L"2");
}

// --- Tab

TEST_F(EditorReopen, TabGoesThroughTheCellsThatMayBeEditedAndShiftTabBack) {
    basket.Link(L"4712", 2);  // row 3
    const std::pair<std::int32_t, std::int32_t> stops[] = {
        {1, column::kMenge}, {2, column::kArtNr}, {2, column::kBezeichnung}, {3, column::kMenge}};
    basket.Click(1, column::kMenge);
    for (std::size_t i = 1; i < std::size(stops); ++i) {
        basket.Press(View::kTab);
        EXPECT_TRUE(OpenAt(stops[i].first, stops[i].second)) << i << basket.AsText();
    }
    basket.Press(View::kTab);
    EXPECT_TRUE(OpenAt(3, column::kMenge));  // the last one
    for (std::size_t i = std::size(stops) - 1; i-- > 0;) {
        basket.Press(View::kTab, shift_state::kShift);
        EXPECT_TRUE(OpenAt(stops[i].first, stops[i].second)) << i;
    }
    basket.Press(View::kTab, shift_state::kShift);
    EXPECT_TRUE(OpenAt(1, column::kMenge));  // the first one
}

TEST_F(EditorReopen, TabCommitsWhatWasTyped) {
    basket.Click(1, column::kMenge);
    basket.TypeOver(L"4");
    basket.Press(View::kTab);
    EXPECT_EQ(basket.Cell(1, column::kMenge), L"4");
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"400,00");
    basket.view.Type(L"4712");
    basket.Press(View::kTab);  // a number that is found makes the quantity its row's only cell
    EXPECT_TRUE(OpenAt(2, column::kMenge));
    EXPECT_EQ(basket.Cell(2, column::kBezeichnung), L"Duftwasser");
    basket.TypeOver(L"2");
    basket.Press(View::kTab);  // the last cell: committed, and stays
    EXPECT_TRUE(OpenAt(2, column::kMenge));
    EXPECT_EQ(basket.Total(column::kGesamtAts), L"600,00");
}

TEST_F(EditorReopen, TabAfterARefusedNumberGoesOnToTheDescription) {
    basket.Click(2, column::kArtNr);
    basket.view.Type(L"nope");
    basket.Press(View::kTab);
    ASSERT_EQ(basket.messages.shown.size(), 1u);
    EXPECT_EQ(basket.Cell(2, column::kArtNr), L"");
    EXPECT_TRUE(OpenAt(2, column::kBezeichnung));
}

TEST_F(EditorReopen, TabInTheGridGoesOnFromTheCurrentCell) {
    basket.Click(1, column::kPreisAts);
    EXPECT_TRUE(GridKeyDown(View::kTab));
    EXPECT_TRUE(OpenAt(2, column::kArtNr));
    basket.Click(1, column::kGesamtEuro);
    EXPECT_TRUE(GridKeyDown(View::kTab, shift_state::kShift));
    EXPECT_TRUE(OpenAt(1, column::kMenge));
    basket.Click(1, column::kGesamtEuro);
    basket.Select(0, column::kBezeichnung, 0, column::kBezeichnung);
    EXPECT_TRUE(GridKeyDown(View::kTab));
    EXPECT_TRUE(OpenAt(1, column::kMenge));
    basket.Click(1, column::kGesamtEuro);
    basket.Select(3, column::kBezeichnung, 3, column::kBezeichnung);  // the totals
    EXPECT_TRUE(GridKeyDown(View::kTab));
    EXPECT_EQ(basket.grid.Row(), 3);
    EXPECT_FALSE(basket.view.EditorOpen());
    EXPECT_TRUE(GridKeyDown(View::kTab, shift_state::kShift));
    EXPECT_TRUE(OpenAt(2, column::kBezeichnung));
    EXPECT_FALSE(GridKeyDown(View::kTab, shift_state::kCtrl));
}

TEST_F(EditorReopen, TabCollapsesASelectionAndScrollsToItsCell) {
    for (int i = 0; i < 60; ++i) basket.Link(i % 2 == 0 ? L"4711" : L"4712");
    basket.grid.SetTopRow(1);
    basket.Click(1, column::kMenge);
    for (std::int32_t row = 2; row <= 62; ++row) {
        basket.Press(View::kTab);
        if (row == 2) basket.Press(View::kTab);
        ASSERT_TRUE(OpenAt(row, row == 2 ? column::kBezeichnung : column::kMenge)) << row;
    }
    basket.grid.SetTopRow(1);
    basket.Select(40, column::kArtNr, 42, column::kGesamtEuro);
    EXPECT_TRUE(GridKeyDown(View::kTab));
    EXPECT_TRUE(OpenAt(40, column::kMenge));
    EXPECT_EQ(basket.grid.RowSel(), 40);
}

TEST(EditorTab, AnEmptyBasketHasNoCellToGoTo) {
    BasketFixture basket;
    for (const int shift : {0, shift_state::kShift}) {
        int key = View::kTab;
        basket.form.Liste_KeyDown(key, shift);
        EXPECT_EQ(key, 0);
        EXPECT_EQ(basket.grid.Row(), 0);
        EXPECT_FALSE(basket.view.EditorOpen());
    }
}

}  // namespace
}  // namespace demovex
